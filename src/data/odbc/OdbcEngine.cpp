#include "data/odbc/OdbcEngine.h"

#include "data/Statement.h"
#include "data/Transaction.h"
#include "data/odbc/ConnectionText.h"
#include "data/odbc/Password.h"
#include "data/odbc/Schemas.h"
#include "runtime/Convert.h"

#include <charconv>
#include <map>

namespace zv {
namespace odbc {
namespace {

class OdbcConnection final : public Connection {
public:
    explicit OdbcConnection(std::shared_ptr<Pool> pool) : pool_(std::move(pool)) {}

    RecordsetPtr Execute(StringView statement) override
    {
        String room;
        return executeNative(inDialect(statement, pool_->target().server->dialect, room));
    }
    RecordsetPtr executeNative(StringView statement) override
    {
        return recordsetOf(String(statement), pool_->run(statement),
                           [pool = pool_](StringView again) { return pool->run(again); });
    }
    EngineInfo engine() override { return pool_->engine(); }
    Pool& pool() { return *pool_; }

private:
    std::shared_ptr<Pool> pool_;
};

[[noreturn]] void failFor(const ConnectionText& text, StringView words,
                          std::int32_t number = failure::otherData)
{
    throw RuntimeError(number, u"«" + text.shown() + u"» " + String(words));
}

/// Advice for a refused connection, by SQLSTATE: the driver manager's own ones are for what this machine
/// lacks.
String whyClosed(const DataError& failure)
{
    const std::string& code = failure.engineCode();
    if (code.starts_with("IM002"))
        return u"nombra una fuente de datos que este equipo no tiene: corrija DSN, o créela (odbc.ini)";
    if (code.starts_with("IM003") || code.starts_with("01000"))
        return u"nombra un controlador de ODBC que este equipo no tiene: instálelo, o corrija Driver";
    return u"no responde: compruebe el servidor, la base, el usuario y la contraseña";
}

/// Probe by a round trip: an old driver converts to one code page, and would corrupt all letters outside it.
bool takesAllTexts(const std::shared_ptr<Link>& link)
{
    const String text = u"ñЩ";
    try {
        const StatementRows rows(link, u"SELECT " + textLiteral(text));
        const auto* field = rows.row() ? &rows.row()->front() : nullptr;
        const String* found = field && *field ? (*field)->as<String>() : nullptr;
        return found && *found == text;
    } catch (const DataError&) {
        if (link->isLost())
            throw;
        return false;
    }
}

/// Attribute that selects the database, on servers without schemas.
StringView nameAttribute(const ConnectionText& text)
{
    for (const StringView name : {u"DATABASE", u"DBQ", u"DB", u"DSN"})
        if (text.find(name))
            return name;
    failFor(text, u"no nombra ninguna base de datos: añada DATABASE=NOMBRE o DSN=NOMBRE.");
}

void nameDatabase(ConnectionText& text, Placing placing, Database which)
{
    const StringView attribute = nameAttribute(text);
    const String live = *text.find(attribute);
    if (placing == Placing::files && !sameName(attribute, u"DSN"))
        text.set(attribute, fileOf(live, which).u16string());
    else
        text.set(attribute, live + String(suffixOf(which)));
}

void addOptions(ConnectionText& text, StringView options)
{
    for (std::size_t from = 0; from < options.size();) {
        const std::size_t end = std::min(options.find(u';', from), options.size());
        const StringView option = options.substr(from, end - from);
        const std::size_t sign = option.find(u'=');
        if (!text.find(option.substr(0, sign)))
            text.set(option.substr(0, sign), String(option.substr(sign + 1)));
        from = end + 1;
    }
}

/// Connection string for the driver: without our own attributes, and with a password from outside.
ConnectionText forDriver(ConnectionText text)
{
    text.take(u"ESQUEMA");
    text.take(u"ESPERA");
    if (!text.find(u"PWD") && !text.find(u"Password"))
        if (const std::optional<String> password = passwordFromOutside())
            text.set(u"PWD", *password);
    return text;
}

/// Timeout of a statement, enforced by servers that can (Server::patience); zero: none.
std::chrono::seconds longestStatement(const ConnectionText& text)
{
    const std::optional<String> wish = text.find(u"ESPERA");
    if (!wish)
        return std::chrono::seconds(60);
    const std::string digits = toUtf8(*wish);
    constexpr Long longest = 86400;
    Long number = -1;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size() || number < 0 || number > longest)
        failFor(text, u"espera mal: ESPERA=N es el número de segundos que puede tardar una instrucción, "
                      u"hasta 86400; con 0, los que hagan falta.");
    return std::chrono::seconds(number);
}

/// Timeout of the connection, longer than that of a statement: a live server would have ended the statement
/// by then.
std::chrono::seconds longestSilence(const ConnectionText& text)
{
    const std::chrono::seconds longest = longestStatement(text);
    return longest.count() == 0 ? longest : longest + std::chrono::seconds(5);
}

/// Without the schema, whose temporary name would tell a person nothing.
ConnectionText nameless(ConnectionText text)
{
    text.take(u"ESQUEMA");
    return text;
}

[[noreturn]] void failTaken(const ConnectionText& text, StringView schema)
{
    failFor(text, u"ya tiene el esquema «" + String(schema) +
                      u"»: elija otro con ESQUEMA=NOMBRE, o quítelo antes.");
}

bool isTaken(const DataError& failure)
{
    // Race: of two that create it at the same moment, one violates the unique key of the catalogue.
    return failure.engineCode().starts_with("42P06") || failure.number() == failure::keyExists;
}

/// RAII guard of schemas with a temporary name: renamed when they are complete, dropped otherwise.
class SchemasToBe final : public SchoolToBe {
public:
    /// `kept`: name for the schemas that are there; empty where none may be.
    SchemasToBe(ConnectionText wanted, String name, String kept, const Target& target, const String& passing)
        : wanted_(std::move(wanted)), name_(std::move(name)), kept_(std::move(kept)), passing_(passing),
          aside_(wanted_), pool_(target)
    {
        aside_.set(u"ESQUEMA", passing);
        const auto taken = existingSchemas(pool_, kept_.empty() ? name_ : kept_);
        if (!taken.empty())
            failTaken(wanted_, taken.front());
        dropOrphans(pool_, passing);
    }
    SchemasToBe(const SchemasToBe&) = delete;
    SchemasToBe& operator=(const SchemasToBe&) = delete;
    ~SchemasToBe() override
    {
        try {
            for (const Database which : everyDatabase)
                if (!placed_)
                    dropSchema(pool_, passing_ + String(suffixOf(which)));
        } catch (const RuntimeError&) {
            // Server gone: leftovers are dropped by the next process that creates schemas (dropOrphans).
        }
    }
    String location() const override { return aside_.text(); }
    void putInPlace() override
    {
        try {
            Transaction transaction([this](StringView each) { pool_.run(each); });
            if (!kept_.empty()) {
                giveRights(pool_, name_, passing_);
                renameSchemas(pool_, name_, kept_);
            }
            renameSchemas(pool_, passing_, name_);
            transaction.commit();
        } catch (const DataError& failure) {
            if (isTaken(failure))
                failTaken(wanted_, name_);
            throw;
        }
        placed_ = true;
    }

private:
    ConnectionText wanted_;
    String name_;
    String kept_;
    String passing_;
    ConnectionText aside_;
    Pool pool_;
    bool placed_ = false;
};

class OdbcEngine final : public Engine {
public:
    StringView scheme() const override { return u"odbc"; }
    DdlStyle ddl() const override { return DdlStyle::postgresql; }

