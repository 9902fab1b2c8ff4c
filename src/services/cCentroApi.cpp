#include "services/cCentroApi.h"

#include "data/LateBound.h"

namespace zv {

cCentroApi cCentroApi::create(StringView progId) { return cCentroApi(CreateObject(progId)); }

void cCentroApi::Marcar_Obligatorios(Object& controls) const
{
    call(object_, u"Marcar_Obligatorios", {uncounted(controls)});
}

void cCentroApi::ComprobarComilla(Object& controls) const
{
    call(object_, u"ComprobarComilla", {uncounted(controls)});
}

Value cCentroApi::IDMax(const ConnectionPtr& centro, const ConnectionPtr& borrado, StringView table,
                        StringView key) const
{
    return call(object_, u"IDMax", {hostObjectOf(centro), hostObjectOf(borrado), table, key});
}

bool cCentroApi::registroactivo(const ConnectionPtr& centro, StringView form, Long row, Integer user) const
{
    return CBool(call(object_, u"registroactivo", {hostObjectOf(centro), form, row, user}));
}

void cCentroApi::EliminarRegistroActivo(const ConnectionPtr& centro, StringView form, Long row) const
{
    call(object_, u"EliminarRegistroActivo", {hostObjectOf(centro), form, row});
}

void cCentroApi::Comprobar_BotonesAccesoRapido(Object& form, const ConnectionPtr& entrada,
                                               Integer profile) const
{
    call(object_, u"Comprobar_BotonesAccesoRapido", {uncounted(form), hostObjectOf(entrada), profile});
}

void cCentroApi::agregarelementovacio(Object& comboBox) const
{
    call(object_, u"agregarelementovacio", {uncounted(comboBox)});
}

void cCentroApi::incluirpersonalenactividad(const ConnectionPtr& centro, const ConnectionPtr& borrado,
                                            const LongArray& staff, Integer kind) const
{
    call(object_, u"incluirpersonalenactividad", {hostObjectOf(centro), hostObjectOf(borrado), staff, kind});
}

} // namespace zv
