#pragma once

#include "data/Connection.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace zv {

/// Which of a school's three databases.
enum class Database { centro, borrado, entrada };
inline constexpr Database everyDatabase[] = {Database::centro, Database::borrado, Database::entrada};

/// How an engine writes the definition of a table.
enum class DdlStyle { sqlite, postgresql, mariadb };

/// A table found in a database, its columns in physical order.
struct FoundTable {
    String name;
    std::vector<String> columns;
};

/// RAII guard of a school in the making: it is built aside, where nobody finds it, and moved into place by
/// putInPlace(); the destructor removes one that was not. Leftovers of a killed process are removed by the
/// next.
class SchoolToBe {
public:
    virtual ~SchoolToBe() = default;
    /// URL location of its databases meanwhile.
    virtual String location() const = 0;
    /// Moves all three into place, or none; no connection to them may be open. Fails if a school exists there
    /// by now that is not to be kept elsewhere, or a station has one open that the engine would leave behind.
    virtual void putInPlace() = 0;
};

/// Forwards to another engine's, whose location gets that engine's scheme in front: for an engine whose URLs
/// are another's with a word before them.
class ForwardedSchoolToBe final : public SchoolToBe {
public:
    ForwardedSchoolToBe(StringView url, StringView kept);
    String location() const override { return scheme_ + u":" + inner_->location(); }
    void putInPlace() override { inner_->putInPlace(); }

private:
    String scheme_;
    std::unique_ptr<SchoolToBe> inner_;
};

/// Factory (driver) of connections for one kind of database, chosen by the scheme of a URL
/// ("sqlite:colegio.db").
class Engine {
public:
    virtual ~Engine() = default;
    virtual StringView scheme() const = 0;
    /// Whether a person who names none is told of it.
    virtual bool isForPeople() const { return true; }
    /// Of a database that this engine opened: one engine may reach several kinds.
    virtual DdlStyle ddl(Connection& connection) = 0;
    /// Opens an existing database. `location` is the URL without its scheme. Fails with a RuntimeError that
    /// tells a person what to do: file missing, no database, no right to it.
    virtual ConnectionPtr open(StringView location, Database which) = 0;
    /// Second phase of open(): configures the database for several stations. Apart, because a database that
    /// turns out to be the wrong one must stay unchanged: call it when it is known to be the one that was
    /// meant.
    virtual void settle(Connection& /*connection*/) {}
    /// Read-only open(): nothing is changed, and no right to write is needed.
    virtual ConnectionPtr inspect(StringView location, Database which) = 0;
    /// The three databases, read only, as they all were at one instant, however many stations write
    /// meanwhile: for as long as the connections live. Fails where the engine cannot.
    virtual School snapshot(StringView location);
    /// Whether there is a school at a location, or a part of one.
    virtual bool exists(StringView location);
    /// Location of a school beside that one, with a word behind its name.
    virtual String beside(StringView location, StringView word);
    /// Folder of a location's files; empty where there are none.
    virtual std::filesystem::path folder(StringView /*location*/) { return {}; }
    /// Copies the database, as the connection's transaction sees it, into a new SQLite file; false, and
    /// nothing done, where the engine is another.
    virtual bool backup(Connection& /*connection*/, const std::filesystem::path& /*file*/) { return false; }
    /// Puts copies of three such files (the live one's path) at a location, as make(), all or none; false,
    /// and nothing done, where the engine is another.
    virtual bool install(StringView /*location*/, const std::filesystem::path& /*live*/, StringView /*kept*/)
    {
        return false;
    }
    /// Begins a school at a location. `kept`: the location where what is there goes in the moment in which
    /// the new one takes its place, whole or in parts; its users and their rights stay. Without one it fails
    /// if one of the databases is there already.
    virtual std::unique_ptr<SchoolToBe> make(StringView location, StringView kept) = 0;
    /// Makes a new, empty database (no tables yet). Fails if there is one already.
    virtual ConnectionPtr create(StringView location, Database which) = 0;
    /// Deletes a database that create() made; its connections must be closed. A missing one is no failure.
    virtual void remove(StringView location, Database which) = 0;
    /// A temporary, empty database, deleted with its connection.
    virtual ConnectionPtr temporary(StringView location, Database which) = 0;
    /// The tables of a database that this engine opened.
    virtual std::vector<FoundTable> tables(Connection& connection) = 0;
    /// Integrity check by the engine, one line for each finding in its own words; empty where it does not
    /// look.
    virtual std::vector<String> damage(Connection& /*connection*/) { return {}; }
    /// Rewrites a database that this engine opened, so that its files hold nothing any more of what was
    /// erased. False where others keep it from that. A server does so by itself, in its own time.
    virtual bool scrub(Connection& /*connection*/) { return true; }
};

/// Where a school's databases are files: the path of `which`, derived from the live one's (colegio.db,
/// colegio.borrado.db, colegio.entrada.db).
std::filesystem::path fileOf(const std::filesystem::path& live, Database which);

/// Registers an engine; each program registers those that it links.
void registerEngine(std::unique_ptr<Engine> engine);
/// Lookup by a URL's scheme; an unknown one fails with a RuntimeError that names those registered.
Engine& engineOf(StringView url);
/// Redacts a URL, or what was meant for one, for display and storage: without the passwords in it.
String withoutPassword(StringView url);
/// The URL without its scheme.
StringView locationOf(StringView url);

} // namespace zv
