#include "data/sqlite/SqliteEngine.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

/// What the reports' statements read: a section (5) with a pupil without a note, one with, a leaver.
class Statements : public testing::Test {
protected:
    Statements()
    {
        for (const StringView table :
             {u"Alumno (IDAlumno INTEGER NOT NULL PRIMARY KEY, Apellido_1 TEXT, Apellido_2 TEXT, Nombre "
              u"TEXT, codseccion "
              u"INTEGER, fechabaja TEXT) WITHOUT ROWID",
              u"ConsejoOrientador_Nota (IDCORNota INTEGER NOT NULL PRIMARY KEY, codAlumno INTEGER, "
              u"codSeccion INTEGER, codCOResp "
              u"INTEGER, codConsejoOrientador INTEGER) WITHOUT ROWID",
              u"Seccion_Alumno (codAlumno INTEGER, codSeccion INTEGER, PRIMARY KEY (codAlumno, codSeccion)) "
              u"WITHOUT ROWID",
              u"Alumno_InfInd (CodAlumno INTEGER NOT NULL PRIMARY KEY, Dificultad TEXT, Valoracion TEXT, "
              u"Apreciacion TEXT)",
              u"Alumno_InfIndESO (CodAlumno INTEGER NOT NULL PRIMARY KEY, Alumno1 TEXT)",
              u"Seccion (IDSeccion, Descripcion, CodCurso, CodTutor, CodModelo)",
              u"MateriaDetalles (IDMateriaDetalles, CodSeccion, CodPersonal, CodPersonalAsociado, "
              u"codMateria)",
              u"Materia (IDMateria, Nombre, codTipoMateria)",
              u"Alumno_MateriaDetalles (codAlumno, codMateriaDetalles)",
              u"Alumno_InfIndPrim (CodAlumno, codMateria, codTipo, codResp)",
              u"TipoRespInfInd (IDResp, CodTipo, Descripcion)",
              u"Curso (IDCurso, Descripcion, Orden, codTipoEnsenanza, finciclo)",
              u"TipoEnsenanza (IDTipoEnsenanza, Orden)",
              u"Centro_TipoEnsenanza (codTipoEnsenanza)",
              u"SistemaCalificacion (IDSistemaCalificacion, CodTipoEnsenanza)",
              u"Modelo (IDModelo, CodSistemaCalificacion)",
              u"Cuenta (IDCuenta, codSucursal)",
              u"Banco (IDBanco, Numero TEXT)",
              u"BancoMTP (codBanco)",
              u"Sucursal (IDSucursal INTEGER, CodBanco INTEGER, Codigo TEXT)",
              u"Actividad (codCCECobro, codCCEPago)",
              u"Centro_Cuenta_Emisor (IDCCE)"})
            base->Execute(u"CREATE TABLE " + String(table));
        for (const StringView rows :
             {u"Alumno values "
              u"(1,'Ros','Gil','Ana',5,''),(2,'Abad',Null,'Leo',5,Null),(3,'Zas','O''Hara','Ada',5,'x'),"
              u"(4,'Abad','Mas','Eva',5,Null)",
              u"ConsejoOrientador_Nota values (9,1,5,2,3)", u"Seccion_Alumno values (1,5),(2,5),(4,5)",
              u"Alumno_InfInd values (1,'d','v','a')", u"Alumno_InfIndESO values (1,'uno')",
              u"Seccion values (5,'A',7,30,1)", u"MateriaDetalles values (50,5,31,Null,60)",
              u"Materia values (60,'Lengua',4)", u"Alumno_MateriaDetalles values (1,50)",
              u"Alumno_InfIndPrim values (1,60,2,8)", u"TipoRespInfInd values (8,2,'Bien')",
              u"Curso values (7,'Primero',1,3,-1),(8,'Segundo',2,3,0)", u"TipoEnsenanza values (3,1),(4,2)",
              u"Centro_TipoEnsenanza values (3)", u"SistemaCalificacion values (1,3)", u"Modelo values (1,1)",
              u"Cuenta values (70,21)", u"Banco values (20,'0049')",
              u"Sucursal(IDSucursal,CodBanco,Codigo) values (21,'20','0001'),(22,'20','0002')"})
            base->Execute(u"Insert into " + String(rows));
    }

