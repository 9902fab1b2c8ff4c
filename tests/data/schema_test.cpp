#include "data/NumberOf.h"
#include "data/Schema.h"
#include "data/Schools.h"
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

TEST_F(Schema, rows_written_by_position_find_their_columns)
{
    struct {
        StringView insert, select, row;
    } const cases[] = {
        {u"Insert into Turno  values (7,'T',3)", u"Select TipoTurno,Descripcion,idturno From turno",
         u"3|T|7|"},
        {u"Insert into TipoMiembroCentro  values (7,'T',3)",
         u"Select Tipo,Nombre,idtmc From tipomiembrocentro", u"3|T|7|"},
        {u"Insert into Presentador Values (1,'N','B1','000',2,3)",
         u"Select CodSucursal,CodBanco,Sufijo,NIF,Nombre,IDPresentador From Presentador", u"3|2|000|B1|N|1|"},
        {u"Insert into Emisor Values (1,'N','B1','000',2,'D','P',3,'CP',4,'O',-1)",
         u"Select "
         u"MTP,CodigoOrdenante,CodPresentadorMTP,CP,CodProvincia,Poblacion,Direccion,CodPresentador,Sufijo,"
         u"CIF,Nombre,"
         u"IDEmisor From Emisor",
         u"-1|O|4|CP|3|P|D|2|000|B1|N|1|"},
        {u"INSERT INTO ConsejoOrientador_Respuesta VALUES (1,2,'D')",
         u"Select Descripcion,CodConsejoOrientador,IDCOResp From ConsejoOrientador_Respuesta", u"D|2|1|"},
        {u"INSERT INTO ConsejoOrientador_Nota VALUES (1,2,3,4,5)",
         u"Select codConsejoOrientador,codCOResp,codSeccion,codAlumno,IDCORNota From ConsejoOrientador_Nota",
         u"5|4|3|2|1|"},
        {u"INSERT INTO TipoRespInfInd VALUES (1,2,'D')",
         u"Select Descripcion,CodTipo,IDResp From TipoRespInfInd", u"D|2|1|"},
        {u"INSERT INTO Alumno_InfInd VALUES (1,'d','v','a')",
         u"Select Apreciacion,Valoracion,Dificultad,Codalumno From Alumno_InfInd", u"a|v|d|1|"},
        {u"INSERT INTO Alumno_InfIndESO VALUES (1,'1','2','3','4','5','6','7','8','9','10','11','12')",
         u"Select "
         u"Actitud2,Actitud1,Procedimiento5,Procedimiento4,Procedimiento3,Procedimiento2,Procedimiento1,"
         u"Alumno5,Alumno4,"
         u"Alumno3,Alumno2,Alumno1,codAlumno From Alumno_InfIndESO",
         u"12|11|10|9|8|7|6|5|4|3|2|1|1|"},
        {u"INSERT INTO Alumno_InfIndPrim VALUES (1,2,3,4)",
         u"Select codResp,codTipo,codMateria,CodAlumno From Alumno_InfIndPrim", u"4|3|2|1|"},
    };
    for (const auto& [insert, select, row] : cases) {
        EXPECT_EQ(run(insert), 0) << toUtf8(insert);
        EXPECT_EQ(toUtf8(read(select)), toUtf8(row));
    }
    run(u"Insert into TipoIva (IDTipoIva,Descripcion,Valor) values (1,'16%','0,16')");
    EXPECT_EQ(read(u"Select valor From tipoiva"), u"0,16|") << "kept as written";
}

TEST_F(Schema, what_others_write_needs_no_more_than_the_columns_that_are_read)
{
    for (const schema::Table& table : schema::tables(Database::centro)) {
        if (table.use != schema::Use::read)
            continue;
        for (const schema::Column& column : table.columns()) {
            if (column.addedByUs || column.name == table.columns().front().name)
                continue;
            const String insert = statement(u"Insert into {} ({}) values (1)", {table.name, column.name});
            EXPECT_EQ(run(insert), 0) << toUtf8(insert);
            EXPECT_EQ(run(insert), 0) << "twice: " << toUtf8(insert);
        }
    }
    EXPECT_EQ(read(u"Select Count(*),Max(IDAlumno) From Alumno"), u"18|18|");
}

TEST_F(Schema, a_deleted_record_may_keep_its_key_alone)
{
    std::size_t count = 0;
    for (const FoundTable& table : engineOf(u"sqlite:").tables(*school.centro)) {
        if (table.name == u"RegistroActivo")
            continue;
        const auto insert = statement(u"Insert into {} ({}) values (1)", {table.name, table.columns.front()});
        EXPECT_EQ(numberOf([&] { school.borrado->Execute(insert); }), 0) << toUtf8(table.name);
        ++count;
    }
    EXPECT_EQ(engineOf(u"sqlite:").tables(*school.borrado).size(), count);
}

