#include "care/copies/Copies.h"

#include "care/copies/Move.h"
#include "care/copies/Scratch.h"
#include "data/DataError.h"
#include "data/SchemaCheck.h"
#include "data/SchoolPlace.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/Tokens.h"
#include "data/history/Log.h"
#include "runtime/Convert.h"
#include "runtime/OwnerOnly.h"
#include "runtime/System.h"
#include "runtime/Time.h"
#include "zv/Version.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <utility>

namespace zv::care {
namespace {

namespace fs = std::filesystem;

/// Name of the extracted live database.
constexpr const char* extractedName = "restaurada.db";

/// The school's place, the same from every working folder.
std::string originOf(StringView url)
{
    const Engine& engine = engineOf(url);
    if (engine.scheme() != u"sqlite")
        return toUtf8(withoutPassword(url));
    return toUtf8(fs::absolute(fs::path(String(locationOf(url)))).lexically_normal().u16string());
}

/// Digest of all tables, each bound to its database, its name and its number of rows.
std::string contentsText(std::vector<TableContents> contents)
{
    std::ranges::sort(contents, {}, [](const TableContents& each) {
        return std::pair(each.database, StringView(each.table));
    });
    std::string text;
    for (const TableContents& each : contents) {
        text += toUtf8(statement(u"{} {} {}", {nameOf(each.database), each.table, each.rows}));
        for (const std::uint64_t part : each.digest)
            text += ' ' + std::to_string(part);
        text += '\n';
    }
    return digestOf(text);
}

/// The same of a school; "" of one that is too damaged to be read.
std::string contentsText(const School& school, Engine& engine)
{
    try {
        return contentsText(contentsOf(school, engine));
    } catch (const DataError&) {
        if (checkDamage(school, engine).empty())
            throw;
        return {};
    }
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

/// Removes what would act in the restored school by itself; the lines that tell it.
std::vector<String> disarm(StringView url)
{
    std::vector<String> lines;
    Engine& engine = engineOf(url);
    for (const Database which : everyDatabase) {
        const ConnectionPtr base = engine.open(locationOf(url), which);
        for (const ForeignObject& each : foreignObjects(*base, which)) {
            if (each.kind == u"index")
                continue;
            lines.push_back(each.line() + u" No se restaura.");
            base->executeNative(u"DROP " + each.kind + u" IF EXISTS " + quotedName(each.name));
        }
    }
    return lines;
}

[[noreturn]] void refuseCopy(const fs::path& file)
{
    throw BadCopy(u"«" + file.u16string() + u"» no da lo que se copió. Use otra copia.");
}

/// Extracts a copy, compares it by content with what its manifest says, and reports what was extracted.
CopyReport extracted(const fs::path& file, const Scratch& scratch)
{
    Manifest manifest =
        unpack(file, [&](std::size_t part) { return scratch.file(everyDatabase[part], extractedName); });
    CopyReport report;
    report.moment = fromUtf8(manifest["momento"]);
    report.hasKey = manifest.contains("clave");
    if (!momentIn(report.moment) || (report.hasKey && !isWrapped(manifest["clave"])))
        refuseCopy(file);
    const String url = scratch.url(extractedName);
    Engine& engine = engineOf(url);
    report.leftOut = disarm(url);
    if (std::vector<String> damage = checkDamage(inspectSchool(url), engine); !damage.empty()) {
        std::ranges::move(damage, std::back_inserter(report.faults));
        return report;
    }
    forgetStations(url);
    const School school = inspectSchool(url);
    const std::vector<TableContents> contents = contentsOf(school, engine);
    if (contentsText(contents) != manifest["contenido"])
        refuseCopy(file);
    report.tables = static_cast<Long>(contents.size());
    for (const TableContents& each : contents)
        report.rows += each.rows;
    const history::Head head = headOf(school);
    report.head = head.number;
    report.link = head.link;
    std::ranges::move(checkSchool(school, engine), std::back_inserter(report.faults));
    return report;
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
        manifest = {{"momento", toUtf8(momentNow())}, {"origen", originOf(url)}, {"programa", version}};
        if (whole(Database::centro, school.centro) && whole(Database::borrado, school.borrado) &&
            whole(Database::entrada, school.entrada)) {
            manifest["contenido"] = contentsText(school, engine);
        } else {
            manifest["contenido"] = contentsText(
                copySchool(school, engine, scratch.url("copia.db"), [](StringView, Long) {}).contents);
        }
    }
    if (!key.empty() && !passphrase.empty())
        manifest["clave"] = wrapped(key, passphrase);
    const fs::path draft = scratch.file(Database::centro, "fichero");
    pack(draft, manifest, [&](std::size_t part) { return scratch.file(everyDatabase[part], "copia.db"); });
    CopyReport report = extracted(draft, scratch);
    closeToOthers(draft, fs::perms::owner_read | fs::perms::owner_write);
    if (const std::error_code error = owneronly::flush(draft))
        throw fs::filesystem_error("no se puede escribir", file, error);
    if (const std::error_code error = owneronly::place(draft, file); error == std::errc::file_exists)
        failExists(file);
    else if (error)
        throw fs::filesystem_error("no se puede escribir", file, error);
    return report;
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
        return extracted(file, scratch);
    });
}

String restoreCopy(const fs::path& file, StringView url)
{
    return told(file, [&] { return restored(file, url); });
}

bool isOf(const fs::path& file, StringView url)
{
    constexpr StringView odbc = u"odbc:";
    const String kept = fromUtf8(manifestOf(file)["origen"]);
    const String asked = fromUtf8(originOf(url));
    if (!sameName(StringView(kept).substr(0, odbc.size()), odbc) ||
        !sameName(StringView(asked).substr(0, odbc.size()), odbc))
        return kept == asked;
    return isSame(placeIn(locationOf(kept)), placeIn(locationOf(asked)));
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
