#include "com/Host.h"

#include "Times.h"

#include "com/Failure.h"

#include <gmock/gmock.h>

#include <bit>
#include <climits>

using namespace zv;
using namespace zv::com;

namespace {

/// The two libraries and a host's session, as they meet. Nothing of the session may be left behind them.
struct Meeting {
    const Library data{ZV_DATOS};
    const Library library{ZV_SERVIDOR};
    client::Object connection;
    std::shared_ptr<Session> host;
    Held<ZvDispatch> face;
    Held<Zv_cAsignarDatos> facade = facadeOf(library);

    explicit Meeting(const std::string& url)
        : connection(client::openConnection(data, url)),
          host(std::make_shared<Session>(objectOf(connection))), face(dispatchOf(host))
    {}
    ZvResult handOver() const { return com::handOver(facade, face); }
    std::string handOverByName() const
    {
        return failureOf([&] { byName(facade).call("obtenerdatos", client::Object::sharing(face.get())); });
    }
};

} // namespace

TEST(Host, whose_session_lacks_a_member_has_a_wrong_one_or_fails_is_told_until_it_answers)
{
    const Folder folder;
    folder.create();
    std::weak_ptr<Object> ended;
    {
        const Meeting meeting(folder.url());
        ended = meeting.host;
        PropertyBag& members = *meeting.host->members;
        members.remove(u"IDPerfil");
        EXPECT_EQ(meeting.handOver(), ZV_FAILURE_BASE + 438);
        members.add(u"IDPerfil", u"tres");
        EXPECT_EQ(meeting.handOver(), ZV_FAILURE_BASE + 13);
        members.add(u"IDPerfil", Long{70000});
        EXPECT_EQ(meeting.handOver(), ZV_FAILURE_BASE + 6);
        members.add(u"IDPerfil", Long{0});
        meeting.host->failing = u"RutaIcono";
        EXPECT_EQ(meeting.handOver(), -2147217900);
        EXPECT_EQ(meeting.handOverByName(), "-2147217900 La sesión se ha caído (ZVConfiguracion)");
        meeting.host->failing.clear();
        EXPECT_EQ(meeting.handOver(), ZV_OK);
        EXPECT_EQ(meeting.handOverByName(), "none");
    }
    EXPECT_TRUE(ended.expired()) << "the library kept the session";
}

TEST(Host, opens_a_dialog_asks_and_is_told_of_failures)
{
    const Folder folder;
    folder.create([](School& school) {
        school.centro->executeNative(
            u"INSERT INTO EstadoCivil (IDEstadoCivil,Descripcion) VALUES (7,'Viudo')");
        school.centro->executeNative(u"INSERT INTO Personal (IDPersonal,CodEstadoCivil) VALUES (1,7)");
    });
    const std::string guion = (folder.path / "acto.guion").string();
    std::ofstream(guion)
        << "\xEF\xBB\xBF> muestra frmEstadoCivil \"Nuevo Estado Civil\"\nescribir txtIdioma \"Soltero\"\n"
           "pulsar cmdIdioma(0)\n> cierra frmEstadoCivil\n> muestra frmEstadoCivil \"Otro\"\ncerrar\n";
    setenv("ZV_ESCRITORIO", ("guion:" + guion).c_str(), 1);
    std::weak_ptr<Object> ended;
    {
        const Meeting meeting("historial:" + folder.url());
        ended = meeting.host;
        const client::Object closed = meeting.data.create(ZV_CLSID_Conexion);
        EXPECT_EQ(failureOf([&] { closed.call("Execute", "Select 1"); }).substr(0, 4), "3709");
        const auto& facade = meeting.facade;
        const Zv_cAsignarDatosVtbl& slots = *facade.get()->vtbl;
        EXPECT_EQ(meeting.handOver(), ZV_OK);
        EXPECT_EQ(slots.ActivarFormulario(facade.get(), 65), ZV_OK);
        const client::Object rows =
            meeting.connection
                .call("Execute", "Select IDEstadoCivil From EstadoCivil Where Descripcion='Soltero'")
                .object();
        const auto field = Held<ZvDispatch>(rows.get("Fields", "IDESTADOCIVIL").object().release());
        EXPECT_EQ(CLng(invoke(field.get(), ZV_DISPID_VALUE, ZV_PROPERTYGET).value), 8);
        // The two libraries share no code, and yet the history knows who wrote the row, and in which dialog.
        EXPECT_THAT(meeting.connection.call("Execute", "Select Despues From HistorialAsiento Order By Numero")
                        .object()
                        .get("Fields", "Despues")
                        .object()
                        .get("Value")
                        .text(),
                    testing::StartsWith(
                        "Dialogo='frmEstadoCivil',Fila=7,Nueva=-1,IDUsuario=1,Usuario='usuario',Puesto='"));
        rows.call("Close");
        EXPECT_EQ(failureOf([&] { rows.get("EOF"); }).substr(0, 4), "3704");
        ZvBool free = -1;
        EXPECT_EQ(slots.Eliminar(facade.get(), 65, &free), ZV_OK);
        EXPECT_EQ(free, 0) << "a teacher refers to row 7";
        meeting.host->members->add(u"lngRowData", Long{8});
        EXPECT_EQ(meeting.handOverByName(), "none");
        EXPECT_TRUE(byName(facade).call("Eliminar", 65).truth());
        EXPECT_EQ(slots.BloquearBanco(facade.get()), ZV_OK);
        byName(facade).call("BloquearBanco");
        EXPECT_EQ(meeting.library.raw().canUnloadNow(), ZV_FALSE);
        // The second dialog does not show what the guion expects: this call fails, and all after it.
        EXPECT_EQ(failureOf([&] { byName(facade).call("ActivarFormulario", 65); }),
                  "5 " + guion +
                      ":5: se esperaba: > muestra frmEstadoCivil \"Otro\"; se vio: > muestra "
                      "frmEstadoCivil \"Nuevo Estado Civil\" (ZVConfiguracion)");
        EXPECT_EQ(slots.ActivarFormulario(facade.get(), 0), ZV_FAILURE_BASE + 5);
    }
    EXPECT_TRUE(ended.expired()) << "the library kept the session";
    unsetenv("ZV_ESCRITORIO");
}

