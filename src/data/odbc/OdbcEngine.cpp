#include "data/odbc/OdbcEngine.h"

#include "data/Schools.h"
#include "data/Statement.h"
#include "data/odbc/Location.h"
#include "data/odbc/Probe.h"
#include "data/odbc/Schemas.h"
#include "runtime/Convert.h"

#include <map>

namespace zv {
namespace odbc {
namespace {

class OdbcConnection final : public Connection {
public:
    /// `schema`: selected before each statement, on a pool that has several; else empty.
    explicit OdbcConnection(std::shared_ptr<Pool> pool, String schema = {})
        : pool_(std::move(pool)), schema_(std::move(schema))
    {}

    RecordsetPtr Execute(StringView statement) override
    {
        String room;
        return executeNative(inDialect(statement, pool_->target().server->dialect, room));
    }
    RecordsetPtr executeNative(StringView statement) override
    {
        String room;
        if (!server().dialect.namesInAnyCase)
            statement = folded(statement, room);
        const auto run = [pool = pool_, schema = schema_](StringView each) {
            if (!schema.empty())
                pool->run(schemasOf(*pool->target().server).select(schema));
            return pool->run(each);
        };
        return recordsetOf(String(statement), run(statement), run);
    }
    EngineInfo engine() override { return pool_->engine(); }
    std::vector<FoundTable> tables()
    {
        if (server().placing != Placing::schemas)
            return pool_->tables();
        std::vector<FoundTable> result;
        const String query = schemasOf(server()).columns(schema_.empty() ? pool_->target().schema : schema_);
        for (auto& [table, column] : pairs(*pool_, query)) {
            if (result.empty() || result.back().name != table)
                result.push_back({table, {}});
            result.back().columns.push_back(std::move(column));
        }
        return result;
    }
    const Server& server() const { return *pool_->target().server; }

private:
    std::shared_ptr<Pool> pool_;
    String schema_;
};

[[noreturn]] void failTaken(const ConnectionText& text, StringView schema)
{
    failFor(text, u"ya tiene el esquema «" + String(schema) +
                      u"»: elija otro con ESQUEMA=NOMBRE, o quítelo antes.");
}

/// What a user who may not create a school is told.
void failIfForbidden(const Schemas& schemas, const ConnectionText& text, const DataError& failure)
{
    if (schemas.isForbidden(failure))
        failFor(nameless(text),
                u"no deja a este usuario crear esquemas: pida a quien administra el servidor " +
                    String(schemas.rightToCreate()) + u", o que los cree él.");
}

/// RAII guard of schemas with a temporary name: what is under it in the end is dropped, and a complete school
/// has another by then.
class SchemasToBe final : public SchoolToBe {
public:
    /// `kept`: name for the schemas that are there; empty where none may be.
    SchemasToBe(ConnectionText wanted, String name, String kept, const Target& target, const String& passing)
        : wanted_(std::move(wanted)), name_(std::move(name)), kept_(std::move(kept)), passing_(passing),
          aside_(wanted_), pool_(target)
    {
        aside_.set(u"ESQUEMA", passing);
        const auto taken = schemas().existing(pool_, kept_.empty() ? name_ : kept_);
        if (!taken.empty())
            failTaken(wanted_, taken.front());
        schemas().dropOrphans(pool_, passing);
    }
    SchemasToBe(const SchemasToBe&) = delete;
    SchemasToBe& operator=(const SchemasToBe&) = delete;
    ~SchemasToBe() override
    {
        try {
            for (const Database which : everyDatabase)
                schemas().drop(pool_, schemaName(passing_, which));
        } catch (const RuntimeError&) {
            // Server gone: leftovers are dropped by the next process that creates schemas (dropOrphans).
        }
    }
    String location() const override { return aside_.text(); }
    void putInPlace() override
    {
        try {
            schemas().place(pool_, passing_, name_, kept_);
        } catch (const DataError& failure) {
            if (schemas().isTaken(failure))
                failTaken(wanted_, name_);
            failIfForbidden(schemas(), wanted_, failure);
            throw;
        }
    }

private:
    const Schemas& schemas() const { return schemasOf(*pool_.target().server); }

    ConnectionText wanted_;
    String name_;
    String kept_;
    String passing_;
    ConnectionText aside_;
    Pool pool_;
};

class OdbcEngine final : public Engine {
public:
    StringView scheme() const override { return u"odbc"; }
    DdlStyle ddl(Connection& connection) override { return opened(connection).server().ddl; }

