#include "data/NumberOf.h"
#include "data/sqlite/SqliteEngine.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "runtime/CreateObject.h"
#include "services/cCentroApi.h"
#include "suite/CentroApi.h"
#include "suite/Registrations.h"

#include <filesystem>
#include <set>

namespace zv {
namespace {

using namespace std::string_literals;

ConnectionPtr database(std::initializer_list<StringView> statements = {})
{
    auto connection = sqliteEngine()->temporary(u"", Database::centro);
    for (const StringView sql : statements)
        connection->executeNative(sql);
    return connection;
}

TEST(IDMax, is_one_above_the_largest_key_of_both_databases)
{
    constexpr StringView table = u"CREATE TABLE Pais (IDPais INTEGER)";
    const auto centro = database({table});
    const auto borrado = database({table});
    const auto next = [&] { return CentroApi().IDMax(*centro, *borrado, u"Pais", u"IDPais"); };
    EXPECT_EQ(next(), 1);
    borrado->executeNative(u"INSERT INTO Pais VALUES (-4)");
    EXPECT_EQ(next(), -3);
    centro->executeNative(u"INSERT INTO Pais VALUES (1),(70000)");
    EXPECT_EQ(next(), 70001);
    borrado->executeNative(u"INSERT INTO Pais VALUES (90000)");
    EXPECT_EQ(next(), 90001);
    centro->executeNative(u"INSERT INTO Pais VALUES (2147483647)");
    EXPECT_EQ(numberOf(next), failure::overflow);
    EXPECT_EQ(numberOf([&] { CentroApi().IDMax(*centro, *database(), u"Pais", u"IDPais"); }),
              failure::tableMissing);
}

/// A connection on which other stations act just before a statement that holds a pattern.
class Interrupted final : public ConnectionDecorator {
public:
    Interrupted(ConnectionPtr inner, StringView pattern, std::function<void()> act)
        : ConnectionDecorator(std::move(inner)), pattern_(pattern), act_(std::move(act))
    {}
    RecordsetPtr Execute(StringView sql) override
    {
        if (act_ && sql.find(pattern_) != StringView::npos)
            std::exchange(act_, nullptr)();
        return inner()->Execute(sql);
    }

private:
    String pattern_;
    std::function<void()> act_;
};

class RowRegister : public testing::Test {
protected:
    Station station(const String& name)
    {
        return {name, [this](StringView other) { return ended.contains(String(other)); }};
    }
    /// "user@station" of each registered row.
    std::vector<String> holders()
    {
        std::vector<String> result;
        for (const Registration& r : registrations(*centro))
            result.push_back(r.form + u" " + decimalText(r.row) + u" " + decimalText(r.user) + u"@" +
                             r.station);
        return result;
    }
    using Lines = std::vector<String>;

