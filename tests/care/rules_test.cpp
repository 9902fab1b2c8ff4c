#include "care/rules/Rules.h"
#include "data/Schools.h"
#include "data/Transaction.h"
#include "data/sample/SampleSchool.h"
#include "data/sqlite/SqliteEngine.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

using namespace zv;
using namespace zv::care;

namespace {

/// A row as the dialogs would not leave it, and what is told of it. Statements behind "-" go to the deleted
/// records.
struct Planted {
    const char* rule;
    std::vector<const char16_t*> statements;
    const char* told;
    bool repaired = false;
};

const Planted faults[] = {
    {"consejo-no-abre",
     {u"INSERT INTO ConsejoOrientador_Respuesta VALUES (900,9,'Otra')"},
     "no se puede abrir en ninguna sección: la respuesta «Otra» es de la pregunta 9"},
    {"consejo-no-abre",
     {u"INSERT INTO ConsejoOrientador VALUES (9,'Novena')"},
     "la pregunta «Novena» lleva el número 9"},
    {"consejo-no-abre",
     {u"UPDATE ConsejoOrientador_Nota SET codCOResp=NULL WHERE IDCORNota=25"},
     "El consejo de 2º A (2º de ESO) no se puede abrir: una fila de Pablo Abad Arias"},
    {"consejo-no-abre",
     {u"INSERT INTO Alumno (IDAlumno,Apellido_1,Apellido_2,Nombre,codseccion) VALUES "
      u"(40000,'A','B','Zoe',15)",
      u"INSERT INTO Seccion_Alumno VALUES (40000,15)"},
     "el número de Zoe A B (40000) pasa de 32767"},
    {"consejo-oculto",
     {u"INSERT INTO Alumno (IDAlumno,Apellido_1,Apellido_2,Nombre,codseccion) VALUES (1372,'A','B','Zoe',15)",
      u"INSERT INTO Seccion_Alumno VALUES (1372,15)"},
     "no sale Pablo Abad Fernández: su número (372) es el final del de Zoe A B (1372), que sale antes. Al "
     "aceptar se borran sus respuestas (8)."},
    {"consejo-otra-seccion",
     {u"UPDATE Alumno SET codseccion=16 WHERE IDAlumno=359",
      u"UPDATE Seccion_Alumno SET codSeccion=16 WHERE codAlumno=359"},
     "Al aceptar el consejo de 2º A (2º de ESO) se borra lo de Pablo Abad Arias (",
     true},
    {"consejo-otra-seccion",
     {u"INSERT INTO Seccion VALUES (99,'2º Z',8,1,1,1)",
      u"UPDATE ConsejoOrientador_Nota SET codSeccion=99 WHERE IDCORNota=25"},
     "de 2º Z (2º de ESO), en cuanto esa sección tenga algún alumno, se borra lo de Pablo Abad Arias (1",
     true},
    {"consejo-otra-seccion",
     {u"UPDATE Alumno SET codseccion=NULL WHERE IDAlumno=359",
      u"DELETE FROM Seccion_Alumno WHERE codAlumno=359"},
     "que ahora no está en ninguna sección."},
    {"consejo-baja", {u"UPDATE Alumno SET fechabaja='1/1/2025' WHERE IDAlumno=359"}, "que está de baja"},
    {"consejo-huerfano",
     {u"INSERT INTO ConsejoOrientador_Nota VALUES (9001,5000,15,1,1)"},
     "consejo orientador (1): ninguna ventana las muestra, y se borran cuando alguien acepte el consejo de "
     "2º A"},
    {"consejo-huerfano",
     {u"INSERT INTO ConsejoOrientador_Nota VALUES (9001,5000,98,1,1)"},
     "(1), puestas en una sección que ya no está: ninguna ventana las muestra ni las borra."},
    {"consejo-incompleto",
     {u"DELETE FROM ConsejoOrientador_Nota WHERE codAlumno=359 AND codConsejoOrientador>6"},
     "a Pablo Abad Arias le falta la fila de «Aptitudes destacadas» y «Recomendación para el próximo curso»",
     true},
    {"consejo-repetido",
     {u"INSERT INTO ConsejoOrientador_Nota VALUES (9001,356,15,17,5)"},
     "«Madurez personal» 2 veces, con «Por encima de su edad»",
     true},
    {"consejo-repetido",
     {u"INSERT INTO ConsejoOrientador_Nota VALUES (9001,356,15,2,1)"},
     "2 veces, con «Muy alta» y «Alta»"},
    {"consejo-respuesta-movida",
     {u"UPDATE ConsejoOrientador_Nota SET codCOResp=5 WHERE IDCORNota=1"},
     "no se verá la respuesta «Constante y ordenado»"},
    {"consejo-respuesta-eliminada",
     {u"UPDATE ConsejoOrientador_Nota SET codCOResp=99 WHERE IDCORNota=1",
      u"-INSERT INTO ConsejoOrientador_Respuesta VALUES (99,1,'Altísima')"},
     "no se verá la respuesta «Altísima»"},
    {"consejo-en-blanco",
     {u"UPDATE Alumno SET Apellido_2=NULL WHERE IDAlumno=359"},
     "Pablo Abad sale en blanco"},
    {"informe-no-abre",
     {u"INSERT INTO Alumno_MateriaDetalles VALUES (51,15)"},
     "Óscar Blanco Aguirre tiene «Lengua"},
    {"informe-sin-alumno",
     {u"DELETE FROM Seccion_Alumno WHERE codAlumno=51"},
     "En el informe de 2º A (2º de Primaria) no sale Óscar Blanco Aguirre"},
    {"informe-huerfano",
     {u"INSERT INTO Alumno_InfInd VALUES (5000,'','','')",
      u"INSERT INTO Alumno_InfIndPrim VALUES (5000,1,1,1)"},
     "quedan filas de su informe individual (2)"},
    {"eso-sin-fila",
     {u"DELETE FROM Alumno_InfIndESO WHERE CodAlumno=304"},
     "se pierde, sin aviso, lo que se escriba de Ana María D'Angelo Bosch",
     true},
    {"eso-sin-comun",
     {u"DELETE FROM Alumno_InfInd WHERE CodAlumno=304"},
     "al llegar a Ana María D'Angelo Bosch dice «Ya hay una fila",
     true},
    {"primaria-respuesta-movida",
     {u"UPDATE Alumno_InfIndPrim SET codResp=1 WHERE CodAlumno=50 AND codMateria=1 AND codTipo=2"},
     "«Trabaja con autonomía», ahora es de «Respecto al propio alumno»"},
    {"primaria-respuesta-eliminada",
     {u"UPDATE Alumno_InfIndPrim SET codResp=99 WHERE CodAlumno=50 AND codMateria=1 AND codTipo=2"},
     "sale vacía la valoración número 99"},
    {"primaria-repetida",
     {u"INSERT INTO Alumno_InfIndPrim VALUES (50,1,2,5)"},
     "«Alcanza los objetivos» y «Los alcanza en parte»"},
    {"primaria-de-mas",
     {u"DELETE FROM Alumno_MateriaDetalles WHERE codAlumno=50 AND codMateriaDetalles=15"},
     "se borran valoraciones de"},
    {"informe-otro-nombre",
     {u"UPDATE Alumno_InfInd SET Valoracion='Sofía ha progresado.' WHERE CodAlumno=304"},
     "de D'Angelo Bosch, Ana María: En «Valoración del aprendizaje y promoción» dice «Sofía», y en su "
     "sección "
     "está Gil Serra, Sofía."},
    {"banco-repetido",
     {u"UPDATE Banco SET Numero='0049' WHERE IDBanco=3"},
     "«Banco de Ahorro Peninsular» y «Crédito Cantábrico» tienen el mismo número, 0049"},
    {"banco-incompleto", {u"UPDATE Banco SET Numero='49' WHERE IDBanco=3"}, "no tiene cuatro dígitos"},
    {"sucursal-sin-banco",
     {u"UPDATE Sucursal SET CodBanco=77 WHERE IDSucursal=5"},
     "La sucursal «Puerto Chico» (0025) es del banco número 77"},
    {"sucursal-repetida",
     {u"UPDATE Sucursal SET Codigo='0310' WHERE IDSucursal=4"},
     "2 sucursales con el código 0310: «Benimaclet» y «Alboraia»"},
    {"sucursal-incompleta", {u"UPDATE Sucursal SET CodigoPostal='123' WHERE IDSucursal=5"}, "cinco cifras"},
    {"presentador-incompleto",
     {u"UPDATE Presentador SET CodSucursal=5,Sufijo='1' WHERE IDPresentador=1"},
     "su sucursal ya no está en «Banco de Ahorro Peninsular» y su sufijo no son tres dígitos"},
    {"emisor-incompleto",
     {u"UPDATE Emisor SET CodPresentador=77 WHERE IDEmisor=2"},
     "Al abrir el emisor «Comedor escolar» no se podrá aceptar: su presentador ya no está"},
    {"emisor-incompleto",
     {u"UPDATE Emisor SET Direccion='' WHERE IDEmisor=4"},
     "el ordenante «Transporte L'Horta» no se podrá aceptar: le falta una parte de su dirección"},
    {"emisor-nulo",
     {u"UPDATE Emisor SET Direccion=NULL,CP=NULL WHERE IDEmisor=2"},
     "«Comedor escolar» sale «ERROR al consultar la base de datos»: le falta la dirección y el código postal",
     true},
    {"nif",
     {u"UPDATE Emisor SET CIF='B28999880' WHERE IDEmisor=2"},
     "El NIF-CIF del emisor «Comedor escolar», «B28999880», no cuadra: con lo demás tal como está acabaría "
     "en 6."},
    {"nif", {u"UPDATE Presentador SET NIF='B2899' WHERE IDPresentador=4"}, "no tiene la forma"},
    {"acreedor",
     {u"UPDATE Emisor SET CIF='B28999886',Sufijo='001' WHERE IDEmisor=6"},
     "«Comedor escolar» y «Escuela de verano» tienen el mismo NIF-CIF y sufijo"},
    {"cuenta", {u"UPDATE Cuenta SET Numero='0049 0001 54 2110000011' WHERE IDCuenta=1"}, "no cuadran"},
    {"cuenta",
     {u"UPDATE Cuenta SET codSucursal=2 WHERE IDCuenta=1"},
     "no empieza por el banco y la sucursal"},
    {"tarea-sin-tipo",
     {u"UPDATE TipoTarea SET codTipoMiembroCentro=77 WHERE IDTipoTarea=1"},
     "Al abrir la tarea «Matrícula» sale «ERROR"},
    {"tipo-desconocido",
     {u"UPDATE Turno SET TipoTurno=7 WHERE IDTurno=2"},
     "El turno «Tarde» tiene el tipo 7"},
    {"papelera",
     {u"-INSERT INTO EstadoCivil VALUES (3,'Prometido')"},
     "no podrá devolver «Prometido» (tabla EstadoCivil): su número, 3, lo tiene ahora «Pareja de hecho»"},
    {"enfermedad-ilegible", {u"UPDATE Enfermedad SET Nombre='otra' WHERE IDEnfermedad=2"}, "número 2"},
    {"texto-largo",
     {u"PRAGMA ignore_check_constraints=ON",
      u"UPDATE Banco SET Nombre='Banco de los cincuenta caracteres y unos cuantos más' WHERE IDBanco=3"},
     "se ve cortado a 50 letras, y al aceptar se pierde el final: «ás»"},
};

String decipher(StringView text)
{
    if (!text.starts_with(u"c:"))
        throw RuntimeError(5, u"no se descifra");
    return String(text.substr(2));
}

Survey look(const School& school, Look how = {})
{
    how.decipher = decipher;
    return survey(school, how);
}

School sampleSchool()
{
    registerEngine(sqliteEngine());
    School school = temporarySchool();
    fillSampleSchool(school);
    fillSampleIllnesses(school, [](StringView text) { return u"c:" + String(text); });
    return school;
}

void plant(const School& school, const Planted& fault)
{
    for (const StringView each : fault.statements) {
        const bool deleted = each.starts_with(u'-');
        (deleted ? school.borrado : school.centro)->executeNative(each.substr(deleted ? 1 : 0));
    }
}

std::string told(const std::vector<Finding>& findings)
{
    std::string text;
    for (const Finding& each : findings)
        text += toUtf8(each.rule) + ": " + toUtf8(each.text) + " " + toUtf8(each.remedy) + "\n";
    return text;
}

} // namespace