    ConnectionPtr open(StringView location, Database which) override
    {
        return existing(ConnectionText(location), which, {});
    }
    ConnectionPtr inspect(StringView location, Database which) override
    {
        const ConnectionText text(location);
        return existing(text, which, serverOf(text).server->readOnlySettings);
    }
    School snapshot(StringView location) override
    {
        ConnectionText text(location);
        const Server& server = *serverOf(text).server;
        if (server.placing != Placing::schemas)
            return Engine::snapshot(location);
        const Schemas& schemas = schemasOf(server);
        if (!schemas.oneLinkReadsAll())
            // Without the savepoint that PostgreSQL's driver sets around each statement: inside one no
            // instant is shared.
            text.set(u"Protocol", u"7.4-0");
        std::vector<std::shared_ptr<Pool>> pools;
        std::vector<Pool*> begun;
        for (const Database which : everyDatabase) {
            pools.push_back(existingPool(text, which, {}));
            if (begun.empty() || !schemas.oneLinkReadsAll())
                begun.push_back(pools.back().get());
        }
        schemas.beginSnapshot(begun);
        School read;
        for (const Database which : everyDatabase) {
            const auto place = static_cast<std::size_t>(which);
            baseOf(read, which) = schemas.oneLinkReadsAll()
                                      ? std::make_shared<OdbcConnection>(pools[0], schemaOf(text, which))
                                      : std::make_shared<OdbcConnection>(pools[place]);
        }
        return read;
    }
    bool exists(StringView location) override
    {
        const ConnectionText text(location);
        Pool pool(targetToMake(text, {}));
        return !schemasOf(*pool.target().server).existing(pool, schemaOf(text, Database::centro)).empty();
    }
    String beside(StringView location, StringView word) override
    {
        ConnectionText text(location);
        String name = schemaOf(text, Database::centro);
        const String end = u"_" + lowerName(Replace(word, u"-", u"_"));
        // Surrogates go in pairs.
        const Schemas& schemas = schemasAt(text);
        while (!name.empty() &&
               (!schemas.fits(schemaName(name + end, Database::borrado)) || (name.back() & 0xFC00) == 0xD800))
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
        target.settings.push_back(schemasOf(*target.server).ownership(passing));
        return std::make_unique<SchemasToBe>(
            text, schemaOf(text, Database::centro),
            kept.empty() ? String() : schemaOf(ConnectionText(kept), Database::centro), target, passing);
    }
    ConnectionPtr create(StringView location, Database which) override
    {
        const ConnectionText text(location);
        Target target = targetToMake(text, schemaOf(text, which));
        if (isPassing(target.schema))
            target.settings.push_back(schemasOf(*target.server).ownership(schemaOf(text, Database::centro)));
        const Schemas& schemas = schemasOf(*target.server);
        Pool maker(withoutSchema(target));
        try {
            schemas.create(maker, target.schema);
        } catch (const DataError& failure) {
            if (schemas.isTaken(failure))
                failTaken(text, target.schema);
            failIfForbidden(schemas, text, failure);
            throw;
        }
        return std::make_shared<OdbcConnection>(std::make_shared<Pool>(target));
    }
    void remove(StringView location, Database which) override
    {
        const ConnectionText text(location);
        Pool pool(targetToMake(text, {}));
        schemasOf(*pool.target().server).drop(pool, schemaOf(text, which));
    }
    ConnectionPtr temporary(StringView location, Database which) override
    {
        const ConnectionText text(location);
        const String name = passingName(Purpose::guion);
        Target target = targetToMake(text, schemaName(name, which));
        target.settings.push_back(schemasOf(*target.server).ownership(name));
        const Schemas& schemas = schemasOf(*target.server);
        std::shared_ptr<TemporarySchema> schema;
        try {
            schema = std::make_shared<TemporarySchema>(target);
        } catch (const DataError& failure) {
            failIfForbidden(schemas, text, failure);
            throw;
        }
        if (which == Database::centro)
            schemas.dropOrphans(schema->pool, name);
        return std::make_shared<OdbcConnection>(std::shared_ptr<Pool>(schema, &schema->pool));
    }
    std::vector<FoundTable> tables(Connection& connection) override { return opened(connection).tables(); }

private:
    struct KnownServer {
        const Server* server = nullptr;
        std::shared_ptr<Outage> outage;
        std::shared_ptr<Servers> servers;
        String standing;         ///< Schema that its data source names.
        bool smallNames = false; ///< The server keeps the names of schemas in small letters.
    };

    static OdbcConnection& opened(Connection& connection)
    {
        auto* ours = dynamic_cast<OdbcConnection*>(&connection);
        if (!ours)
            fail(failure::typeMismatch);
        return *ours;
    }

    const Schemas& schemasAt(const ConnectionText& text)
    {
        const Server& server = *serverOf(text).server;
        if (server.placing != Placing::schemas)
            failFor(text,
                    u"es un motor en el que las bases las crea su administrador; ábrala cuando exista.");
        return schemasOf(server);
    }

    /// ESQUEMA, else what the location or its data source names, else «centro».
    String schemaOf(const ConnectionText& text, Database which)
    {
        const Schemas& schemas = schemasAt(text);
        const KnownServer& known = serverOf(text);
        String name = text.find(u"ESQUEMA").value_or(u"");
        for (const StringView attribute : schemas.attributes())
            if (name.empty())
                name = text.find(attribute).value_or(u"");
        if (name.empty())
            name = known.standing.empty() ? String(u"centro") : known.standing;
        String result = schemaName(known.smallNames ? lowerName(name) : name, which);
        if (!schemas.fits(result))
            failFor(text, u"nombra un esquema demasiado largo: con «_borrado» y «_entrada» detrás, el nombre "
                          u"no puede pasar de 63 bytes; acorte ESQUEMA.");
        return result;
    }

