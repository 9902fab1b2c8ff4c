#pragma once

#include "runtime/Errors.h"
#include "runtime/Value.h"

namespace zv {

/// The numbered text of the system. Fails with 326 if there is none of that number.
String LoadResString(Long id);

/// Signs of a message box.
namespace sign {
inline constexpr Integer critical = 16;
inline constexpr Integer exclamation = 48;
inline constexpr Integer information = 64;
} // namespace sign

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

} // namespace zv
