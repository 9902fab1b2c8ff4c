#include "zvconf/CentrosRonda.h"
#include "zvconf/Command.h"
#include "zvconf/Historial.h"

#include "data/DataError.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "runtime/Convert.h"
#include "runtime/Errors.h"
#include "runtime/PrivateFile.h"
#include "runtime/System.h"

#include <algorithm>
#include <iostream>
#include <thread>

namespace zv::zvconf {
namespace {

namespace fs = std::filesystem;

constexpr Long mostAtOnce = 64;
constexpr Long mostMinutes = 1440;
constexpr std::chrono::minutes usualTime{120};

/// Between the command and the process of a school, which reads the school's URL: the list may be another, or
/// used up, by then.
constexpr Option ofOne{u"--uno", 1};

/// A list of commands, with what each takes of its own, and how it does it with one school.
struct Action {
    StringView name;
    std::vector<Option> own;
    int (*run)(const ListedSchool& school, const Options& options);
};

/// Hands an option that was given on to another command.
void pass(std::vector<String>& words, const Options& options, StringView name)
{
    if (!options.has(name))
        return;
    words.emplace_back(name);
    std::ranges::copy(options.values(name), std::back_inserter(words));
}

/// Race: another run may be making the same school. Of the two one makes it, and the other waits and finds
/// it.
int make(const ListedSchool& school, const Options& options)
{
    const auto isThere = [&] { return engineOf(school.url).exists(locationOf(school.url)); };
    std::vector<String> words{u"--bd", school.url};
    pass(words, options, u"--ejemplo");
    for (int wait = 60; !isThere(); --wait)
        try {
            return crear(words);
        } catch (const RuntimeError& error) {
            const bool isBusy = error.number() == failure::locked && wait > 0;
            if (!isBusy && (error.number() == failure::connectionLost || !isThere()))
                throw;
            std::this_thread::sleep_for(std::chrono::seconds(isBusy ? 1 : 0));
        }
    inspectSchool(school.url);
    printLine(u"Ya estaba.");
    return done;
}

int check(const ListedSchool& school, const Options& options)
{
    std::vector<String> words{u"--bd", school.url};
    for (const StringView each : {u"--datos", u"--reparar", u"--resumen"})
        pass(words, options, each);
    return comprobar(words);
}

fs::path folderIn(const Options& options)
{
    fs::path folder(options.values(u"--carpeta").front());
    if (!fs::is_directory(folder))
        throw RuntimeError(failure::otherData,
                           u"«" + folder.u16string() + u"» no es una carpeta: hágala, o dé otra.");
    return folder;
}

int copy(const ListedSchool& school, const Options& options)
{
    const fs::path folder = folderIn(options) / school.name;
    fs::create_directory(folder);
    std::vector<String> words{u"--diaria", folder.u16string(), u"--bd", school.url};
    pass(words, options, u"--frase");
    return copia(words);
}

const Action actions[] = {
    {u"crear", {{u"--ejemplo"}}, make},
    {u"comprobar", {{u"--datos"}, {u"--reparar"}, {u"--resumen"}}, check},
    {u"copia", {{u"--carpeta", 1}, {u"--frase", 1}}, copy},
};

const Action& actionNamed(Arguments arguments)
{
    const auto known = arguments.empty()
                           ? std::end(actions)
                           : std::ranges::find(actions, StringView(arguments.front()), &Action::name);
    if (known == std::end(actions))
        throw UsageError(u"centros quiere una de estas palabras detrás: crear, comprobar, copia.");
    return *known;
}

Long numberIn(const Options& options, StringView name, Long usual, Long most)
{
    if (!options.has(name))
        return usual;
    const Long number = numberFrom(options.values(name).front());
    if (number > most)
        throw UsageError(statement(u"{} admite de 1 a {}.", {name, most}));
    return number;
}

std::size_t atOnceIn(const Options& options)
{
    const auto usual = static_cast<Long>(std::clamp(std::thread::hardware_concurrency(), 2U, 8U));
    return static_cast<std::size_t>(numberIn(options, u"--a-la-vez", usual, mostAtOnce));
}

/// File of the report, proved writable before anything is done; it takes its name when it is whole.
class ReportFile {
public:
    explicit ReportFile(const Options& options)
    {
        if (!options.has(u"--informe"))
            return;
        file_ = fs::path(options.values(u"--informe").front());
        isCsv_ = lowerName(file_.extension().u16string()) == u".csv";
        if (!isCsv_ && lowerName(file_.extension().u16string()) != u".json")
            throw UsageError(u"--informe quiere un fichero que acabe en .csv o en .json.");
        refuseOver(options.operand(0, u""), u"la lista");
        if (options.has(u"--frase"))
            refuseOver(options.values(u"--frase").front(), u"la frase");
        told([&] { tryReplacing(file_); });
    }
    void write(const Round& round) const
    {
        if (file_.empty())
            return;
        told([&] { replaceFile(file_, toUtf8(isCsv_ ? csvOf(round) : jsonOf(round))); });
        printLine(u"Informe en " + file_.u16string() + u".");
    }

private:
    template <class Work>
    void told(Work&& work) const
    {
        try {
            work();
        } catch (const fs::filesystem_error& error) {
            throw RuntimeError(failure::otherData, u"El informe «" + file_.u16string() +
                                                       u"» no se puede escribir (" + wordsFor(error.code()) +
                                                       u"): mire si su carpeta se deja escribir y si queda "
                                                       u"sitio.");
        }
    }

