// The command over a list of schools: what is wrong with one stops no other, and what is told of it.
#include "Program.h"

#include "data/Schools.h"

#include <algorithm>

using namespace zv;
using namespace std::string_literals;

namespace {

class Centros : public Zvconf {
protected:
    void list(const std::string& text) const { std::ofstream(folder / "lista", std::ios::binary) << text; }
    std::string all(int schools)
    {
        std::string text;
        for (int each = 1; each <= schools; ++each)
            text += "c" + std::to_string(each) + " sqlite:c" + std::to_string(each) + ".db\n";
        return text;
    }
    static std::size_t count(const std::string& text, const std::string& words)
    {
        std::size_t result = 0;
        for (std::size_t from = 0; (from = text.find(words, from)) != std::string::npos; ++from)
            ++result;
        return result;
    }
};

} // namespace

TEST_F(Centros, a_wrong_list_is_told_line_by_line)
{
    const struct {
        std::string text;
        const char* words;
    } cases[] = {
        {"\n# nada\n", "no tiene ningún centro"},
        {"uno\n", "línea 1: a «uno» le falta el URL"},
        {"# x\nuno nada\n", "línea 2: a «uno» le falta el URL"},
        {"uno sqlite:\n", "línea 1: a «uno» le falta el URL"},
        {"uno otro:a\n", "línea 1: «otro:a» no dice en qué motor"},
        {"niñas sqlite:a.db\n", "línea 1: «niñas» no vale de nombre"},
        {"../a sqlite:a.db\n", "no vale de nombre"},
        {std::string(61, 'a') + " sqlite:a.db\n", "no vale de nombre"},
        {"uno sqlite:a.db\nUno sqlite:b.db\n", "línea 2: el nombre «Uno» está ya en la línea 1"},
        {"uno sqlite:a.db\nb historial:sqlite:./z/../a.db\n",
         "línea 2: el centro de historial:sqlite:./z/../a.db está"},
        {"a odbc:DSN=x;ESQUEMA=y;UID=z\nb odbc:esquema=y; dsn=x\n", "línea 2: el centro de odbc:"},
        {"a odbc:DSN=x;SERVIDORES=uno,dos\nb odbc:DSN=x;SERVIDORES=dos,uno,tres\n",
         "línea 2: el centro de odbc:"},
        {"uno sqlite:\xff.db\n", "línea 1: no está en UTF-8"},
        {"u\0no"s, "línea 1: tiene caracteres"},
        {"a odbc:DSN=x;PWD=secreta\n", "la pueden leer otros"},
        {"a odbc:DSN=x;CLAVE= {;secreta}\n", "la pueden leer otros"},
        {"a odbc:DSN=x;SERVIDORES=uno\nb odbc:DSN=x;SERVIDORES=dos\nc odbc:DSN=x;SERVIDORES=Dos\n",
         "zvconf: lista, línea 3: el centro"},
        {all(27) + all(27), "\n(... y 7 más: "},
    };
    for (const auto& [text, words] : cases) {
        list(text);
        EXPECT_EQ(run("centros crear lista"), 2) << text;
        EXPECT_NE(err.find(words), std::string::npos) << text << err;
        EXPECT_EQ(err.find("secreta"), std::string::npos) << err;
    }
    // As an editor of another system saves it.
    list("\xEF\xBB\xBF# centros\r\n\r\n  c1 \t sqlite:con espacio.db  \r\n");
    EXPECT_EQ(run("centros crear lista"), 0) << err;
    EXPECT_TRUE(fs::exists(folder / "con espacio.entrada.db"));
}