    /// Cache by connection string: which server is behind one does not change.
    const KnownServer& serverOf(const ConnectionText& text)
    {
        text.refuseMistakes();
        const ConnectionText plain = forDriver(text);
        const String called = plain.text() + text.find(u"SERVIDORES").value_or(u"");
        const auto known = servers_.find(called);
        if (known != servers_.end())
            return known->second;
        const auto servers = std::make_shared<Servers>(text);
        try {
            const auto link = firstLink(*servers, plain, longestSilence(text));
            const Server& found = serverNamed(link->engine().name);
            const Probe seen = found.keepsAllTexts ? probe(link, found) : Probe();
            if (found.keepsAllTexts && !seen.takesAllTexts)
                failFor(text, u"tiene un controlador sin Unicode, que estropearía las letras: use el que lo "
                              u"tiene («PostgreSQL Unicode», «MariaDB Unicode»; para un fichero, sqlite:).");
            if (sharesSessions(link, seen, found,
                               [&] { return firstLink(*servers, plain, longestSilence(text)); }))
                failFor(text, String(sharingPooler) + u".");
            KnownServer result{&found, std::make_shared<Outage>(), servers, {}, false};
            if (const StringView asked =
                    found.placing == Placing::schemas ? schemasOf(found).standing() : u"";
                !asked.empty()) {
                const StatementRows answer(link, asked);
                result.standing = CStr(answer.value(0));
                result.smallNames = CLng(answer.value(1)) != 0;
            }
            return servers_[called] = result;
        } catch (const DataError& failure) {
            const String words = whyClosed(failure) + u" (" + failure.engineText() + u").";
            if (isLasting(failure))
                throw LastingFailure(failure::connectionLost, u"«" + text.shown() + u"» " + words);
            failFor(text, words, failure::connectionLost);
        }
    }

    /// Where the database that the text names is not there, to the server itself: it may be about to be made.
    static std::shared_ptr<Link> firstLink(Servers& servers, ConnectionText plain,
                                           std::chrono::seconds patience)
    {
        std::shared_ptr<Link> link;
        const auto attempt = [&](StringView text) {
            link = std::make_shared<Link>(text, patience);
            servers.requireServing(link);
        };
        try {
            servers.find(plain.text(), attempt);
        } catch (const DataError& failure) {
            if (!mariadbSchemas().isMissing(failure))
                throw;
            for (const StringView attribute : mariadbSchemas().attributes())
                plain.take(attribute);
            servers.find(plain.text(), attempt);
        }
        return link;
    }

    Target targetIn(const ConnectionText& text, String schema)
    {
        const KnownServer& known = serverOf(text);
        Target target{.server = known.server,
                      .connectionText = {},
                      .servers = known.servers,
                      .schema = std::move(schema),
                      .selection = {},
                      .patience = longestSilence(text),
                      .settings = {},
                      .outage = known.outage};
        ConnectionText plain = forDriver(text);
        addOptions(plain, target.server->driverOptions);
        if (target.server->placing == Placing::schemas)
            for (const StringView attribute : schemasOf(*target.server).attributes())
                plain.take(attribute);
        target.connectionText = plain.text();
        if (!target.server->settings.empty())
            target.settings.emplace_back(target.server->settings);
        if (!target.server->patience.empty())
            target.settings.push_back(
                statement(target.server->patience, {static_cast<Long>(longestStatement(text).count())}));
        if (!target.schema.empty())
            target.selection = schemasOf(*target.server).select(target.schema);
        return target;
    }

    Target targetToMake(const ConnectionText& text, String schema)
    {
        schemasAt(text);
        return targetIn(text, std::move(schema));
    }

    ConnectionPtr existing(const ConnectionText& text, Database which, StringView more)
    {
        return std::make_shared<OdbcConnection>(existingPool(text, which, more));
    }

    std::shared_ptr<Pool> existingPool(ConnectionText text, Database which, StringView more)
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
        if (schema.empty())
            return std::make_shared<Pool>(target);
        const Schemas& schemas = schemasOf(server);
        try {
            auto pool = std::make_shared<Pool>(target);
            if (schemas.holds(*pool, schema))
                return pool;
        } catch (const DataError& failure) {
            if (schemas.isForbidden(failure))
                failFor(text,
                        u"no deja a este usuario ver el esquema «" + schema +
                            u"», o no lo tiene: diga cuál con ESQUEMA=NOMBRE, o pida a quien administra "
                            u"el servidor los permisos sobre él.");
            if (!schemas.isMissing(failure))
                throw;
        }
        failFor(text, u"no tiene el esquema «" + schema +
                          u"»: diga cuál con ESQUEMA=NOMBRE, o cree antes la base de datos.");
    }

    std::map<String, KnownServer> servers_;
};

} // namespace
} // namespace odbc

std::unique_ptr<Engine> odbcEngine() { return std::make_unique<odbc::OdbcEngine>(); }

} // namespace zv
