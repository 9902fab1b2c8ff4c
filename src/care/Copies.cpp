#include "care/Copies.h"

#include "care/Move.h"
#include "data/DataError.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/history/Log.h"
#include "runtime/Convert.h"
#include "runtime/OwnerOnly.h"
#include "runtime/System.h"
#include "runtime/Time.h"

#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <utility>

namespace zv::care {
namespace {

namespace fs = std::filesystem;

/// Name of the extracted live database.
constexpr const char* extractedName = "restaurada.db";

/// As far as the disk knows of owners: a stick with the files of other systems does not.
void closeToOthers(const fs::path& place, fs::perms owners)
{
    std::error_code ignored;
    fs::permissions(place, owners, ignored);
}

/// Scratch folder for its owner alone, beside a file; the destructor removes it.
class Scratch {
public:
    explicit Scratch(fs::path file) : folder_(std::move(file))
    {
        folder_ += ".haciendo";
        fs::remove_all(folder_);
        fs::create_directory(folder_);
        closeToOthers(folder_, fs::perms::owner_all);
    }
    /// The same for a file that is only read: in the system's folder where the file's own takes none.
    static Scratch toRead(const fs::path& file)
    {
        try {
            return Scratch(file);
        } catch (const fs::filesystem_error&) {
            return Scratch(fs::temp_directory_path() /
                           (file.filename().string() + '-' + std::to_string(std::random_device()())));
        }
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch()
    {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    fs::path file(Database which, const char* name) const { return fileOf(folder_ / name, which); }
    String url(const char* name) const { return u"sqlite:" + (folder_ / name).u16string(); }

private:
    fs::path folder_;
};

std::string contentsText(const std::vector<TableContents>& contents)
{
    std::array<std::uint64_t, 4> sum{};
    for (const TableContents& each : contents)
        for (std::size_t i = 0; i < sum.size(); ++i)
            sum[i] += each.digest[i] * (2 * static_cast<std::uint64_t>(each.rows) + 1);
    std::string text;
    for (const std::uint64_t each : sum)
        text += (text.empty() ? "" : "-") + std::to_string(each);
    return text;
}

CopyReport reportOf(const Manifest& manifest)
{
    const auto entry = [&](const char* name) {
        const auto found = manifest.find(name);
        return found == manifest.end() ? String() : fromUtf8(found->second);
    };
    const auto number = [&](const char* name) { return numberIn(entry(name)).value_or(0); };
    return {.moment = entry("momento"),
            .tables = number("tablas"),
            .rows = number("filas"),
            .head = number("historial"),
            .link = entry("historial-enlace"),
            .hasKey = manifest.contains("clave")};
}

history::Head headOf(const School& school)
{
    try {
        return history::headOf(*school.centro);
    } catch (const DataError& error) {
        if (error.number() != failure::tableMissing)
            throw;
        return {};
    }
}

/// Rows were registered by the stations of then.
void forgetStations(StringView url)
{
    try {
        openSchool(url).centro->Execute(u"DELETE FROM RegistroActivo");
    } catch (const DataError& error) {
        if (error.number() != failure::tableMissing)
            throw;
    }
}

/// Puts an extracted copy at a place where there is no school.
void install(const Scratch& scratch, StringView url)
{
    if (!engineOf(url).install(locationOf(url), scratch.file(Database::centro, extractedName)))
        moveSchool(scratch.url(extractedName), url);
}

/// Extracts a copy and compares it, by content, with what its manifest says.
Manifest extracted(const fs::path& file, const Scratch& scratch)
{
    Manifest manifest =
        unpack(file, [&](std::size_t part) { return scratch.file(everyDatabase[part], extractedName); });
    const String url = scratch.url(extractedName);
    forgetStations(url);
    if (contentsText(contentsOf(inspectSchool(url), engineOf(url))) != manifest["contenido"])
        throw RuntimeError(failure::otherData,
                           u"«" + file.u16string() + u"» no da lo que se copió. Use otra copia.");
    return manifest;
}

CopyReport copied(StringView url, const fs::path& file, const std::string& key, const std::string& passphrase)
{
    if (fs::exists(file))
        throw RuntimeError(failure::otherData, u"«" + file.u16string() + u"» ya existe: elija otro nombre.");
    const Scratch scratch(file);
    Manifest manifest;
    {
        Engine& engine = engineOf(url);
        const School school = engine.snapshot(locationOf(url));
        const auto whole = [&](Database which, const ConnectionPtr& connection) {
            return engine.backup(*connection, scratch.file(which, "copia.db"));
        };
        if (!(whole(Database::centro, school.centro) && whole(Database::borrado, school.borrado) &&
              whole(Database::entrada, school.entrada)))
            copySchool(school, engine, scratch.url("copia.db"), [](StringView, Long) {});
        const std::vector<TableContents> contents = contentsOf(school, engine);
        Long rows = 0;
        for (const TableContents& each : contents)
            rows += each.rows;
        const history::Head head = headOf(school);
        manifest = {{"momento", toUtf8(momentNow())},
                    {"tablas", std::to_string(contents.size())},
                    {"filas", std::to_string(rows)},
                    {"contenido", contentsText(contents)},
                    {"historial", std::to_string(head.number)},
                    {"historial-enlace", toUtf8(head.link)}};
    }
    if (!key.empty() && !passphrase.empty())
        manifest["clave"] = wrapped(key, passphrase);
    const fs::path draft = scratch.file(Database::centro, "fichero");
    pack(draft, manifest, [&](std::size_t part) { return scratch.file(everyDatabase[part], "copia.db"); });
    manifest = extracted(draft, scratch);
    closeToOthers(draft, fs::perms::owner_read | fs::perms::owner_write);
    if (const std::error_code error = owneronly::flush(draft))
        throw fs::filesystem_error("no se puede escribir", file, error);
    fs::rename(draft, file);
    return reportOf(manifest);
}

String restored(const fs::path& file, StringView url)
{
    const Scratch scratch = Scratch::toRead(file);
    extracted(file, scratch);
    Engine& engine = engineOf(url);
    if (!engine.exists(locationOf(url))) {
        install(scratch, url);
        return {};
    }
    const auto urlOf = [&](StringView location) { return String(engine.scheme()) + u":" + String(location); };
    const String made = engine.beside(locationOf(url), u"restaurado");
    // Left behind by a killed process.
    for (const Database which : everyDatabase)
        engine.remove(made, which);
    install(scratch, urlOf(made));
    String when = u"antes-" + momentNow().substr(0, 19);
    std::ranges::replace_if(
        when, [](char16_t each) { return each == u' ' || each == u':'; }, u'-');
    const String kept = engine.beside(locationOf(url), when);
    engine.replace(locationOf(url), made, kept);
    return urlOf(kept);
}

/// Error translation: what the system says of files, in a sentence that says what to do.
template <class Work>
auto told(const fs::path& file, Work&& work)
{
    try {
        return work();
    } catch (const fs::filesystem_error& error) {
        const fs::path& place = error.path1().empty() ? file : error.path1();
        throw RuntimeError(
            failure::otherData,
            u"«" + place.u16string() +
                u"» no se puede escribir: mire si su carpeta se deja escribir y si queda sitio (" +
                wordsFor(error.code()) + u").");
    }
}

} // namespace

CopyReport takeCopy(StringView url, const fs::path& file, const std::string& key,
                    const std::string& passphrase)
{
    return told(file, [&] { return copied(url, file, key, passphrase); });
}

CopyReport checkCopy(const fs::path& file)
{
    return told(file, [&] {
        const Scratch scratch = Scratch::toRead(file);
        return reportOf(extracted(file, scratch));
    });
}

String restoreCopy(const fs::path& file, StringView url)
{
    return told(file, [&] { return restored(file, url); });
}

std::optional<std::string> keyIn(const fs::path& file, const std::string& passphrase)
{
    const Manifest manifest = manifestOf(file);
    const auto found = manifest.find("clave");
    return found == manifest.end() ? std::optional(std::string()) : unwrapped(found->second, passphrase);
}

std::vector<std::string> keptOf(std::vector<std::string> dates)
{
    std::ranges::sort(dates, std::greater());
    std::set<std::string> kept;
    std::set<std::string> months;
    std::set<std::int64_t> weeks;
    for (const std::string& each : dates) {
        const auto day = momentIn(fromUtf8(each) + u" 00:00:00");
        if (!day)
            continue;
        const std::int64_t days = std::chrono::floor<std::chrono::days>(*day).time_since_epoch().count();
        if (kept.size() < 7)
            kept.insert(each);
        // Weeks begin on Mondays; the first day of the count was a Thursday.
        if (weeks.size() < 4 && weeks.insert((days + 3) / 7).second)
            kept.insert(each);
        if (months.size() < 12 && months.insert(each.substr(0, 7)).second)
            kept.insert(each);
    }
    return {kept.begin(), kept.end()};
}

} // namespace zv::care
