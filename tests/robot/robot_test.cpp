#include "data/sqlite/SqliteEngine.h"
#include "forms/ComboBox.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "module/Module.h"
#include "robot/PlayGuiones.h"
#include "robot/ScriptedStage.h"
#include "runtime/Single.h"
#include "session/DialogDirectory.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace zv {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// A dialog with a control of each kind, in the place of a real one.
class frmPrueba final : public Form {
public:
    frmPrueba() : Form(u"frmTurno")
    {
        grid.Rows = 30;
        strip.addTab(u"Uno");
        strip.addTab(u"Dos");
        txt(1).LostFocus.bind([this] {
            combo.AddItem(u"tres");
            grid.Rows = 29;
        });
        chk.LostFocus.bind([this] { grid.Visible = false; });
        cmd(5).LostFocus.bind([this] { Unload(); });
    }
    ControlArray<TextBox, 2> txt{*this, u"txt"};
    Label lbl{*this, u"lbl"};
    CheckBox chk{*this, u"chk"};
    OptionButton opt{*this, u"opt"};
    ComboBox combo{*this, u"combo"};
    MSFlexGrid grid{*this, u"grid"};
    TabStrip strip{*this, u"strip"};
    ControlArray<CommandButton, 6> cmd{*this, u"cmd"};

private:
    void Form_Load() override
    {
        for (const StringView each : {u"ocho", u"dos", u"dos"})
            combo.AddItem(each);
    }
};

struct Result {
    int code;
    std::string out;
    std::string err;
    std::string file; ///< As it stands afterwards.
};

class Robot : public testing::Test {
protected:
    Robot()
    {
        registerEngine(sqliteEngine());
        installModule();
        dialogs().add(u"frmTurno", {.instance = []() -> Form& { return single<frmPrueba>(); },
                                    .ComprobarEliminacion = {}});
    }
    ~Robot() override { std::filesystem::remove(path()); }

    /// Unique among the test programs that run at the same time.
    static std::filesystem::path path()
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        return std::filesystem::temp_directory_path() / (std::string("zv-robot-") + test->name() + ".guion");
    }
    static Result play(std::string_view text, std::vector<String> words)
    {
        std::ofstream(path(), std::ios::binary) << text;
        return run(std::move(words));
    }
    /// The file as it stands; "FILE" among the words is its place.
    static Result run(std::vector<String> words)
    {
        for (String& word : words)
            if (word == u"FILE")
                word = path().u16string();
        std::ostringstream out;
        std::ostringstream err;
        const int code = playGuiones(words, scriptedStage, out, err);
        std::ostringstream file;
        file << std::ifstream(path(), std::ios::binary).rdbuf();
        return {code, out.str(), err.str(), file.str()};
    }
    static Result check(std::string_view text) { return play(text, {u"--comprobar", u"FILE"}); }
    /// In a dialog that is open and closes again.
    static std::string inDialog(const std::string& commands)
    {
        return "abrir 53 1 0\n> muestra frmTurno \"\"\n" + commands + "\ncerrar\n> cierra frmTurno\n";
    }
};

