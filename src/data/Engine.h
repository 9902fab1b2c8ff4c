#pragma once

#include "data/Connection.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace zv {

/// Which of a school's three databases.
enum class Database { centro, borrado, entrada };

/// How an engine writes the definition of a table.
enum class DdlStyle { sqlite, postgresql };

/// A table as it stands in a database: its columns in physical order.
struct FoundTable {
    String name;
    std::vector<String> columns;
};

/// A school in the making, aside: nobody finds it where it is to be before putInPlace(). It goes with the
/// object that was not put in place. What one leaves behind that was killed, the next takes away.
class SchoolToBe {
public:
    virtual ~SchoolToBe() = default;
    /// Where its databases are made.
    virtual String location() const = 0;
    /// All three, or none; no connection to them may be open. Fails if there is one by now.
    virtual void putInPlace() = 0;
};

/// A kind of database server or file, chosen by the scheme of a URL ("sqlite:colegio.db").
class Engine {
public:
    virtual ~Engine() = default;
    virtual StringView scheme() const = 0;
    virtual DdlStyle ddl() const = 0;
    /// Opens an existing database. `location` is the URL without its scheme. Fails with a RuntimeError that
    /// tells a person what to do: file missing, no database, no right to it.
    virtual ConnectionPtr open(StringView location, Database which) = 0;
    /// Makes a database that open() gave fit for several stations. A wrong one must stay as it was: so this
    /// comes when it is known to be the one that was meant.
    virtual void settle(Connection& /*connection*/) {}
    /// The same as open() for looking only: nothing of it is changed, and no right to write is needed.
    virtual ConnectionPtr inspect(StringView location, Database which) = 0;
    /// Begins a school at a location. Fails if one of its databases is there already.
    virtual std::unique_ptr<SchoolToBe> make(StringView location) = 0;
    /// Makes a new, empty database (no tables yet). Fails if there is one already.
    virtual ConnectionPtr create(StringView location, Database which) = 0;
    /// Takes away a database that create() made; its connections must be gone. One that is not there is no
    /// failure.
    virtual void remove(StringView location, Database which) = 0;
    /// A fresh, empty database that is gone with its connection.
    virtual ConnectionPtr temporary(StringView location, Database which) = 0;
    /// The tables of a database that this engine opened.
    virtual std::vector<FoundTable> tables(Connection& connection) = 0;
    /// What the engine finds broken in a database that it opened, in its own words; nothing where it does not
    /// look.
    virtual std::vector<String> damage(Connection& /*connection*/) { return {}; }
};

/// Where a school's databases are files: the one of `which`, by the path of the live one (colegio.db,
/// colegio.borrado.db, colegio.entrada.db).
std::filesystem::path fileOf(const std::filesystem::path& live, Database which);

/// Makes an engine known; each program registers those that it links.
void registerEngine(std::unique_ptr<Engine> engine);
/// The engine of a URL's scheme; a scheme that no engine knows fails with a RuntimeError that names those
/// that exist.
Engine& engineOf(StringView url);
/// For a person to read, and to be kept: a URL, or what was meant for one, without the passwords in it.
String withoutPassword(StringView url);
/// The URL without its scheme.
StringView locationOf(StringView url);

} // namespace zv