TEST(Host, names_and_arguments_that_are_wrong_are_refused)
{
    const Library library(ZV_SERVIDOR);
    const auto record = library.make<ZvDispatch>(ZV_CLSID_cConsejoOrientador, ZV_IID_IDispatch);
    ZvDispatch* object = record.get();
    EXPECT_EQ(idOf(object, u"Nadie"), ZV_DISPID_UNKNOWN);
    EXPECT_EQ(invoke(object, 0x40030006, ZV_PROPERTYGET).result, ZV_DISP_MEMBERNOTFOUND);
    const struct {
        int mode;
        std::vector<Value> arguments;
        ZvResult result;
    } refused[] = {{ZV_METHOD, {}, ZV_DISP_MEMBERNOTFOUND},
                   {ZV_PROPERTYPUTREF, {Value(Long{1})}, ZV_DISP_MEMBERNOTFOUND},
                   {ZV_PROPERTYGET, {Value(Long{1})}, ZV_DISP_BADPARAMCOUNT},
                   {ZV_PROPERTYPUT, {}, ZV_DISP_BADPARAMCOUNT},
                   {ZV_PROPERTYPUT, {Value(Long{256})}, ZV_DISP_OVERFLOW}};
    for (const auto& each : refused)
        EXPECT_EQ(invoke(object, u"Estado", each.mode, each.arguments).result, each.result);
    const Answer wrong = invoke(object, u"Estado", ZV_PROPERTYPUT, {Value(u"uno")});
    EXPECT_EQ(wrong.result, ZV_DISP_TYPEMISMATCH);
    EXPECT_EQ(wrong.blamed, 0U);
    ZvVariant leftOut{};
    leftOut.vt = ZV_VT_ERROR;
    leftOut.value.error = ZV_DISP_PARAMNOTFOUND;
    EXPECT_EQ(invoke(object, idOf(object, u"Estado"), ZV_PROPERTYPUT, {leftOut}).result,
              ZV_DISP_PARAMNOTOPTIONAL);
    std::uint16_t* nameless = nullptr;
    std::int32_t id = 0;
    EXPECT_EQ(object->vtbl->GetIDsOfNames(object, &ZV_IID_NULL, &nameless, 1, 0, &id), ZV_E_INVALIDARG);
    EXPECT_EQ(
        object->vtbl->Invoke(object, 0x40030000, &ZV_IID_IDispatch, 0, 2, nullptr, nullptr, nullptr, nullptr),
        ZV_DISP_UNKNOWNINTERFACE);
    void* none = object;
    EXPECT_EQ(object->vtbl->unknown.QueryInterface(reinterpret_cast<ZvUnknown*>(object),
                                                   &ZV_IID_IClassFactory, &none),
              ZV_E_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
    const auto factory = library.factory(ZV_CLSID_cAsignarDatos);
    EXPECT_EQ(factory.get()->vtbl->CreateInstance(factory.get(), reinterpret_cast<ZvUnknown*>(object),
                                                  &ZV_IID_IUnknown, &none),
              ZV_CLASS_NOAGGREGATION);
    EXPECT_EQ(library.raw().getClassObject(&ZV_IID_NULL, &ZV_IID_IUnknown, &none), ZV_CLASS_NOTAVAILABLE);
}

TEST(Variants, of_every_kind_and_by_reference_reach_a_member)
{
    const Library library(ZV_SERVIDOR);
    const auto record = library.make<ZvDispatch>(ZV_CLSID_cInfPrimaria, ZV_IID_IDispatch);
    Variant text(Value(u"12"));
    ZvVariant inner = text.raw();
    const std::pair<int, std::int64_t> bits[] = {
        {ZV_VT_I1, 12},
        {ZV_VT_UI2, 12},
        {ZV_VT_UI4, 12},
        {ZV_VT_I8, 12},
        {ZV_VT_UI8, 12},
        {ZV_VT_CY, 120000},
        {ZV_VT_R4, std::bit_cast<std::int32_t>(12.5F)},
        {ZV_VT_R8, std::bit_cast<std::int64_t>(11.5)},
        {ZV_VT_DECIMAL, 1200},
        {ZV_VT_BSTR | ZV_VT_BYREF, std::bit_cast<std::int64_t>(&inner.value)},
        {ZV_VT_VARIANT | ZV_VT_BYREF, std::bit_cast<std::int64_t>(&inner)}};
    for (const auto& [kind, value] : bits) {
        ZvVariant twelve{};
        twelve.vt = static_cast<std::uint16_t>(kind);
        twelve.reserved1 = kind == ZV_VT_DECIMAL ? 2 : 0;
        twelve.value.i8 = value;
        EXPECT_EQ(invoke(record.get(), u"codTipo", ZV_PROPERTYPUT, {Value(Long{0})}).result, ZV_OK);
        EXPECT_EQ(invoke(record.get(), idOf(record.get(), u"codTipo"), ZV_PROPERTYPUT, {twelve}).result,
                  ZV_OK);
        EXPECT_EQ(CLng(invoke(record.get(), u"codTipo", ZV_PROPERTYGET).value), 12) << twelve.vt;
    }
    ZvVariant huge{};
    huge.vt = ZV_VT_UI8;
    huge.value.ui8 = std::numeric_limits<std::uint64_t>::max();
    EXPECT_LT(invoke(record.get(), idOf(record.get(), u"codTipo"), ZV_PROPERTYPUT, {huge}).result, 0);
    EXPECT_EQ(Variant(Value(true)).raw().value.boolean, -1) << "every bit, as hosts test it";
    // What a routine is handed it may change: texts, numbers and lists.
    struct Changing final : Object {
        StringView TypeName() const override { return u"Changing"; }
        Value invoke(StringView /*member*/, Access /*access*/, Arguments& arguments) override
        {
            arguments[0] = CStr(arguments[0]) + u"!";
            arguments[1] = Long{CLng(arguments[1]) + 1};
            (*arguments[2].as<LongArray>())->at(1) = 9;
            return static_cast<Long>(arguments.size());
        }
    };
    const auto numbers = std::make_shared<std::vector<Long>>(std::vector<Long>{1, 2});
    Arguments arguments{Value(u"a"), Value(Long{1}), Value(numbers), Value()};
    EXPECT_EQ(CLng(callByReference(objectOf(dispatchOf(std::make_shared<Changing>())), u"Change", arguments)),
              4);
    EXPECT_EQ(CStr(arguments[0]), u"a!");
    EXPECT_EQ(CLng(arguments[1]), 2);
    EXPECT_EQ(*numbers, (std::vector<Long>{1, 9}));
}

/// An object of a script: it tells its names in its own way alone, and its routine changes the variant that
/// it is handed into one of another kind.
class Scripted {
public:
    ZvDispatch* face() { return reinterpret_cast<ZvDispatch*>(this); }

private:
    struct Table {
        ZvDispatchVtbl plain;
        ZvResult(ZV_CALL* GetDispID)(Scripted*, ZvBstr, std::uint32_t, std::int32_t*);
    };
    static ZvResult ZV_CALL query(ZvUnknown* self, const ZvGuid* id, void** place)
    {
        constexpr std::uint32_t own = 0xA6EF9860;
        *place = id->data1 == own ? self : nullptr;
        return *place == nullptr ? ZV_E_NOINTERFACE : ZV_OK;
    }
    static std::uint32_t ZV_CALL counted(ZvUnknown* /*self*/) { return 1; }
    static ZvResult ZV_CALL names(ZvDispatch* /*self*/, const ZvGuid* /*reserved*/, std::uint16_t** /*names*/,
                                  std::uint32_t /*count*/, std::uint32_t /*language*/, std::int32_t* /*ids*/)
    {
        return ZV_E_NOTIMPL;
    }
    static ZvResult ZV_CALL name(Scripted* /*self*/, ZvBstr name, std::uint32_t how, std::int32_t* id)
    {
        constexpr std::uint32_t anyCase = 8;
        *id = 7;
        return how == anyCase && sameName(textOf(name), u"execute") ? ZV_OK : ZV_DISP_UNKNOWNNAME;
    }
    static ZvResult ZV_CALL invoke(ZvDispatch* /*self*/, std::int32_t id, const ZvGuid* /*reserved*/,
                                   std::uint32_t /*language*/, std::uint16_t /*modes*/, ZvParams* params,
                                   ZvVariant* /*result*/, ZvException* /*exception*/,
                                   std::uint32_t* /*argument*/)
    {
        if (id != 7 || params->count != 1 || params->arguments->vt != (ZV_VT_VARIANT | ZV_VT_BYREF))
            return ZV_DISP_TYPEMISMATCH;
        zv_variant_clear(params->arguments->value.variant);
        *params->arguments->value.variant = zv_long(12);
        return ZV_OK;
    }
    static inline const Table table{{{query, counted, counted}, nullptr, nullptr, names, invoke}, name};
    [[maybe_unused]] const Table* vtbl_ = &table; // Read by those who call.
};

TEST(Scripts, are_asked_for_names_and_handed_variants_in_their_own_way)
{
    Scripted script;
    const ObjectPtr object = objectOf(Held<ZvDispatch>(script.face()));
    Arguments arguments{Value(u"text")};
    callByReference(object, u"Execute", arguments);
    EXPECT_EQ(CLng(arguments[0]), 12);
    try {
        call(object, u"Open", {});
        ADD_FAILURE() << "it has no such member";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), failure::memberMissing) << "its own word, not that it does not tell names";
    }
}