struct Mistake {
    std::string guion;
    int line;
    std::string reason;
    bool open = false; ///< Tried behind "abrir".
};
const Mistake mistakes[] = {
    {"\xff", 1, "UTF-8"},
    {"# \xc3\xb1\nsql \"\xed\xa0\x80\"", 2, "UTF-8"},
    {"> fila 1\n", 1, "ninguna orden"},
    {"cerrar\n>fila", 2, "blanco"},
    {"# a\rsql \"SELECT 1\"\r> fila 2\r", 1, "CR LF"},
    {"fondo\rsql \"SELECT 1\"\r", 1, "CR LF"},
    {"sql \"SELECT 1\"\rsql \"SELECT 2\"", 1, "CR LF"},
    {"abre 1", 1, "abre"},
    {"\"abrir\"", 1, "verbo"},
    {"sql \"a", 1, "comillas"},
    {"sql \"\\x\"", 1, "\\"},
    {"sql \"a\\", 1, "\\"},
    {"sql \"a\"b", 1, "blanco"},
    {"sesion =1", 1, "nombre"},
    {"sesion Activa=", 1, "valor"},
    {"sesion Activa", 1, "MIEMBRO"},
    {"sesion Activa=quizá", 1, "True"},
    {"sesion Activa=1.2.3", 1, "True"},
    {"sesion Nada=1", 1, "Nada"},
    {"\n\nabrir 65 1", 3, "faltan"},
    {"cerrar 1", 1, "sobran"},
    {"abrir 65 1 0 bloqueado x", 1, "sobran"},
    {"abrir 65 1 0 cerrado", 1, "bloqueado"},
    {"abrir 65 1 \"0\"", 1, "entero"},
    {"abrir 65 1 2147483648", 1, "entero"},
    {"abrir 256 1 0", 1, "255"},
    {"mostrar frmNada 1 0", 1, "frmNada"},
    {"pulsar txt(", 1, "control"},
    {"pulsar txt(a)", 1, "control"},
    {"teclear txt x", 1, "comillas"},
    {"region \"coma\"", 1, "palabra"},
    {"region raya", 1, "coma"},
    {"traza nada", 1, "traza"},
    {"fallar 0 \"x\"", 1, "0"},
    {"fallar 5 \"x\" 0", 1, "una vez"},
    {"estropear 0 IDMax", 1, "0"},
    {"estropear 5 Cifrar", 1, "Cifrar"},
    {"ocupar frmPais 1 40000", 1, "16 bits"},
    {"ocupar frmNada 1 2", 1, "frmNada"},
    {"sql \"SELECT * FROM Nada\"", 1, "Nada"},
    {"cerrar", 1, "abierta"},
    {"ver forma.Name", 1, "ninguna ventana"},
    {"ver sesion.Nada", 1, "Nada"},
    {"ver config.Nada", 1, "Nada"},
    {"ver sesion", 1, "PROPIEDAD"},
    {"abrir 53 1 0\n# abierta\n\n", 1, "acaba con la ventana frmTurno"},
    {"pulsar cmd", 2, "cmd", true},
    {"pulsar cmd(6)", 2, "cmd(6)", true},
    {"pulsar chk(-1)", 2, "chk(-1)", true},
    {"pulsar cmd(0,0)", 2, "cmd(0,0)", true},
    {"pulsar lbl", 2, "botón", true},
    {"pulsar grid", 2, "botón", true},
    {"escribir chk \"x\"", 2, "cuadro de texto", true},
    {"tecla chk F1", 2, "ENTER", true},
    {"seleccionar txt(0) -1 0", 2, "0", true},
    {"elegir combo 3", 2, "3 elementos", true},
    {"elegir combo \"tres\"", 2, "tres", true},
    {"celda grid 30 0", 2, "30 filas", true},
    {"foco txt(1)\ncelda grid 29 0", 3, "29 filas", true},
    {"doble grid 0 2", 2, "2 columnas", true},
    {"desplazar grid -1", 2, "filas", true},
    {"pestana strip 0", 2, "2 pestañas", true},
    {"ver combo.List(3)", 2, "rango", true},
    {"ver combo.List", 2, "no tiene List", true},
    {"ver combo.Clear", 2, "no tiene Clear", true},
    {"ver forma.Nada", 2, "no tiene Nada", true},
    {"ver nada.Text", 2, "nada", true},
    {"fondo\nver lbl.SetFocus", 3, "no tiene SetFocus", true},
};

TEST_F(Robot, a_folder_is_no_guion)
{
    const Result result = run({u"--comprobar", fromUtf8(std::filesystem::temp_directory_path().string())});
    EXPECT_EQ(result.code, 2);
    EXPECT_NE(result.err.find("no se puede leer"), std::string::npos) << result.err;
}