    std::set<String> ended;
    ConnectionPtr centro = database();
    CentroApi first{station(u"uno")};
    CentroApi second{station(u"dos")};
};

TEST_F(RowRegister, a_row_belongs_to_one_user_until_his_station_frees_it)
{
    EXPECT_EQ(holders(), Lines{}) << "no table yet";
    EXPECT_FALSE(release(*centro, u"frmPais", 3));
    EXPECT_EQ(releaseAll(*centro), 0);
    first.EliminarRegistroActivo(*centro, u"frmPais", 3);

    EXPECT_FALSE(first.registroactivo(*centro, u"frmPais", 3, 7));
    EXPECT_TRUE(second.registroactivo(*centro, u"frmPais", 3, 8));
    EXPECT_FALSE(second.registroactivo(*centro, u"frmTurno", 3, 8)) << "another form's row";
    EXPECT_FALSE(second.registroactivo(*centro, u"frmPais", 4, 8));
    second.EliminarRegistroActivo(*centro, u"frmPais", 3);
    EXPECT_EQ(holders(), (Lines{u"frmPais 3 7@uno", u"frmPais 4 8@dos", u"frmTurno 3 8@dos"}));

    EXPECT_FALSE(second.registroactivo(*centro, u"frmPais", 3, 7)) << "the same user gets his own row again";
    first.EliminarRegistroActivo(*centro, u"frmPais", 3);
    EXPECT_EQ(holders().front(), u"frmPais 3 7@dos");
    second.EliminarRegistroActivo(*centro, u"frmPais", 3);
    EXPECT_EQ(holders(), (Lines{u"frmPais 4 8@dos", u"frmTurno 3 8@dos"}));

    EXPECT_TRUE(release(*centro, u"frmPais", 4));
    EXPECT_FALSE(release(*centro, u"frmPais", 4));
    EXPECT_FALSE(first.registroactivo(*centro, u"o'brien", -1, -2)) << "a name may hold an apostrophe";
    EXPECT_EQ(registrations(*centro)[1].moment.size(), 19U);
    EXPECT_EQ(releaseAll(*centro), 2);
}

TEST_F(RowRegister, what_a_station_that_is_gone_left_is_taken_over)
{
    first.registroactivo(*centro, u"frmPais", 3, 7);
    ended.insert(u"uno");
    EXPECT_FALSE(second.registroactivo(*centro, u"frmPais", 3, 8));
    EXPECT_EQ(holders(), Lines{u"frmPais 3 8@dos"});
    EXPECT_TRUE(CentroApi(station(u"tres")).registroactivo(*centro, u"frmPais", 3, 9));
}

TEST_F(RowRegister, a_station_that_nobody_sees_keeps_its_rows_by_signs_of_life)
{
    const auto begun = [&](int minutes, StringView signs = {}) {
        centro->Execute(u"UPDATE RegistroActivo SET Momento=datetime('now','-" + decimalText(Long{minutes}) +
                        u" minutes')||'" + String(signs) + u"'");
    };
    const auto asked = [&](Integer user) { return second.registroactivo(*centro, u"frmPais", 3, user); };
    first.registroactivo(*centro, u"frmPais", 3, 7);
    for (const auto& [minutes, signs] : {std::pair(14, u""), {600, u"+590"}, {-60, u""}, {-60, u"+5"}}) {
        begun(minutes, signs);
        EXPECT_TRUE(asked(8)) << minutes;
    }
    begun(600, u"+17");
    giveSign(*centro, station(u"tres"));
    EXPECT_TRUE(registrations(*centro)[0].gone) << "no sign of its own";
    giveSign(*centro, station(u"uno"));
    EXPECT_FALSE(registrations(*centro)[0].gone);
    EXPECT_TRUE(asked(8));
    begun(600, u"+17");
    Interrupted late(centro, u"UPDATE RegistroActivo SET IDUsuario",
                     [&] { giveSign(*centro, station(u"uno")); });
    EXPECT_TRUE(second.registroactivo(late, u"frmPais", 3, 8)) << "the sign came in time";
    begun(600, u"+17");
    const auto seen = [](StringView) { return true; };
    EXPECT_TRUE(CentroApi({u"vecina", [](StringView) { return false; }, seen})
                    .registroactivo(*centro, u"frmPais", 3, 8));
    EXPECT_FALSE(asked(8));
    EXPECT_EQ(holders(), Lines{u"frmPais 3 8@dos"});
    centro->Execute(u"UPDATE RegistroActivo SET Momento='ayer'");
    giveSign(*centro, station(u"dos"));
    EXPECT_TRUE(first.registroactivo(*centro, u"frmPais", 3, 7)) << "what tells no time proves nothing";
}

TEST_F(RowRegister, a_station_elsewhere_is_gone_when_neither_what_it_did_nor_its_rows_are_new)
{
    first.registroactivo(*centro, u"frmPais", 3, 7);
    const auto gone = [&](const String& station, int rowAge, int age) {
        centro->Execute(u"UPDATE RegistroActivo SET Momento=datetime('now','-" + decimalText(Long{rowAge}) +
                        u" minutes')");
        return goneStations(*centro)(station, timeHere() - std::chrono::minutes(age));
    };
    EXPECT_TRUE(gone(u"uno", 20, 20));
    EXPECT_FALSE(gone(u"uno", 20, 14));
    EXPECT_FALSE(gone(u"uno", 14, 20));
    EXPECT_TRUE(gone(u"dos", 14, 20)) << "another's row";
    EXPECT_FALSE(gone(thisStation().identity, 600, 600)) << "it runs";
    centro->Execute(u"DROP TABLE RegistroActivo");
    EXPECT_FALSE(goneStations(*centro)(u"dos", timeHere()));
}

TEST_F(RowRegister, other_stations_may_act_between_two_statements)
{
    const CentroApi third{station(u"tres")};
    first.registroactivo(*centro, u"frmPais", 3, 7);
    Interrupted freed(centro, u"SELECT", [&] { first.EliminarRegistroActivo(*centro, u"frmPais", 3); });
    EXPECT_FALSE(second.registroactivo(freed, u"frmPais", 3, 8));
    EXPECT_EQ(holders(), Lines{u"frmPais 3 8@dos"});

    ended.insert(u"dos");
    Interrupted overtaken(centro, u"UPDATE", [&] { third.registroactivo(*centro, u"frmPais", 3, 9); });
    EXPECT_TRUE(first.registroactivo(overtaken, u"frmPais", 3, 7));
    EXPECT_EQ(holders(), Lines{u"frmPais 3 9@tres"});
}

TEST_F(RowRegister, is_never_granted_by_a_database_that_fails)
{
    for (const StringView failing : {u"INSERT", u"SELECT", u"UPDATE"}) {
        releaseAll(*centro);
        first.registroactivo(*centro, u"frmPais", 3, 7);
        ended = {u"uno"};
        Interrupted broken(centro, failing,
                           [] { throw DataError(failure::locked, "5", u"database is locked", u""); });
        EXPECT_EQ(numberOf([&] { second.registroactivo(broken, u"frmPais", 3, 8); }), failure::locked);
        EXPECT_EQ(holders(), Lines{u"frmPais 3 7@uno"});
    }
    const auto unusable = database({u"CREATE VIEW RegistroActivo AS SELECT 1 AS Fila"});
    EXPECT_NE(numberOf([&] { first.registroactivo(*unusable, u"frmPais", 3, 7); }), 0);
}

TEST(Station, tells_only_of_what_it_can_know_that_it_is_gone)
{
    const Station& here = thisStation();
    ASSERT_TRUE(std::filesystem::exists("/proc/self/stat"));
    std::vector<String> parts(1);
    for (const char16_t c : here.identity)
        if (c == u'/')
            parts.emplace_back();
        else
            parts.back() += c;
    ASSERT_EQ(parts.size(), 5U);
    const auto with = [&](std::size_t part, StringView value, StringView process) {
        auto changed = parts;
        changed[1] = process;
        changed[part] = value;
        return changed[0] + u"/" + changed[1] + u"/" + changed[2] + u"/" + changed[3] + u"/" + changed[4];
    };
    constexpr StringView noProcess = u"4194305";
    EXPECT_FALSE(here.gone(here.identity));
    EXPECT_TRUE(here.alive(here.identity));
    EXPECT_FALSE(here.alive(with(0, u"otro-equipo", parts[1])));
    EXPECT_FALSE(here.alive(with(1, noProcess, noProcess)));
    EXPECT_FALSE(here.gone(with(0, u"otro-equipo", noProcess)));
    EXPECT_FALSE(here.gone(with(4, u"otra-maquina", noProcess)));
    EXPECT_FALSE(here.gone(u"")) << "no identity of ours";
    EXPECT_FALSE(here.gone(with(1, noProcess, noProcess) + u"/mas"));
    EXPECT_TRUE(here.gone(with(1, noProcess, noProcess)));
    EXPECT_TRUE(here.gone(with(2, u"1", parts[1]))) << "the number is another process's now";
    EXPECT_TRUE(here.gone(with(3, u"00000000", parts[1]))) << "the machine has been started again";
    EXPECT_LE(here.identity.size(), 200U);
}

class SuiteForm final : public Form {
public:
    SuiteForm() : Form(u"frmEmisor") {}
    TextBox txtNombre{*this, u"txtNombre"};
    TextBox txtLibre{*this, u"txtLibre"};
    ControlArray<CommandButton, 2> cmdNuevoBanco{*this, u"cmdNuevoBanco"};
    CommandButton cmdNuevo{*this, u"cmdNuevo"};
    CommandButton cmdOtro{*this, u"cmdOtro"};
};

class HelperObject : public testing::Test {
protected:
    HelperObject()
    {
        registerSuite();
        api = cCentroApi::create(u"zvapi.ccentroapi");
    }
    void safe() { api.ComprobarComilla(form.Controls); }

