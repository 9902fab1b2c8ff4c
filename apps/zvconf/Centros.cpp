#include "zvconf/CentrosRonda.h"
#include "zvconf/Command.h"
#include "zvconf/Historial.h"

#include "data/Schools.h"
#include "data/Statement.h"
#include "runtime/Convert.h"
#include "runtime/Errors.h"

#include <algorithm>
#include <fstream>
#include <thread>

namespace zv::zvconf {
namespace {

namespace fs = std::filesystem;

constexpr Long mostAtOnce = 64;

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

int make(const ListedSchool& school, const Options& options)
{
    if (engineOf(school.url).exists(locationOf(school.url))) {
        inspectSchool(school.url);
        printLine(u"Ya estaba.");
        return done;
    }
    std::vector<String> words{u"--bd", school.url};
    pass(words, options, u"--ejemplo");
    return crear(words);
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

std::size_t atOnceIn(const Options& options)
{
    if (!options.has(u"--a-la-vez"))
        return std::clamp(std::thread::hardware_concurrency(), 2U, 8U);
    const Long number = numberFrom(options.values(u"--a-la-vez").front());
    if (number > mostAtOnce)
        throw UsageError(statement(u"--a-la-vez admite de 1 a {}.", {mostAtOnce}));
    return static_cast<std::size_t>(number);
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
        std::error_code ignored;
        if (fs::equivalent(file_, fs::path(options.operand(0, u"")), ignored))
            throw UsageError(u"--informe escribiría encima de la lista: dé otro nombre.");
        if (fs::is_directory(file_))
            fail();
        draft_ = file_;
        draft_ += u".parte";
        stream_.open(draft_, std::ios::binary);
        if (!stream_.is_open())
            fail();
    }
    ReportFile(const ReportFile&) = delete;
    ReportFile& operator=(const ReportFile&) = delete;
    ~ReportFile()
    {
        std::error_code ignored;
        fs::remove(draft_, ignored);
    }
    void write(const Round& round)
    {
        if (file_.empty())
            return;
        stream_ << toUtf8(isCsv_ ? csvOf(round) : jsonOf(round));
        stream_.close();
        std::error_code error;
        if (stream_)
            fs::rename(draft_, file_, error);
        if (!stream_ || error)
            fail();
        printLine(u"Informe en " + file_.u16string() + u".");
    }

private:
    [[noreturn]] void fail() const
    {
        throw RuntimeError(
            failure::otherData,
            u"El informe «" + file_.u16string() +
                u"» no se puede escribir: mire si su carpeta se deja escribir y si queda sitio.");
    }

    fs::path file_;
    fs::path draft_;
    std::ofstream stream_;
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
    std::vector<String> words{u"centros", String(action.name), list};
    for (const Option& each : action.own)
        pass(words, options, each.name);
    Round round{.command = action.name, .again = {}, .schools = schools, .outcomes = {}};
    for (const String& each : words)
        round.again += (round.again.empty() ? u"" : u" ") + shellWord(each);
    // A report goes round: names of pupils are for who looks at that school.
    if (options.has(u"--datos") && !options.has(u"--resumen"))
        words.emplace_back(u"--resumen");
    ReportFile report(options);
    play(round, atOnceIn(options), [&](const ListedSchool& school) {
        std::vector<String> all = words;
        all.insert(all.end(), {u"--solo", school.name});
        return all;
    });
    printReport(round);
    report.write(round);
    return std::ranges::all_of(round.outcomes,
                               [](const Outcome& each) { return each.result == Outcome::Result::well; })
               ? done
               : found;
}

int alone(const Action& action, const Options& options, const std::vector<ListedSchool>& schools)
{
    for (const StringView each : {u"--a-la-vez", u"--informe"})
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
    std::vector<Option> known{{u"--a-la-vez", 1}, {u"--informe", 1}, {u"--solo", 1}};
    known.insert(known.end(), action.own.begin(), action.own.end());
    const Options options(arguments.subspan(1), known, 1);
    if (action.run == copy)
        folderIn(options);
    if (options.has(u"--resumen") && !options.has(u"--datos"))
        throw UsageError(u"--resumen quiere también --datos.");
    const std::vector<ListedSchool> schools =
        schoolsIn(fs::path(options.operand(0, u"la lista de los centros")));
    return (options.has(u"--solo") ? alone : round)(action, options, schools);
}

} // namespace zv::zvconf