TEST_F(Robot, a_mistake_is_told_with_line_and_reason)
{
    for (const Mistake& each : mistakes) {
        const Result result = check((each.open ? "abrir 53 1 0\n" : "") + each.guion);
        EXPECT_EQ(result.code, 2) << each.guion;
        EXPECT_THAT(result.err, StartsWith(path().string() + ":" + std::to_string(each.line) + ": "))
            << each.guion;
        EXPECT_THAT(result.err, HasSubstr(each.reason));
        EXPECT_EQ(result.out, "0 passed, 1 failed\n");
    }
}

TEST_F(Robot, looks_up_what_an_act_names_when_the_focus_has_come)
{
    for (const std::string acts : {"foco txt(1)\nelegir combo \"tres\"\nver combo.ListIndex\n> "
                                   "combo.ListIndex 3\ncerrar\n> cierra frmTurno",
                                   "foco chk\ndoble grid 99 0\n> inaccesible grid\ncerrar\n> cierra frmTurno",
                                   "foco cmd(5)\nelegir combo 99\n> cierra frmTurno\n> inaccesible combo"}) {
        const Result result = check("abrir 53 1 0\n> muestra frmTurno \"\"\n" + acts);
        EXPECT_EQ(result.code, 0) << result.out << result.err;
    }
}

TEST_F(Robot, compares_with_the_lines_that_are_expected)
{
    const std::string head = "sql \"SELECT 'a{*}b'\"\n";
    for (const std::string line : {"> fila \"a{*}b\"", "> {*}", "> fila {*}", "> {*}\"", "> f{*}a{*}a{*}b\"",
                                   "> {*}fila {*}{*}\"{*}"}) {
        EXPECT_EQ(check(head + line).code, 0) << line;
        EXPECT_EQ(check(head + "\n# suelto\n" + line + "\r\n").code, 0) << line;
    }
    struct Differs {
        std::string under;
        int line;
        std::string expected;
    };
    for (const Differs& each :
         {Differs{"> fila {*}a\n", 2, "> fila {*}a"}, Differs{"", 1, "(nada más)"},
          Differs{"> {*}b{*}b{*}\n", 2, "> {*}b{*}b{*}"},
          Differs{"> fila \"A{*}b\"\n", 2, "> fila \"A{*}b\""},
          Differs{"> {*}\n#\n> fila 2\n", 4, "> fila 2"}, Differs{"> {*} \n", 2, "> {*} "}}) {
        const Result result = check("\xEF\xBB\xBF" + head + each.under + "sql \"SELECT 1\"\n> fila 1");
        EXPECT_EQ(result.code, 1);
        const std::string place = path().string() + ":" + std::to_string(each.line);
        EXPECT_THAT(result.out,
                    StartsWith(place + ": se esperaba: " + each.expected + "\n" + place + ": se vio:      "));
        EXPECT_THAT(result.out, testing::EndsWith("\n0 passed, 1 failed\n"));
    }
}

TEST_F(Robot, writes_back_what_it_saw_and_keeps_the_rest)
{
    const Result result = play(
        "# cabeza\r\n\nsql \"SELECT 1 UNION SELECT 2 UNION SELECT 'x'\"\n> fila {*}2\n# entre\n> fila {*}\n\n"
        "\tabrir 11 1 0\r\n> sobra {*}\n# pie\nsql \"SELECT 3\"",
        {u"FILE", u"--reescribir"});
    EXPECT_EQ(
        result.file,
        "# cabeza\r\n\nsql \"SELECT 1 UNION SELECT 2 UNION SELECT 'x'\"\n> fila 1\n# entre\n> fila {*}2\n"
        "> fila {*}\n\n\tabrir 11 1 0\r\n# pie\nsql \"SELECT 3\"\n> fila 3\n");
    EXPECT_EQ(run({u"--reescribir", u"FILE"}).file, result.file);
    EXPECT_EQ(run({u"--comprobar", u"FILE"}).code, 0);
    // What is printed is the same text; one with a mistake stays as it is, and is printed as far as it came.
    EXPECT_EQ(run({u"FILE"}).out, result.file);
    const std::string broken = "sql \"SELECT 1\"\nfondo\n# pie\nsql \"SELECT 2\"\n";
    EXPECT_EQ(play(broken, {u"--reescribir", u"FILE"}).file, broken);
    EXPECT_EQ(run({u"FILE"}).out, "sql \"SELECT 1\"\n> fila 1\nfondo\n# pie\n");
    for (const char* cut : {"", "\r"})
        EXPECT_EQ(
            play("sql \"SELECT 1\"\r\nsql \"SELECT 2\"" + std::string(cut), {u"--reescribir", u"FILE"}).file,
            "sql \"SELECT 1\"\r\n> fila 1\r\nsql \"SELECT 2\"\r\n> fila 2\r\n");
}

