#include "zvconf/System.h"

#include "zvconf/Command.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace zv::zvconf {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t mostOutput = 65536;

void check(int error)
{
    if (error != 0)
        throw std::system_error(error, std::generic_category());
}

/// RAII owner of an open file: an end of a pipe, say.
class File {
public:
    explicit File(int file) : file_(file)
    {
        if (file < 0)
            check(errno);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { close(); }
    int file() const { return file_; }
    void close()
    {
        if (file_ >= 0)
            ::close(file_);
        file_ = -1;
    }
    /// Whether there is something to read, or the writer has ended, by then.
    bool speaksBy(Clock::time_point end) const
    {
        for (;;) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
            if (left <= 0)
                return false;
            pollfd asked{file_, POLLIN, 0};
            if (poll(&asked, 1, static_cast<int>(std::min<decltype(left)>(left, 60'000))) > 0)
                return true;
        }
    }
    /// Appends what there is, the beginning of all; false at the end.
    bool readInto(std::string& text) const
    {
        std::array<char, 4096> piece{};
        const ssize_t count = read(file_, piece.data(), piece.size());
        if (count > 0)
            text.append(piece.data(), std::min(static_cast<std::size_t>(count), mostOutput - text.size()));
        return count > 0 || (count < 0 && errno == EINTR);
    }

private:
    int file_;
};

/// A file without a name, ready to be read: unlike a pipe it takes any text at once, and nobody need read it.
class Nameless : public File {
public:
    explicit Nameless(std::string_view text) : File(memfd_create("centro", MFD_CLOEXEC))
    {
        while (!text.empty()) {
            const ssize_t count = write(file(), text.data(), text.size());
            if (count < 0)
                check(errno);
            text.remove_prefix(static_cast<std::size_t>(count));
        }
        lseek(file(), 0, SEEK_SET);
    }
};

/// RAII description of how a child begins: in a group of its own, between its input and a pipe.
class Beginning {
public:
    Beginning(int input, int output)
    {
        check(posix_spawn_file_actions_init(&files_));
        check(posix_spawnattr_init(&how_));
        check(posix_spawn_file_actions_adddup2(&files_, input, STDIN_FILENO));
        check(posix_spawn_file_actions_adddup2(&files_, output, STDOUT_FILENO));
        check(posix_spawn_file_actions_adddup2(&files_, output, STDERR_FILENO));
        // A terminal's signal may come before it has left our group, and waits for it then.
        sigset_t terminals{};
        sigemptyset(&terminals);
        for (const int each : {SIGINT, SIGQUIT, SIGHUP})
            sigaddset(&terminals, each);
        check(posix_spawnattr_setsigmask(&how_, &terminals));
        sigset_t readers{};
        sigemptyset(&readers);
        sigaddset(&readers, SIGPIPE);
        check(posix_spawnattr_setsigdefault(&how_, &readers));
        check(posix_spawnattr_setflags(&how_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK |
                                                  POSIX_SPAWN_SETSIGDEF));
    }
    Beginning(const Beginning&) = delete;
    Beginning& operator=(const Beginning&) = delete;
    ~Beginning()
    {
        posix_spawn_file_actions_destroy(&files_);
        posix_spawnattr_destroy(&how_);
    }
    pid_t start(std::vector<char*>& words) const
    {
        pid_t child = 0;
        check(posix_spawn(&child, "/proc/self/exe", &files_, &how_, words.data(), environ));
        return child;
    }

private:
    posix_spawn_file_actions_t files_{};
    posix_spawnattr_t how_{};
};

} // namespace

std::vector<String> commandLine(std::span<char*> arguments)
{
    std::vector<String> words;
    for (const char* argument : arguments)
        try {
            words.push_back(fromUtf8(argument));
        } catch (const std::invalid_argument&) {
            throw UsageError(u"La línea de órdenes no está en UTF-8: ponga en UTF-8 el terminal, o cambie el "
                             u"nombre del fichero.");
        }
    return words;
}

std::span<const int> endingSignals()
{
    static constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP};
    return signals;
}

ChildEnd runSelf(const std::vector<String>& arguments, std::string_view input,
                 std::chrono::milliseconds longest)
{
    const Clock::time_point limit = Clock::now() + longest;
    std::vector<std::string> texts{"zvconf"};
    std::vector<char*> words;
    texts.reserve(arguments.size() + 1);
    words.reserve(arguments.size() + 2);
    for (const String& each : arguments)
        texts.push_back(toUtf8(each));
    for (std::string& each : texts)
        words.push_back(each.data());
    words.push_back(nullptr);
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        check(errno);
    const File ours(ends[0]);
    File its(ends[1]);
    const pid_t child = Beginning(Nameless(input).file(), its.file()).start(words);
    its.close();
    ChildEnd end;
    // To the end, so that the writer is not held up.
    do
        if (!end.outOfTime && !ours.speaksBy(limit)) {
            end.outOfTime = true;
            kill(-child, SIGKILL);
        }
    while (ours.readInto(end.output));
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
        ;
    end.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return end;
}

void outliveReaders() { std::signal(SIGPIPE, SIG_IGN); }

bool isErrorShown() { return isatty(STDERR_FILENO) == 1; }

StageMaker windowStage()
{
    throw UsageError(u"Aquí las ventanas las abre «zvhost guion»; --ventanas es de zvconf en Windows.");
}

std::unique_ptr<Desktop> windowDesktop()
{
    throw UsageError(u"Aquí las ventanas las abre «zvhost dialogo»; esta orden es de zvconf en Windows.");
}

Gallery drawWindows(const String& /*folder*/, const School& /*school*/)
{
    throw UsageError(u"Aquí las ventanas las dibuja «zvhost galeria»; esta orden es de zvconf en Windows.");
}

// Streams take bytes as they are.
Utf8Output::Utf8Output() = default;
Utf8Output::~Utf8Output() { std::cout.flush(); }

} // namespace zv::zvconf
