#include "robot/Transcript.h"

#include <algorithm>

namespace zv {

namespace {

constexpr StringView anyRun = u"{*}";

/// Merges the observed lines with the expectations: a matching one with "{*}" is kept, as many as possible
/// (longest common subsequence).
std::vector<String> written(const std::vector<String>& expected, const std::vector<String>& observed)
{
    if (std::ranges::none_of(expected, [](const String& line) { return line.find(anyRun) != String::npos; }))
        return observed;
    // Dynamic programming: best[e][o] is the most matches between the lines from e and from o on.
    std::vector<std::vector<std::size_t>> best(expected.size() + 1,
                                               std::vector<std::size_t>(observed.size() + 1));
    for (std::size_t e = expected.size(); e-- > 0;)
        for (std::size_t o = observed.size(); o-- > 0;)
            best[e][o] = fits(expected[e], observed[o]) ? best[e + 1][o + 1] + 1
                                                        : std::max(best[e + 1][o], best[e][o + 1]);
    std::vector<String> result;
    std::size_t e = 0;
    for (std::size_t o = 0; o < observed.size(); ++o) {
        while (e < expected.size() && !fits(expected[e], observed[o]) && best[e + 1][o] > best[e][o + 1])
            ++e;
        const bool keep = e < expected.size() && fits(expected[e], observed[o]);
        result.push_back(keep ? expected[e++] : observed[o]);
    }
    return result;
}

} // namespace

bool fits(StringView expected, StringView seen)
{
    std::size_t run = expected.find(anyRun);
    if (run == StringView::npos)
        return expected == seen;
    if (!seen.starts_with(expected.substr(0, run)))
        return false;
    seen.remove_prefix(run);
    expected.remove_prefix(run + anyRun.size());
    // Greedy: each piece between wildcards matches at its first occurrence; the last is anchored at the end.
    while ((run = expected.find(anyRun)) != StringView::npos) {
        const std::size_t found = seen.find(expected.substr(0, run));
        if (found == StringView::npos)
            return false;
        seen.remove_prefix(found + run);
        expected.remove_prefix(run + anyRun.size());
    }
    return seen.ends_with(expected);
}

void Transcript::observe(StringView line)
{
    // Normalised by a round trip through UTF-8, as a line of the file is.
    observed_.back().push_back(fromUtf8(toUtf8(line)));
    inSteps_ = false;
}

void Transcript::observeStep(StringView step)
{
    if (inSteps_) {
        observed_.back().back().append(u", ").append(step);
        return;
    }
    observe(u"pasos " + String(step));
    inSteps_ = true;
}

/// A command with the lines under it.
struct Transcript::Block {
    std::size_t first;               ///< Index of the command's line.
    std::size_t end;                 ///< Index behind the last line.
    std::vector<std::size_t> places; ///< Indexes of the lines with an expectation.
    std::vector<String> expected;
};

std::vector<Transcript::Block> Transcript::blocks() const
{
    std::vector<Block> result;
    for (std::size_t place = 0; place < guion_.lines.size(); ++place) {
        const GuionLine& line = guion_.lines[place];
        if (line.command) {
            if (*line.command == observed_.size())
                break;
            result.push_back({place, place, {}, {}});
        }
        if (result.empty())
            continue;
        result.back().end = place + 1;
        if (line.expectation) {
            result.back().places.push_back(place);
            result.back().expected.push_back(*line.expectation);
        }
    }
    return result;
}

String Transcript::text() const
{
    String result;
    // Only the last line may lack an ending; it takes that of the line before, or the LF behind its CR.
    const std::size_t count = guion_.lines.size();
    const String usual = count > 1 ? guion_.lines[count - 2].ending : u"\n";
    const auto put = [&](StringView line, StringView ending) {
        result += line;
        result += ending.empty() ? StringView(usual) : ending == u"\r" ? StringView(u"\r\n") : ending;
    };
    const std::vector<Block> all = blocks();
    const std::size_t head = all.empty() ? guion_.lines.size() : all.front().first;
    for (std::size_t place = 0; place < head; ++place)
        put(guion_.lines[place].text, guion_.lines[place].ending);
    for (std::size_t command = 0; command < all.size(); ++command) {
        const Block& block = all[command];
        const std::vector<String> lines = written(block.expected, observed_[command]);
        const String& ending = guion_.lines[block.first].ending;
        auto next = lines.begin();
        // Observed lines go where the expected ones stood; surplus ones follow the last of these.
        const std::size_t last = block.places.empty() ? block.first : block.places.back();
        for (std::size_t place = block.first; place < block.end; ++place) {
            const GuionLine& line = guion_.lines[place];
            if (!line.expectation)
                put(line.text, line.ending);
            else if (next != lines.end())
                put(u"> " + *next++, line.ending);
            while (place == last && next != lines.end())
                put(u"> " + *next++, ending);
        }
    }
    return result;
}

std::vector<Transcript::Difference> Transcript::differences() const
{
    std::vector<Difference> result;
    const std::vector<Block> all = blocks();
    for (std::size_t command = 0; command < all.size(); ++command) {
        const Block& block = all[command];
        const std::vector<String>& seen = observed_[command];
        const auto [expected, other] = std::ranges::mismatch(block.expected, seen, fits);
        if (expected == block.expected.end() && other == seen.end())
            continue;
        const auto at = static_cast<std::size_t>(expected - block.expected.begin());
        const bool more = expected == block.expected.end();
        const std::size_t nearest = block.places.empty() ? block.first : block.places.back();
        result.push_back({(more ? nearest : block.places[at]) + 1, more ? String() : u"> " + *expected,
                          other == seen.end() ? String() : u"> " + *other});
    }
    return result;
}

} // namespace zv
