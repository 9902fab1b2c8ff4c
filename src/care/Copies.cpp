#include "care/Copies.h"

#include "care/Move.h"
#include "care/Scratch.h"
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
#include <set>
#include <utility>

namespace zv::care {
namespace {

namespace fs = std::filesystem;

/// Name of the extracted live database.
constexpr const char* extractedName = "restaurada.db";

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

[[noreturn]] void failExists(const fs::path& file)
{
    throw RuntimeError(failure::otherData, u"«" + file.u16string() + u"» ya existe: elija otro nombre.");
}

CopyReport copied(StringView url, const fs::path& file, const std::string& key, const std::string& passphrase)
{
    if (fs::exists(file))
        failExists(file);
    const Scratch scratch({file.parent_path()});
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
    if (const std::error_code error = owneronly::place(draft, file); error == std::errc::file_exists)
        failExists(file);
    else if (error)
        throw fs::filesystem_error("no se puede escribir", file, error);
    return reportOf(manifest);
}

/// Room for a copy that is only read, where a full or small stick does not matter.
Scratch scratchFor(const fs::path& file, const fs::path& near)
{
    std::error_code ignored;
    const std::uintmax_t size = fs::file_size(file, ignored);
    std::vector<fs::path> folders{fs::temp_directory_path(), file.parent_path()};
    if (!near.empty())
        folders.insert(folders.begin(), near);
    return Scratch(folders, ignored ? 0 : size);
}

/// URL where the school that is there is kept: a name of its own, even for two in one second.
String keptUrl(Engine& engine, StringView url)
{
    String when = u"antes-" + momentNow().substr(0, 19);
    std::ranges::replace_if(
        when, [](char16_t each) { return each == u' ' || each == u':'; }, u'-');
    for (Long number = 2;; ++number) {
        const String kept = engine.beside(locationOf(url), when);
        if (!engine.exists(kept))
            return String(engine.scheme()) + u":" + kept;
        when = when.substr(0, 25) + u"-" + decimalText(number);
    }
}

String restored(const fs::path& file, StringView url)
{
    Engine& engine = engineOf(url);
    const Scratch scratch = scratchFor(file, engine.folder(locationOf(url)));
    extracted(file, scratch);
    String kept = engine.exists(locationOf(url)) ? keptUrl(engine, url) : String();
    if (!engine.install(locationOf(url), scratch.file(Database::centro, extractedName), locationOf(kept))) {
        const String from = scratch.url(extractedName);
        Engine& source = engineOf(from);
        copySchool(
            source.snapshot(locationOf(from)), source, url, [](StringView, Long) {}, kept);
    }
    return kept;
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
        const Scratch scratch = scratchFor(file, {});
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
