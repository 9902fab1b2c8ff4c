#pragma once

#include "robot/Play.h"

#include <span>
#include <string>
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
};

/// Runs this program once more with other arguments, and waits for its end. It is apart from the signals that
/// a terminal sends to this one. From any thread. Fails with a std::system_error if it cannot be started.
ChildEnd runSelf(const std::vector<String>& arguments);

/// Whether a person sees standard error as it is written.
bool isErrorShown();

/// A stage in windows of the system; a UsageError where this program has none.
StageMaker windowStage();

/// The desktop in windows of the system; a UsageError where this program has none.
std::unique_ptr<Desktop> windowDesktop();

/// Pictures that were drawn, and their dots per inch.
struct Gallery {
    int pictures = 0;
    int dots = 0;
};

/// Draws every dialog of that school in windows of the system as pictures in a folder; a UsageError where
/// this program has none.
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
