#include "Program.h"

#include "care/copies/Contents.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "runtime/Convert.h"
#include "suite/sodium/KeyFile.h"

#include <regex>
#include <set>

using namespace zv;

TEST_F(Zvconf, makes_checks_and_frees_a_school)
{
    EXPECT_EQ(run("crear --bd sqlite:c.db --ejemplo"), 0) << err;
    EXPECT_EQ(out, "Creado el centro de ejemplo en sqlite:c.db.\n");
    EXPECT_EQ(run("comprobar --bd sqlite:c.db"), 0) << out << err;
    EXPECT_EQ(out, "Las bases de datos tienen todo lo que hace falta.\n");
    {
        const School school = openSchool(u"sqlite:" + (folder / "c.db").u16string());
        EXPECT_FALSE(school.centro->Execute(u"Select * From Alumno")->Eof());
        school.centro->Execute(
            u"Insert into RegistroActivo values ('frmPais',3,7,'otra','2024-09-12 08:30:00')");
        school.centro->Execute(
            u"Insert into RegistroActivo values ('frmTurno',1,8,'otra',CURRENT_TIMESTAMP)");
        school.centro->Execute(u"Drop Table Idioma");
        school.borrado->Execute(u"Drop Table Pais");
    }
    EXPECT_EQ(run("comprobar --bd sqlite:c.db"), 1);
    EXPECT_EQ(out, "Base del centro: falta la tabla Idioma.\nBase de borrados: falta la tabla Pais.\n"
                   "Defectos: 2. Pida que los corrija quien lleva las bases de datos.\n");

    EXPECT_EQ(run("registros --bd sqlite:c.db"), 0) << err;
    EXPECT_TRUE(std::regex_match(
        out, std::regex(
                 "frmPais 3: usuario 7, estación otra, desde 2024-09-1.* \\(la estación ya ha terminado\\)\n"
                 "frmTurno 1: usuario 8, estación otra, desde [-0-9]{10} [:0-9]{8}\nFilas en uso: 2.\n.*\n")))
        << out;
    EXPECT_EQ(run("registros --bd sqlite:c.db --liberar FRMPAIS 4"), 1) << "no such row";
    EXPECT_EQ(run("registros --bd sqlite:c.db --liberar frmpais 3"), 0);
    EXPECT_EQ(out, "frmpais 3 queda libre.\n");
    EXPECT_EQ(run("registros --bd sqlite:c.db --liberar-todo"), 0);
    EXPECT_EQ(out, "Filas liberadas: 1.\n");
    EXPECT_EQ(run("registros --bd sqlite:c.db"), 0);
    EXPECT_EQ(out, "Filas en uso: 0.\n");

    EXPECT_FALSE(fs::exists(folder / "c.db-wal"));
    std::ofstream(folder / "nulo.db");
    std::ofstream(folder / "nulo.borrado.db");
    std::ofstream(folder / "nulo.entrada.db");
    EXPECT_EQ(run("comprobar --bd sqlite:nulo.db"), 1);
    EXPECT_EQ(fs::file_size(folder / "nulo.db"), 0U) << "who only looks writes nothing";

    EXPECT_EQ(run("crear --bd sqlite:vacio.db"), 0);
    EXPECT_TRUE(openSchool(u"sqlite:" + (folder / "vacio.db").u16string())
                    .centro->Execute(u"Select * From Alumno")
                    ->Eof());
}

