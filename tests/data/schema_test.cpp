#include "data/NumberOf.h"
#include "data/Schema.h"
#include "data/Schools.h"
#include "data/Statement.h"
#include "data/sample/Writer.h"
#include "data/sqlite/SqliteEngine.h"

#include <chrono>
#include <filesystem>
#include <fstream>

using namespace zv;

namespace {

class Schema : public testing::Test {
protected:
    std::int32_t run(StringView statement)
    {
        return numberOf([&] { school.centro->Execute(statement); });
    }
    String read(StringView select)
    {
        String result;
        for (const Value& value : school.centro->Execute(select)->row())
            result += (value.isNull() ? String(u"NULL") : CStr(value)) + u"|";
        return result;
    }
    static String text(std::size_t length) { return u"'" + String(length, u'ñ') + u"'"; }

    School school = (registerEngine(sqliteEngine()), temporarySchool());
};

} // namespace

TEST_F(Schema, a_value_outside_its_column_is_refused_and_one_at_the_edge_is_not)
{
    struct {
        StringView table, fits, doesNot;
    } const cases[] = {
        {u"EstadoCivil", u"32767,NULL", u"32768,NULL"},
        {u"EstadoCivil", u"-32768,NULL", u"-32769,NULL"},
        {u"Observacion", u"2147483647,NULL,NULL", u"2147483648,NULL,NULL"},
        {u"Turno", u"1,NULL,255", u"2,NULL,256"},
        {u"Turno", u"3,'Tarde',0", u"4,NULL,-1"},
        {u"TipoOcurrencia", u"1,'x',-1", u"2,'x','si'"},
        {u"TipoOcurrencia", u"3,NULL,7", u"4,NULL,0.5"},
        {u"ponderacion", u"1,NULL,12.34", u"2,NULL,'mucho'"},
        {u"Nacionalidad", u"1,NULL,'ñññ'", u"2,NULL,'ññññ'"},
        {u"Banco", u"1,NULL,'0049'", u"2,NULL,'00490'"},
        {u"Presentador", u"1,NULL,NULL,NULL,NULL,32767", u"2,NULL,NULL,NULL,32768,NULL"},
        {u"ConsejoOrientador_Nota", u"40000,1,1,1,1", u"40001,40000,1,1,1"},
        {u"Alumno_InfIndPrim", u"40000,40000,40000,40000", u"1,2147483648,1,1"},
    };
    for (const auto& [table, fits, doesNot] : cases) {
        EXPECT_EQ(run(statement(u"Insert into {} values ({})", {table, fits})), 0) << toUtf8(fits);
        EXPECT_EQ(run(statement(u"Insert into {} values ({})", {table, doesNot})), failure::brokenConstraint)
            << toUtf8(doesNot);
    }
    for (const std::size_t over : {0U, 1U}) {
        const std::int32_t expected = over ? failure::brokenConstraint : 0;
        const Long id = over ? 2 : 1;
        EXPECT_EQ(run(statement(u"Insert into Provincia values ({},{})", {id, text(30 + over)})), expected);
        EXPECT_EQ(run(statement(u"Insert into OpcionMateria (IDOM,DescripcionCorta) values ({},{})",
                                {id, text(7 + over)})),
                  expected);
        EXPECT_EQ(
            run(statement(u"Insert into Alumno_InfInd values ({},{},NULL,NULL)", {id, text(200 + over)})),
            expected);
        EXPECT_EQ(run(statement(u"Insert into Enfermedad values ({},{},NULL)", {id, text(900)})), 0)
            << "enciphered";
    }
    EXPECT_EQ(numberOf([&] { school.centro->Execute(u"Insert into Pais values (99999,'x')"); },
                       u"IDPais: de -32768 a 32767"),
              failure::brokenConstraint);
}

TEST_F(Schema, a_key_is_given_once_and_never_missing)
{
    for (const Database which : {Database::centro, Database::entrada})
        for (const schema::Table& table : schema::tables(which)) {
            if (table.key != schema::Key::given)
                continue;
            Connection& base = which == Database::centro ? *school.centro : *school.entrada;
            String ones, nulls;
            for (std::size_t i = 0; i < table.count; ++i) {
                ones += (i ? u"," : u"") + String(i < table.keyColumns ? u"1" : u"NULL");
                nulls += i ? u",NULL" : u"NULL";
            }
            const auto insert = [&](const String& row) {
                return numberOf([&] {
                    base.Execute(statement(u"Insert into {} values ({})", {table.name, row}));
                });
            };
            EXPECT_EQ(insert(ones), 0) << toUtf8(table.name);
            EXPECT_EQ(insert(ones), failure::keyExists) << toUtf8(table.name);
            EXPECT_EQ(insert(nulls), failure::brokenConstraint) << toUtf8(table.name);
        }
}

TEST_F(Schema, a_table_whose_rows_are_written_by_position_is_known_as_such)
{
    for (const StringView name :
         {u"Turno", u"TipoMiembroCentro", u"Presentador", u"Emisor", u"ConsejoOrientador_Respuesta",
          u"ConsejoOrientador_Nota", u"TipoRespInfInd", u"Alumno_InfInd", u"Alumno_InfIndESO",
          u"Alumno_InfIndPrim"})
        EXPECT_EQ(schema::table(name)->use, schema::Use::positional) << toUtf8(name);
}