TEST(Rules, the_sample_school_is_without_fault)
{
    const Survey found = look(sampleSchool());
    EXPECT_EQ(told(found.findings), "");
    EXPECT_TRUE(found.skipped.empty());
}

TEST(Rules, each_planted_fault_is_found_and_nothing_else_and_a_repair_mends_it_alone)
{
    const School shared = sampleSchool();
    std::set<std::string> met;
    for (const Planted& fault : faults) {
        SCOPED_TRACE(std::string(fault.rule) + ": " + fault.told);
        School school = fault.repaired ? sampleSchool() : shared;
        std::optional<Transaction> live, deleted;
        if (!fault.repaired) {
            live.emplace(*school.centro);
            deleted.emplace(*school.borrado);
        }
        plant(school, fault);
        const std::vector<Finding> found = look(school).findings;
        ASSERT_EQ(found.size(), 1U) << told(found);
        EXPECT_EQ(toUtf8(found.front().rule), fault.rule);
        EXPECT_THAT(toUtf8(found.front().text), testing::HasSubstr(fault.told));
        EXPECT_EQ(found.front().repair != nullptr, fault.repaired);
        if (found.front().section != 0) {
            EXPECT_EQ(look(school, {.section = found.front().section}).findings.size(), 1U);
            EXPECT_EQ(look(school, {.section = 20}).findings.size(), 0U) << "another section's";
        }
        if (fault.repaired) {
            EXPECT_EQ(repair(school, {}).size(), 0U) << "nothing was named";
            EXPECT_EQ(repair(school, found).size(), 1U);
            EXPECT_EQ(told(look(school).findings), "");
            EXPECT_EQ(repair(school, found).size(), 0U) << "it has gone";
        }
        met.insert(fault.rule);
    }
    EXPECT_EQ(met.size(), ruleNames().size()) << "a rule without a fault of its own";
}

/// Each word that programs get is explained to the technician.
TEST(Rules, the_manual_has_each_rule)
{
    std::ostringstream page;
    page << std::ifstream(GUIONES "/../../docs/manual/comprobar.md").rdbuf();
    for (const StringView rule : ruleNames())
        EXPECT_THAT(page.str(), testing::HasSubstr("| `" + toUtf8(rule) + "` |"));
}

TEST(Rules, what_a_school_lacks_is_told_and_the_rest_is_looked_at)
{
    const School school = sampleSchool();
    school.centro->executeNative(u"ALTER TABLE Cuenta DROP COLUMN Numero");
    school.centro->executeNative(u"UPDATE Banco SET Numero='49' WHERE IDBanco=3");
    const Survey found = look(school);
    EXPECT_THAT(found.skipped, testing::ElementsAre(StringView(u"cuenta")));
    EXPECT_EQ(found.findings.size(), 1U) << told(found.findings);
}

TEST(Rules, a_key_that_opens_nothing_is_told_once)
{
    const School school = sampleSchool();
    school.centro->executeNative(u"UPDATE Enfermedad SET Nombre='x'");
    EXPECT_EQ(look(school).findings.size(), 1U);
}