TEST_F(Zvconf, finds_what_the_disk_spoilt)
{
    ASSERT_EQ(run("crear --bd sqlite:c.db --ejemplo"), 0) << err;
    const Long page = CLng(openSchool(u"sqlite:" + (folder / "c.db").u16string())
                               .centro->executeNative(u"SELECT rootpage FROM sqlite_schema WHERE name='Pais'")
                               ->row()
                               .front());
    std::fstream file(folder / "c.db", std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(page * 4096 - 200);
    file << std::string(200, '\xFF') << std::flush;
    EXPECT_EQ(run("comprobar --bd sqlite:c.db"), 1);
    EXPECT_TRUE(out.starts_with("Base del centro: está dañada (")) << out;
    EXPECT_NE(out.find("copia de seguridad"), std::string::npos) << out;
    // It is copied as it is, and said so; it does not take the place of a school.
    EXPECT_EQ(run("copia c.zvcopia --bd sqlite:c.db"), 1);
    EXPECT_NE(out.find("DEFECTUOSA"), std::string::npos) << out;
    EXPECT_EQ(run("copia --comprobar c.zvcopia"), 1);
    EXPECT_EQ(run("crear --bd sqlite:d.db"), 0);
    EXPECT_EQ(run("restaurar c.zvcopia --bd sqlite:d.db"), 2);
}

TEST_F(Zvconf, copies_say_what_they_hold_and_whether_their_key_is_good)
{
    ASSERT_EQ(run("crear --bd sqlite:c.db --ejemplo"), 0) << err;
    const fs::path key = folder / "clave";
    fs::copy(key, folder / "buena");
    std::ofstream(folder / "frase") << "\xEF\xBB\xBFuna frase larga  \r\n";
    std::ofstream(folder / "misma") << "una frase larga";
    std::ofstream(folder / "otra") << "otra";
    fs::create_directory(folder / "d");
    std::ofstream(folder / "d/copia-2020-01-01.zvcopia") << "nada";
    openSchool(u"sqlite:" + (folder / "c.db").u16string())
        .centro->executeNative(u"CREATE TRIGGER ajeno AFTER DELETE ON Pais BEGIN DELETE FROM Alumno; END");
    const struct {
        const char* key;
        const char* arguments;
        int code;
        const char* words;
    } cases[] = {
        {"buena", "crear --bd sqlite:otro.db", 0, "Creado"},
        {"buena", "copia --bd sqlite:c.db --frase frase c.zvcopia", 0,
         "un disparador que no es de este programa"},
        {"buena", "copia --comprobar c.zvcopia --frase misma", 0, "la frase la abre"},
        {"buena", "copia c.zvcopia --comprobar --frase otra", 1, "no es su frase"},
        {"otra", "copia mala.zvcopia --bd sqlite:c.db --frase frase", 1, "la pueden leer otros"},
        {"buena", "copia --diaria d --bd sqlite:c.db", 0, "2020-01-01.zvcopia» no es una copia"},
        {"buena", "copia --diaria d --bd sqlite:c.db --frase frase", 1, "Quítela y repita la orden"},
        {"buena", "copia --diaria d --bd sqlite:otro.db", 2, "es de otro centro"},
        {nullptr, "restaurar c.zvcopia --bd sqlite:r.db", 0, "La copia lleva la suya"},
        {nullptr, "restaurar --frase misma --bd sqlite:r.db c.zvcopia", 0, "se leen con la clave"},
        {nullptr, "importar lista --nodo Enfermedades --bd sqlite:r.db", 2, "«clave», no existe"},
    };
    std::ofstream(folder / "lista") << "Nombre\nViruela\n";
    for (const auto& [with, arguments, code, words] : cases) {
        fs::remove(key);
        if (with != nullptr)
            fs::copy(folder / with, key);
        EXPECT_EQ(run(arguments), code) << arguments << '\n' << out << err;
        EXPECT_NE((out + err).find(words), std::string::npos) << arguments << '\n' << out << err;
    }
    EXPECT_TRUE(openSchool(u"sqlite:" + (folder / "r.db").u16string())
                    .centro->executeNative(u"SELECT name FROM sqlite_schema WHERE type='trigger'")
                    ->Eof());
}

TEST_F(Zvconf, says_what_dialogs_will_do_to_the_data_repairs_it_and_takes_that_back)
{
    ASSERT_EQ(run("crear --bd sqlite:c.db --ejemplo"), 0) << err;
    EXPECT_EQ(run("comprobar --datos --bd sqlite:c.db"), 0) << out << err;
    const String url = u"sqlite:" + (folder / "c.db").u16string();
    const auto read = [&] { return care::contentsOf(openSchool(url), engineOf(url)); };
    {
        const School school = openSchool(url);
        school.centro->Execute(u"DELETE FROM Alumno_InfIndESO WHERE CodAlumno=304");
        school.centro->Execute(
            u"DELETE FROM ConsejoOrientador_Nota WHERE codAlumno=359 AND codConsejoOrientador=8");
        school.centro->Execute(u"UPDATE Emisor SET CIF='B28999880' WHERE IDEmisor=2");
    }
    const auto broken = read();
    EXPECT_EQ(run("comprobar --datos --json --bd sqlite:c.db"), 1) << err;
    EXPECT_TRUE(
        std::regex_search(out, std::regex("^\\[\\{\"clase\":\"fallo\",\"regla\":\"consejo-incompleto\".*"
                                          "\"reparable\":true\\}\n,.*\n,\\{\"clase\":\"consejo\",")))
        << out;
    EXPECT_EQ(run("progreso --json --faltan --tipo eso --seccion 13 --bd sqlite:c.db"), 1) << err;
    EXPECT_TRUE(std::regex_search(
        out, std::regex(
                 "^\\[\\{\"clase\":\"definicion\",\"tipo\":\"eso\".*\\}\n(,.*\n)*"
                 ",\\{\"clase\":\"informe\",\"tipo\":\"eso\",\"seccion\":13,.*\"alumno\":304,.*\"escrito\":2,"
                 "\"esperado\":9,\"empezado\":true,\"falta\":\\[\"Cognitivas-Intelectuales\",.*"
                 "\"nombresAjenos\":\\[\\]\\}\n")))
        << out;
    EXPECT_EQ(run("progreso --seccion 99 --bd sqlite:c.db"), 2) << "nothing asked for is not all whole";
    EXPECT_EQ(run("progreso --seccion 13 --tipo primaria --bd sqlite:c.db"), 2);
    EXPECT_TRUE(care::differences(broken, read()).empty()) << "who only looks changes nothing";
    EXPECT_EQ(run("comprobar --datos --reparar --bd sqlite:c.db"), 0) << out << err;
    std::smatch undo;
    const std::string mended = out;
    EXPECT_TRUE(std::regex_search(mended, undo,
                                  std::regex("Fallos: 2. Consejos: 1.\nReparados: 2.\n.*zvconf (.*)\n")))
        << out;
    EXPECT_EQ(run("comprobar --datos --bd sqlite:c.db"), 0) << "advice alone";
    EXPECT_EQ(run(undo[1].str()), 0) << out << err;
    for (const String& each : care::differences(broken, read()))
        EXPECT_NE(each.find(u"historial"), String::npos) << toUtf8(each);
    EXPECT_EQ(run("comprobar --datos --bd sqlite:c.db"), 1);
    EXPECT_EQ(run("comprobar --resumen --bd sqlite:c.db"), 2);
    EXPECT_EQ(run("comprobar --datos --reparar --bd sqlite:c.db"), 0) << out << err;
    openSchool(url).centro->executeNative(u"UPDATE Emisor SET CIF='B28999886' WHERE IDEmisor=2");
    openSchool(url).centro->executeNative(u"ALTER TABLE Cuenta DROP COLUMN Numero");
    run("comprobar --datos --bd sqlite:c.db");
    EXPECT_EQ(out.find("Ninguna ventana"), std::string::npos) << out;
    run("comprobar --datos --json --bd sqlite:c.db");
    EXPECT_NE(out.find("{\"clase\":\"no-mirada\",\"regla\":\"cuenta\""), std::string::npos) << out;
}

TEST_F(Zvconf, stopped_while_it_makes_a_school_leaves_a_whole_one_or_none)
{
    int stopped = 0;
    for (const char* delay : {"0.01", "0.02", "0.03", "0.05", "0.08", "0.12"}) {
        const std::string line = "cd '" + folder.string() + "' && timeout -s INT " + delay +
                                 " '" ZVCONF "' crear --bd 'sqlite:" + (folder / "c.db").string() +
                                 "' --ejemplo >/dev/null 2>&1";
        constexpr int inTime = 124; // As timeout tells it.
        stopped += WEXITSTATUS(std::system(line.c_str())) == inTime ? 1 : 0;
        std::set<std::string> left;
        for (const fs::directory_entry& each : fs::directory_iterator(folder))
            if (left.insert(each.path().filename()); each.path().extension() == ".db")
                fs::remove(each);
        left.erase("clave");
        const std::set<std::string> whole{"c.borrado.db", "c.db", "c.entrada.db"};
        EXPECT_TRUE(left.empty() || left == whole) << delay;
    }
    EXPECT_GT(stopped, 0);
}

TEST_F(Zvconf, changes_the_key_also_after_a_change_that_was_cut_off)
{
    fs::create_symlink("nada", folder / "clave");
    EXPECT_EQ(run("clave crear"), 2);
    EXPECT_NE(err.find("es un enlace a un fichero que no existe"), std::string::npos) << err;
    fs::remove(folder / "clave");
    std::ofstream(folder / "clave").flush();
    EXPECT_EQ(run("clave crear"), 2);
    EXPECT_NE(err.find("está vacía"), std::string::npos) << err;
    fs::remove(folder / "clave");
    EXPECT_EQ(run("clave lugar"), 1);
    EXPECT_NE(out.find("clave\nLa clave del cifrado, «clave», no existe"), std::string::npos) << out;
    EXPECT_EQ(run("clave cambiar --bd sqlite:c.db"), 2) << "no school";
    EXPECT_EQ(run("crear --bd sqlite:c.db --ejemplo"), 0) << err;
    EXPECT_EQ(run("clave lugar"), 0) << out;
    EXPECT_EQ(run("clave crear"), 2);
    EXPECT_NE(err.find("Ya hay una clave"), std::string::npos) << err;
    const fs::path key = folder / "clave";
    const fs::path waiting = folder / "clave.nueva";
    const CipherKey first = readKey(key);
    const School school = openSchool(u"sqlite:" + (folder / "c.db").u16string());
    const auto names = [&](Connection& database, const CipherKey& with) {
        std::vector<std::string> plain;
        for (auto rows = database.Execute(u"Select Nombre From Enfermedad"); !rows->Eof(); rows->MoveNext())
            plain.push_back(toUtf8(with.open(String() + rows->Fields(u"Nombre")).value_or(u"?")));
        return plain;
    };
    const auto plain = names(*school.centro, first);
    ASSERT_EQ(plain.size(), 6U);
    EXPECT_EQ(plain.front(), "Asma");
    school.borrado->Execute(
        statement(u"Insert into Enfermedad values (9,'{}',NULL)", {first.seal(u"Viruela")}));
    school.borrado->Execute(u"Insert into Enfermedad values (10,NULL,NULL)");

    school.centro->executeNative(u"CREATE TRIGGER t BEFORE UPDATE ON Enfermedad WHEN OLD.IDEnfermedad=3 "
                                 u"BEGIN SELECT RAISE(FAIL,'corte'); END");
    EXPECT_EQ(run("clave cambiar --bd sqlite:c.db"), 2);
    EXPECT_EQ(readKey(key).text(), first.text()) << "not before all is done";
    const CipherKey second = readKey(waiting);
    EXPECT_EQ(names(*school.centro, first), plain) << "a pass is made whole or not at all";
    school.centro->executeNative(u"DROP TRIGGER t");

    EXPECT_EQ(run("clave cambiar --bd sqlite:c.db"), 0) << out << err;
    EXPECT_TRUE(out.starts_with("Se ha terminado un cambio que quedó a medias. "
                                "Textos cifrados con la clave nueva: 11; lo estaban ya: 0.\n"))
        << out;
    EXPECT_EQ(readKey(key).text(), second.text());
    EXPECT_FALSE(fs::exists(waiting));
    EXPECT_EQ(names(*school.centro, second), plain);
    EXPECT_EQ(names(*school.borrado, second).front(), "Viruela");
    EXPECT_EQ(run("clave cambiar --bd sqlite:c.db"), 0) << out << err;
    EXPECT_EQ(readKey(folder / "clave.anterior").text(), first.text()) << "the copies of then need it";
    EXPECT_EQ(readKey(folder / "clave.anterior-2").text(), second.text());
    const CipherKey third = readKey(key);

    school.centro->Execute(u"Update Enfermedad Set Nombre='ajeno' Where IDEnfermedad=2");
    EXPECT_EQ(run("clave cambiar --bd sqlite:c.db"), 1);
    EXPECT_NE(out.find("Base del centro: la enfermedad 2 no se puede descifrar (Nombre)."), std::string::npos)
        << out;
    EXPECT_EQ(readKey(key).text(), third.text());
    EXPECT_FALSE(fs::exists(waiting));
}

TEST_F(Zvconf, says_what_is_wrong_with_its_command_line)
{
    ASSERT_EQ(run("crear --bd sqlite:c.db"), 0);
    std::ofstream(folder / "texto.db") << std::string(4096, 'x');
    ASSERT_EQ(run("copia c.zvcopia --bd sqlite:c.db"), 0);
    fs::copy(folder / "c.db", folder / "sola.db");
    const std::pair<const char*, const char*> cases[] = {
        {"", "Falta la orden. Con --help"},
        {"crea", "«crea» no es una orden."},
        {"crear", "Falta --bd."},
        {"crear --bd", "A --bd le falta su valor."},
        {"crear --bd sqlite:d.db --ejempl", "«--ejempl» no es una opción"},
        {"crear --bd sqlite:d.db --bd sqlite:e.db", "--bd está dos veces."},
        {"crear --bd sqlite:c.db", "«c.db» ya existe"},
        {"crear --bd ''", "A --bd le falta su valor: está vacío."},
        {"crear --bd sqlite:no/c.db", "su carpeta no existe"},
        {"crear --bd c.db", "empiece por «sqlite:», «odbc:», «historial:»."},
        {"crear --bd 'obdc:DSN=x;PWD=oculta;UID=y'", "«obdc:DSN=x;UID=y»"},
        {"crear --bd 'motor://ana:o:cu@lta@equipo/base'", "«motor://ana@equipo/base»"},
        {"crear --bd 'obdc:DSN=x;PWD\t=oculta'", "«obdc:DSN=x»"},
        {"crear --bd 'obdc:DSN=x;PASWORD=oculta;UID=y;contraseña = {a;oculta}'", "«obdc:DSN=x;UID=y»"},
        {"crear --bd 'obdc:DSN=x;clave={a}oculta;oculta'", "«obdc:DSN=x»"},
        {"crear 'odbc:DSN=x;Password = {a}};oculta}'", "«odbc:DSN=x» no es una opción"},
        {"crear --bd 'odbc:Driver=nadie;pwd={a}};oculta};UID=y'", "nombra un controlador"},
        {"comprobar --bd sqlite:nada.db", "«nada.db» no existe"},
        {"comprobar --bd sqlite:texto.db", "«texto.db» no es una base de datos"},
        {"comprobar --bd sqlite:.", "es una carpeta"},
        {"comprobar --bd sqlite:sola.db", "«sola.borrado.db» no existe, y un centro son tres ficheros"},
        {"restaurar c.zvcopia --bd sqlite:.", "es una carpeta"},
        {"registros --bd sqlite:c.db --liberar frmPais", "A --liberar le falta su valor."},
        {"registros --bd sqlite:c.db --liberar frmPais 3x", "«3x» no es el número de una fila."},
        {"registros --bd sqlite:c.db --liberar frmPais 3 --liberar-todo", "no van juntas"},
        {"copia", "Falta el fichero de la copia."},
        {"copia '' --bd sqlite:c.db", "Falta el fichero de la copia."},
        {"copia a.zvcopia --bd sqlite:c.db --frase nada.txt", "«nada.txt» no se puede leer"},
        {"copia --diaria x", "Falta --bd."},
        {"copia --comprobar a.zvcopia --bd sqlite:c.db", "--comprobar va sin --bd"},
        {"copia --diaria x --comprobar", "no van juntas"},
        {"copia --diaria nada --bd sqlite:c.db", "«nada» no es una carpeta"},
        {"restaurar --bd sqlite:c.db uno otro", "«otro» no es una opción"},
        {"progreso --bd sqlite:c.db --tipo bachiller", "no es un tipo de informe"},
        {"progreso --bd sqlite:c.db --json --csv", "no van juntas"},
        {"historial deshacer --bd sqlite:c.db --desde '2026-11-27 25:00'", "no es un día (AAAA-MM-DD) ni"},
        {"historial ver --bd sqlite:c.db --dia '2026-11-27 10:00'", "no es un día (AAAA-MM-DD)."},
        {"historial deshacer --bd sqlite:c.db --fila Pais 1 --campo Nombre", "no es una columna de Pais."},
        {"textos --ventana frmNadie", "«frmNadie» no es una ventana"},
        {"diario lista --carpeta texto.db", "«texto.db» no es una carpeta"},
        {"diario lista --carpeta nada", "«nada» no es una carpeta"},
        {"clave", "A clave le falta qué hacer"},
        {"clave cambiar", "Falta --bd."},
        {"$(printf '\\377')", "no está en UTF-8"},
    };
    for (const auto& [arguments, words] : cases) {
        EXPECT_EQ(run(arguments), 2) << arguments;
        EXPECT_NE(err.find(words), std::string::npos) << arguments << '\n' << err;
        EXPECT_EQ(out, "") << arguments;
        EXPECT_EQ(err.find("oculta"), std::string::npos) << err;
    }
    EXPECT_FALSE(fs::exists(folder / "d.db")) << "a command line that is wrong does nothing";
    EXPECT_EQ(run("--help", "/dev/full"), 2) << "what cannot be written is a failure";
}
