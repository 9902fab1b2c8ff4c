#include "progress/Definition.h"

namespace zv::progress {

StringView nameOf(Kind kind)
{
    return kind == Kind::guidance    ? u"Consejo orientador"
           : kind == Kind::secondary ? u"Informe de secundaria"
                                     : u"Informe de primaria";
}

StringView wordOf(Kind kind)
{
    return kind == Kind::guidance ? u"consejo" : kind == Kind::secondary ? u"eso" : u"primaria";
}

StringView definition(Kind kind)
{
    switch (kind) {
    case Kind::guidance:
        return u"Consejo orientador: falta cada pregunta que el alumno no tiene contestada. Una para la que "
               u"el "
               u"centro no tiene ninguna respuesta posible no se espera.";
    case Kind::secondary:
        return u"Informe de secundaria: faltan las cinco capacidades del alumno que están vacías, los "
               u"procedimientos o las actitudes que no tienen ningún texto, y la valoración del aprendizaje. "
               u"Las dificultades no se esperan de todos; si se dicen, faltan las medidas que no se digan.";
    case Kind::primary:
        return u"Informe de primaria: falta en cada pestaña la materia del alumno que no tiene respuesta, y "
               u"la "
               u"valoración del aprendizaje. Las dificultades no se esperan de todos; si se dicen, faltan "
               u"las "
               u"medidas que no se digan.";
    }
    return {};
}

StringView definitionOfAll()
{
    return u"Las ventanas guardan un informe aunque no tenga nada: lo que falta es lo que espera una "
           u"familia. No "
           u"cuentan los alumnos de baja ni los que la ventana no muestra.";
}

} // namespace zv::progress