    ConnectionPtr open(StringView location, Database which) override
    {
        return existing(ConnectionText(location), which, {});
    }
    ConnectionPtr inspect(StringView location, Database which) override
    {
        const ConnectionText text(location);
        return existing(text, which, serverOf(text).server->readOnlySettings);
    }
    /// One transaction that sees one instant, and two that see the same.
    School snapshot(StringView location) override
    {
        ConnectionText text(location);
        if (serverOf(text).server->placing != Placing::schemas)
            return Engine::snapshot(location);
        // Without the savepoint that the driver sets around each statement: inside one no instant is shared.
        text.set(u"Protocol", u"7.4-0");
        School read{existing(text, Database::centro, {}), existing(text, Database::borrado, {}),
                    existing(text, Database::entrada, {})};
        String instant;
        for (const ConnectionPtr& each : {read.centro, read.borrado, read.entrada}) {
            each->executeNative(u"BEGIN");
            each->executeNative(u"SET TRANSACTION ISOLATION LEVEL REPEATABLE READ READ ONLY");
            if (instant.empty())
                instant = CStr(
                    each->executeNative(u"SELECT pg_export_snapshot() AS Instante")->Fields(u"Instante"));
            else
                each->executeNative(u"SET TRANSACTION SNAPSHOT " + textLiteral(instant));
        }
        return read;
    }
    bool exists(StringView location) override
    {
        const ConnectionText text(location);
        Pool pool(targetToMake(text, {}));
        return !existingSchemas(pool, schemaOf(text, Database::centro)).empty();
    }
    String beside(StringView location, StringView word) override
    {
        ConnectionText text(location);
        String name = schemaOf(text, Database::centro);
        const String end = u"_" + lowerName(Replace(word, u"-", u"_"));
        // Surrogates go in pairs.
        while (!name.empty() &&
               (!fits(name + end + String(suffixOf(Database::borrado))) || (name.back() & 0xFC00) == 0xD800))
            name.pop_back();
        text.set(u"ESQUEMA", name + end);
        return text.text();
    }
    std::unique_ptr<SchoolToBe> make(StringView location, StringView kept) override
    {
        const ConnectionText text(location);
        for (const Database which : everyDatabase)
            schemaOf(text, which);
        const String passing = passingName(Purpose::nuevo);
        Target target = targetToMake(text, {});
        target.settings.push_back(ownership(passing));
        return std::make_unique<SchemasToBe>(
            text, schemaOf(text, Database::centro),
            kept.empty() ? String() : schemaOf(ConnectionText(kept), Database::centro), target, passing);
    }
    ConnectionPtr create(StringView location, Database which) override
    {
        const ConnectionText text(location);
        Target target = targetToMake(text, schemaOf(text, which));
        if (isPassing(target.schema))
            target.settings.push_back(ownership(schemaOf(text, Database::centro)));
        auto pool = std::make_shared<Pool>(target);
        try {
            createSchema(*pool, target.schema);
        } catch (const DataError& failure) {
            if (isTaken(failure))
                failTaken(text, target.schema);
            if (failure.engineCode().starts_with("42501"))
                failFor(nameless(text),
                        u"no deja a este usuario crear esquemas: pida a quien administra el servidor "
                        u"GRANT CREATE ON DATABASE, o que los cree él.");
            throw;
        }
        return std::make_shared<OdbcConnection>(pool);
    }
    void remove(StringView location, Database which) override
    {
        const ConnectionText text(location);
        Pool pool(targetToMake(text, schemaOf(text, which)));
        dropSchema(pool, pool.target().schema);
    }
    ConnectionPtr temporary(StringView location, Database which) override
    {
        const ConnectionText text(location);
        const String name = passingName(Purpose::guion);
        Target target = targetToMake(text, name + String(suffixOf(which)));
        target.settings.push_back(ownership(name));
        auto schema = std::make_shared<TemporarySchema>(target);
        if (which == Database::centro)
            dropOrphans(schema->pool, name);
        return std::make_shared<OdbcConnection>(std::shared_ptr<Pool>(schema, &schema->pool));
    }
    std::vector<FoundTable> tables(Connection& connection) override
    {
        auto* ours = dynamic_cast<OdbcConnection*>(&connection);
        if (!ours)
            fail(failure::typeMismatch);
        return ours->pool().tables();
    }

private:
    struct KnownServer {
        const Server* server = nullptr;
        std::shared_ptr<Outage> outage;
    };

