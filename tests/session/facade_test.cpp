#include "data/NumberOf.h"
#include "forms/Controls.h"
#include "forms/Desktop.h"
#include "forms/Form.h"
#include "forms/TabStrip.h"
#include "session/App.h"
#include "session/DialogDirectory.h"
#include "session/HostSession.h"
#include "session/cAsignarDatos.h"
#include "session/cConfiguracion.h"
#include "session/cNombreNodo.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

/// Closes each dialog as soon as it opens, and remembers which it was.
class ClosingDesktop final : public Desktop {
public:
    ClosingDesktop() { useDesktop(this); }
    ~ClosingDesktop() override { useDesktop(nullptr); }
    void opened(Form& form) override { shown.push_back(form.Name()); }
    void runModal(Form& form) override { form.Unload(); }
    void closed(Form&) override {}
    void messageBox(StringView, Integer, StringView) override {}
    void beep() override {}
    void doEvents() override {}
    void handlerFailed(const RuntimeError&) override {}

    std::vector<String> shown;
};

class FakeDialog final : public Form {
public:
    explicit FakeDialog(StringView name) : Form(name)
    {
        mstBanco.addTab(u"Datos Generales");
        mstBanco.addTab(u"Sucursales");
    }
    ControlArray<Frame, 2> fraBanco{*this, u"fraBanco"};
    TabStrip mstBanco{*this, u"mstBanco"};
    Property<String> gstrNomNodo{*this, u"gstrNomNodo"};
};

class Facade : public testing::Test {
protected:
    Facade()
    {
        for (const StringView name : {u"frmBanco", u"frmEstadoCivil", u"frmRespInfInd", u"frmTipoTarea",
                                      u"frmConsejoOrientador1", u"frmInformeIndividual", u"frmTurno"}) {
            FakeDialog& dialog = *forms.emplace_back(std::make_unique<FakeDialog>(name));
            dialogs().add(name, {.instance = [&dialog]() -> Form& { return dialog; },
                                 .ComprobarEliminacion =
                                     [this, &dialog] {
                                         asked.push_back(dialog.Name());
                                         return answer;
                                     }});
        }
    }
    ~Facade() override { resetSingles(); }

    ClosingDesktop desktop;
    std::vector<std::unique_ptr<FakeDialog>> forms;
    std::vector<String> asked;
    bool answer = true;
    cAsignarDatos facade;
};

TEST_F(Facade, opens_the_dialog_of_a_number_and_nothing_for_the_rest)
{
    for (const Byte silent : {Byte{0}, Byte{1}, Byte{11}, Byte{49}, cNombreNodo::Papelera, cNombreNodo::RespInfInd, Byte{255}})
        facade.ActivarFormulario(silent);
    EXPECT_TRUE(desktop.shown.empty());
    for (const Byte node : {Byte{65}, Byte{69}, Byte{30}, Byte{122}, Byte{130}, Byte{53}})
        facade.ActivarFormulario(node);
    EXPECT_EQ(desktop.shown, (std::vector<String>{u"frmEstadoCivil", u"frmRespInfInd", u"frmBanco", u"frmConsejoOrientador1",
                                                  u"frmInformeIndividual", u"frmTurno"}));
    EXPECT_TRUE(asked.empty());
}

TEST_F(Facade, asks_the_guard_without_loading_the_dialog)
{
    for (const Byte node : {Byte{0}, Byte{65}, Byte{69}, Byte{30}, Byte{53}})
        EXPECT_TRUE(facade.Eliminar(node));
    EXPECT_EQ(asked, (std::vector<String>{u"frmTipoTarea", u"frmEstadoCivil", u"frmRespInfInd", u"frmBanco", u"frmTurno"}));
    EXPECT_EQ(forms[0]->gstrNomNodo(), u"strNodoSeleccionado");
    for (const auto& form : forms)
        EXPECT_FALSE(form->loaded());
    answer = false;
    EXPECT_FALSE(facade.Eliminar(65));
    answer = true;
    asked.clear();
    for (const Byte node : {cNombreNodo::NotaConsejoOrientador, cNombreNodo::InfIndiv, cNombreNodo::RespInfInd, Byte{11}, Byte{54}})
        EXPECT_FALSE(facade.Eliminar(node));
    EXPECT_TRUE(asked.empty());
}

TEST_F(Facade, every_dialog_with_a_node_is_in_one_of_its_tables)
{
    const auto missing = [](auto&& operation) {
        int count = 0;
        for (int node = 0; node <= 255; ++node)
            try {
                operation(static_cast<Byte>(node));
            } catch (const RuntimeError& error) {
                EXPECT_EQ(error.number(), failure::classMissing);
                EXPECT_NE(error.description().find(u"frm"), String::npos) << "says which dialog";
                ++count;
            }
        return count;
    };
    EXPECT_EQ(missing([&](Byte node) { facade.ActivarFormulario(node); }) + static_cast<int>(desktop.shown.size()), 31);
    EXPECT_EQ(missing([&](Byte node) { facade.Eliminar(node); }) + static_cast<int>(asked.size()), 30);
}

TEST_F(Facade, a_bank_opens_for_its_branches_with_its_own_fields_locked)
{
    facade.BloquearBanco();
    FakeDialog& banco = *forms[0];
    EXPECT_TRUE(banco.loaded());
    EXPECT_FALSE(banco.Visible());
    EXPECT_FALSE(banco.fraBanco(0).Enabled());
    EXPECT_TRUE(banco.fraBanco(1).Enabled());
    EXPECT_EQ(banco.mstBanco.SelectedItem().Index(), 2);
}

/// Remembers in which order its members are read.
class RecordingSession final : public PropertyBag {
public:
    RecordingSession() : PropertyBag(u"Sesion") {}
    Value invoke(StringView member, Access access, Arguments& arguments) override
    {
        read.emplace_back(member);
        return PropertyBag::invoke(member, access, arguments);
    }
    std::vector<String> read;
};

