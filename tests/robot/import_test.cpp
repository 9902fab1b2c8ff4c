#include "robot/Import.h"

#include "data/sqlite/SqliteEngine.h"
#include "module/Module.h"
#include "robot/FreshSchool.h"
#include "session/cNombreNodo.h"

#include <gmock/gmock.h>

namespace zv {
namespace {

using Name = cNombreNodo;

/// What becomes of each line, and what the dialogs' table has then of it.
struct Try {
    Byte node = 0;
    StringView list;
    std::string lines; ///< "+" for one that was added, else the message; or the beginning of why none was.
    StringView query = u"SELECT 1 FROM Alumno";
    std::string rows = {}; ///< What the query finds then.
};

std::string imported(const School& school, const Try& each)
{
    std::string result;
    try {
        importList(school, *moduleNode(each.node), csvLines(each.list), {}, [&](const ImportedLine& line) {
            result += (line.added ? "+" : "") + toUtf8(line.message) + "\n";
        });
    } catch (const ImportError& error) {
        return error.what();
    }
    return result;
}

} // namespace

TEST(Import, types_each_line_into_the_dialog_and_tells_what_it_says)
{
    const Try tries[] = {
        {Name::TiposIncidencia,
         u"nombre;Justificante;BOLETIN;Ausencia\nD'Ana;sí;X;\n  ;No;No;No\nb;quizá;;\n",
         "+\nERROR Faltan campos por rellenar\nEn «Justificante» va Sí o No, y no «quizá».\n",
         u"SELECT Nombre, Justificante, Boletin, Ausencia FROM TipoIncidencia WHERE Nombre LIKE 'D''%'",
         "D'Ana 1 1 0 "},
        // What the filter of keys keeps out is pasted.
        {Name::TiposIva, u"Descripción\n16\n7,5%\n16%\nuno\n",
         "+\n+\nEste tipo de I.V.A. ya exite\nDebes introducir un tanto porciento\n",
         u"SELECT Descripcion FROM TipoIva ORDER BY IDTipoIva", "16% 7,5% "},
        {Name::Ponderaciones, u"Puntuación;Descripción\n12,34;a\n12;b\n7,5;c\n7;\nuno;e\n",
         "+\n+\n+\nERROR Faltan campos por rellenar\nERROR al insertar un registro en la base de datos\n",
         u"SELECT puntuacion FROM ponderacion ORDER BY IDponderacion", "12,34 12 7,5 "},
        {Name::Turnos, u"Tipo;Turno;\na distancia;Sábado;\nmañana;Otro;\n;Uno;2\nDiurno\n",
         "+\nEn «Tipo» no hay «mañana»: se elige de «Diurno», «Vespertino», «Nocturno», «A Distancia».\n"
         "La línea tiene 3 celdas, y la cabecera 2.\nLa línea tiene 1 celdas, y la cabecera 2.\n",
         u"SELECT TipoTurno FROM Turno", "4 "},
        {Name::TiposTarea, u"Nombre,Tipo de miembro\na,bedel\nb,Nadie\nc,Doble\nd,\n",
         "+\nEn «Tipo de miembro» no se puede elegir «Nadie».\nEn «Tipo de miembro» hay más de una fila "
         "«Doble».\nERROR Faltan campos por rellenar\n",
         u"SELECT codTipoMiembroCentro FROM TipoTarea", "7 "},
        {Name::Paises, u"Descripción\n123456789012345678901234567890123456789012345678901\n\"a\nb\"\n'=a\n",
         "En «Descripción» caben 50 letras, y son 51.\nEn «Descripción» cabe un solo renglón.\n+\n",
         u"SELECT Descripcion FROM Pais", "=a "},
        {Name::Enfermedades, u"Nombre\tDescripción\nAsma\t\"a\nb\"\n", "+\n"},
        // A key that stays taken, as it is not the key that is unique there.
        {Name::Idiomas, u"Nombre\nIgual\nIgual\nOtro\n",
         "+\nERROR al insertar un registro en la base de datos\n+\n", u"SELECT IDIdioma FROM Idioma", "1 2 "},
        {Name::OC_Bancos, u"Código;Nombre\n0049;a\n49;b\n0049;c\n",
         "+\nEl Código del Banco debe tener Cuatro dígitos.\nYa existe un banco con ese código\n"},
        {Name::Paises, u"Nombre;Nombre\na;b\n",
         "La columna «Nombre» está dos veces. Las columnas de «Países» son: «País» o «Descripción» o "},
        {Name::Turnos, u"Tipo\nDiurno\n", "Falta la columna «Turno»."},
        {Name::TiposTarea, u"Nombre\na\n",
         "Falta la columna «Tipo de miembro». Las columnas de «Tipos de tarea» son: «Tarea» o «Descripción»"},
        {Name::Emisor, u"Nombre\na\n", "En «Emisores y ordenantes» no se importan listas:"},
        {Name::Paises, u"\n", "La lista está vacía."},
    };
    registerEngine(sqliteEngine());
    installModule();
    const FreshSchool fresh(u"sqlite:", false);
    Connection& centro = *fresh.school().centro;
    centro.executeNative(u"INSERT INTO TipoMiembroCentro VALUES (7,'Bedel',2),(8,'Doble',2),(9,'Doble',2)");
    centro.executeNative(u"CREATE UNIQUE INDEX Unico ON Idioma (Descripcion)");
    for (const Try& each : tries) {
        EXPECT_THAT(imported(fresh.school(), each), testing::StartsWith(each.lines)) << toUtf8(each.list);
        std::string rows;
        for (RecordsetPtr found = centro.executeNative(each.query); !found->Eof(); found->MoveNext())
            for (const Value& value : found->row())
                rows += toUtf8(String() + value) + " ";
        EXPECT_EQ(rows, each.rows) << toUtf8(each.query);
    }
}

} // namespace zv