    SuiteForm form;
    cCentroApi api;
};

TEST_F(HelperObject, doubles_apostrophes_once_and_makes_room_for_them)
{
    form.txtNombre.MaxLength = 6;
    form.txtNombre.Text = u"d'O'ru"s;
    form.txtLibre.Text = u"'"s;
    safe();
    EXPECT_EQ(form.txtNombre.Text(), u"d''O''ru");
    EXPECT_EQ(form.txtNombre.MaxLength(), 8);
    EXPECT_EQ(form.txtLibre.Text(), u"''");
    EXPECT_EQ(form.txtLibre.MaxLength(), 0);
    safe();
    EXPECT_EQ(form.txtNombre.Text(), u"d''O''ru") << "a second attempt to write";
    form.txtNombre.Text = u"d''Oru"s;
    safe();
    EXPECT_EQ(form.txtNombre.Text(), u"d''''Oru") << "a person's own two apostrophes";
    form.txtNombre.Text = u"d''O''ru"s;
    form.txtNombre.Text = u"x"s;
    form.txtNombre.Text = u"d''''Oru"s;
    safe();
    EXPECT_EQ(form.txtNombre.Text(), u"d''''''''Oru") << "typed anew, it is a person's text";
    form.txtLibre.Text = u"sin"s;
    form.txtLibre.SelStart = 2;
    safe();
    EXPECT_EQ(form.txtLibre.SelStart(), 2);
}

TEST_F(HelperObject, denies_a_profile_its_quick_access_buttons)
{
    CommandButton* const buttons[] = {&form.cmdNuevoBanco(0), &form.cmdNuevoBanco(1), &form.cmdNuevo,
                                      &form.cmdOtro};
    for (CommandButton* button : buttons)
        button->Caption = u"..."s;
    form.cmdOtro.Caption = u"Otro"s;
    const auto entrada = database(
        {u"CREATE TABLE BotonAccesoRapido (IDPerfil INTEGER, Formulario TEXT, Boton TEXT)",
         u"INSERT INTO BotonAccesoRapido VALUES (2,'frmEmisor','CMDNUEVOBANCO(1)'), "
         u"(2,'frmemisor','cmdOtro'), "
         u"(2,'frmOtro','cmdNuevoBanco(0)'), (3,'frmEmisor','cmdNuevoBanco'), (4,'frmEmisor','cmdNuevo')"});
    const auto enabled = [&](Integer profile) {
        for (CommandButton* button : buttons)
            button->Enabled = true;
        api.Comprobar_BotonesAccesoRapido(form, entrada, profile);
        std::string result;
        for (const CommandButton* button : buttons)
            result += button->Enabled() ? '1' : '0';
        return result;
    };
    EXPECT_EQ(enabled(0) + " " + enabled(2) + " " + enabled(3) + " " + enabled(4), "1111 1011 0011 1101");
    EXPECT_EQ(numberOf([&] { api.Comprobar_BotonesAccesoRapido(form, database(), 0); }),
              failure::tableMissing);
}

TEST_F(HelperObject, refuses_what_it_cannot_use)
{
    const auto centro = database();
    const auto staff = std::make_shared<std::vector<Long>>(std::vector<Long>{1, 2, 3});
    const auto none = std::make_shared<std::vector<Long>>();
    const auto include = [&](Arguments arguments) {
        return numberOf([&] {
            call(CreateObject(u"ZVApi.cCentroApi"), u"IncluirPersonalEnActividad", std::move(arguments));
        });
    };
    EXPECT_EQ(include({centro, centro, staff, Integer{1}}), 0);
    EXPECT_EQ(include({centro, centro, none, Integer{1}}), failure::invalidCall);
    EXPECT_EQ(include({centro, centro, Long{1}, Integer{1}}), failure::typeMismatch);
    EXPECT_EQ(include({ConnectionPtr(), centro, staff, Integer{1}}), failure::noObject);
    EXPECT_EQ(include({Long{1}, centro, staff, Integer{1}}), failure::typeMismatch);
    EXPECT_EQ(include({centro, centro, staff}), failure::argumentCount);
    EXPECT_EQ(numberOf([] { call(CreateObject(u"ZVApi.cCentroApi"), u"Incluir"); }), failure::memberMissing);
}

} // namespace
} // namespace zv