    void refuseOver(const String& read, StringView what) const
    {
        std::error_code ignored;
        if (fs::equivalent(file_, fs::path(read), ignored))
            throw UsageError(u"--informe escribiría encima de " + String(what) + u": dé otro nombre.");
    }

    fs::path file_;
    bool isCsv_ = false;
};

/// A word as a shell takes it.
String shellWord(const String& word)
{
    if (word.find_first_of(u" \t'\"&;()$*?`|<>#~!{}[]\\") == String::npos)
        return word;
#ifdef _WIN32
    return u"\"" + word + u"\"";
#else
    return u"'" + Replace(word, u"'", u"'\\''") + u"'";
#endif
}

int round(const Action& action, const Options& options, const std::vector<ListedSchool>& schools)
{
    const String& list = options.operand(0, u"");
    std::vector<String> words{u"centros", String(action.name)};
    for (const Option& each : action.own)
        pass(words, options, each.name);
    const std::chrono::minutes longest{numberIn(options, u"--plazo", usualTime.count(), mostMinutes)};
    Round round{.command = action.name, .again = {}, .longest = longest, .schools = schools, .outcomes = {}};
    for (const String& each : words)
        round.again += shellWord(each) + u" ";
    // A pipe cannot be read again.
    round.again += fs::is_regular_file(fs::path(list)) ? shellWord(list) : String(u"LISTA");
    // A report goes round: names of pupils are for who looks at that school.
    if (options.has(u"--datos") && !options.has(u"--resumen"))
        words.emplace_back(u"--resumen");
    const ReportFile report(options);
    play(round, atOnceIn(options), [&](const ListedSchool& school) {
        std::vector<String> all = words;
        all.insert(all.end(), {String(ofOne.name), school.name});
        return all;
    });
    printReport(round);
    report.write(round);
    return std::ranges::all_of(round.outcomes,
                               [](const Outcome& each) { return each.result == Outcome::Result::well; })
               ? done
               : found;
}

/// The process of one school.
int childOf(const Action& action, const Options& options)
{
    std::string url;
    std::getline(std::cin, url);
    try {
        return action.run({options.values(ofOne.name).front(), fromUtf8(url)}, options);
    } catch (const LastingFailure&) {
        throw;
    } catch (const RuntimeError& error) {
        if (error.number() != failure::connectionLost)
            throw;
        std::cerr << error.what() << '\n';
        return away;
    }
}

int alone(const Action& action, const Options& options, const std::vector<ListedSchool>& schools)
{
    for (const StringView each : {u"--a-la-vez", u"--informe", u"--plazo"})
        if (options.has(each))
            throw UsageError(u"--solo va sin " + String(each) + u".");
    const String& name = options.values(u"--solo").front();
    const auto school =
        std::ranges::find_if(schools, [&](const ListedSchool& each) { return sameName(each.name, name); });
    if (school == schools.end())
        throw UsageError(u"«" + name + u"» no está en la lista.");
    return action.run(*school, options);
}

} // namespace

int centros(Arguments arguments)
{
    const Action& action = actionNamed(arguments);
    std::vector<Option> known{{u"--a-la-vez", 1}, {u"--informe", 1}, {u"--plazo", 1}, {u"--solo", 1}, ofOne};
    known.insert(known.end(), action.own.begin(), action.own.end());
    const Options options(arguments.subspan(1), known, 1);
    if (action.run == copy)
        folderIn(options);
    if (options.has(u"--resumen") && !options.has(u"--datos"))
        throw UsageError(u"--resumen quiere también --datos.");
    if (options.has(ofOne.name))
        return childOf(action, options);
    const std::vector<ListedSchool> schools =
        schoolsIn(fs::path(options.operand(0, u"la lista de los centros")));
    return (options.has(u"--solo") ? alone : round)(action, options, schools);
}

} // namespace zv::zvconf