class FakeConnection final : public Connection {
public:
    RecordsetPtr Execute(StringView) override { return nullptr; }
    RecordsetPtr executeNative(StringView) override { return nullptr; }
    EngineInfo engine() override { return {}; }
};

const std::vector<String> memberOrder = {
    u"RutaAplicacion", u"RutaBD", u"Activa", u"Accion", u"lngRowData", u"conexionBORRADOlocalCENTRO",
    u"conexionlocalCENTRO", u"conexionAppEntrada", u"IDPerfil", u"IDUsuario", u"IDCentro", u"IDCursoEscolar",
    u"NombreUsuario", u"NombreCentro", u"Pesetas", u"MTP", u"RutaIcono", u"sqlserver"};

std::shared_ptr<RecordingSession> fullSession(const School& school)
{
    auto session = std::make_shared<RecordingSession>();
    const Value values[] = {u"C:\\colegio", u"C:\\bd", Long{-1}, u"2", u"70000", school.borrado, school.centro, school.entrada,
                            Long{3}, u"4", Double{4.5}, Integer{6}, u"ana", u"Centro", true, Integer{1}, u"x.ico", true};
    for (std::size_t i = 0; i < memberOrder.size(); ++i)
        session->add(memberOrder[i], values[i]);
    return session;
}

TEST_F(Facade, takes_the_session_over_in_order_each_member_as_its_type)
{
    const School school{std::make_shared<FakeConnection>(), std::make_shared<FakeConnection>(), std::make_shared<FakeConnection>()};
    const auto session = fullSession(school);
    facade.ObtenerDatos(session);
    EXPECT_EQ(session->read, memberOrder);
    const cConfiguracion& c = Configuracion();
    EXPECT_EQ(single<App>().HelpFile, u"C:\\colegio\\zorvelcentro.chm");
    EXPECT_EQ(std::tie(c.RutaBD, c.strNombreUsuario, c.strNombreCentro, c.RutaIcono),
              std::make_tuple(String(u"C:\\bd"), String(u"ana"), String(u"Centro"), String(u"x.ico")));
    EXPECT_EQ(std::tie(c.Activa, c.blnPesetas, c.MTP, c.blnSQLServer), std::make_tuple(true, true, true, true));
    EXPECT_EQ(std::tie(c.bytAccion, c.lngRowData, c.intIDPerfil, c.intIDUsuario, c.intIdCentro, c.intIDCursoEscolar),
              std::make_tuple(2, 70000, 3, 4, 4, 6));
    EXPECT_EQ(std::tie(c.conLocalCentro, c.conLocalBorradoCentro, c.conLocalAppEntrada),
              std::tie(school.centro, school.borrado, school.entrada));
    EXPECT_EQ(c.datossesion, session);
}

TEST_F(Facade, a_member_that_fails_leaves_those_before_it_taken_over)
{
    EXPECT_EQ(numberOf([&] { facade.ObtenerDatos(nullptr); }), failure::noObject);
    const auto connection = std::make_shared<FakeConnection>();
    struct Case {
        StringView member;
        Value value;
        std::int32_t number;
    };
    const Case cases[] = {{u"sqlserver", Null{}, failure::invalidNull},
                          {u"IDPerfil", u"director", failure::typeMismatch},
                          {u"conexionlocalCENTRO", ObjectPtr(std::make_shared<PropertyBag>(u"Otro")), failure::typeMismatch},
                          {u"conexionAppEntrada", u"dsn", failure::typeMismatch},
                          {u"Accion", Integer{300}, failure::overflow}};
    for (const Case& wrong : cases) {
        resetSingles();
        const auto session = fullSession({connection, connection, connection});
        session->add(wrong.member, wrong.value);
        EXPECT_EQ(numberOf([&] { facade.ObtenerDatos(session); }), wrong.number) << toUtf8(wrong.member);
        EXPECT_EQ(session->read.back(), wrong.member);
        EXPECT_EQ(Configuracion().RutaBD, u"C:\\bd");
        EXPECT_EQ(Configuracion().datossesion, nullptr);
    }
    EXPECT_EQ(Configuracion().bytAccion, 0);
    const auto session = fullSession({connection, connection, connection});
    session->remove(u"MTP");
    EXPECT_EQ(numberOf([&] { facade.ObtenerDatos(session); }), failure::memberMissing);
    EXPECT_TRUE(Configuracion().blnPesetas);
    EXPECT_EQ(Configuracion().RutaIcono, u"");
}

TEST_F(Facade, an_ordinary_host_session_is_taken_over_and_shows_in_the_record)
{
    const auto centro = std::make_shared<FakeConnection>();
    const auto session = newHostSession({centro, nullptr, nullptr});
    let(*session, u"LNGROWDATA", Long{9});
    facade.ObtenerDatos(session);
    EXPECT_EQ(CLng(configurationMember(u"lngrowdata")), 9);
    EXPECT_EQ(CInt(configurationMember(u"intIDUsuario")), 1);
    EXPECT_TRUE(CBool(configurationMember(u"Activa")));
    EXPECT_EQ(CObj(configurationMember(u"conLocalCentro")), centro);
    EXPECT_EQ(numberOf([] { CObj(configurationMember(u"conLocalBorradoCentro")); }), failure::noObject);
    for (const StringView never : {u"intCodCurso", u"intTipoEnsenanza", u"blnDatosMedicos"})
        EXPECT_EQ(CInt(configurationMember(never)), 0);
    EXPECT_EQ(numberOf([] { configurationMember(u"intIDAlumno"); }), failure::memberMissing);
}

} // namespace
} // namespace zv
