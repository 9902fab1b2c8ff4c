#pragma once

#include "robot/Play.h"
#include "robot/Portraits.h"

#include <chrono>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zv::zvconf {

/// What the command line was started with, without the program's own name. Fails with a UsageError if it
/// cannot be read as text.
std::vector<String> commandLine(std::span<char*> arguments);

/// The signals by which the system or a person asks a program to end.
std::span<const int> endingSignals();

/// What a program that was run came to.
struct ChildEnd {
    int code = 0; ///< Its exit code; of one that was killed 128 and its signal, or what the system says.
    std::string output; ///< Standard output and error together, as they came: no more than the first 64 KB.
    bool outOfTime = false; ///< It was killed, as it had not ended.
};

/// Runs this program once more with other arguments, and waits for its end, which is no later than `longest`
/// from now. `input` is what it reads, which nobody else sees. It is apart from the signals that a terminal
/// sends to this one. From any thread. Fails with a std::system_error if it cannot be started.
ChildEnd runSelf(const std::vector<String>& arguments, std::string_view input,
                 std::chrono::milliseconds longest);

/// From now on nobody is ended for writing to a pipe whose reader has gone (`| head`); the streams fail
/// instead. The programs that runSelf() begins have the usual again.
void outliveReaders();

/// Whether a person sees standard error as it is written.
bool isErrorShown();

/// A stage in windows of the system. This and the two below fail with a UsageError where this program has
/// none, and with a std::runtime_error where there is no screen.
StageMaker windowStage();

/// The desktop in windows of the system.
std::unique_ptr<Desktop> windowDesktop();

/// Draws every dialog of that school in windows of the system as pictures in a folder.
Gallery drawWindows(const String& folder, const School& school);

/// RAII guard: as long as it lives, standard output and error take UTF-8 with lines that end in LF, and a
/// console shows them so.
class Utf8Output {
public:
    Utf8Output();
    Utf8Output(const Utf8Output&) = delete;
    Utf8Output& operator=(const Utf8Output&) = delete;
    ~Utf8Output();

private:
    [[maybe_unused]] unsigned before_ = 0; ///< The console's code page; 0 where there is none to put back.
};

} // namespace zv::zvconf
