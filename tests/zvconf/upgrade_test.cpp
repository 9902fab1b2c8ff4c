#include "zvconf/Program.h"

#include "data/Schools.h"
#include "data/Statement.h"
#include "session/NodeTable.h"

#include <algorithm>
#include <gmock/gmock.h>

using namespace zv;
using testing::ContainsRegex, testing::HasSubstr, testing::Not;

namespace {

/// A school as the first version that made schools left it, in SQL text.
class Upgrade : public Zvconf {
protected:
    String urlOf(const char* name) const { return u"sqlite:" + (folder / name).u16string(); }

    /// Runs that version's statements, all or those that insert.
    static void replay(const School& school, bool all)
    {
        const std::vector<ConnectionPtr> sections[] = {
            {school.centro, school.borrado}, {school.centro}, {school.borrado}, {school.entrada}};
        std::size_t headings = 0;
        for (const Database each : everyDatabase)
            baseOf(school, each)->executeNative(u"BEGIN");
        std::ifstream text(GUIONES "/../zvconf/primera.sql");
        for (std::string line; std::getline(text, line);)
            if (line.starts_with("--"))
                ++headings;
            else
                for (std::istringstream rest(line); std::getline(rest, line, ';');)
                    for (const ConnectionPtr& each : sections[headings - 1])
                        if (all || line.find("INSERT") < 2)
                            each->executeNative(fromUtf8(line));
        for (const Database each : everyDatabase)
            baseOf(school, each)->executeNative(u"COMMIT");
    }

    /// Whether each table of the one is in the other, with the same columns in the same order.
    static void expectIn(const School& old, const School& school)
    {
        Engine& engine = engineOf(u"sqlite:");
        for (const Database which : everyDatabase) {
            const auto there = engine.tables(*baseOf(school, which));
            for (const FoundTable& table : engine.tables(*baseOf(old, which)))
                EXPECT_TRUE(std::ranges::any_of(there, [&](const FoundTable& each) {
                    return each.name == table.name && each.columns == table.columns;
                })) << toUtf8(table.name);
        }
    }

    School madeOfOld(const char* name)
    {
        School old;
        for (const Database which : everyDatabase)
            baseOf(old, which) = engineOf(u"sqlite:").create(locationOf(urlOf(name)), which);
        replay(old, true);
        return old;
    }
};

} // namespace

