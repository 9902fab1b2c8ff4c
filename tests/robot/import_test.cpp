#include "robot/Import.h"

#include "data/sqlite/SqliteEngine.h"
#include "module/Module.h"
#include "robot/FreshSchool.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

const ModuleNode& nodeOf(StringView dialog)
{
    for (const ModuleNode& each : moduleNodes())
        if (each.dialog == dialog)
            return each;
    throw std::invalid_argument(toUtf8(dialog));
}

/// What becomes of each line, and what the dialogs' table has then of it.
struct Try {
    StringView dialog;
    StringView list;
    std::string lines; ///< "+" for one that was added, else the message.
    StringView query = {};
    std::string rows = {};
};

std::string imported(const School& school, const Try& each)
{
    std::string result;
    try {
        importList(school, nodeOf(each.dialog), csvLines(each.list), {}, [&](const ImportedLine& line) {
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
        {u"frmTipoIncidencia", u"nombre;Justificante;BOLETIN;Ausencia\nD'Ana;sí;X;\n  ;No;No;No\nb;quizá;;\n",
         "+\nERROR Faltan campos por rellenar\nEn «Justificante» va Sí o No, y no «quizá».\n",
         u"SELECT Nombre, Justificante, Boletin, Ausencia FROM TipoIncidencia WHERE Nombre LIKE 'D''%'",
         "D'Ana 1 1 0 "},
        // Keys that the dialog's filter keeps out are pasted, as a person would; what is no rate it refuses
        // itself.
        {u"frmTipoIva", u"Descripción\n16\n7,5%\n16%\nuno\n",
         "+\n+\nEste tipo de I.V.A. ya exite\nDebes introducir un tanto porciento\n",
         u"SELECT Descripcion FROM TipoIva ORDER BY IDTipoIva", "16% 7,5% "},
        {u"frmPonderacion", u"Puntuación;Descripción\n12,34;a\n12;b\n7,5;c\n7;\nuno;e\n",
         "+\n+\n+\nERROR Faltan campos por rellenar\nERROR al insertar un registro en la base de datos\n",
         u"SELECT puntuacion FROM ponderacion ORDER BY IDponderacion", "12,34 12 7,5 "},
        {u"frmTurno", u"Tipo;Turno;\na distancia;Sábado;\nmañana;Otro;\n;Uno;2\nDiurno\n",
         "+\nEn «Tipo» no hay «mañana»: se elige de «Diurno», «Vespertino», «Nocturno», «A Distancia».\n"
         "La línea tiene 3 celdas, y la cabecera 2.\nLa línea tiene 1 celdas, y la cabecera 2.\n",
         u"SELECT TipoTurno FROM Turno", "4 "},
        {u"frmTipoTarea", u"Nombre,Tipo de miembro\na,bedel\nb,Nadie\nc,Doble\nd,\n",
         "+\nEn «Tipo de miembro» no se puede elegir «Nadie».\nEn «Tipo de miembro» hay más de una fila "
         "«Doble».\n"
         "ERROR Faltan campos por rellenar\n",
         u"SELECT codTipoMiembroCentro FROM TipoTarea", "7 "},
        {u"frmPais", u"Descripción\n123456789012345678901234567890123456789012345678901\n\"a\nb\"\n'=a\n",
         "En «Descripción» caben 50 letras, y son 51.\nEn «Descripción» cabe un solo renglón.\n+\n",
         u"SELECT Descripcion FROM Pais", "=a "},
        {u"frmEnfermedad", u"Nombre\tDescripción\nAsma\t\"a\nb\"\n", "+\n"},
        // A key that stays taken, as it is not the key that is unique there.
        {u"frmIdioma", u"Nombre\nIgual\nIgual\nOtro\n",
         "+\nERROR al insertar un registro en la base de datos\n+\n", u"SELECT IDIdioma FROM Idioma", "1 2 "},
        {u"frmBanco", u"Código;Nombre\n0049;a\n49;b\n0049;c\n",
         "+\nEl Código del Banco debe tener Cuatro dígitos.\nYa existe un banco con ese código\n"},
        {u"frmPais", u"Nombre;Nombre\na;b\n",
         "La columna «Nombre» está dos veces. Las columnas de «Países» son: «País» o «Descripción» o "
         "«Nombre» (hace falta)."},
        {u"frmTurno", u"Tipo\nDiurno\n",
         "Falta la columna «Turno». Las columnas de «Turnos» son: «Turno» o «Descripción» o «Nombre» (hace "
         "falta), «Tipo»."},
        {u"frmEmisor", u"Nombre\na\n",
         "En «Emisores y ordenantes» no se importan listas: lo que se escribe en su ventana depende de lo "
         "que se elige en ella."},
        {u"frmPais", u"\n", "La lista está vacía."},
    };
    registerEngine(sqliteEngine());
    installModule();
    const FreshSchool fresh(u"sqlite:", false);
    Connection& centro = *fresh.school().centro;
    for (const StringView each : {u"INSERT INTO TipoMiembroCentro VALUES (7,'Bedel',2)",
                                  u"INSERT INTO TipoMiembroCentro VALUES (8,'Doble',2)",
                                  u"INSERT INTO TipoMiembroCentro VALUES (9,'Doble',2)",
                                  u"CREATE UNIQUE INDEX Unico ON Idioma (Descripcion)"})
        centro.executeNative(each);
    for (const Try& each : tries) {
        EXPECT_EQ(imported(fresh.school(), each), each.lines) << toUtf8(each.list);
        std::string rows;
        if (!each.query.empty())
            for (const RecordsetPtr found = centro.executeNative(each.query); !found->Eof();
                 found->MoveNext())
                for (const Value& value : found->row())
                    rows += toUtf8(String() + value) + " ";
        EXPECT_EQ(rows, each.rows) << toUtf8(each.query);
    }
}

} // namespace zv
