#include "care/copies/Contents.h"
#include "care/joins/Join.h"
#include "care/joins/JoinRecord.h"
#include "care/joins/LookAlike.h"
#include "data/Statement.h"
#include "data/history/HistoryEngine.h"
#include "data/history/Rows.h"
#include "data/history/Undo.h"
#include "estaciones/Stations.h"
#include "runtime/Convert.h"
#include "session/HostSession.h"
#include "session/cAsignarDatos.h"
#include "suite/Registrations.h"
#include "suite/sodium/KeyFile.h"

#include <csignal>
#include <random>
#include <regex>

namespace zv {
namespace {

using care::Pair;
using history::Fields;

String plain(const Value& text) { return String() + text; }

const ModuleNode& nodeFor(StringView table)
{
    return *std::ranges::find_if(moduleNodes(),
                                 [&](const ModuleNode& each) { return sameName(each.table, table); });
}

/// People who join rows of a school's lists, on each engine.
class Joins : public Stations {
protected:
    Joins()
    {
        registerEngine(sqliteEngine(Durability::off));
        registerEngine(historyEngine());
        createSchool(url);
    }
    School open() const { return history::withHistory(openSchool(url), url); }
    care::Joiner joiner(School& school) const
    {
        return {school, url, {.user = 3, .userName = u"ana", .station = u"puesto"}};
    }
    /// All but what belongs to the history and to the records; the live database's alone, or of both.
    std::vector<care::TableContents> contents(bool both = true) const
    {
        std::vector<care::TableContents> all = care::contentsOf(inspectSchool(url), engineOf(url));
        std::erase_if(all, [&](const care::TableContents& each) {
            return each.table.starts_with(u"historial") || each.table == u"registrounion" || each.rows == 0 ||
                   (!both && each.database != Database::centro);
        });
        return all;
    }
    /// Rows in the node's list and in all that refer to it, by chance.
    void fill(Connection& base, const ModuleNode& node, Long rows)
    {
        for (Long key = 1; key <= 3; ++key)
            insert(base, *schema::table(node.table), key, node.table, 0);
        for (const care::Reference& each : care::referencesTo(node.table))
            for (Long row = 1; row <= rows; ++row)
                insert(base, *each.table, row, node.table, 3);
    }
    void insert(Connection& base, const schema::Table& table, Long key, StringView target, Long most)
    {
        String values;
        for (const schema::Column& column : table.columns()) {
            const bool isKey = &column == &table.columns().front() && table.key != schema::Key::repeated;
            const bool refers = sameName(column.refersTo, target) && most != 0;
            const Value text = u"'" + decimalText(key) + u"'";
            values += (values.empty() ? u"" : u",") +
                      (isKey                                       ? literal(key)
                       : column.type == schema::Type::text         ? plain(text).substr(0, 9)
                       : refers                                    ? literal(chance(most) + 1)
                       : table.key == schema::Key::repeated        ? literal(chance(2) + 1)
                       : column.refersTo.empty() || chance(3) != 0 ? literal(Long{1})
                                                                   : String(u"NULL"));
        }
        base.executeNative(u"INSERT INTO " + String(table.name) + u" VALUES (" + values + u")");
    }
    /// Rows that stand in a list twice, and what refers to them.
    School withDoubles() const
    {
        School school = open();
        for (const StringView each :
             {u"INSERT INTO EstadoCivil VALUES (1,'Soltero'),(2,'soltero '),(3,'Casado')",
              u"INSERT INTO Idioma VALUES (1,'Inglés'),(2,'ingles')",
              u"INSERT INTO TipoRespInfInd VALUES (1,1,'Bien'),(2,2,'bien')",
              u"INSERT INTO Banco VALUES (1,'Uno','0001'),(2,'Dos','0002')",
              u"INSERT INTO Sucursal (IDSucursal,CodBanco,Codigo) VALUES (1,1,'7'),(2,2,'7'),(3,2,'8')",
              u"INSERT INTO Presentador (IDPresentador,CodBanco) VALUES (1,2)",
              u"INSERT INTO Personal (IDPersonal,CodEstadoCivil,Nombre) VALUES (1,2,'Ana'),(2,2,'Eva')"})
            school.centro->executeNative(each);
        return school;
    }
    const Pair couple{&nodeFor(u"EstadoCivil"), 1, 2}; ///< Of those.
    Long chance(Long below) { return static_cast<Long>(numbers() % static_cast<std::uint32_t>(below)); }
    void empty(School& school, const ModuleNode& node) const
    {
        for (const ConnectionPtr& base : {openSchool(url).centro, school.borrado}) {
            base->executeNative(u"DELETE FROM " + String(node.table));
            for (const care::Reference& each : care::referencesTo(node.table))
                base->executeNative(u"DELETE FROM " + String(each.table->name));
        }
    }