TEST_F(Centros, those_that_fail_stop_no_other)
{
    list(all(4) + "rota sqlite:rota.db\nlejos odbc:DSN=nohay;PWD=secreta\n");
    fs::permissions(folder / "lista", fs::perms::owner_read | fs::perms::owner_write);
    for (const char* each : {"rota.db", "rota.borrado.db", "rota.entrada.db"})
        std::ofstream(folder / each) << std::string(5000, 'x');
    fs::create_directory(folder / "copias");
    const struct {
        const char* arguments;
        std::size_t well;
        const char* words; ///< In the report.
    } cases[] = {
        {"crear --solo c2", 1, nullptr},
        {"crear --ejemplo --a-la-vez 3 --informe r.json", 4, R"("dice":"Ya estaba.")"},
        {"crear --informe r.csv", 4, ";crear;no se ha podido;"},
        {"comprobar --informe r.csv", 4, "«rota.db» no es una base de datos"},
        {"copia --carpeta copias --informe r.csv", 4, "copias/c1/copia-"},
        {"copia --carpeta copias --informe r.json", 4, "La copia de hoy ya está"},
    };
    for (const auto& [arguments, well, words] : cases) {
        EXPECT_EQ(run("centros " + std::string(arguments) + " lista"), words == nullptr ? 0 : 1)
            << out << err;
        if (words == nullptr)
            continue;
        EXPECT_EQ(count(out, ": bien ("), well) << out;
        EXPECT_NE(out.find("no se ha podido 2.\n"), std::string::npos) << out;
        const std::string report =
            contents(folder / std::string(arguments).substr(std::string(arguments).find("r.")));
        EXPECT_NE(report.find(words), std::string::npos) << report;
        EXPECT_EQ((out + err + report).find("secreta"), std::string::npos) << out << err << report;
    }
    EXPECT_EQ(run("centros copia lista --carpeta nohay"), 2) << "before anything is done";
    fs::copy(folder / "lista", folder / "lista.csv");
    EXPECT_EQ(run("centros comprobar lista.csv --informe ./lista.csv"), 2) << "the list is not written over";
    EXPECT_EQ(run("centros copia lista --carpeta copias --frase lista.csv --informe ./lista.csv"), 2);
    EXPECT_NE(err.find("encima de la frase"), std::string::npos) << err;

    for (const char* each : {"nula.db", "nula.borrado.db", "nula.entrada.db"})
        std::ofstream(folder / each).flush();
    std::ofstream(folder / "mala") << "nula sqlite:nula.db\n";
    EXPECT_EQ(run("centros comprobar mala"), 1) << err;
    EXPECT_NE(out.find(" líneas más)\n  Defectos: "), std::string::npos) << out;

    // The names of pupils are for who looks at that school.
    openSchool(u"sqlite:" + (folder / "c1.db").u16string())
        .centro->Execute(u"UPDATE Alumno SET fechabaja='1/1/2025' WHERE IDAlumno=356");
    EXPECT_EQ(run("centros comprobar --datos lista --solo c1"), 1) << out << err;
    EXPECT_NE(out.find("consejo-baja"), std::string::npos) << out;
    EXPECT_EQ(run("centros comprobar --datos lista --informe r.csv"), 1) << out << err;
    EXPECT_EQ((out + contents(folder / "r.csv")).find("consejo-baja"), std::string::npos) << out;
    EXPECT_NE(out.find("c1: con defectos"), std::string::npos) << out;
    EXPECT_NE(out.find("\n  Fallos: 1. Consejos: "), std::string::npos) << out;
}

TEST_F(Centros, two_runs_at_once_get_on_over_a_list_that_is_read_once_and_a_report_that_is_a_link)
{
    list(all(3));
    fs::create_directory(folder / "copias");
    std::ofstream(folder / "de otro") << "intacto";
    const struct {
        const char* arguments;
        const char* words;
    } cases[] = {
        {"crear --ejemplo", "\nCentros: 3. De ellos, bien 3.\n"},
        {"copia --carpeta copias", "\nCopias sin la clave de las enfermedades: 3. "},
    };
    for (const auto& [arguments, words] : cases) {
        for (const char* each : {"r.json", "r.json.parte"}) {
            fs::remove(folder / each);
            fs::create_symlink("de otro", folder / each);
        }
        const std::string line = "cd '" + folder.string() +
                                 "' && for run in 1 2; do cat lista | { '" ZVCONF "' centros " + arguments +
                                 " /dev/stdin --informe r.json >out$run 2>&1; echo $? >>out$run; } & done; "
                                 "wait";
        EXPECT_EQ(std::system(line.c_str()), 0);
        for (const char* each : {"out1", "out2"}) {
            out = contents(folder / each);
            EXPECT_NE(out.find(words), std::string::npos) << out;
            EXPECT_TRUE(out.ends_with("\nInforme en r.json.\n0\n")) << out;
        }
        EXPECT_EQ(count(contents(folder / "r.json"), R"("resultado":"bien")"), 3U);
        EXPECT_FALSE(fs::is_symlink(folder / "r.json"));
        EXPECT_EQ(contents(folder / "de otro"), "intacto");
    }
    // Three databases of each school, lista, de otro, copias, clave, both names of a report and both outputs;
    // the engine's own files, which it keeps where two programs close at once, are none of ours.
    const auto ours = std::ranges::count_if(fs::directory_iterator(folder), [](const auto& each) {
        const std::string name = each.path().string();
        return !name.ends_with("-wal") && !name.ends_with("-shm");
    });
    EXPECT_EQ(ours, 9 + 8);
}

