#pragma once

#include "com/Members.h"

#include <zvconfiguracion/zvconfiguracion.h>

namespace zv::com {

// Descriptors of the classes that hosts instantiate. Binary contract: the order of the members is that of
// their vtable slots and dispatch identifiers, so that none may move.

inline constexpr Field cDatosSesionFields[] = {
    {u"IDPerfil", Kind::integer},       {u"IDCentro", Kind::integer},   {u"NombreCentro", Kind::text},
    {u"IDUsuario", Kind::integer},      {u"NombreUsuario", Kind::text}, {u"IDCursoEscolar", Kind::integer},
    {u"ValorCursoEscolar", Kind::text}, {u"Activa", Kind::truth},       {u"Pesetas", Kind::truth},
    {u"CadenaUdlActiva", Kind::text},   {u"MTP", Kind::truth},          {u"RutaAplicacion", Kind::text},
};

inline constexpr Field cConsejoOrientadorFields[] = {
    {u"IDCORNota", Kind::whole},
    {u"CodAlumno", Kind::integer},
    {u"codSeccion", Kind::integer},
    {u"codCOResp", Kind::integer},
    {u"codConsejoOrientador", Kind::integer},
    {u"Estado", Kind::byte},
};

inline constexpr Field cInformeIndFields[] = {
    {u"CodAlumno", Kind::whole},     {u"Dificultad", Kind::text},        {u"Valoracion", Kind::text},
    {u"Apreciacion", Kind::text},    {u"colMaterias", Kind::collection}, {u"PropAlumno1", Kind::text},
    {u"PropAlumno2", Kind::text},    {u"PropAlumno3", Kind::text},       {u"PropAlumno4", Kind::text},
    {u"PropAlumno5", Kind::text},    {u"Procedimiento1", Kind::text},    {u"Procedimiento2", Kind::text},
    {u"Procedimiento3", Kind::text}, {u"Procedimiento4", Kind::text},    {u"Procedimiento5", Kind::text},
    {u"Actitud1", Kind::text},       {u"Actitud2", Kind::text},          {u"Estado", Kind::byte},
};

inline constexpr Field cInfPrimariaFields[] = {
    {u"codMateria", Kind::whole}, {u"codTipo", Kind::whole},  {u"codResp", Kind::whole},
    {u"Nombre", Kind::text},      {u"Respuesta", Kind::text}, {u"Estado", Kind::byte},
};
inline constexpr Method cAsignarDatosMethods[] = {
    {u"BloquearBanco", u"", Kind::nothing, Kind::nothing},
    {u"ObtenerDatos", u"ObjDatosSesion", Kind::object, Kind::nothing},
    {u"ActivarFormulario", u"bytNodoSeleccionado", Kind::byte, Kind::nothing},
    {u"Eliminar", u"bytNodoSeleccionado", Kind::byte, Kind::truth},
};

inline const ClassInfo cDatosSesionClass{
    u"cDatosSesion", ZV_CLSID_cDatosSesion, ZV_IID__cDatosSesion, cDatosSesionFields, {}};
inline const ClassInfo cConsejoOrientadorClass{u"cConsejoOrientador",
                                               ZV_CLSID_cConsejoOrientador,
                                               ZV_IID__cConsejoOrientador,
                                               cConsejoOrientadorFields,
                                               {}};
inline const ClassInfo cAsignarDatosClass{
    u"cAsignarDatos", ZV_CLSID_cAsignarDatos, ZV_IID__cAsignarDatos, {}, cAsignarDatosMethods};
inline const ClassInfo cInformeIndClass{
    u"cInformeInd", ZV_CLSID_cInformeInd, ZV_IID__cInformeInd, cInformeIndFields, {}};
inline const ClassInfo cInfPrimariaClass{
    u"cInfPrimaria", ZV_CLSID_cInfPrimaria, ZV_IID__cInfPrimaria, cInfPrimariaFields, {}};

} // namespace zv::com
