#include "com/Host.h"

#include <thread>

using namespace zv;
using namespace zv::com;

TEST(Client, takes_texts_there_and_back_and_marks_what_is_no_character)
{
    using namespace std::string_literals;
    const struct {
        std::string utf8;
        std::u16string utf16;
        std::string back;
    } texts[] = {{"año €\U0001F600\0\U0010FFFF"s, u"año €\U0001F600\0\U0010FFFF"s, {}},
                 {"\xC3(", u"\uFFFD(", "\uFFFD("},
                 {"\xC0\x80", u"\uFFFD", "\uFFFD"},                         // Longer than need be.
                 {"\xED\xA0\x80", u"\uFFFD", "\uFFFD"},                     // Half a pair.
                 {"\xF4\x90\x80\x80\xFF", u"\uFFFD\uFFFD", "\uFFFD\uFFFD"}, // Beyond the last, and none.
                 {"a\xE2\x82", u"a\uFFFD", "a\uFFFD"}};
    for (const auto& each : texts) {
        EXPECT_EQ(client::Value(each.utf8).utf16(), each.utf16);
        EXPECT_EQ(client::Value(each.utf16).text(), each.back.empty() ? each.utf8 : each.back);
    }
    EXPECT_EQ(client::Value(u"\xD83D x\xDE00").text(), "\uFFFD x\uFFFD");
    const client::Value cut(u"aé€");
    char place[] = "-----";
    EXPECT_EQ(zv_utf8(cut.raw().value.text, place, sizeof place), 6U);
    EXPECT_STREQ(place, "aé") << "cut between two characters";
}

TEST(Client, reads_values_as_what_they_are)
{
    using client::Value;
    EXPECT_EQ(Value(std::int64_t{INT32_MIN}).integer(), INT32_MIN);
    EXPECT_EQ(Value(std::int64_t{INT32_MIN} - 1).real(), INT32_MIN - 1.0);
    EXPECT_EQ(Value(UINT32_MAX).real(), UINT32_MAX);
    EXPECT_TRUE(Value(-1).truth());
    EXPECT_FALSE(Value(false).truth());
    ZvVariant money{};
    money.vt = ZV_VT_CY;
    money.value.cy = 125000;
    EXPECT_EQ(Value::owning(money).real(), 12.5);
    EXPECT_EQ(failureOf([] { Value(UINT64_MAX).integer(); }).substr(0, 2), "6 ");
    EXPECT_EQ(failureOf([] { Value(UINT32_MAX).integer(); }).substr(0, 2), "6 ");
    EXPECT_EQ(failureOf([] { Value("1").integer(); }).substr(0, 3), "13 ");
    EXPECT_EQ(failureOf([] { Value(1).text(); }).substr(0, 3), "13 ");
    EXPECT_EQ(failureOf([] { Value::null().text(); }).substr(0, 3), "94 ");
    EXPECT_EQ(failureOf([] { Value().object(); }).substr(0, 3), "13 ");
}

TEST(Client, calls_by_name_and_is_told_number_text_and_source)
{
    const Folder folder;
    folder.create();
    client::Library module(ZV_SERVIDOR);
    const client::Library data(ZV_DATOS);
    client::Object report = module.create(ZV_CLSID_cInformeInd);
    const client::Object items = report.get("colMaterias").object();
    items.call("Add", "uno", "7 1");
    EXPECT_EQ(report.get("COLMATERIAS").object().call("Item", "7 1").text(), "uno");
    EXPECT_EQ(report.get("colMaterias", "7 1").text(), "uno");
    const client::Object mine = shared(std::make_shared<PropertyBag>(u"Mine"));
    report.set("colMaterias", mine);
    EXPECT_EQ(report.get("colMaterias").object().dispatch(), mine.dispatch());
    report.set("Dificultad", "año");
    EXPECT_EQ(report.get("Dificultad").utf16(), u"año");
    EXPECT_EQ(failureOf([&] { report.set("Estado", 256); }), "6 Un número no cabe: Estado ()");
    EXPECT_EQ(failureOf([&] { report.set("Estado", "uno"); }), "13 Un valor es de otro tipo: Estado ()");
    EXPECT_EQ(failureOf([&] { report.get("Estado", 1); }),
              "450 El número de argumentos no es ése: Estado ()");
    EXPECT_EQ(failureOf([&] { report.call("Nadie"); }),
              "438 El objeto no admite esta propiedad o método: Nadie ()");
    const client::Object connection = client::openConnection(data, folder.url(), "borrado");
    EXPECT_EQ(failureOf([&] { connection.call("Execute", "Select * From Nadie"); }),
              "-2147217865 En la base de datos falta una tabla. (no such table: Nadie) (ZVConfiguracion)");
    EXPECT_TRUE(connection.call("Execute", "Select * From Banco", client::Value::omitted(), -1)
                    .object()
                    .get("EOF")
                    .truth());
    // Its own objects keep a library in memory, and another's failure tells why.
    EXPECT_FALSE(module.unload());
    report = {};
    EXPECT_FALSE(module.unload()) << "the list that was replaced is held still";
    EXPECT_EQ(failureOf([] { client::Library("/nada.so"); }), "429 " + std::string(notThere) + " ()");
    EXPECT_EQ(failureOf([] { client::Library::registered("Nadie.Nada"); }).substr(0, 4), "429 ");
    EXPECT_EQ(failureOf([&] { data.create(ZV_CLSID_cInformeInd); }).substr(0, 12), "-2147221231 ");
}