TEST_F(Schema, guards_and_searches_read_no_table_from_end_to_end)
{
    for (const StringView select :
         {u"Select IDPersonal From Personal Where CodEstadoCivil=3",
          u"Select * From Centro Where CodIdioma=3",
          u"Select * From Centro_Idioma Where CodIdioma=3",
          u"Select * From Alumno Where CodPaisNacimiento=3",
          u"Select * From Personal Where CodPaisNacimiento=3",
          u"Select * From Direccion Where Direccion.CodPais=3",
          u"Select * From Alumno where CodTipoAlumno=3",
          u"Select CodTipoContrato From Personal where CodTipoContrato=3",
          u"Select * From CEspecializacion_Personal Where CodCEspecializacion=3",
          u"SELECT codObservacion FROM MateriaDetalles_Observacion WHERE codObservacion=3",
          u"SELECT codprofesion FROM miembrofamilia WHERE codprofesion=3",
          u"SELECT codTipoParentesco FROM MiembroFamilia WHERE codTipoParentesco=3",
          u"SELECT codTipoJustificacion FROM IncidenciaAlumno WHERE codTipoJustificacion=3",
          u"SELECT codTipoJustificacion FROM IncidenciaPersonal WHERE codTipoJustificacion=3",
          u"Select CodTipoMotivoBaja From Alumno where CodTipoMotivoBaja=3",
          u"Select IDAlumno From Alumno Where CodNacionalidad=3",
          u"SELECT CodTipoMaterialDidactico FROM MaterialDidactico WHERE CodTipoMaterialDidactico=3",
          u"SELECT codTipoCentro FROM Centro WHERE codTipoCentro=3",
          u"Select * From Actividad Where CodTipoIva=3",
          u"SELECT codPonderacion FROM prematriculacion_ponderacion WHERE codPonderacion=3",
          u"SELECT codPonderacion FROM Ponderacion_Centro WHERE codPonderacion=3",
          u"Select * From IncidenciaAlumno where IncidenciaAlumno.CodTipoIncidencia=3",
          u"Select * From IncidenciaPersonal where  IncidenciaPersonal.CodTipoIncidencia=3",
          u"Select CodTipoOcurrencia From OcurrenciaCalendario where CodTipoOcurrencia=3",
          u"Select CodTurno From Seccion where CodTurno=3",
          u"Select CodTipoMiembroCentro From Personal where CodTipoMiembroCentro=3",
          u"SELECT codTipoTarea FROM Tarea WHERE codTipoTarea=3",
          u"SELECT IDBanco FROM Banco WHERE Numero='0049'",
          u"Select Nombre,IDSucursal From Sucursal Where CodBanco=3",
          u"SELECT Count(IDCuenta) as Cuentas FROM Cuenta WHERE codSucursal=3",
          u"SELECT count(codBanco) FROM BancoMTP WHERE codBanco=3",
          u"Select IDEmisor From Emisor Where CodPresentador=3",
          u"Select CodCuenta From Centro_Cuenta_Emisor Where CodEmisor=3",
          u"SELECT Count(codCCECobro) as codCCE FROM Actividad WHERE codCCEPago=3",
          u"Select * From ConsejoOrientador_Nota where codCOResp=3",
          u"Select * From Alumno_InfIndPrim where codResp=3",
          u"SELECT IDPersonal FROM Personal WHERE CodUsuario=3",
          u"SELECT Descripcion, IDSeccion FROM Seccion WHERE codCurso=3",
          u"SELECT codResp, Descripcion FROM Alumno_InfIndPrim INNER JOIN TipoRespInfInd ON "
          u"Alumno_InfIndPrim.codResp=TipoRespInfInd.IDResp WHERE codMateria=3 AND codAlumno=4 AND "
          u"Alumno_InfIndPrim.codTipo=1",
          u"SELECT Materia.Nombre FROM Alumno_MateriaDetalles INNER JOIN (MateriaDetalles INNER JOIN Materia "
          u"ON "
          u"Materia.IDMateria=MateriaDetalles.codMateria) ON MateriaDetalles.IDMateriaDetalles="
          u"Alumno_MateriaDetalles.codMateriaDetalles WHERE Alumno_MateriaDetalles.codAlumno=3 AND "
          u"Materia.codTipoMateria=4",
          u"SELECT DISTINCT IDAlumno, Dificultad FROM Alumno INNER JOIN (Seccion_Alumno LEFT JOIN "
          u"Alumno_InfInd ON "
          u"Seccion_Alumno.codAlumno=Alumno_InfInd.codAlumno) ON Seccion_Alumno.codSeccion=Alumno.codSeccion "
          u"WHERE "
          u"alumno.codseccion=3 and alumno.idAlumno=Seccion_Alumno.codalumno"}) {
        const RecordsetPtr plan = school.centro->executeNative(u"EXPLAIN QUERY PLAN " + String(select));
        bool searches = false;
        for (; !plan->Eof(); plan->MoveNext()) {
            const String step = CStr(plan->Fields(u"detail"));
            searches = searches || step.starts_with(u"SEARCH");
            EXPECT_FALSE(step.starts_with(u"SCAN")) << toUtf8(select) << '\n' << toUtf8(step);
        }
        EXPECT_TRUE(searches) << toUtf8(select);
    }
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
    createSchool(url).centro->Execute(u"Insert into Pais values (1,'España')");
    EXPECT_EQ(CStr(openSchool(url).centro->Execute(u"Select Descripcion From Pais")->Fields(u"Descripcion")),
              u"España");
    EXPECT_EQ(numberOf([&] { createSchool(url); }, u"ya existe"), failure::otherData);
    EXPECT_FALSE(openSchool(url).centro->Execute(u"Select * From Pais")->Eof())
        << "the refused one takes nothing away";
    fs::remove_all(folder);
}