TEST_F(Upgrade, a_school_of_the_first_version_is_worked_on_completed_and_stays_what_that_version_knows)
{
    const School pristine = madeOfOld("viejo.db");
    madeOfOld("c.db");
    std::ofstream guion(folder / "todo.guion");
    for (const ModuleNode& node : moduleNodes()) {
        const Long row = node.table.empty() || node.dialog == u"frmEnfermedad" ? 0 : 1;
        if (node.opens)
            guion << toUtf8(statement(u"abrir {} {} {}\ncerrar\n", {node.number, row + 1, row}));
        if (node.guards)
            guion << toUtf8(statement(u"eliminar {} 1\n", {node.number}));
    }
    for (const auto& [node, kind, act] :
         {std::tuple(130, "Educación Primaria", "celda msgValores 1 1\nelegir cboValor 0\n"),
          std::tuple(130, "Educación Secundaria Obligatoria", "escribir txtCognitiva \"Sí\"\n"),
          std::tuple(122, "Educación Secundaria Obligatoria", "elegir cboRespuesta(1) 0\n")})
        guion << "abrir " << node << " 1 0\nelegir cboTipoEnsenanza \"" << kind
              << "\"\nelegir cboCursos 0\nelegir cboSecciones 0\npulsar cmdNotaManual1(0)\n"
              << act << "pulsar cmdNotaManual1(0)\ncerrar\n";
    guion << "abrir 34 2 1\nescribir txtPais \"Otro\"\npulsar cmdPais(0)\n" << std::flush;
    const struct {
        const char* arguments;
        int code;
        const char* words;
    } steps[] = {
        {"guion --en sqlite:c.db todo.guion", 0, "cierra frmPais"},
        {"comprobar --bd sqlite:c.db", 0, "Faltan índices: Alumno (fechabaja), Materia (codTipoMateria)."},
        {"comprobar --reparar --bd sqlite:c.db", 0, "Se ha añadido: Alumno (fechabaja), Materia (codT"},
        {"comprobar --bd sqlite:c.db", 0, "hace falta.\nNo lleva historial: lo activa"},
        {"historial activar --bd sqlite:c.db", 0, "activado"},
        {"comprobar --datos --reparar --bd sqlite:c.db", 0, "Reparados: 1."},
        {"comprobar --bd sqlite:c.db", 0, "hace falta.\n"},
        {"guion --en sqlite:c.db todo.guion", 0, "cierra frmPais"},
        {"historial comprobar --bd sqlite:c.db", 0, "Cabeza:"},
        {"copia c.zvcopia --bd sqlite:c.db", 0, "omprobada"},
        {"crear --bd sqlite:hoy.db", 0, "Creado"},
    };
    for (const auto& [arguments, code, words] : steps) {
        EXPECT_EQ(run(arguments), code) << arguments << out << err;
        EXPECT_THAT(out, HasSubstr(words)) << arguments;
        EXPECT_THAT(out, Not(ContainsRegex("> error|\"ERROR"))) << arguments;
    }
    for (const char* name : {"c.db", "hoy.db"})
        expectIn(pristine, openSchool(urlOf(name)));
    replay(openSchool(urlOf("hoy.db")), false);
}

TEST_F(Upgrade, what_a_newer_version_wrote_is_refused_in_words_and_left_as_it_is)
{
    ASSERT_EQ(run("crear --bd sqlite:c.db"), 0) << err;
    ASSERT_EQ(run("copia c.zvcopia --bd sqlite:c.db"), 0) << err;
    std::string copy = contents(folder / "c.zvcopia");
    const std::size_t number = copy.find('\n') - 1;
    ASSERT_EQ(copy.substr(0, number + 2), "ZVConfiguracion copia 1\n");
    std::ofstream(folder / "c.zvcopia") << copy.replace(number, 1, "12");
    fs::create_directory(folder / "d");
    std::ofstream(folder / "d/7.diario") << "ZVDIARIO12\nlo que sea";
    openSchool(urlOf("c.db"))
        .centro->executeNative(u"ALTER TABLE HistorialCabeza ADD COLUMN Formato INTEGER NOT NULL DEFAULT 2");
    std::ofstream(folder / "nada.guion") << "eliminar 65 1\n";
    for (const char* arguments :
         {"copia c.zvcopia --comprobar", "restaurar c.zvcopia --bd sqlite:r.db",
          "guion --en sqlite:c.db nada.guion", "mudar --de sqlite:c.db --a sqlite:r.db",
          "historial ver --bd sqlite:c.db", "historial activar --bd sqlite:c.db",
          "historial desactivar --bd sqlite:c.db", "historial plazo 3 --si --bd sqlite:c.db",
          "copia otra.zvcopia --bd sqlite:c.db", "diario ver 7 --carpeta d",
          "diario exportar 7 --carpeta d"}) {
        EXPECT_EQ(run(arguments), 2) << arguments << out;
        EXPECT_THAT(err, HasSubstr("una versión más nueva de este programa")) << arguments;
    }
    EXPECT_EQ(run("diario lista --carpeta d"), 0);
    EXPECT_THAT(out, HasSubstr("7: lo escribió una versión más nueva"));
    EXPECT_EQ(contents(folder / "d/7.diario"), "ZVDIARIO12\nlo que sea");
    EXPECT_FALSE(fs::exists(folder / "r.db") || fs::exists(folder / "otra.zvcopia"));
}
