#include "data/history/Erasure.h"
#include "data/history/Export.h"
#include "forms/Ficha.h"
#include "history/Chronicle.h"
#include "module/Hosted.h"
#include "robot/OddTexts.h"
#include "session/cConstCol.h"
#include "suite/sodium/EncryptoApi.h"

#include <fstream>
#include <sstream>

namespace zv {
namespace {

class Erasure : public Chronicle {
protected:
    /// Times that a text stands in the files of the live database, in either of SQLite's encodings.
    std::size_t inFiles(const std::string& text) const
    {
        std::string wide;
        for (const char each : text)
            (wide += each) += '\0';
        std::size_t result = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            std::ostringstream bytes;
            bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
            const std::string all = bytes.str();
            for (const std::string& sought : {text, wide})
                for (auto at = all.find(sought); at != std::string::npos; at = all.find(sought, at + 1))
                    ++result;
        }
        return result;
    }
    Long count(StringView condition) const
    {
        return CLng(raw(u"SELECT COUNT(*) FROM HistorialAsiento WHERE " + String(condition))->row().front());
    }
    std::vector<std::string> exported(history::Names names) const
    {
        std::vector<std::string> lines;
        const history::Head head = history::exportAll(
            *school.centro, names, [&](const std::string& line) { lines.push_back(line); });
        EXPECT_EQ(head.link, history::headOf(*school.centro).link);
        return lines;
    }
    /// A field of a line, read back by the engine.
    String field(const std::string& line, StringView path) const
    {
        const Value value =
            raw(u"SELECT json_extract(" + textLiteral(fromUtf8(line)) + u",'" + String(path) + u"')")
                ->row()
                .front();
        return value.isNull() ? u"NULL" : CStr(value);
    }
};

/// Two pupils, 7 and 8, whose rows and ratings change hands.
class Pupils : public Erasure {
protected:
    Pupils()
    {
        dialog(u"frmInformeIndividual", u"Ana",
               {u"INSERT INTO Alumno_InfInd VALUES (7,'SIETE uno','','')",
                u"INSERT INTO Alumno_InfInd VALUES (8,'OCHO uno','','')",
                u"UPDATE Alumno_InfInd SET Dificultad='SIETE dos' WHERE CodAlumno=7",
                u"UPDATE Alumno_InfInd SET Dificultad='OCHO dos' WHERE CodAlumno=8",
                u"UPDATE Alumno_InfIndESO SET Alumno1='SIETE falta' WHERE CodAlumno=7",
                u"UPDATE Alumno_InfIndESO SET Alumno1='OCHO falta' WHERE CodAlumno=8",
                u"INSERT INTO Alumno_InfInd VALUES (7,'SIETE falla','','')",
                u"INSERT INTO Alumno_InfInd VALUES (8,'OCHO falla, 7','','')",
                u"UPDATE Alumno_InfInd SET Nada='SIETE columna' WHERE CodAlumno=7",
                u"INSERT INTO Alumno_InfIndESO (CodAlumno,Alumno1) SELECT 7,'SIETE aparte'",
                u"INSERT INTO Alumno_InfIndESO (CodAlumno,Alumno1) SELECT 8,'OCHO aparte'",
                // A rating's row is one pupil's after another's, and a change of it names neither.
                u"INSERT INTO ConsejoOrientador_Nota VALUES (1,7,5,71,1)",
                u"UPDATE ConsejoOrientador_Nota SET codCOResp=72 WHERE IDCORNota=1",
                u"DELETE FROM ConsejoOrientador_Nota WHERE IDCORNota=1",
                u"INSERT INTO ConsejoOrientador_Nota VALUES (1,8,5,81,1)",
                u"UPDATE ConsejoOrientador_Nota SET codCOResp=82 WHERE IDCORNota=1",
                u"INSERT INTO Pais (IDPais,Descripcion) VALUES (7,'Perú')", u"DELETE FROM Alumno_InfInd",
                u"DELETE FROM Alumno_InfIndESO"});
    }
};

TEST_F(Pupils, texts_of_one_leave_the_files_and_the_chain_still_proves)
{
    ASSERT_GT(inFiles("SIETE"), 0U);
    const Long ofOther = count(u"Antes LIKE '%OCHO%' OR Despues LIKE '%OCHO%'");
    const schema::Table& pupil = *schema::table(u"Alumno");
    const auto found = static_cast<Long>(history::entriesAbout(*school.centro, pupil, 7).size());
    EXPECT_EQ(history::eraseAbout(*school.centro, pupil, 7), found);
    EXPECT_EQ(history::eraseAbout(*school.centro, pupil, 7), 0);
    EXPECT_TRUE(engineOf(url).scrub(*school.centro));
    EXPECT_EQ(inFiles("SIETE"), 0U);
    EXPECT_EQ(count(u"Antes LIKE '%OCHO%' OR Despues LIKE '%OCHO%'"), ofOther);
    EXPECT_EQ(count(u"Tabla<>'Pais' AND Clase<>10 AND (Antes LIKE '%=7%' OR Despues LIKE '%=7%')"), 0)
        << "his ratings";
    EXPECT_EQ(count(u"Despues LIKE '%=82%'"), 1) << "another's";
    EXPECT_EQ(count(u"Despues LIKE '%Perú%'"), 1) << "the row of another table";
    EXPECT_EQ(findings(), "");
    // Only the order erases, and nobody brings back.
    raw(u"BEGIN");
    raw(u"UPDATE HistorialAsiento SET Antes=NULL, Despues=NULL, Sal=NULL WHERE Despues LIKE '%OCHO dos%'");
    EXPECT_EQ(verified().defects, 1);
    raw(u"ROLLBACK");
    EXPECT_EQ(history::eraseAbout(*school.centro, *schema::table(u"Pais"), 7), 1);
    EXPECT_EQ(count(u"Despues LIKE '%Perú%'"), 0);
    raw(u"BEGIN");
    raw(u"UPDATE HistorialAsiento SET Despues=NULL, Sal=NULL WHERE Clase=10 AND Tabla='Pais'");
    EXPECT_EQ(verified().defects, 2) << "the erasing entry and what it erased";
    raw(u"ROLLBACK");
}

TEST_F(Pupils, texts_older_than_the_limit_are_erased)
{
    using namespace std::chrono;
    const auto at = [](int y, unsigned m, unsigned d) {
        return Seconds(sys_days(year(y) / static_cast<int>(m) / static_cast<int>(d))) + hours(9);
    };
    EXPECT_EQ(history::monthsBefore(at(2024, 3, 31), 1), at(2024, 2, 29));
    EXPECT_EQ(history::monthsBefore(at(2024, 3, 31), 36), at(2021, 3, 31));
    EXPECT_EQ(history::monthsKept(*school.centro), 0);
    history::keepMonths(*school.centro, 18);
    EXPECT_EQ(history::monthsKept(*school.centro), 18);
    EXPECT_EQ(history::eraseOlder(*school.centro, history::monthsBefore(timeHere(), 18)), 0);
    history::eraseAbout(*school.centro, *schema::table(u"Alumno"), 7);
    EXPECT_GT(history::eraseOlder(*school.centro, timeHere() + seconds(2)), 10);
    EXPECT_TRUE(engineOf(url).scrub(*school.centro));
    EXPECT_EQ(inFiles("OCHO") + inFiles("SIETE"), 0U);
    EXPECT_EQ(count(u"Sal IS NOT NULL AND Clase<>10"), 0);
    EXPECT_EQ(findings(), "");
    dialog(u"frmPais", u"Ana", {u"INSERT INTO Pais (IDPais,Descripcion) VALUES (9,'Malta')"});
    EXPECT_EQ(findings(), "");
}

TEST_F(Pupils, export_is_read_back_and_without_names_has_none)
{
    dialog(u"frmPais", u"Luis",
           {u"UPDATE Pais SET Descripcion='a\"\\\n\t\u0001\U0001F600''' WHERE IDPais=7"});
    const std::vector<std::string> lines = exported(history::Names::shown);
    const std::vector<history::Entry> entries = history::entries(*school.centro, u"");
    ASSERT_EQ(lines.size(), entries.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(field(lines[i], u"$.asiento"), literal(entries[i].number));
        EXPECT_EQ(field(lines[i], u"$.fila"), entries[i].row);
        EXPECT_EQ(field(lines[i], u"$.enlace"), entries[i].link);
    }
    EXPECT_EQ(field(lines.back(), u"$.despues.Descripcion"), u"a\"\\\n\t\u0001\U0001F600'");
    EXPECT_EQ(field(lines.back(), u"$.antes.Descripcion"), u"Perú");
    EXPECT_EQ(field(lines.front(), u"$.despues.Usuario"), u"Ana");
    std::string hidden;
    for (const std::string& each : exported(history::Names::hidden)) {
        EXPECT_NE(field(each, u"$.asiento"), u"NULL");
        hidden += each;
    }
    for (const char* name :
         {"Ana", "Luis", "SIETE", "OCHO", "Perú", "=7 ", "Alumno=7\"", "Alumno=8", "enlace"})
        EXPECT_EQ(hidden.find(name), std::string::npos) << name;
    EXPECT_NE(hidden.find("puesto 2"), std::string::npos);
}

/// Types a text into both boxes of the illness and accepts it; an empty one only looks.
struct Nurse final : test::FakeDesktop {
    void runModal(Form& form) override
    {
        Acts acts;
        for (const StringView box : {u"txtNombre", u"txtDescripcion"})
            if (!text.empty())
                acts.type(form.reach(box), text);
        acts.click(form.reach(text.empty() ? u"cmdCancelar" : u"cmdAceptar"));
        if (form.Visible())
            form.Unload();
    }
    String text;
};

TEST_F(Erasure, illness_is_nowhere_in_clear_and_who_read_it_is_noted)
{
    installModule();
    registerCipher([key = CipherKey::random()](bool) { return key; });
    Nurse nurse;
    const auto open = [&](Long action, Long row, const String& text) {
        nurse.text = text;
        test::openNode(school, cNombreNodo::Enfermedades, action, row);
    };
    const std::vector<String> texts = oddTexts();
    ASSERT_GE(texts.size(), 200U);
    open(cConstCol::NUEVO, 0, u"SECRETO");
    for (const String& each : texts)
        open(cConstCol::Modificado, 1, u"SECRETO" + each.substr(0, 40));
    EXPECT_GT(count(u"Clase=3 AND Tabla='Enfermedad'"), 150);
    EXPECT_EQ(inFiles("SECRETO"), 0U);
    const Long before = history::headOf(*school.centro).number;
    open(cConstCol::Modificado, 1, u"");
    const std::vector<history::Entry> reading =
        history::entries(*school.centro, statement(u"Numero>{}", {before}));
    ASSERT_EQ(reading.size(), 2U);
    EXPECT_EQ(reading[0].kind, history::Kind::opened);
    EXPECT_NE(reading[0].after.find(u"Usuario="), String::npos);
    EXPECT_EQ(reading[1].kind, history::Kind::read);
    EXPECT_EQ(reading[1].row, u"IDEnfermedad=1");
    EXPECT_EQ(reading[1].before + reading[1].after, u"");
    EXPECT_EQ(findings(), "");
    resetSingles();
    registerCipher();
}

} // namespace
} // namespace zv
