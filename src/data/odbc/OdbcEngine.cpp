#include "data/odbc/OdbcEngine.h"

#include "data/Statement.h"
#include "data/odbc/ConnectionText.h"
#include "data/odbc/Pool.h"
#include "runtime/Convert.h"

#include <map>
#include <random>

namespace zv {
namespace odbc {
namespace {

class OdbcConnection final : public Connection {
public:
    explicit OdbcConnection(std::shared_ptr<Pool> pool) : pool_(std::move(pool)) {}

    RecordsetPtr Execute(StringView statement) override
    {
        String room;
        return executeNative(inDialect(statement, pool_->place().server->dialect, room));
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

StringView suffixOf(Database which)
{
    switch (which) {
    case Database::borrado:
        return u"_borrado";
    case Database::entrada:
        return u"_entrada";
    case Database::centro:
        break;
    }
    return u"";
}

String quotedName(StringView name) { return u"\"" + Replace(name, u"\"", u"\"\"") + u"\""; }

[[noreturn]] void failFor(const ConnectionText& text, StringView words,
                          std::int32_t number = failure::otherData)
{
    throw RuntimeError(number, u"«" + text.shown() + u"» " + String(words));
}

/// What to do about a connection that was refused. The driver manager has states of its own for what this
/// machine lacks.
String whyClosed(const DataError& failure)
{
    const std::string& code = failure.engineCode();
    if (code.starts_with("IM002"))
        return u"nombra una fuente de datos que este equipo no tiene: corrija DSN, o créela (odbc.ini)";
    if (code.starts_with("IM003") || code.starts_with("01000"))
        return u"nombra un controlador de ODBC que este equipo no tiene: instálelo, o corrija Driver";
    return u"no responde: compruebe el servidor, la base, el usuario y la contraseña";
}

/// A driver of old knows one code page: what it does not hold would be stored as something else.
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

/// The attribute that names a database, for servers without schemas.
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

/// A schema that goes with its last user.
struct TemporarySchema {
    Pool pool;

    explicit TemporarySchema(const Place& place) : pool(place) {}
    TemporarySchema(const TemporarySchema&) = delete;
    TemporarySchema& operator=(const TemporarySchema&) = delete;
    ~TemporarySchema()
    {
        try {
            pool.run(u"DROP SCHEMA IF EXISTS " + quotedName(pool.place().schema) + u" CASCADE");
        } catch (const RuntimeError&) {
            // The server is gone; an administrator finds what is left by its name.
        }
    }
};

String temporaryName()
{
    std::random_device chance;
    String result = u"zv_guion_";
    for (int part = 0; part < 3; ++part)
        result += decimalText(static_cast<Long>(chance() & 0x7FFFFFFF));
    return result;
}

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
    ConnectionPtr create(StringView location, Database which) override
    {
        const ConnectionText text(location);
        const Place place = placeToMake(text, schemaOf(text, which));
        auto pool = std::make_shared<Pool>(place);
        try {
            pool->run(u"CREATE SCHEMA " + quotedName(place.schema));
        } catch (const DataError& failure) {
            // Who makes it at the same moment is told so by the key of the list of schemas.
            if (failure.engineCode().starts_with("42P06") || failure.number() == failure::keyExists)
                failFor(text, u"ya tiene el esquema «" + place.schema +
                                  u"»: elija otro con ESQUEMA=NOMBRE, o quítelo antes.");
            if (failure.engineCode().starts_with("42501"))
                failFor(text, u"no deja a este usuario crear esquemas: pida a quien administra el servidor "
                              u"GRANT CREATE ON DATABASE, o que los cree él.");
            throw;
        }
        return std::make_shared<OdbcConnection>(pool);
    }
    void remove(StringView location, Database which) override
    {
        const ConnectionText text(location);
        const Place place = placeToMake(text, schemaOf(text, which));
        Pool(place).run(u"DROP SCHEMA IF EXISTS " + quotedName(place.schema) + u" CASCADE");
    }
    ConnectionPtr temporary(StringView location, Database which) override
    {
        const ConnectionText text(location);
        const Place place = placeToMake(text, temporaryName() + String(suffixOf(which)));
        auto schema = std::make_shared<TemporarySchema>(place);
        schema->pool.run(u"CREATE SCHEMA " + quotedName(place.schema));
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
    struct Known {
        const Server* server = nullptr;
        std::shared_ptr<Outage> outage;
    };

    static String schemaOf(const ConnectionText& text, Database which)
    {
        const String name = text.find(u"ESQUEMA").value_or(u"");
        String result = (name.empty() ? u"centro" : name) + String(suffixOf(which));
        // The server would cut it, and take the three schemas for one.
        constexpr std::size_t longest = 63;
        if (toUtf8(result).size() > longest)
            failFor(text, u"nombra un esquema demasiado largo: con «_borrado» y «_entrada» detrás, el nombre "
                          u"no puede pasar de 63 bytes; acorte ESQUEMA.");
        return result;
    }

    /// Asked for once: what stands behind a connection text does not change.
    const Known& serverOf(const ConnectionText& text)
    {
        ConnectionText plain = text;
        plain.take(u"ESQUEMA");
        const auto known = servers_.find(plain.text());
        if (known != servers_.end())
            return known->second;
        try {
            const auto link = std::make_shared<Link>(plain.text());
            const Server& found = serverNamed(link->engine().name);
            if (found.keepsAllTexts && !takesAllTexts(link))
                failFor(text, u"tiene un controlador sin Unicode, que estropearía las letras: use el que lo "
                              u"tiene («PostgreSQL Unicode», «MariaDB Unicode»; para un fichero, sqlite:).");
            return servers_[plain.text()] = {&found, std::make_shared<Outage>()};
        } catch (const DataError& failure) {
            failFor(text, whyClosed(failure) + u" (" + failure.engineText() + u").", failure::connectionLost);
        }
    }

    Place placeIn(const ConnectionText& text, String schema)
    {
        const Known& known = serverOf(text);
        Place place{.server = known.server,
                    .connectionText = {},
                    .schema = std::move(schema),
                    .settings = {},
                    .outage = known.outage};
        ConnectionText plain = text;
        plain.take(u"ESQUEMA");
        addOptions(plain, place.server->driverOptions);
        place.connectionText = plain.text();
        if (!place.server->settings.empty())
            place.settings.emplace_back(place.server->settings);
        if (!place.schema.empty())
            place.settings.push_back(u"SET search_path TO " + quotedName(place.schema));
        return place;
    }

    Place placeToMake(const ConnectionText& text, String schema)
    {
        const Server& server = *serverOf(text).server;
        if (!server.makesSchools)
            failFor(text,
                    u"es un motor en el que las bases las crea su administrador; ábrala cuando exista.");
        return placeIn(text, std::move(schema));
    }

    ConnectionPtr existing(ConnectionText text, Database which, StringView more)
    {
        const Server& server = *serverOf(text).server;
        String schema;
        if (server.placing == Placing::schemas)
            schema = schemaOf(text, which);
        else
            nameDatabase(text, server.placing, which);
        Place place = placeIn(text, schema);
        if (!more.empty())
            place.settings.emplace_back(more);
        auto pool = std::make_shared<Pool>(place);
        if (!schema.empty() &&
            !pool->run(u"SELECT nspname FROM pg_namespace WHERE nspname=" + textLiteral(schema))->row())
            failFor(text, u"no tiene el esquema «" + schema +
                              u"»: diga cuál con ESQUEMA=NOMBRE, o cree antes la base de datos.");
        return std::make_shared<OdbcConnection>(std::move(pool));
    }

    std::map<String, Known> servers_;
};

} // namespace
} // namespace odbc

std::unique_ptr<Engine> odbcEngine() { return std::make_unique<odbc::OdbcEngine>(); }

} // namespace zv