TEST_F(Centros, whose_output_nobody_reads_writes_its_report)
{
    list(all(3));
    const std::string line = "cd '" + folder.string() +
                             "' && { '" ZVCONF
                             "' centros crear lista --informe r.json 2>err; echo $? >code; } | true";
    EXPECT_EQ(std::system(line.c_str()), 0);
    EXPECT_EQ(contents(folder / "code"), "2\n") << contents(folder / "err");
    EXPECT_EQ(count(contents(folder / "r.json"), R"("resultado":"bien")"), 3U);
}

TEST_F(Centros, one_that_dies_stops_no_other)
{
    ASSERT_EQ(run("crear --bd sqlite:c2.db"), 0) << err;
    list(all(3));
    // The system ends whoever writes a file longer than that.
    const std::string line =
        "cd '" + folder.string() + "' && ulimit -f 16 && '" ZVCONF "' centros crear lista >out 2>&1";
    EXPECT_EQ(WEXITSTATUS(std::system(line.c_str())), 1);
    out = contents(folder / "out");
    EXPECT_EQ(count(out, "El programa se cortó"), 4U) << out;
    EXPECT_NE(out.find("c2: bien ("), std::string::npos) << out;
    EXPECT_EQ(run("centros crear lista"), 0) << out << err << "what the dead left is in nobody's way";
}

TEST_F(Centros, a_signal_ends_it_behind_those_at_work_and_the_next_goes_on)
{
    list(all(30));
    const std::string line = "cd '" + folder.string() +
                             "' && { '" ZVCONF
                             "' centros crear lista --a-la-vez 1 --informe r.json >out 2>err & "
                             "until [ -s out ]; do sleep 0.01; done; kill -TERM $!; wait $!; }";
    EXPECT_EQ(WEXITSTATUS(std::system(line.c_str())), 1);
    const std::string report = contents(folder / "r.json");
    const std::size_t made = count(report, R"("resultado":"bien")");
    EXPECT_EQ(made + count(report, R"("resultado":"sin hacer")"), 30U) << report;
    EXPECT_TRUE(made > 0 && made < 30) << report;
    EXPECT_NE(contents(folder / "err").find("no se empieza ninguno más"), std::string::npos);
    EXPECT_EQ(run("centros crear lista --informe r.json"), 0) << out << err;
    EXPECT_EQ(count(contents(folder / "r.json"), "Ya estaba."), made);
}

TEST_F(Centros, those_that_find_no_server_are_to_be_tried_again_if_nobody_ends_it)
{
    list("lejos odbc:Driver=PostgreSQL Unicode;Servername=/nada;Database=x;UID=y\nno odbc:DSN=nohay\n");
    const std::string line = "cd '" + folder.string() +
                             "' && { '" ZVCONF "' centros comprobar lista >out 2>err & "
                             "for each in $(seq 1500); do grep -q 'otra vez' out && break; sleep 0.01; done; "
                             "kill -TERM $!; wait $!; }";
    EXPECT_EQ(WEXITSTATUS(std::system(line.c_str())), 1);
    EXPECT_NE(contents(folder / "out").find("su servidor: 1.\n"), std::string::npos)
        << "not without a source";
    EXPECT_EQ(contents(folder / "err"), "Se ha interrumpido: no se empieza ninguno más.\n");
}
