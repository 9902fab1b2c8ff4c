#include "data/LateBound.h"
#include "data/NumberOf.h"
#include "forms/Ficha.h"
#include "session/App.h"
#include "session/DialogDirectory.h"
#include "session/HostSession.h"
#include "session/NodeTable.h"
#include "session/cAsignarDatos.h"
#include "session/cConfiguracion.h"
#include "session/cNombreNodo.h"

namespace zv {
namespace {

/// Closes each dialog as soon as it opens, and remembers which it was.
struct ClosingDesktop final : test::FakeDesktop {
    void opened(Form& form) override { shown.push_back(form.Name()); }
    void runModal(Form& form) override { form.Unload(); }
    std::vector<String> shown;
};

class FakeDialog final : public Form {
public:
    explicit FakeDialog(StringView name) : Form(name) {}
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
                                         return true;
                                     }});
        }
    }
    ~Facade() override { resetSingles(); }

    ClosingDesktop desktop;
    std::vector<std::unique_ptr<FakeDialog>> forms;
    std::vector<String> asked;
    cAsignarDatos facade;
};

TEST_F(Facade, opens_and_asks_what_the_table_of_nodes_says)
{
    // A build with some of the dialogs: each node reaches its own or says that it is missing.
    const auto check = [](bool ModuleNode::*offered, std::vector<String>& reached, auto&& operation) {
        for (int number = 0; number <= 255; ++number) {
            const ModuleNode* node = moduleNode(static_cast<Byte>(number));
            const StringView dialog = node != nullptr && node->*offered ? node->dialog : StringView();
            const bool missing = !dialog.empty() && !dialogs().has(dialog);
            reached.clear();
            EXPECT_EQ(numberOf([&] { operation(static_cast<Byte>(number)); }, missing ? dialog : u""),
                      missing ? failure::classMissing : 0)
                << number;
            EXPECT_EQ(reached,
                      dialog.empty() || missing ? std::vector<String>() : std::vector{String(dialog)})
                << number;
        }
    };
    check(&ModuleNode::opens, desktop.shown, [&](Byte node) { facade.ActivarFormulario(node); });
    check(&ModuleNode::guards, asked, [&](Byte node) { facade.Eliminar(node); });
}

class FakeConnection final : public Connection {
public:
    RecordsetPtr Execute(StringView) override { return nullptr; }
    RecordsetPtr executeNative(StringView) override { return nullptr; }
    EngineInfo engine() override { return {}; }
};

/// An ordinary session that remembers in which order its members are read.
class RecordingSession final : public Object {
public:
    const School school{std::make_shared<FakeConnection>(), std::make_shared<FakeConnection>(),
                        std::make_shared<FakeConnection>()};
    const std::shared_ptr<PropertyBag> members = newHostSession(school);
    String read;

    StringView TypeName() const override { return u"Sesion"; }
    Value invoke(StringView member, Access access, Arguments& arguments) override
    {
        read += (read.empty() ? u"" : u" ") + String(member);
        return members->invoke(member, access, arguments);
    }
};

TEST_F(Facade, takes_the_session_over_in_order_each_member_as_its_type)
{
    struct Case {
        StringView member;
        Value value;
        StringView record, expected;
    };
    const Case cases[] = {{u"RutaBD", u"C:\\bd", u"rutabd", u"C:\\bd"},
                          {u"Activa", Long{0}, u"Activa", u"Falso"},
                          {u"Accion", u"2", u"bytAccion", u"2"},
                          {u"lngRowData", u"70000", u"lngRowData", u"70000"},
                          {u"IDPerfil", Long{3}, u"intIDPerfil", u"3"},
                          {u"IDUsuario", u"4", u"intIDUsuario", u"4"},
                          {u"IDCentro", Double{6.5}, u"intIdCentro", u"6"},
                          {u"IDCursoEscolar", Byte{7}, u"intIDCursoEscolar", u"7"},
                          {u"NombreUsuario", u"ana", u"strNombreUsuario", u"ana"},
                          {u"NombreCentro", Long{8}, u"strNombreCentro", u"8"},
                          {u"Pesetas", u"-1", u"blnPesetas", u"Verdadero"},
                          {u"MTP", Integer{1}, u"MTP", u"Verdadero"},
                          {u"RutaIcono", u"x.ico", u"RutaIcono", u"x.ico"},
                          {u"sqlserver", true, u"blnSQLServer", u"Verdadero"}};
    const auto session = std::make_shared<RecordingSession>();
    let(*session->members, u"RutaAplicacion", u"C:\\colegio");
    for (const Case& one : cases)
        let(*session->members, one.member, one.value);
    facade.ObtenerDatos(session);
    EXPECT_EQ(session->read,
              u"RutaAplicacion RutaBD Activa Accion lngRowData conexionBORRADOlocalCENTRO "
              u"conexionlocalCENTRO conexionAppEntrada IDPerfil IDUsuario IDCentro IDCursoEscolar "
              u"NombreUsuario NombreCentro Pesetas MTP RutaIcono sqlserver");
    EXPECT_EQ(single<App>().HelpFile, u"C:\\colegio\\zorvelcentro.chm");
    for (const Case& one : cases)
        EXPECT_EQ(CStr(get(Configuracion(), one.record)), one.expected) << toUtf8(one.member);
    EXPECT_EQ(CObj(get(Configuracion(), u"conLocalCentro")), session->school.centro);
    EXPECT_EQ(CObj(get(Configuracion(), u"conLocalBorradoCentro")), session->school.borrado);
    EXPECT_EQ(CObj(get(Configuracion(), u"conLocalAppEntrada")), session->school.entrada);
    EXPECT_EQ(CObj(get(Configuracion(), u"datossesion")), session);
    const auto late = std::make_shared<PropertyBag>(u"Otra");
    let(*session->members, u"conexionlocalCENTRO", late);
    facade.ObtenerDatos(session);
    EXPECT_EQ(hostObjectOf(Configuracion().conLocalCentro), late) << "any object of the host serves";
    for (const StringView never : {u"intCodCurso", u"intTipoEnsenanza", u"blnDatosMedicos"})
        EXPECT_EQ(CInt(get(Configuracion(), never)), 0);
    EXPECT_EQ(numberOf([] { get(Configuracion(), u"intIDAlumno"); }), failure::memberMissing);
}

TEST_F(Facade, a_member_that_fails_leaves_those_before_it_taken_over)
{
    EXPECT_EQ(numberOf([&] { facade.ObtenerDatos(nullptr); }), failure::noObject);
    const std::tuple<StringView, Value, std::int32_t> cases[] = {
        {u"sqlserver", Null{}, failure::invalidNull},
        {u"MTP", {}, failure::memberMissing},
        {u"IDPerfil", u"director", failure::typeMismatch},
        {u"conexionlocalCENTRO", Long{1}, failure::typeMismatch},
        {u"conexionAppEntrada", u"dsn", failure::typeMismatch},
        {u"Accion", Integer{300}, failure::overflow}};
    for (const auto& [member, value, number] : cases) {
        resetSingles();
        const auto session = std::make_shared<RecordingSession>();
        let(*session->members, member, value);
        if (number == failure::memberMissing)
            session->members->remove(member);
        EXPECT_EQ(numberOf([&] { facade.ObtenerDatos(session); }), number) << toUtf8(member);
        EXPECT_TRUE(session->read.ends_with(member));
        EXPECT_TRUE(Configuracion().Activa) << "read before it";
        EXPECT_EQ(Configuracion().datossesion, nullptr);
    }
}

} // namespace
} // namespace zv
