#pragma once

#include "forms/Desktop.h"

namespace zv {

/// The numbered text of the system. Fails with 326 if there is none of that number.
String LoadResString(Long id);

/// Numbers of the messages that many dialogs show.
namespace message {
inline constexpr Integer title = 100;
inline constexpr Integer readFailed = 510;
inline constexpr Integer updateFailed = 512;
inline constexpr Integer insertFailed = 513;
inline constexpr Integer fieldsMissing = 514;
} // namespace message

/// Message box with a numbered text under the system's title, without a beep.
void showMessage(Integer id, Integer flags);
/// Beep, then the message box.
void warn(Integer id, Integer flags);
/// Tests Err: a failure is reported (beep, the numbered message) and cleared. True if there was one.
bool reportedFailure(Integer id, Integer flags = sign::critical);

} // namespace zv