TEST_F(Robot, each_guion_starts_from_a_new_process)
{
    const String left = (path().parent_path() / "zv-robot-left-open.guion").u16string();
    useRegion(pointRegion);
    std::ofstream(std::filesystem::path(left))
        << "region coma\nfallar 5 \"Idioma\" 9\ntraza todo\nsesion IDUsuario=7\n"
           "sql \"INSERT INTO Idioma VALUES (1,'x')\"\nabrir 52 1 1\nteclear txtIdioma \"x\"\n";
    const Result result =
        play("ver config.intIDUsuario\n> config.intIDUsuario 0\nabrir 52 2 1\n"
             "> muestra frmIdioma \"Propiedades del Idioma \"\nver txtIdioma.Text\n> txtIdioma.Text \"\"\n"
             "cerrar\n> cierra frmIdioma\nsql \"SELECT COUNT(*) FROM Idioma\"\n> fila 0\n",
             {left, u"FILE", u"--comprobar", u"--motor", left});
    std::filesystem::remove(std::filesystem::path(left));
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.out, testing::MatchesRegex("SQLite [0-9.]+\n1 passed, 2 failed\n"));
    EXPECT_THAT(result.err, HasSubstr("acaba con la ventana frmIdioma abierta"));
    EXPECT_EQ(region(), pointRegion);
    EXPECT_FALSE(hasDesktop());
    EXPECT_EQ(CreateObject(u"ZVApi.cCentroApi")->TypeName(), u"cCentroApi");
    resetSingles();
}

TEST_F(Robot, refuses_a_command_line_that_it_does_not_understand)
{
    for (const std::vector<String>& words :
         std::initializer_list<std::vector<String>>{{},
                                                    {u"--bd", u"sqlite:"},
                                                    {u"FILE", u"--bd"},
                                                    {u"FILE", u"--en", u"sqlite:x", u"--bd", u"sqlite:"},
                                                    {u"FILE", u"--otra"},
                                                    {u"FILE", u"--comprobar", u"--reescribir"},
                                                    {u"FILE", u"--bd", u"a:", u"--bd", u"a:"},
                                                    {u"FILE", u"--bd", u"nada:"},
                                                    {u"FILE", u"--en", u"sqlite:/no/hay/nada.db"},
                                                    {u"no-hay.guion"}}) {
        std::ofstream(path()) << "fondo";
        const Result result = run(words);
        EXPECT_EQ(result.code, 2);
        EXPECT_FALSE(result.err.empty());
        EXPECT_EQ(result.out, "");
    }
}

TEST_F(Robot, survives_any_bytes)
{
    std::uint32_t state = 7;
    const auto chance = [&](std::size_t below) {
        state = state * 1664525 + 1013904223;
        return (state >> 8) % below;
    };
    const std::string seed = inDialog(
        "escribir txt(1) \"a\\\"b\"\ncelda grid 3 1\nver combo.List(2) sesion.Accion\npestana strip 2\n"
        "elegir combo \"dos\"\nfallar 5 \"x\" 2\ntraza todo\npulsar cmd(2)");
    for (int round = 0; round < 150; ++round) {
        std::string text = seed;
        for (std::size_t change = 0; change <= chance(3); ++change)
            text.replace(chance(text.size()), chance(3),
                         std::string(chance(2), static_cast<char>(chance(256))));
        const Result result = check(text);
        ASSERT_TRUE(result.code >= 0 && result.code <= 2) << text;
        ASSERT_EQ(result.code == 2, !result.err.empty()) << text;
    }
}

} // namespace
} // namespace zv