    /// The server truncates names, and the three would collide.
    static bool fits(StringView schema)
    {
        constexpr std::size_t longest = 63;
        return toUtf8(schema).size() <= longest;
    }

    static String schemaOf(const ConnectionText& text, Database which)
    {
        const String name = text.find(u"ESQUEMA").value_or(u"");
        String result = (name.empty() ? u"centro" : name) + String(suffixOf(which));
        if (!fits(result))
            failFor(text, u"nombra un esquema demasiado largo: con «_borrado» y «_entrada» detrás, el nombre "
                          u"no puede pasar de 63 bytes; acorte ESQUEMA.");
        return result;
    }

    /// Cache by connection string: which server is behind one does not change.
    const KnownServer& serverOf(const ConnectionText& text)
    {
        const ConnectionText plain = forDriver(text);
        const std::chrono::seconds patience = longestSilence(text);
        const auto known = servers_.find(plain.text());
        if (known != servers_.end())
            return known->second;
        try {
            const auto link = std::make_shared<Link>(plain.text(), patience);
            const Server& found = serverNamed(link->engine().name);
            if (found.keepsAllTexts && !takesAllTexts(link))
                failFor(text, u"tiene un controlador sin Unicode, que estropearía las letras: use el que lo "
                              u"tiene («PostgreSQL Unicode», «MariaDB Unicode»; para un fichero, sqlite:).");
            return servers_[plain.text()] = {&found, std::make_shared<Outage>()};
        } catch (const DataError& failure) {
            failFor(text, whyClosed(failure) + u" (" + failure.engineText() + u").", failure::connectionLost);
        }
    }

