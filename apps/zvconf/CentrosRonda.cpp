#include "zvconf/CentrosRonda.h"

#include "data/Statement.h"
#include "runtime/Convert.h"
#include "runtime/System.h"
#include "zvconf/Command.h"
#include "zvconf/Interruptions.h"
#include "zvconf/System.h"

#include <algorithm>
#include <condition_variable>
#include <iostream>
#include <mutex>
#include <thread>
#include <vector>

namespace zv::zvconf {
namespace {

using Result = Outcome::Result;

/// No more lines than a person reads of one school among many: the first, and the last two, which count them.
String shortened(const String& text)
{
    constexpr std::size_t first = 10;
    constexpr std::size_t last = 2;
    std::vector<std::size_t> ends;
    for (std::size_t end = text.find(u'\n'); end != String::npos; end = text.find(u'\n', end + 1))
        ends.push_back(end);
    if (ends.size() <= first + last)
        return text;
    return text.substr(0, ends[first - 1]) +
           statement(u"\n(... y {} líneas más)", {static_cast<Long>(ends.size() + 1 - first - last)}) +
           text.substr(ends[ends.size() - last]);
}

/// UTF-8 without a last letter that a limit has cut.
std::string_view whole(std::string_view bytes)
{
    constexpr std::size_t longest = 4;
    for (std::size_t back = 1; back <= std::min(longest, bytes.size()); ++back) {
        const auto unit = static_cast<unsigned char>(bytes[bytes.size() - back]);
        if ((unit & 0xC0U) == 0x80U)
            continue;
        const std::size_t length = unit < 0xC0U ? 1 : unit < 0xE0U ? 2 : unit < 0xF0U ? 3 : 4;
        return length > back ? bytes.substr(0, bytes.size() - back) : bytes;
    }
    return bytes;
}

/// What a process wrote, as lines of text; whatever bytes it wrote.
String linesOf(const std::string& bytes)
{
    String text;
    try {
        text = fromUtf8(whole(bytes));
    } catch (const std::invalid_argument&) {
        for (const char each : bytes)
            text += static_cast<unsigned char>(each) < 0x80U ? static_cast<char16_t>(each) : u'?';
    }
    while (text.ends_with(u'\n'))
        text.pop_back();
    return shortened(Replace(text, u"zvconf: ", u""));
}

Outcome outcomeOf(const ChildEnd& end)
{
    const String text = linesOf(end.output);
    switch (end.code) {
    case done:
        return {Result::well, text};
    case found:
        return {Result::faulty, text};
    case failed:
        return {Result::failed, text};
    default:
        return {Result::died, text + (text.empty() ? u"" : u"\n") +
                                  statement(u"El programa se cortó (código {}).", {Long{end.code}})};
    }
}

/// The workers' common state.
class Work {
public:
    Work(Round& round, std::size_t atOnce,
         const std::function<std::vector<String>(const ListedSchool&)>& arguments)
        : round_(round), arguments_(arguments), isShown_(isErrorShown())
    {
        std::vector<std::jthread> workers;
        for (std::size_t each = 0; each < std::min(atOnce, round.schools.size()); ++each)
            try {
                workers.emplace_back([this] { work(); });
            } catch (const std::system_error&) {
                if (workers.empty())
                    throw;
                break; // Fewer do as well.
            }
        std::unique_lock lock(mutex_);
        while (!ended_.wait_for(lock, std::chrono::milliseconds(100), [&] { return isOver(); }))
            tellInterrupted();
        tellInterrupted();
        hideCount();
    }

private:
    bool isOver() const { return atWork_ == 0 && (Interruptions::came() || next_ == round_.schools.size()); }

    void work()
    {
        std::unique_lock lock(mutex_);
        while (next_ < round_.schools.size() && !Interruptions::came()) {
            const std::size_t place = next_++;
            ++atWork_;
            showCount();
            lock.unlock();
            Outcome outcome = outcomeAt(place);
            lock.lock();
            --atWork_;
            hideCount();
            const String line = lineOf(round_.schools[place], outcome);
            printLine(line.substr(0, line.find(u'\n', line.find(u'\n') + 1)));
            std::cout.flush();
            round_.outcomes[place] = std::move(outcome);
            showCount();
        }
        ended_.notify_one();
    }

    Outcome outcomeAt(std::size_t place) const
    {
        const auto start = std::chrono::steady_clock::now();
        Outcome outcome;
        try {
            outcome = outcomeOf(runSelf(arguments_(round_.schools[place])));
        } catch (const std::system_error& error) {
            outcome = {Result::failed, u"El sistema no deja empezar otro programa (" +
                                           wordsFor(error.code()) +
                                           u"): repita la orden con menos a la vez."};
        }
        outcome.took =
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
        return outcome;
    }

    void tellInterrupted()
    {
        if (isTold_ || !Interruptions::came() || next_ == round_.schools.size())
            return;
        isTold_ = true;
        hideCount();
        std::cerr << "Se ha interrumpido: se espera a los que están en marcha, y no se empieza ninguno más."
                  << std::endl;
    }

    void showCount()
    {
        if (!isShown_)
            return;
        hideCount();
        const std::span all(round_.outcomes);
        const auto undone = std::ranges::count(all, Result::notDone, &Outcome::result);
        const auto well = std::ranges::count(all, Result::well, &Outcome::result);
        const auto total = static_cast<Long>(all.size());
        const String count =
            statement(u"{} de {} hechos, {} mal, {} en marcha",
                      {total - static_cast<Long>(undone), total, total - static_cast<Long>(undone + well),
                       static_cast<Long>(atWork_)});
        count_ = count.size();
        std::cerr << toUtf8(count) << std::flush;
    }
    void hideCount()
    {
        if (count_ > 0)
            std::cerr << '\r' << std::string(count_, ' ') << '\r' << std::flush;
        count_ = 0;
    }

    Round& round_;
    const std::function<std::vector<String>(const ListedSchool&)>& arguments_;
    std::mutex mutex_;
    std::condition_variable ended_;
    std::size_t next_ = 0;
    std::size_t atWork_ = 0;
    std::size_t count_ = 0; ///< Letters of the count on the screen.
    bool isTold_ = false;
    const bool isShown_;
};

} // namespace

void play(Round& round, std::size_t atOnce,
          const std::function<std::vector<String>(const ListedSchool&)>& arguments)
{
    const Interruptions interruptions;
    round.outcomes.assign(round.schools.size(), {});
    const Work work(round, atOnce, arguments);
}

} // namespace zv::zvconf
