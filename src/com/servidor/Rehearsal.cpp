#include "com/servidor/Rehearsal.h"

#include "robot/ScriptedStage.h"
#include "robot/Verbs.h"
#include "runtime/WholeFile.h"

#include <algorithm>
#include <filesystem>

namespace zv::com {

namespace {

/// Pseudo-command put in front of the file, under which the first dialog's observations are recorded; line
/// numbers are corrected for it.
constexpr std::string_view hostsTurn = "anfitrion\n";

std::string contents(const std::string& file)
{
    auto text = wholeFile(std::u8string(file.begin(), file.end()));
    if (!text)
        throw RuntimeError(failure::fileMissing,
                           u"No se puede leer el guion que nombra ZV_ESCRITORIO: " + fromUtf8(file));
    // The host's turn comes before the first line, but behind the mark that editors put in front of UTF-8.
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text->insert(text->starts_with(mark) ? mark.size() : 0, hostsTurn);
}

bool isOneOf(std::span<const Verb> verbs, StringView name)
{
    return std::ranges::any_of(verbs, [&](const Verb& each) { return sameName(each.name, name); });
}

class Within {
public:
    explicit Within(bool& mark) : mark_(mark), before_(mark) { mark = true; }
    Within(const Within&) = delete;
    Within& operator=(const Within&) = delete;
    ~Within() { mark_ = before_; }

private:
    bool& mark_;
    bool before_;
};

} // namespace

Rehearsal::Rehearsal(std::string file) : file_(std::move(file))
{
    try {
        guion_ = readGuion(contents(file_));
        for (auto command = guion_.commands.begin() + 1; command != guion_.commands.end(); ++command)
            check(*command);
    } catch (const GuionError& error) {
        giveUp(error.line(), fromUtf8(error.what()));
    }
    failIfGivenUp();
    play_.emplace(guion_, School(), scriptedStage);
    play_->begin();
}

void Rehearsal::check(const GuionCommand& command) const
{
    checkCommand(command);
    const bool known = isOneOf(actingVerbs(), command.verb) || isOneOf(lookingVerbs(), command.verb);
    const bool session = std::ranges::any_of(command.arguments, [](const GuionArgument& each) {
        return lowerName(each.text).starts_with(u"sesion.");
    });
    if (!known || session)
        throw GuionError(command.line, u"en las ventanas de otro programa sólo se actúa y se mira");
}

void Rehearsal::around(const std::function<void()>& call)
{
    if (failure_.empty())
        run(call);
    // The play is destroyed only with the outermost call: dialogs of re-entrant ones still use it.
    if (!failure_.empty() && !inCall_)
        play_.reset();
    failIfGivenUp();
}

void Rehearsal::run(const std::function<void()>& call)
{
    const bool outermost = !inCall_;
    try {
        const Within within(inCall_);
        call();
    } catch (const GuionError& error) {
        giveUp(error.line(), fromUtf8(error.what()));
    } catch (const RuntimeError&) {
        // Swallowed after a failure of the guion, which caused it and is reported instead.
        if (failure_.empty())
            throw;
    }
    // Re-entrant calls are not compared: what they show is recorded under the outer one's command.
    if (outermost && failure_.empty())
        compare();
}

void Rehearsal::compare()
{
    const std::vector<Transcript::Difference> all = play_->transcript().differences();
    if (all.empty())
        return;
    const std::size_t read = play_->transcript().commandsRead();
    const Transcript::Difference& first = all.front();
    // No difference yet if only observations are missing under the current command, and more commands follow:
    // a later call may still show them.
    const bool later =
        first.seen.empty() && read < guion_.commands.size() && first.line >= guion_.commands[read - 1].line;
    const auto whole = [](const String& line) { return line.empty() ? String(u"(nada más)") : line; };
    if (!later)
        giveUp(first.line, u"se esperaba: " + whole(first.expected) + u"; se vio: " + whole(first.seen));
}

void Rehearsal::giveUp(std::size_t line, StringView reason)
{
    if (failure_.empty())
        failure_ = fromUtf8(file_) + u":" + decimalText(static_cast<std::int64_t>(line) - 1) + u": " +
                   String(reason);
}

void Rehearsal::failIfGivenUp() const
{
    if (!failure_.empty())
        throw RuntimeError(failure::invalidCall, failure_);
}

} // namespace zv::com
