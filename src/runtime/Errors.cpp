#include "runtime/Errors.h"

#include <utility>

namespace zv {

namespace {

constexpr std::pair<std::int32_t, StringView> descriptions[] = {
    {failure::invalidCall, u"Argumento o llamada a procedimiento no válidos"},
    {failure::overflow, u"Desbordamiento"},
    {failure::indexOutside, u"El índice está fuera del intervalo"},
    {failure::divisionByZero, u"División por cero"},
    {failure::typeMismatch, u"No coinciden los tipos"},
    {failure::fileMissing, u"No se encontró el archivo"},
    {failure::noObject, u"No se ha establecido la variable de objeto"},
    {failure::invalidNull, u"Uso no válido de Null"},
    {failure::resourceMissing, u"No hay ningún texto con ese número"},
    {failure::noArrayElement, u"No existe el elemento de la matriz de controles"},
    {failure::invalidProperty, u"Valor de propiedad no válido"},
    {failure::listIndexOutside, u"Índice de la matriz de propiedades no válido"},
    {failure::readOnlyProperty, u"La propiedad es de solo lectura"},
    {failure::classMissing, u"El componente no puede crear el objeto"},
    {failure::memberMissing, u"El objeto no admite esta propiedad o método"},
    {failure::argumentCount, u"Número de argumentos incorrecto"},
    {failure::keyTaken, u"Esta clave ya está asociada con un elemento de la colección"},
    {failure::noPicture, u"La imagen no es válida"},
};

StringView descriptionOf(std::int32_t number)
{
    for (const auto& [known, text] : descriptions)
        if (known == number)
            return text;
    return u"Error definido por la aplicación";
}

} // namespace

RuntimeError::RuntimeError(std::int32_t number, String description)
    : number_(number), description_(std::move(description)), what_(toUtf8(description_))
{}

void fail(std::int32_t number, StringView detail)
{
    String text(descriptionOf(number));
    if (!detail.empty())
        text.append(u": ").append(detail);
    throw RuntimeError(number, std::move(text));
}

void ErrState::Clear()
{
    const bool held = std::exchange(Number, 0) != 0;
    Description.clear();
    if (held && changed)
        changed(0);
}

void ErrState::set(const RuntimeError& error)
{
    Number = error.number();
    Description = error.description();
    if (changed)
        changed(Number);
}

ErrState& Err()
{
    static ErrState state;
    return state;
}

ResumeNext::ResumeNext() { Err().Clear(); }

void ResumeNext::leave() { Err().Clear(); }

} // namespace zv
