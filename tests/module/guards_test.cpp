#include "forms/Ficha.h"
#include "module/Hosted.h"
#include "session/NodeTable.h"

namespace zv::test {

/// Decorator of a connection that keeps the statements.
struct Recorder final : ConnectionDecorator {
    using ConnectionDecorator::ConnectionDecorator;
    RecordsetPtr Execute(StringView statement) override
    {
        kept.emplace_back(statement);
        return inner()->Execute(statement);
    }
    std::vector<String> kept;
};

TEST(Guards, find_referring_rows_by_an_index)
{
    FakeDesktop desktop;
    const Hosted hosted(&desktop);
    School school = hosted.school;
    const auto recorder = std::make_shared<Recorder>(school.centro);
    std::vector<String>& queries = recorder->kept;
    school.centro = recorder;
    handOver(school, 0, 3);
    std::size_t asked = 0;
    for (const ModuleNode& node : moduleNodes()) {
        // A product of two tables, joined by OR: no index serves it.
        if (!node.guards || node.dialog == u"frmTipoNivelEstudios")
            continue;
        queries.clear();
        cAsignarDatos().Eliminar(node.number);
        asked += queries.size();
        for (const String& query : queries)
            for (const RecordsetPtr plan = hosted.school.centro->Execute(u"EXPLAIN QUERY PLAN " + query);
                 !plan->Eof(); plan->MoveNext())
                EXPECT_FALSE(CStr(plan->Fields(u"detail")).starts_with(u"SCAN")) << toUtf8(query);
    }
    EXPECT_GT(asked, 0U);
}

} // namespace zv::test