    std::mt19937 numbers{seedOr(11)};
};

using Texts = std::multiset<String>;

/// The rows of the tables that refer to the node, as texts; with `pair`, as they are to be after it.
std::map<String, Texts> referring(Connection& base, const ModuleNode& node, const Pair* pair = nullptr)
{
    std::map<String, Texts> found;
    for (const care::Reference& each : care::referencesTo(node.table)) {
        std::vector<String> columns;
        for (const schema::Column& column : each.table->columns())
            columns.emplace_back(column.name);
        Texts& texts = found[String(each.table->name)];
        texts.clear();
        for (Fields& row : history::rowsOf(base, each.table->name, columns, u"")) {
            for (history::Field& field : row)
                for (const care::Reference& other : care::referencesTo(node.table))
                    if (pair != nullptr && other.table == each.table &&
                        sameName(other.column, field.column) && history::same(field.value, Value(pair->goes)))
                        field.value = pair->stays;
            const String text = history::textOf(row);
            // A pair that stands twice says nothing more than one.
            if (each.table->key != schema::Key::repeated || !texts.contains(text))
                texts.insert(text);
        }
    }
    return found;
}

TEST_P(Joins, move_every_reference_lose_none_and_are_undone_to_the_last_byte)
{
    std::vector<const ModuleNode*> lists;
    for (const ModuleNode& each : moduleNodes())
        if (!each.table.empty())
            lists.push_back(&each);
    for (const bool remembers : {false, true}) {
        if (remembers)
            history::activate(*openSchool(url).centro);
        School school = open();
        const auto* const history = history::historyOf(school.centro);
        ASSERT_EQ(history != nullptr, remembers);
        for (int trial = 0; trial < (GetParam() == "sqlite" ? times(40, 5000) : times(5, 500)); ++trial) {
            const ModuleNode& node =
                *lists[static_cast<std::size_t>(chance(static_cast<Long>(lists.size())))];
            SCOPED_TRACE(toUtf8(node.table) + to_string(trial));
            Connection& raw = remembers ? *history->inner() : *school.centro;
            fill(raw, node, 1 + chance(6));
            fill(*school.borrado, node, chance(4));
            school.borrado->executeNative(u"DELETE FROM " + String(node.table));
            if (node.table == u"TipoRespInfInd" || node.table == u"ConsejoOrientador_Respuesta")
                raw.executeNative(u"UPDATE " + String(node.table) + u" SET " +
                                  String(schema::table(node.table)->columns()[1].name) + u"=1");
            const Pair pair{&node, 1 + chance(2), 3};
            const auto before = contents();
            const auto expected = referring(raw, node, &pair);
            const auto binned = referring(*school.borrado, node, &pair);
            const Long number = care::join(joiner(school), pair);
            EXPECT_EQ(referring(raw, node), expected);
            EXPECT_EQ(referring(*school.borrado, node), binned);
            EXPECT_TRUE(care::referrers(raw, node.table, 3, care::Parts::refer).empty());
            EXPECT_TRUE(care::referrers(*school.borrado, node.table, 3, care::Parts::refer).empty());
            EXPECT_EQ(care::countOf(raw, node.table, node.key(), 3), 0);
            if (remembers && chance(2) == 0) {
                // By the history alone; the record follows.
                const Long opening =
                    CLng(raw.executeNative(u"SELECT MAX(Apertura) FROM HistorialAsiento")->row()[0]);
                EXPECT_TRUE(history::undo(*history::historyOf(school.centro), {.opening = opening}, {})
                                .obstacles.empty());
                care::settleJoins(joiner(school));
            } else {
                EXPECT_EQ(care::undoJoin(joiner(school), number), 0);
            }
            ASSERT_EQ(care::differences(before, contents()), std::vector<String>());
            EXPECT_TRUE(care::joins(joiner(school)).empty());
            empty(school, node);
        }
    }
}

TEST_P(Joins, that_die_are_whole_or_not_at_all)
{
    const ModuleNode& node = nodeFor(u"TipoNivelEstudios");
    {
        School school = open();
        fill(*school.centro, node, 900);
        fill(*school.borrado, node, 300);
        school.borrado->executeNative(u"DELETE FROM TipoNivelEstudios");
    }
    const auto before = contents();
    const std::string order = "unir --nodo 48 --queda 1 --sobra 3";
    const auto begun = std::chrono::steady_clock::now();
    ASSERT_EQ(zvconf(order), 0) << said;
    const auto lasts =
        static_cast<Long>((std::chrono::steady_clock::now() - begun) / std::chrono::microseconds(1));
    const auto after = contents();
    ASSERT_EQ(zvconf("unir --deshacer 1"), 0) << said;
    ASSERT_EQ(care::differences(before, contents()), std::vector<String>());
    int killed = 0, joined = 0, torn = 0;
    for (int trial = 0; trial < deaths(GetParam() == "sqlite" ? 12 : 4, 200); ++trial) {
        // A process of its own, whose registrations go with it.
        const pid_t station = fork();
        if (station == 0) {
            static_cast<void>(!freopen("/dev/null", "w", stdout));
            execl(ZVCONF, ZVCONF, "unir", "--nodo", "48", "--queda", "1", "--sobra", "3", "--bd",
                  toUtf8(url).c_str(), nullptr);
            _exit(EXIT_FAILURE);
        }
        usleep(static_cast<useconds_t>(chance(lasts)));
        kill(station, SIGKILL);
        int status = 0;
        waitpid(station, &status, 0);
        killed += wasKilled(status) ? 1 : 0;
        School school = open();
        torn += contents() == before || contents() == after ? 0 : 1;
        care::settleJoins(joiner(school));
        const auto now = contents();
        const std::vector<care::Joined> done = care::joins(joiner(school));
        ASSERT_TRUE(now == (done.empty() ? before : after)) << trial;
        joined += done.empty() ? 0 : 1;
        if (!done.empty()) {
            ASSERT_EQ(care::undoJoin(joiner(school), done.front().number), 0);
            ASSERT_EQ(care::differences(before, contents()), std::vector<String>());
        }
    }
    std::cout << killed << " killed, " << joined << " joined, " << torn << " between the two databases\n";
    EXPECT_GT(killed, 0);
}

TEST_P(Joins, are_refused_with_the_reason_and_change_nothing)
{
    School school = withDoubles();
    Connection& centro = *school.centro;
    struct {
        const char* what;
        StringView prepares;
        Pair pair;
        StringView says;
        StringView mends;
    } const cases[] = {
        {"one", u"", {&nodeFor(u"EstadoCivil"), 1, 1}, u"misma fila", u""},
        {"none", u"", {&nodeFor(u"EstadoCivil"), 1, 9}, u"no hay ninguna fila con el número 9", u""},
        {"questions", u"", {&nodeFor(u"TipoRespInfInd"), 1, 2}, u"preguntas distintas", u""},
        {"open", u"INSERT INTO RegistroActivo VALUES ('frmEstadoCivil',1,3,'otra 1 1',CURRENT_TIMESTAMP)",
         couple, u"La fila 1 la tiene abierta el usuario 3, en el puesto otra",
         u"DELETE FROM RegistroActivo"},
        {"banks", u"", {&nodeFor(u"Banco"), 1, 2}, u"parecen dos bancos distintos", u""},
        {"branches", u"", {&nodeFor(u"Banco"), 1, 2}, u"mismo código (7)", u""},
        {"who refers",
         u"INSERT INTO RegistroActivo VALUES ('frmPresentador',1,3,'x/1',CURRENT_TIMESTAMP)",
         {&nodeFor(u"Banco"), 1, 2},
         u"en el puesto x: si la guarda",
         u"DELETE FROM RegistroActivo"},
        {"table", u"CREATE TABLE Ajena (de_quien INTEGER)", couple, u"", u"INSERT INTO Ajena VALUES (2)"},
        {"its row", u"", couple, u"La columna de_quien de la tabla ajena", u"DROP TABLE Ajena"},
        {"column", u"ALTER TABLE Tarea ADD COLUMN estado TEXT", couple, u"",
         u"INSERT INTO Tarea VALUES (1,1,1,'x','12, 2 ')"},
        {"its text", u"", couple, u"La columna estado de la tabla tarea", u"DELETE FROM Tarea"},
        {"pair",
         u"ALTER TABLE Centro_Idioma ADD COLUMN nota TEXT",
         {&nodeFor(u"Idioma"), 1, 2},
         u"",
         u"INSERT INTO Centro_Idioma VALUES (1,1,'a'),(2,1,'b')"},
        {"its texts", u"", {&nodeFor(u"Idioma"), 1, 2}, u"Nota: «b»", u"DELETE FROM Centro_Idioma"}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        if (!each.prepares.empty())
            centro.executeNative(each.prepares);
        const auto before = contents();
        const care::JoinPlan plan = care::planOf(joiner(school), each.pair);
        String told;
        for (const String& line : plan.obstacles)
            told += line + u'\n';
        for (const String& line : plan.warnings)
            told += line + u'\n';
        EXPECT_EQ(told.empty(), each.says.empty()) << toUtf8(told);
        EXPECT_NE(lowerName(told).find(lowerName(each.says)), String::npos) << toUtf8(told);
        if (!plan.obstacles.empty()) {
            EXPECT_THROW(care::join(joiner(school), each.pair), RuntimeError);
            EXPECT_EQ(care::differences(before, contents()), std::vector<String>());
        }
        if (!each.mends.empty())
            centro.executeNative(each.mends);
    }
    EXPECT_TRUE(registrations(centro).empty());
}

TEST_P(Joins, undone_leave_what_somebody_changed_since_and_count_it)
{
    School school = withDoubles();
    Connection& centro = *school.centro;
    EXPECT_EQ(care::planOf(joiner(school), couple).moves.front().examples,
              (std::vector<String>{u"Ana", u"Eva"}));
    const Long number = care::join(joiner(school), couple);
    centro.executeNative(u"UPDATE Personal SET CodEstadoCivil=3 WHERE IDPersonal=1");
    centro.executeNative(u"INSERT INTO EstadoCivil VALUES (2,'Otro')");
    EXPECT_THROW(care::undoJoin(joiner(school), number), RuntimeError) << "its number is taken meanwhile";
    centro.executeNative(u"DELETE FROM EstadoCivil WHERE IDEstadoCivil=2");
    EXPECT_EQ(care::undoJoin(joiner(school), number), 1);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM Personal WHERE CodEstadoCivil=2"), 1);
    EXPECT_TRUE(registrations(centro).empty());
}

TEST_P(Joins, of_the_same_rows_are_undone_backwards_and_make_no_pair_that_somebody_removed)
{
    School school = withDoubles();
    Connection& centro = *school.centro;
    centro.executeNative(u"UPDATE Personal SET CodEstadoCivil=3 WHERE IDPersonal=1");
    const auto before = contents();
    const Long earlier = care::join(joiner(school), couple);
    const Long later = care::join(joiner(school), {couple.node, 3, 1});
    EXPECT_THROW(care::undoJoin(joiner(school), earlier), RuntimeError);
    EXPECT_EQ(care::undoJoin(joiner(school), later), 0);
    EXPECT_EQ(care::undoJoin(joiner(school), earlier), 0);
    EXPECT_EQ(care::differences(before, contents()), std::vector<String>());
    centro.executeNative(u"ALTER TABLE Centro_Idioma ADD COLUMN nota TEXT");
    for (const bool forgets : {false, true}) {
        centro.executeNative(u"INSERT INTO Centro_Idioma VALUES (1,1,'a'),(2,1,'a')");
        const Long languages = care::join(joiner(school), {&nodeFor(u"Idioma"), 1, 2});
        if (!forgets)
            centro.executeNative(u"DELETE FROM Centro_Idioma");
        EXPECT_EQ(care::keptAbout(*school.borrado, *schema::table(u"Idioma"), 2, forgets), 1);
        EXPECT_EQ(care::undoJoin(joiner(school), languages), 1);
        EXPECT_EQ(one(u"SELECT COUNT(*) FROM Centro_Idioma"), forgets ? 1 : 0);
    }
}

/// What the guards look at is in the table of references, so that no column is forgotten.
TEST_P(Joins, know_every_column_that_a_guard_asks)
{
    School school = openSchool(url);
    std::vector<std::string> queries;
    school.centro =
        std::make_shared<Watched>(school.centro, [&](const std::string& what, StringView statement) {
            if (what == "va")
                queries.push_back(toUtf8(lowerName(statement)));
        });
    const auto session = newHostSession(school);
    let(*session, u"lngRowData", Long{3});
    cAsignarDatos host;
    host.ObtenerDatos(session);
    std::size_t asked = 0;
    for (const ModuleNode& node : moduleNodes()) {
        // The guard of the provinces is that of the countries.
        if (!node.guards || node.table == u"Provincia")
            continue;
        queries.clear();
        host.Eliminar(node.number);
        std::set<std::string> known;
        for (const StringView table : {node.table, StringView(node.table == u"Banco" ? u"Sucursal" : u"")})
            for (const care::Reference& each : care::referencesTo(table))
                known.insert(toUtf8(lowerName(each.column)));
        known.insert(toUtf8(lowerName(node.key()))); // By way of the row itself.
        const std::regex condition("(\\w+)\\s*=\\s*3\\b");
        for (const std::string& query : queries)
            for (auto at = std::sregex_iterator(query.begin(), query.end(), condition);
                 at != std::sregex_iterator(); ++at, ++asked)
                EXPECT_TRUE(known.contains((*at)[1])) << query;
    }
    EXPECT_GT(asked, 25U);
}

/// What a person types who does not see that it is there already.
String typedAgain(const String& name, std::mt19937& numbers)
{
    static const std::u16string_view accents[] = {u"áa", u"ée", u"íi", u"óo", u"úu",
                                                  u"üu", u"èe", u"àa", u"òo"};
    String result;
    for (const char16_t unit : name) {
        String letter(1, unit);
        for (const auto& each : accents)
            if (unit == each[0] && numbers() % 2 == 0)
                letter = each[1];
            else if (unit == each[1] && numbers() % 12 == 0)
                letter = each[0];
            else if (unit == each[1] && numbers() % 12 == 0)
                letter += char16_t{0x301};
        if (letter[0] >= u'a' && letter[0] <= u'z' && numbers() % 4 == 0)
            letter[0] = static_cast<char16_t>(letter[0] - 32);
        result += letter;
        if (unit == u' ' && numbers() % 3 == 0)
            result += numbers() % 2 == 0 ? u' ' : u'\u00A0';
    }
    return numbers() % 3 == 0 ? result + u" " : numbers() % 3 == 0 ? u" " + result : result;
}

TEST_P(Joins, are_offered_for_rows_that_look_alike_and_for_no_others)
{
    School school = openSchool(url);
    fillSampleSchool(school);
    std::size_t planted = 0, found = 0, others = 0;
    while (planted < 500)
        for (const ModuleNode& node : moduleNodes()) {
            if (node.table.empty() || node.table == u"Enfermedad" || planted >= 500)
                continue;
            const schema::Table& table = *schema::table(node.table);
            std::vector<String> columns;
            for (const schema::Column& each : table.columns())
                columns.emplace_back(each.name);
            const std::vector<Fields> rows = history::rowsOf(*school.centro, node.table, columns, u"");
            std::set<Long> again;
            for (const Fields& each : rows) {
                Fields row = each;
                const auto name = std::ranges::find_if(
                    row, [](const history::Field& field) { return field.value.as<String>() != nullptr; });
                const String text = typedAgain(*name->value.as<String>(), numbers);
                const Long key = 20000 + static_cast<Long>(planted);
                if (planted >= 500 || text == *name->value.as<String>() || text.size() > 30)
                    continue;
                name->value = text;
                row.front().value = key;
                ++planted;
                again.insert(key);
                String values;
                for (const history::Field& field : row)
                    values += (values.empty() ? u"" : u",") + literal(field.value);
                school.centro->executeNative(u"INSERT INTO " + String(node.table) + u" VALUES (" + values +
                                             u")");
            }
            for (const care::Alike& alike : care::lookAlikes(*school.centro, node, plain))
                ++(again.erase(alike.pair.goes) + again.erase(alike.pair.stays) != 0 ? found : others);
            school.centro->executeNative(u"DELETE FROM " + String(node.table) + u" WHERE " +
                                         String(node.key()) + u">=20000");
        }
    std::cout << found << " of " << planted << " found, " << others << " others\n";
    EXPECT_GE(found * 100, planted * 95);
    EXPECT_LE(others * 100, planted * 5);
    for (const auto& [one, other, alike] : {std::tuple(u"Año", u"Ano", false),
                                            {u"an\u0303o", u"AÑO", true},
                                            {u"an\u0303o", u"ano", false},
                                            {u"Caça", u"caca", false},
                                            {u"1 1", u"11", false},
                                            {u"Straße", u"STRASSE", true},
                                            {u"3º", u"3o", true},
                                            {u"Łódź", u"lodz", true},
                                            {u"a\u200Bb", u"AB", true}})
        EXPECT_EQ(care::folded(one) == care::folded(other), alike) << toUtf8(one);
    // What counts differently is not one, whatever its name.
    school.centro->executeNative(u"DELETE FROM TipoIva");
    school.centro->executeNative(
        u"INSERT INTO TipoIva VALUES (1,'General','16'),(2,'general','21'),(3,'GENERAL','21'),"
        u"(4,'','21'),(5,' ','21')");
    EXPECT_EQ(care::lookAlikes(*school.centro, nodeFor(u"TipoIva"), plain).size(), 1U);
}

TEST_P(Joins, are_ordered_shown_and_undone_by_the_command_line)
{
    openSchool(url).centro->executeNative(u"INSERT INTO EstadoCivil VALUES (1,'Soltero'),(2,'soltero ')");
    const auto before = contents();
    struct {
        const char* arguments;
        int status;
        const char* says;
    } const cases[] = {{"--parecidas", 1, "--nodo 65 --queda 1 --sobra 2"},
                       {"--nodo 65 --queda 1 --sobra 2 --ensayo", 0, "sin --ensayo"},
                       {"--hechas", 0, "ninguna"},
                       {"--nodo 65 --queda 1 --sobra 2", 0, "--deshacer 1"},
                       {"--nodo 65 --queda 1 --sobra 2", 1, "ninguna fila con el número 2"},
                       {"--hechas", 0, "«soltero » (2) se unió a 1"},
                       {"--parecidas --nodo 65", 0, "No hay filas"},
                       {"--deshacer 1 --ensayo", 2, "--ensayo no se usa con"},
                       {"--deshacer 1", 0, "como estaba"},
                       {"--deshacer 1", 2, "ninguna unión 1"},
                       {"--nodo 65 --queda 1 --sobra 2", 0, "--deshacer 2"},
                       {"--deshacer 2", 0, "como estaba"},
                       {"--nodo 122 --queda 1 --sobra 2", 2, "no es el número de una lista"},
                       {"--parecidas --hechas", 2, "unir quiere una de"}};
    for (const auto& each : cases) {
        EXPECT_EQ(zvconf(std::string("unir ") + each.arguments), each.status) << each.arguments << said;
        EXPECT_THAT(said, testing::HasSubstr(each.says));
    }
    EXPECT_EQ(care::differences(before, contents()), std::vector<String>());
    // A key that is changed meanwhile opens what comes back too.
    setenv("ZV_CLAVE", (folder / "clave").c_str(), 1);
    ASSERT_EQ(shell(ZVCONF " clave crear"), 0) << said;
    const auto sealed = [](StringView text) { return textLiteral(readKey(keyPlace()).seal(text)); };
    openSchool(url).centro->executeNative(u"INSERT INTO Enfermedad VALUES (1," + sealed(u"Asma") +
                                          u",NULL),(2," + sealed(u"asma") + u"," + sealed(u"leve") + u")");
    for (const char* each : {"unir --nodo 57 --queda 1 --sobra 2", "clave cambiar", "unir --deshacer 3"})
        ASSERT_EQ(zvconf(each), 0) << said;
    const auto back = openSchool(url).centro->executeNative(u"SELECT * FROM Enfermedad WHERE IDEnfermedad=2");
    EXPECT_EQ(readKey(keyPlace()).open(plain(back->row()[1])), u"asma");
    EXPECT_EQ(readKey(keyPlace()).open(plain(back->row()[2])), u"leve");
}

INSTANTIATE_TEST_SUITE_P(, Joins, testing::Values("sqlite", "postgres", "mariadb"),
                         [](const auto& each) { return each.param; });

} // namespace
} // namespace zv