    Target targetIn(const ConnectionText& text, String schema)
    {
        const KnownServer& known = serverOf(text);
        Target target{.server = known.server,
                      .connectionText = {},
                      .schema = std::move(schema),
                      .patience = longestSilence(text),
                      .settings = {},
                      .outage = known.outage};
        ConnectionText plain = forDriver(text);
        addOptions(plain, target.server->driverOptions);
        target.connectionText = plain.text();
        if (!target.server->settings.empty())
            target.settings.emplace_back(target.server->settings);
        if (!target.server->patience.empty())
            target.settings.push_back(
                statement(target.server->patience, {static_cast<Long>(longestStatement(text).count())}));
        if (!target.schema.empty())
            target.settings.push_back(searchPath(target.schema));
        return target;
    }

    Target targetToMake(const ConnectionText& text, String schema)
    {
        const Server& server = *serverOf(text).server;
        if (!server.makesSchools)
            failFor(text,
                    u"es un motor en el que las bases las crea su administrador; ábrala cuando exista.");
        return targetIn(text, std::move(schema));
    }

    ConnectionPtr existing(ConnectionText text, Database which, StringView more)
    {
        const Server& server = *serverOf(text).server;
        String schema;
        if (server.placing == Placing::schemas)
            schema = schemaOf(text, which);
        else
            nameDatabase(text, server.placing, which);
        Target target = targetIn(text, schema);
        if (!more.empty())
            target.settings.emplace_back(more);
        auto pool = std::make_shared<Pool>(target);
        if (!schema.empty() &&
            !pool->run(u"SELECT nspname FROM pg_namespace WHERE nspname=" + textLiteral(schema))->row())
            failFor(text, u"no tiene el esquema «" + schema +
                              u"»: diga cuál con ESQUEMA=NOMBRE, o cree antes la base de datos.");
        return std::make_shared<OdbcConnection>(std::move(pool));
    }

    std::map<String, KnownServer> servers_;
};

} // namespace
} // namespace odbc

std::unique_ptr<Engine> odbcEngine() { return std::make_unique<odbc::OdbcEngine>(); }

} // namespace zv
