#include "data/history/HistoryEngine.h"

#include "data/DataError.h"
#include "data/history/HistoryConnection.h"

#include <algorithm>

namespace zv {
namespace history {
namespace {

using Begins = HistoryConnection::Begins;

/// Scheme in front of another engine's URL.
constexpr StringView prefix = u"historial";

ConnectionPtr decorated(ConnectionPtr inner, Engine& engine, Begins begins = Begins::atOnce)
{
    Connection& asked = *inner;
    // Asked once for all tables, at the first that is written.
    auto columnsOf = [&engine, &asked, tables = std::vector<FoundTable>()](StringView table) mutable {
        const auto found = [&] {
            return std::ranges::find_if(tables,
                                        [&](const FoundTable& each) { return sameName(each.name, table); });
        };
        if (found() == tables.end())
            tables = engine.tables(asked);
        return found() == tables.end() ? std::vector<String>() : found()->columns;
    };
    return std::make_shared<HistoryConnection>(std::move(inner), std::move(columnsOf), begins);
}

/// The connection that the inner engine opened.
Connection& opened(Connection& connection)
{
    auto* ours = dynamic_cast<HistoryConnection*>(&connection);
    return ours != nullptr ? *ours->inner() : connection;
}

void switchOn(Connection& centro)
{
    try {
        activate(centro);
    } catch (const DataError& error) {
        throw RuntimeError(error.number(),
                           u"El historial no se puede activar: " + error.description() +
                               u" Actívelo quien pueda crear tablas, con «zvconf historial activar».");
    }
}

class HistoryEngine final : public Engine {
public:
    StringView scheme() const override { return prefix; }
    DdlStyle ddl(Connection& connection) override { return inner_->ddl(opened(connection)); }
    ConnectionPtr open(StringView url, Database which) override
    {
        ConnectionPtr connection = inner(url).open(locationOf(url), which);
        if (which != Database::centro)
            return connection;
        switchOn(*connection);
        return decorated(std::move(connection), *inner_);
    }
    void settle(Connection& connection) override { inner_->settle(opened(connection)); }
    ConnectionPtr inspect(StringView url, Database which) override
    {
        return inner(url).inspect(locationOf(url), which);
    }
    School snapshot(StringView url) override { return inner(url).snapshot(locationOf(url)); }
    bool exists(StringView url) override { return inner(url).exists(locationOf(url)); }
    String beside(StringView url, StringView word) override
    {
        return String(inner(url).scheme()) + u":" + inner_->beside(locationOf(url), word);
    }
    std::filesystem::path folder(StringView url) override { return inner(url).folder(locationOf(url)); }
    bool backup(Connection& connection, const std::filesystem::path& file) override
    {
        return inner_->backup(opened(connection), file);
    }
    bool install(StringView url, const std::filesystem::path& live, StringView kept) override
    {
        return inner(url).install(locationOf(url), live, locationOf(kept));
    }
    std::unique_ptr<SchoolToBe> make(StringView url, StringView kept) override
    {
        inner(url);
        return std::make_unique<ForwardedSchoolToBe>(url, kept);
    }
    ConnectionPtr create(StringView url, Database which) override
    {
        ConnectionPtr connection = inner(url).create(locationOf(url), which);
        if (which == Database::centro)
            activate(*connection);
        return connection;
    }
    void remove(StringView url, Database which) override { inner(url).remove(locationOf(url), which); }
    ConnectionPtr temporary(StringView url, Database which) override
    {
        ConnectionPtr connection = inner(url).temporary(locationOf(url), which);
        if (which != Database::centro)
            return connection;
        activate(*connection);
        return decorated(std::move(connection), *inner_, Begins::withADialog);
    }
    std::vector<FoundTable> tables(Connection& connection) override
    {
        return inner_->tables(opened(connection));
    }
    std::vector<String> damage(Connection& connection) override { return inner_->damage(opened(connection)); }
    bool scrub(Connection& connection) override { return inner_->scrub(opened(connection)); }

private:
    Engine& inner(StringView url)
    {
        Engine& engine = engineOf(url);
        if (&engine == this)
            throw RuntimeError(failure::otherData,
                               u"Delante del URL de un centro «historial:» va una sola vez.");
        return *(inner_ = &engine);
    }

    Engine* inner_ = nullptr; ///< Engine of the URL used last; one is enough for a program.
};

} // namespace

School withHistory(School school, StringView url)
{
    if (historyOf(school.centro) == nullptr && isActive(*school.centro))
        school.centro = decorated(std::move(school.centro), engineOf(url));
    return school;
}

} // namespace history

std::unique_ptr<Engine> historyEngine() { return std::make_unique<history::HistoryEngine>(); }

} // namespace zv
