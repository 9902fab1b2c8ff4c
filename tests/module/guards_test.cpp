#include "data/Schools.h"
#include "data/sqlite/SqliteEngine.h"
#include "forms/Ficha.h"
#include "module/Module.h"
#include "runtime/Single.h"
#include "session/HostSession.h"
#include "session/NodeTable.h"
#include "session/cAsignarDatos.h"

namespace zv::test {

/// Decorator of a connection that keeps the statements.
struct Recorder final : Connection {
    Recorder(ConnectionPtr connection, std::vector<String>& statements)
        : inner(std::move(connection)), kept(statements)
    {}
    RecordsetPtr Execute(StringView statement) override
    {
        kept.emplace_back(statement);
        return inner->Execute(statement);
    }
    RecordsetPtr executeNative(StringView statement) override { return inner->executeNative(statement); }
    EngineInfo engine() override { return inner->engine(); }
    ConnectionPtr inner;
    std::vector<String>& kept;
};

TEST(Guards, find_referring_rows_by_an_index)
{
    FakeDesktop desktop;
    registerEngine(sqliteEngine());
    installModule();
    const School school = temporarySchool();
    std::vector<String> queries;
    School recorded = school;
    recorded.centro = std::make_shared<Recorder>(school.centro, queries);
    const auto session = newHostSession(recorded);
    let(*session, u"lngRowData", Long{3});
    cAsignarDatos host;
    host.ObtenerDatos(session);
    std::size_t asked = 0;
    for (const ModuleNode& node : moduleNodes()) {
        // A product of two tables, joined by OR: no index serves it.
        if (!node.guards || node.dialog == u"frmTipoNivelEstudios")
            continue;
        queries.clear();
        host.Eliminar(node.number);
        asked += queries.size();
        for (const String& query : queries)
            for (const RecordsetPtr plan = school.centro->Execute(u"EXPLAIN QUERY PLAN " + query);
                 !plan->Eof(); plan->MoveNext())
                EXPECT_FALSE(CStr(plan->Fields(u"detail")).starts_with(u"SCAN")) << toUtf8(query);
    }
    EXPECT_GT(asked, 0U);
    resetSingles();
}

} // namespace zv::test
