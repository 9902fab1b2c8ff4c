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
#include <map>
#include <mutex>
#include <numeric>
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

Outcome outcomeOf(const ChildEnd& end, std::chrono::minutes longest)
{
    Outcome outcome{.text = linesOf(end.output)};
    outcome.withoutKey = end.output.find(toUtf8(withoutKey)) != std::string::npos;
    outcome.away = end.code == away;
    if (!end.outOfTime && end.code == done)
        outcome.result = Result::well;
    else if (!end.outOfTime && end.code == found)
        outcome.result = Result::faulty;
    else if (!end.outOfTime && (end.code == failed || end.code == away))
        outcome.result = Result::failed;
    else {
        outcome.result = Result::died;
        outcome.text +=
            (outcome.text.empty() ? u"" : u"\n") +
            (end.outOfTime ? statement(u"No había acabado a los {} min, y se ha parado. Si es que le hace "
                                       u"falta más, dé otro --plazo.",
                                       {static_cast<Long>(longest.count())})
                           : statement(u"El programa se cortó (código {}).", {Long{end.code}}));
    }
    return outcome;
}

/// The workers' common state: one passage over some of the schools.
class Work {
public:
    Work(Round& round, std::vector<std::size_t> places, std::size_t atOnce,
         const std::function<std::vector<String>(const ListedSchool&)>& arguments)
        : round_(round), places_(std::move(places)), arguments_(arguments), isShown_(isErrorShown())
    {
        std::vector<std::jthread> workers;
        for (std::size_t each = 0; each < std::min(atOnce, places_.size()); ++each)
            try {
                workers.emplace_back([this] { work(); });
            } catch (const std::system_error&) {
                if (workers.empty())
                    throw;
                break; // Fewer do as well.
            }
        std::unique_lock lock(mutex_);
        while (!ended_.wait_for(lock, std::chrono::milliseconds(100), [&] { return isOver(); })) {
            tellInterrupted();
            showCount();
        }
        tellInterrupted();
        hideCount();
    }

private:
    using Clock = std::chrono::steady_clock;

    bool isOver() const { return begun_.empty() && (Interruptions::came() || next_ == places_.size()); }

    void work()
    {
        std::unique_lock lock(mutex_);
        while (next_ < places_.size() && !Interruptions::came()) {
            const std::size_t place = places_[next_++];
            begun_[place] = Clock::now();
            showCount();
            lock.unlock();
            Outcome outcome = outcomeAt(place);
            lock.lock();
            outcome.took =
                std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begun_[place]);
            begun_.erase(place);
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
        const ListedSchool& school = round_.schools[place];
        try {
            return outcomeOf(runSelf(arguments_(school), toUtf8(school.url), round_.longest), round_.longest);
        } catch (const std::system_error& error) {
            return {Result::failed, u"El sistema no deja empezar otro programa (" + wordsFor(error.code()) +
                                        u"): repita la orden con menos a la vez."};
        }
    }

    /// Those at work, for how long each, as many as there is room for: "c1 (5 s), c2 (0 s) y 3 más".
    String atWork(std::size_t room) const
    {
        String text;
        Long named = 0;
        for (const auto& [place, since] : begun_) {
            const auto seconds = std::chrono::floor<std::chrono::seconds>(Clock::now() - since).count();
            const String one =
                (named == 0 ? u"" : u", ") +
                statement(u"{} ({} s)", {round_.schools[place].name, static_cast<Long>(seconds)});
            if (named > 0 && text.size() + one.size() > room)
                break;
            text += one;
            ++named;
        }
        const auto others = static_cast<Long>(begun_.size()) - named;
        return others == 0 ? text : text + statement(u" y {} más", {others});
    }

    void tellInterrupted()
    {
        if (isTold_ || !Interruptions::came() || (begun_.empty() && next_ == places_.size()))
            return;
        isTold_ = true;
        hideCount();
        constexpr std::size_t room = 400;
        std::cerr << toUtf8(u"Se ha interrumpido: " +
                            (begun_.empty() ? String() : u"se espera a " + atWork(room) + u", y ") +
                            u"no se empieza ninguno más.")
                  << std::endl;
    }

    /// In one line of a small screen, which could not be taken back if it broke.
    void showCount()
    {
        if (!isShown_)
            return;
        const std::span all(round_.outcomes);
        const auto undone = std::ranges::count(all, Result::notDone, &Outcome::result);
        const auto well = std::ranges::count(all, Result::well, &Outcome::result);
        const auto total = static_cast<Long>(all.size());
        String count = statement(u"{} de {} hechos, {} mal", {total - static_cast<Long>(undone), total,
                                                              total - static_cast<Long>(undone + well)});
        constexpr std::size_t width = 79;
        constexpr std::size_t others = 9; // " y 62 más"
        if (!begun_.empty()) {
            count += u"; en marcha: ";
            count += atWork(width - others - count.size());
        }
        count.resize(std::min(count.size(), width));
        if (count == count_)
            return;
        hideCount();
        count_ = count;
        std::cerr << toUtf8(count) << std::flush;
    }
    void hideCount()
    {
        if (!count_.empty())
            std::cerr << '\r' << std::string(count_.size(), ' ') << '\r' << std::flush;
        count_.clear();
    }

    Round& round_;
    const std::vector<std::size_t> places_; ///< Of the schools, in the order in which they are begun.
    const std::function<std::vector<String>(const ListedSchool&)>& arguments_;
    std::mutex mutex_;
    std::condition_variable ended_;
    std::size_t next_ = 0;
    std::map<std::size_t, Clock::time_point> begun_; ///< Places of the schools at work, and since when.
    String count_;                                   ///< The count on the screen.
    bool isTold_ = false;
    const bool isShown_;
};

} // namespace

void play(Round& round, std::size_t atOnce,
          const std::function<std::vector<String>(const ListedSchool&)>& arguments)
{
    const Interruptions interruptions;
    outliveReaders();
    round.outcomes.assign(round.schools.size(), {});
    std::vector<std::size_t> places(round.schools.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    {
        const Work all(round, places, atOnce, arguments);
    }
    std::erase_if(places, [&](std::size_t each) { return !round.outcomes[each].away; });
    if (places.empty() || Interruptions::came())
        return;
    // A server that starts again takes some seconds, in which connections are refused at once.
    constexpr std::chrono::seconds pause{20};
    printLine(statement(u"Dentro de {} s se prueban otra vez los que no han encontrado su servidor: {}.",
                        {static_cast<Long>(pause.count()), static_cast<Long>(places.size())}));
    std::cout.flush();
    for (const auto end = std::chrono::steady_clock::now() + pause;
         !Interruptions::came() && std::chrono::steady_clock::now() < end;)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const Work again(round, places, atOnce, arguments);
}

} // namespace zv::zvconf
