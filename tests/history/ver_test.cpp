#include "data/history/HistoryEngine.h"
#include "estaciones/Stations.h"
#include "suite/sodium/EncryptoApi.h"

namespace zv {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Seen : public Stations {
protected:
    Seen() { registerEngine(historyEngine()); }
    ~Seen() override { registerCipher(); }
    void play(const std::string& guion)
    {
        playedOn(history::withHistory(openSchool(url), url), guion, [](auto&&...) {});
    }
};

TEST_P(Seen, the_command_line_lists_and_undoes)
{
    create();
    EXPECT_EQ(historial("ver"), 2);
    EXPECT_EQ(historial("deshacer --guardado 1"), 2);
    EXPECT_THAT(said, HasSubstr("zvconf historial activar"));
    EXPECT_EQ(historial("activar"), 0);
    EXPECT_THROW(openSchool(u"historial:historial:" + url), RuntimeError);
    EXPECT_EQ(historial("ver --json"), 0);
    EXPECT_EQ(said, "[]\n");
    registerCipher([key = CipherKey::random()](bool) { return key; });
    play("abrir 65 2 1\nescribir txtIdioma \"O\\\"tro\"\npulsar cmdIdioma(0)\n"
         "sesion NombreUsuario=\"EVA\" IDUsuario=7\n"
         "abrir 65 2 1\nescribir txtIdioma \"Tercero\"\npulsar cmdIdioma(0)\n"
         "abrir 57 1 0\nescribir txtNombre \"Alergia\"\npulsar cmdAceptar\n");
    struct {
        const char* arguments;
        int code;
        testing::Matcher<std::string> says;
    } const cases[] = {
        {"ver", 0,
         AllOf(HasSubstr(
                   "EstadoCivil IDEstadoCivil=1: cambia Descripcion: «Soltero/a» -> «O\"tro»  (guardado 2)"),
               HasSubstr("Nombre: (cifrado)"), Not(HasSubstr("Alergia")), HasSubstr("Anotaciones: 7."))},
        {"ver --usuario eva --ventana frmestadocivil", 0,
         AllOf(HasSubstr("EVA en frmEstadoCivil"), HasSubstr("Anotaciones: 2."))},
        {"ver --usuario 7 --tabla estadocivil --fila 1 --dia $(date +%F)", 0, HasSubstr("Anotaciones: 1.")},
        {"ver --dia 2020-01-31", 0, HasSubstr("Anotaciones: 0.")},
        {"ver --tabla Nada", 2, HasSubstr("«Nada» no es una tabla del centro")},
        {"ver --fila 1", 2, HasSubstr("--fila quiere también --tabla")},
        {"ver --json | python3 -c 'import json, sys\na = json.load(sys.stdin)\nprint(len(a), "
         "a[1][\"despues\"], "
         "a[-1][\"despues\"][\"Nombre\"], a[-1][\"usuario\"])'",
         0, testing::StrEq("7 {'Descripcion': 'O\"tro'} (cifrado) EVA\n")},
        {"deshacer --guardado 2", 1,
         HasSubstr("Descripcion: se deja «Tercero»; lo escribió EVA en frmEstadoCivil, hoy")},
        {"deshacer --fila EstadoCivil 1 --campo descripcion", 0,
         AllOf(HasSubstr("Descripcion: «Tercero» -> «O\"tro»"), HasSubstr("se hace con --si"))},
        {"deshacer --apertura 3 --si", 0, HasSubstr("Hecho.")},
        {"deshacer --desde 2999-01-01", 1, HasSubstr("No hay nada que deshacer.")},
        {"deshacer --desde ayer", 2, HasSubstr("«ayer» no es un día")},
        {"deshacer --desde 2020-01-01 --guardado 2", 2, HasSubstr("deshacer quiere una de")},
        {"deshacer --desde '2020-01-01 08:00' --si", 0, HasSubstr("la fila se quita")},
    };
    for (const auto& each : cases) {
        const std::string arguments = each.arguments;
        const std::size_t pipe = std::min(arguments.find('|'), arguments.size());
        EXPECT_EQ(historial(arguments.substr(0, pipe), arguments.substr(pipe)), each.code) << arguments;
        EXPECT_THAT(said, each.says) << arguments;
    }
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM EstadoCivil WHERE Descripcion='Soltero/a'"), 1);
    EXPECT_EQ(one(u"SELECT COUNT(*) FROM Enfermedad"), 0);
}

INSTANTIATE_TEST_SUITE_P(each, Seen, testing::Values("sqlite", "postgres", "mariadb"),
                         [](const auto& each) { return each.param; });

} // namespace
} // namespace zv