TEST(Library, is_found_by_name_once_registered_and_no_longer_after)
{
    const Folder folder;
    for (const char* file : {ZV_SERVIDOR, ZV_DATOS}) {
        const Library library(file);
        const bool data = std::string(file) == ZV_DATOS;
        const char* name = data ? "ZVDatos.Conexion" : "ZVConfiguracion.cAsignarDatos";
        ZvServer server;
        EXPECT_EQ(zv_find_server(name, &server), 0);
        EXPECT_EQ(library.raw().registerServer(), ZV_OK);
        EXPECT_EQ(zv_find_server(name, &server), 1);
        EXPECT_EQ(std::string(server.library), file);
        EXPECT_TRUE(server.classId == (data ? ZV_CLSID_Conexion : ZV_CLSID_cAsignarDatos));
        EXPECT_EQ(library.raw().unregisterServer(), ZV_OK);
        EXPECT_EQ(zv_find_server(name, &server), 0);
    }
}

TEST(Library, comes_and_goes_a_thousand_times_without_growth)
{
    const auto face = dispatchOf(std::make_shared<Session>(ObjectPtr()));
    const auto cycle = [&] {
        {
            const Library library(ZV_SERVIDOR);
            const auto facade = facadeOf(library);
            ZvBool free = -1;
            EXPECT_EQ(handOver(facade, face), ZV_OK);
            EXPECT_EQ(facade.get()->vtbl->Eliminar(facade.get(), 11, &free), ZV_OK);
        }
        EXPECT_FALSE(isLoaded(ZV_SERVIDOR)) << "it is in memory still";
    };
    for (const char* platform : {"", "offscreen"}) {
        *platform == '\0' ? unsetenv("QT_QPA_PLATFORM") : setenv("QT_QPA_PLATFORM", platform, 1);
        cycle();
        const auto before = memoryPieces();
        // The toolkit fills pools of its own at first; what leaks grows in each round.
        constexpr int cycles = brief(250, 25);
        constexpr long long most = keptByLoad * cycles;
        long long least = LLONG_MAX;
        for (int round = 0; round < 4 || (least > most && round < 16); ++round) {
            const auto heap = heapInUse();
            for (int i = 0; i < cycles; ++i)
                cycle();
            const long long grown = heapInUse() - heap;
            least = std::min(least, grown);
        }
        // Allocators part and join their pieces; what each load leaves behind is one at least.
        EXPECT_LE(memoryPieces(), before + cycles);
        EXPECT_LE(least, most) << platform; // Sanitizers watch a heap of their own.
    }
}
