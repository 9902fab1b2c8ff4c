#include "data/DataError.h"

#include <array>

namespace zv {
namespace {

struct Words {
    std::int32_t number;
    StringView words;
};
constexpr std::array ordinaryWords{
    Words{failure::keyExists, u"Ya hay una fila con esa clave."},
    Words{failure::badStatement, u"La base de datos no entiende la instrucción."},
    Words{failure::tableMissing, u"En la base de datos falta una tabla."},
    Words{failure::columnMissing, u"En la base de datos falta una columna."},
    Words{failure::brokenConstraint, u"La base de datos no admite un valor."},
    Words{failure::locked, u"Otro puesto ocupa la base de datos; inténtelo de nuevo dentro de un momento."},
    Words{failure::closedRecordset, u"El conjunto de filas está cerrado."},
    Words{failure::connectionLost, u"Se ha perdido la conexión con la base de datos."},
    Words{failure::noRow, u"No hay ninguna fila actual."},
    Words{failure::unknownField, u"La consulta no tiene ese campo."},
};

String describe(std::int32_t number, StringView detail)
{
    String result = u"La base de datos ha fallado.";
    for (const Words& entry : ordinaryWords) {
        if (entry.number == number)
            result = entry.words;
    }
    if (!detail.empty())
        result += u" (" + String(detail) + u")";
    return result;
}

} // namespace

bool isLacking(const RuntimeError& error)
{
    return error.number() == failure::tableMissing || error.number() == failure::columnMissing;
}

DataError::DataError(std::int32_t number, std::string engineCode, StringView engineText, StringView statement)
    : RuntimeError(number, describe(number, engineText)), engineCode_(std::move(engineCode)),
      engineText_(engineText), statement_(statement)
{}

} // namespace zv