    /// All rows, the fields parted by a stroke and the rows by a semicolon.
    String read(StringView statement)
    {
        String result;
        for (const RecordsetPtr rows = base->Execute(statement); !rows->Eof(); rows->MoveNext()) {
            for (const Value& value : rows->row())
                result += (value.isNull() ? String(u"NULL") : CStr(value)) + u"|";
            result.back() = u';';
        }
        return result;
    }

    ConnectionPtr base = sqliteEngine()->temporary(u"", Database::centro);
};

} // namespace

TEST_F(Statements, of_the_dialogs_give_their_rows)
{
    const std::pair<StringView, StringView> cases[] = {
        {u"SELECT Alumno.IDAlumno, Alumno.Apellido_1 + ' ' + Alumno.Apellido_2 + ', ' + Alumno.Nombre AS "
         u"ALNombre, "
         u"ConsejoOrientador_Nota.* FROM ConsejoOrientador_Nota RIGHT JOIN Alumno ON "
         u"Alumno.IDAlumno=ConsejoOrientador_Nota.codAlumno WHERE (fechabaja='' or fechabaja IS NULL) AND "
         u"Alumno.codseccion=5 "
         u"ORDER BY Alumno.Apellido_1,Alumno.Apellido_2,Alumno.Nombre",
         u"2|NULL|NULL|NULL|NULL|NULL|NULL;4|Abad Mas, Eva|NULL|NULL|NULL|NULL|NULL;1|Ros Gil, "
         u"Ana|9|1|5|2|3;"},
        {u"SELECT DISTINCT IDAlumno, Apellido_1, Nombre, Dificultad, Alumno1 FROM Alumno INNER JOIN "
         u"((Seccion_Alumno LEFT JOIN "
         u"Alumno_InfIndESO ON Seccion_Alumno.codAlumno=Alumno_InfIndESO.codAlumno) LEFT JOIN Alumno_InfInd "
         u"ON "
         u"Seccion_Alumno.codAlumno=Alumno_InfInd.codAlumno) ON Seccion_Alumno.codSeccion=Alumno.codSeccion "
         u"WHERE "
         u"alumno.codseccion=5 and alumno.idAlumno=Seccion_Alumno.codalumno ORDER BY Apellido_1, Apellido_2, "
         u"Nombre",
         u"2|Abad|Leo|NULL|NULL;4|Abad|Eva|NULL|NULL;1|Ros|Ana|d|uno;"},
        {u"SELECT DISTINCT IDAlumno, Valoracion, Apreciacion FROM Alumno INNER JOIN (Seccion_Alumno LEFT "
         u"JOIN Alumno_InfInd ON "
         u"Seccion_Alumno.codAlumno=Alumno_InfInd.codAlumno) ON Seccion_Alumno.codSeccion=Alumno.codSeccion "
         u"WHERE "
         u"alumno.codseccion=5 and alumno.idAlumno=Seccion_Alumno.codalumno ORDER BY Apellido_1, Apellido_2, "
         u"Nombre",
         u"2|NULL|NULL;4|NULL|NULL;1|v|a;"},
        {u"SELECT Materia.Nombre, Materia.IDMateria FROM Alumno_MateriaDetalles INNER JOIN (MateriaDetalles "
         u"INNER JOIN Materia ON "
         u"Materia.IDMateria=MateriaDetalles.codMateria) ON MateriaDetalles.IDMateriaDetalles="
         u"Alumno_MateriaDetalles.codMateriaDetalles WHERE Alumno_MateriaDetalles.codAlumno=1 AND "
         u"Materia.codTipoMateria=4",
         u"Lengua|60;"},
        {u"SELECT codResp, Descripcion FROM Alumno_InfIndPrim INNER JOIN TipoRespInfInd ON "
         u"Alumno_InfIndPrim.codResp=TipoRespInfInd.IDResp WHERE codMateria=60 AND codAlumno=1 AND "
         u"Alumno_InfIndPrim.codTipo=2",
         u"8|Bien;"},
        {u"SELECT * FROM TipoEnsenanza WHERE IDTipoEnsenanza IN (2,3,4) AND IDTipoEnsenanza IN (SELECT "
         u"codTipoEnsenanza FROM "
         u"Centro_TipoEnsenanza) AND IDTipoEnsenanza IN (SELECT CodTipoEnsenanza FROM SistemaCalificacion "
         u"WHERE "
         u"IDSistemaCalificacion IN (SELECT CodSistemaCalificacion FROM Modelo WHERE IDModelo IN (SELECT "
         u"CodModelo FROM Seccion "
         u"WHERE CodTutor= 1 OR IDSeccion IN (SELECT CodSeccion FROM MateriaDetalles WHERE CodPersonal=31 OR "
         u"CodPersonalAsociado=31)))) ORDER BY Orden",
         u"3|1;"},
        {u"SELECT Descripcion, IDCurso FROM Curso WHERE codTipoEnsenanza=3 AND IDCurso IN (SELECT CodCurso "
         u"FROM Seccion WHERE "
         u"curso.finciclo=-1 and CodTutor= 30 OR IDSeccion IN (SELECT CodSeccion FROM MateriaDetalles WHERE "
         u"CodPersonal=30 OR "
         u"CodPersonalAsociado=30)) ORDER BY Orden",
         u"Primero|7;"},
        {u"SELECT Count(Cuenta.codSucursal) as Registros FROM Cuenta INNER JOIN (Sucursal INNER JOIN Banco "
         u"ON "
         u"Sucursal.codBanco=Banco.IDBanco) ON Cuenta.codSucursal=Sucursal.IDSucursal WHERE Banco.IDBanco=20 "
         u"UNION SELECT "
         u"count(codBanco) FROM BancoMTP WHERE codBanco=20 ORDER BY Registros DESC",
         u"1;0;"},
        {u"SELECT Count(codCCECobro) as codCCE FROM Actividad WHERE codCCECobro=1 UNION SELECT Count(IDCCE) "
         u"FROM "
         u"Centro_Cuenta_Emisor WHERE IDCCE=1 ORDER BY codCCE DESC",
         u"0;"},
        {u"SELECT MAX(IDCORNota) AS Maximo FROM ConsejoOrientador_Nota", u"9;"},
        {u"SELECT IDBanco FROM Banco WHERE Numero='0049' AND IDBanco<>21", u"20;"},
    };
    for (const auto& [statement, rows] : cases)
        EXPECT_EQ(read(statement), rows) << toUtf8(statement) << "\n" << toUtf8(read(statement));
    const RecordsetPtr notes = base->Execute(cases[0].first);
    EXPECT_TRUE(notes->Fields(u"idalumno").as<Long>() && notes->Fields(u"ALNOMBRE").isNull());
    EXPECT_TRUE(notes->Fields(u"codCOResp").isNull() && notes->Fields(u"IDCORNota").isNull());
}

TEST_F(Statements, of_the_dialogs_delete_what_they_name)
{
    base->Execute(u"Delete * From Sucursal where  IDSucursal=21");
    EXPECT_EQ(read(u"Select codigo, codbanco From SUCURSAL"), u"0002|20;");
    base->Execute(u"DELETE FROM ConsejoOrientador_Nota WHERE codSeccion=5 AND codAlumno NOT IN (1,2)");
    EXPECT_EQ(read(u"SELECT count(*) FROM ConsejoOrientador_Nota"), u"1;");
    base->Execute(u"DELETE FROM ConsejoOrientador_Nota WHERE codSeccion=5 AND codAlumno NOT IN (2)");
    EXPECT_EQ(read(u"SELECT MAX(IDCORNota) AS Maximo FROM ConsejoOrientador_Nota"), u"NULL;");
}