TEST(Client, hands_over_a_session_that_the_module_reads_writes_and_gives_back)
{
    const Folder folder;
    folder.create([](School& school) {
        school.centro->executeNative(u"INSERT INTO Presentador (IDPresentador,Nombre) VALUES (8,'Colegio')");
    });
    const std::string guion = (folder.path / "acto.guion").string();
    std::ofstream(guion) << "> muestra frmPresentador \"Propiedades del Presentador Colegio\"\n"
                            "pulsar cmdNuevoBanco(0)\n> muestra frmBanco \"Nueva Entidad Bancaria\"\n"
                            "cerrar\n> cierra frmBanco\ncerrar\n> cierra frmPresentador\n";
    setenv("ZV_ESCRITORIO", ("guion:" + guion).c_str(), 1);
    std::weak_ptr<Object> ended;
    {
        const client::Library data(ZV_DATOS);
        client::Library module(ZV_SERVIDOR);
        auto counted = std::make_shared<PropertyBag>(u"Counted");
        ended = counted;
        client::Session session = client::openSession(
            data, folder.url(), {{"accion", 2}, {"lngRowData", " 8 "}, {"Otro", shared(std::move(counted))}});
        {
            const client::Object facade = module.create(ZV_CLSID_cAsignarDatos);
            session.remove("IDPerfil");
            EXPECT_EQ(failureOf([&] { facade.call("ObtenerDatos", session); }),
                      "438 El objeto no admite esta propiedad o método: IDPerfil (ZVConfiguracion)");
            EXPECT_EQ(failureOf([&] { session.set("IDPerfil", 0); }),
                      "438 El objeto no admite esta propiedad o método: IDPerfil ()");
            EXPECT_EQ(session.references(), 1U);
            session.add("idperfil", 0);
            facade.call("ObtenerDatos", session);
            // The dialog that opens another writes both members, and writes back what it had read.
            facade.call("ActivarFormulario", 36);
            EXPECT_EQ(session.get("LNGROWDATA").text(), " 8 ");
            EXPECT_EQ(session.get("Accion").integer(), 2);
            EXPECT_TRUE(session.get("conexionBORRADOlocalCENTRO")
                            .object()
                            .call("Execute", "Select * From Presentador")
                            .object()
                            .get("EOF")
                            .truth())
                << "the deleted rows have a database of their own";
            // A second thread, while one is inside.
            const auto host = std::make_shared<Session>(ObjectPtr());
            std::string other;
            host->asked = [&] {
                std::thread([&] { other = failureOf([&] { facade.call("BloquearBanco"); }); }).join();
            };
            facade.call("ObtenerDatos", shared(host));
            EXPECT_EQ(other, "-2147417842 Otro hilo está dentro del módulo: llame cuando haya vuelto. "
                             "(ZVConfiguracion)");
            facade.call("ObtenerDatos", session);
        }
        EXPECT_GT(session.references(), 1U);
        EXPECT_TRUE(module.unload());
        EXPECT_EQ(session.references(), 1U);
        EXPECT_FALSE(ended.expired());
        session.set("Otro", 0);
        EXPECT_TRUE(ended.expired()) << "what was written over is held still";
    }
    EXPECT_FALSE(isLoaded(ZV_DATOS)) << "the session kept its connections";
    unsetenv("ZV_ESCRITORIO");
}
