#include "robot/Import.h"

#include "data/history/HistoryEngine.h"
#include "data/history/Undo.h"
#include "estaciones/Stations.h"
#include "history/Tables.h"
#include "robot/ScratchSchool.h"
#include "session/cNombreNodo.h"

#include <csignal>
#include <random>

namespace zv {
namespace {

using testing::Contains;
using testing::EndsWith;

class Imported : public Stations {
protected:
    Imported() { createWithHistory(); }
    static std::vector<CsvLine> list(int lines, int everyRefused)
    {
        String text = u"Nombre;Descripción corta;Ausencia";
        for (int line = 0; line < lines; ++line)
            text += u"\n" + fromUtf8(line % everyRefused == 7 ? " " : "L'incidencia " + to_string(line)) +
                    u";n;Sí";
        return csvLines(text);
    }
    static std::vector<std::string> importInto(const School& school, const std::vector<CsvLine>& lines)
    {
        std::vector<std::string> told;
        importList(school, *moduleNode(cNombreNodo::TiposIncidencia), lines, {.dialog = u"frmTipoIncidencia"},
                   [&](const ImportedLine& each) {
                       told.push_back(to_string(each.line) + (each.added ? "+" : "-") + toUtf8(each.message));
                   });
        return told;
    }
    Tables tables() const { return {*openSchool(url).centro, engineOf(url)}; }
    /// Takes back the opening of the import.
    void undo()
    {
        const School school = history::withHistory(openSchool(url), url);
        const Long opening = history::entries(*school.centro, u"Clase=1", true).at(0).number;
        const history::Plan plan =
            history::undo(*history::historyOf(school.centro), {.opening = opening}, {});
        EXPECT_TRUE(plan.obstacles.empty());
    }
};

TEST_P(Imported, the_rehearsal_says_what_the_import_does_and_it_is_undone_as_one)
{
    const Tables before = tables();
    const std::vector<CsvLine> lines = list(1000, 20);
    const std::vector<std::string> rehearsed = importInto(ScratchSchool(url).school(), lines);
    EXPECT_SAME_TABLES(before, tables());
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM HistorialAsiento"), 0);
    const int rows = one(u"SELECT COUNT(*) FROM TipoIncidencia");
    const std::vector<std::string> told = importInto(history::withHistory(openSchool(url), url), lines);
    EXPECT_EQ(told, rehearsed);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM TipoIncidencia") - rows, 950);
    EXPECT_THAT(told, Contains(EndsWith("-ERROR Faltan campos por rellenar")).Times(50));
    undo();
    EXPECT_SAME_TABLES(before, tables());
}

/// Whatever the moment, the lines that are there are whole.
TEST_P(Imported, an_import_that_is_cut_leaves_whole_lines_which_go_as_one)
{
    const Tables before = tables();
    const std::vector<CsvLine> lines = list(2000, 3000);
    const int rows = one(u"SELECT COUNT(*) FROM TipoIncidencia");
    std::mt19937 random(seedOr(5));
    int killed = 0, cut = 0;
    for (int kill = 0; kill < deaths(4, 200); ++kill) {
        const Process process = start([&](int) {
            importInto(history::withHistory(openSchool(url), url), lines);
            return 0;
        });
        usleep(static_cast<useconds_t>(20'000 + random() % 300'000));
        ::kill(process.first, SIGKILL);
        killed += wasKilled(statusOf(process)) ? 1 : 0;
        const int added = one(u"SELECT COUNT(*) FROM TipoIncidencia") - rows;
        cut += added > 0 && added < 1999 ? 1 : 0;
        EXPECT_EQ(one(u"SELECT COUNT(*) FROM TipoIncidencia WHERE Nombre LIKE 'L''incidencia %' AND "
                      u"DescripcionCorta='n' AND Ausencia=1 AND Justificante=0 AND Boletin=0"),
                  added);
        if (added > 0)
            undo();
        EXPECT_SAME_TABLES(before, tables());
    }
    std::cout << killed << " killed, " << cut << " of them in the middle\n";
    EXPECT_GT(cut, 0);
}

INSTANTIATE_TEST_SUITE_P(each, Imported, testing::Values("sqlite", "postgres", "mariadb"),
                         [](const auto& each) { return each.param; });

} // namespace
} // namespace zv