TEST_F(Schema, a_number_kept_as_a_text_stays_as_it_is_written)
{
    run(u"Insert into TipoIva (IDTipoIva,Descripcion,Valor) values (1,'16%','0,16')");
    EXPECT_EQ(read(u"Select valor From tipoiva"), u"0,16|");
}

TEST_F(Schema, searches_read_no_table_from_end_to_end)
{
    std::vector<String> selects = {
        u"SELECT codResp FROM Alumno_InfIndPrim INNER JOIN TipoRespInfInd ON Alumno_InfIndPrim.codResp="
        u"TipoRespInfInd.IDResp WHERE codMateria=3 AND codAlumno=4 AND Alumno_InfIndPrim.codTipo=1",
        u"SELECT Materia.Nombre FROM Alumno_MateriaDetalles INNER JOIN (MateriaDetalles INNER JOIN "
        u"Materia ON Materia.IDMateria=MateriaDetalles.codMateria) ON MateriaDetalles.IDMateriaDetalles="
        u"Alumno_MateriaDetalles.codMateriaDetalles WHERE Alumno_MateriaDetalles.codAlumno=3",
        u"SELECT DISTINCT IDAlumno, Dificultad FROM Alumno INNER JOIN (Seccion_Alumno LEFT JOIN "
        u"Alumno_InfInd ON Seccion_Alumno.codAlumno=Alumno_InfInd.codAlumno) ON Seccion_Alumno.codSeccion="
        u"Alumno.codSeccion WHERE alumno.codseccion=3 and alumno.idAlumno=Seccion_Alumno.codalumno"};
    for (const StringView table : sample::split(
             u"Personal.CodUsuario|Seccion.codCurso,CodTutor|MateriaDetalles.CodSeccion,CodPersonal|"
             u"Banco.Numero|Sucursal.CodBanco|Cuenta.codSucursal|Actividad.codCCECobro,codCCEPago|"
             u"ConsejoOrientador_Nota.codSeccion|Alumno_InfIndPrim.Codalumno",
             u'|'))
        for (const StringView column : sample::split(table.substr(table.find(u'.') + 1), u','))
            selects.push_back(
                statement(u"SELECT * FROM {} WHERE {}=3", {table.substr(0, table.find(u'.')), column}));
    for (const String& select : selects)
        for (const RecordsetPtr plan = school.centro->executeNative(u"EXPLAIN QUERY PLAN " + select);
             !plan->Eof(); plan->MoveNext())
            EXPECT_FALSE(CStr(plan->Fields(u"detail")).starts_with(u"SCAN")) << toUtf8(select);
}

TEST_F(Schema, a_school_is_made_whole_or_not_at_all)
{
    namespace fs = std::filesystem;
    const fs::path folder =
        fs::temp_directory_path() /
        ("zv-schema-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
    const auto files = [&] {
        return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
    };
    fs::create_directories(folder);
    const String url = u"sqlite:" + (folder / "c.db").u16string();
    EXPECT_NE(numberOf([&] { createSchool(url, [](School&) { fail(failure::overflow); }); }), 0);
    EXPECT_EQ(files(), 0);
    std::ofstream(folder / "c.entrada.db") << "of somebody else";
    EXPECT_EQ(numberOf([&] { createSchool(url); }, u"ya existe"), failure::otherData);
    EXPECT_EQ(files(), 1);
    fs::remove(folder / "c.entrada.db");
    // Left behind by one that died between its first name and its last.
    fs::create_directories(folder / "c.db.creando");
    std::ofstream(folder / "c.db.creando" / "c.entrada.db") << "half a school";
    fs::create_hard_link(folder / "c.db.creando" / "c.entrada.db", folder / "c.entrada.db");
    createSchool(url, [&](School&) {
        EXPECT_NE(numberOf([&] { openSchool(url); }, u"no existe"), 0) << "not before all is there";
        EXPECT_NE(numberOf([&] { createSchool(url); }, u"otro programa"), 0);
    }).centro->Execute(u"Insert into Pais values (1,'España')");
    EXPECT_EQ(files(), 3);
    EXPECT_EQ(CStr(openSchool(url).centro->Execute(u"Select Descripcion From Pais")->Fields(u"Descripcion")),
              u"España");
    EXPECT_EQ(numberOf([&] { createSchool(url); }, u"ya existe"), failure::otherData);
    EXPECT_FALSE(openSchool(url).centro->Execute(u"Select * From Pais")->Eof())
        << "the refused one takes nothing away";
    // The live file has come back from a copy, and what was left behind knows the others still.
    fs::create_directories(folder / "c.db.creando");
    fs::create_hard_link(folder / "c.borrado.db", folder / "c.db.creando" / "c.borrado.db");
    std::ofstream(folder / "c.db.creando" / "nota") << "of somebody else";
    EXPECT_EQ(numberOf([&] { createSchool(url); }, u"ya existe"), failure::otherData);
    EXPECT_TRUE(fs::exists(folder / "c.borrado.db"));
    EXPECT_TRUE(fs::exists(folder / "c.db.creando" / "nota"));
    for (const bool link : {true, false}) {
        fs::remove_all(folder);
        fs::create_directories(folder / "suya");
        if (link)
            fs::create_symlink("suya", folder / "c.db.creando");
        else
            std::ofstream(folder / "c.db.creando") << "of somebody else";
        EXPECT_EQ(numberOf([&] { createSchool(url); }, u"a otro sitio"), failure::otherData);
        EXPECT_EQ(files(), 2);
        EXPECT_TRUE(fs::is_empty(folder / "suya"));
    }
    fs::remove_all(folder);
}
