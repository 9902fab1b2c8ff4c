#include "data/Schema.h"
#include "data/SchemaCheck.h"
#include "data/Schools.h"
#include "data/sample/SampleSchool.h"
#include "data/sqlite/SqliteEngine.h"
#include "runtime/Convert.h"

#include <gmock/gmock.h>

using namespace zv;
using testing::ElementsAreArray;

namespace {

School madeSchool()
{
    registerEngine(sqliteEngine());
    return temporarySchool();
}

Long number(Connection& base, const String& select)
{
    return CLng(base.executeNative(select)->row().front());
}

/// Every row of every table, as text.
String dump(Connection& base)
{
    String result;
    for (const FoundTable& table : engineOf(u"sqlite:").tables(base))
        for (const RecordsetPtr rows = base.executeNative(u"SELECT * FROM " + table.name); !rows->Eof();
             rows->MoveNext()) {
            result += table.name;
            for (const Value& value : rows->row())
                result += u"|" + (value.isNull() ? String(u"~") : CStr(value));
            result += u"\n";
        }
    return result;
}

} // namespace

TEST(SchemaCheck, tells_what_the_dialogs_would_miss_and_nothing_else)
{
    using Texts = std::vector<StringView>;
    struct {
        ConnectionPtr School::*base;
        Texts changes, findings;
    } const cases[] = {
        {&School::centro, {}, {}},
        {&School::centro, {u"DROP TABLE Pais"}, {u"Base del centro: falta la tabla Pais."}},
        {&School::centro,
         {u"DROP INDEX ix_Alumno_fechabaja", u"ALTER TABLE Alumno DROP COLUMN fechabaja",
          u"ALTER TABLE Pais RENAME COLUMN Descripcion TO Nombre"},
         {u"Base del centro: a la tabla Pais le falta la columna Descripcion.",
          u"Base del centro: a la tabla Alumno le falta la columna fechabaja."}},
        {&School::centro,
         {u"ALTER TABLE ConsejoOrientador_Nota ADD COLUMN Fecha TEXT"},
         {u"Base del centro: a la tabla ConsejoOrientador_Nota le sobra la columna Fecha: sus filas se "
          u"escriben sin nombrar las "
          u"columnas."}},
        {&School::centro,
         {u"DROP TABLE Turno",
          u"CREATE TABLE Turno (IDTurno INTEGER PRIMARY KEY, TipoTurno INTEGER, Descripcion TEXT)"},
         {u"Base del centro: la tabla Turno tiene las columnas en otro orden; debe ser IDTurno, Descripcion, "
          u"TipoTurno."}},
        {&School::centro,
         {u"ALTER TABLE Turno RENAME COLUMN TipoTurno TO tipoturno", u"DROP TABLE TipoCentro",
          u"CREATE TABLE tipocentro (NOMBRE TEXT, idtipocentro INTEGER PRIMARY KEY)",
          u"ALTER TABLE Pais ADD COLUMN Continente TEXT", u"CREATE TABLE Biblioteca (IDLibro INTEGER)",
          u"DROP TABLE RegistroActivo", u"ALTER TABLE Alumno DROP COLUMN FechaNacimiento"},
         {}},
        {&School::borrado,
         {u"DROP TABLE Banco", u"ALTER TABLE Turno ADD COLUMN Borrado TEXT"},
         {u"Base de borrados: falta la tabla Banco."}},
        {&School::entrada,
         {u"ALTER TABLE BotonAccesoRapido RENAME COLUMN Boton TO Mando", u"DROP TABLE Usuario"},
         {u"Base de entrada: a la tabla BotonAccesoRapido le falta la columna Boton."}},
    };
    for (const auto& [base, changes, findings] : cases) {
        const School school = madeSchool();
        for (const StringView change : changes)
            (school.*base)->executeNative(change);
        EXPECT_THAT(checkSchool(school, engineOf(u"sqlite:")), ElementsAreArray(findings));
    }
}

TEST(SampleSchool, is_the_same_each_time_and_fills_every_table_that_it_can)
{
    School one = madeSchool();
    School two = madeSchool();
    fillSampleSchool(one);
    fillSampleSchool(two);
    EXPECT_EQ(toUtf8(dump(*one.centro)), toUtf8(dump(*two.centro)));
    EXPECT_EQ(dump(*one.entrada), dump(*two.entrada));
    for (const FoundTable& table : engineOf(u"sqlite:").tables(*one.centro))
        EXPECT_EQ(number(*one.centro, u"SELECT count(*) FROM " + table.name) == 0,
                  table.name == u"Enfermedad" || table.name == u"RegistroActivo")
            << toUtf8(table.name);
    EXPECT_NEAR(number(*one.centro, u"SELECT count(*) FROM Alumno"), 600, 30);
    EXPECT_EQ(number(*one.centro, u"SELECT count(*) FROM Seccion"), 24);
    EXPECT_EQ(number(*one.centro, u"SELECT count(*) FROM Personal"), 45);
    for (const StringView some :
         {u"Alumno WHERE fechabaja=''", u"Alumno WHERE fechabaja IS NULL", u"Alumno WHERE fechabaja<>''",
          u"Alumno WHERE Apellido_1='O''Donnell'", u"Alumno WHERE Apellido_2 LIKE '%ñ%'",
          u"Sucursal WHERE Poblacion LIKE 'L''Hosp%'", u"Emisor WHERE MTP=-1",
          u"Emisor WHERE CodigoOrdenante<>''", u"Curso WHERE finciclo=-1",
          u"Alumno_InfIndPrim WHERE codResp=0"})
        EXPECT_GT(number(*one.centro, u"SELECT count(*) FROM " + String(some)), 0) << toUtf8(some);
    EXPECT_EQ(
        number(
            *one.centro,
            u"SELECT count(DISTINCT codTipoEnsenanza) FROM Personal JOIN Seccion ON CodTutor=IDPersonal JOIN "
            u"Curso ON CodCurso=IDCurso WHERE CodUsuario>1"),
        3)
        << "a tutor with a user in each kind of teaching";
}
