#include "data/Schema.h"

namespace zv::schema {
namespace {

constexpr Type integer = Type::integer;
constexpr Type byte = Type::byte;
constexpr Type flag = Type::flag;
constexpr Type decimal = Type::decimal;

constexpr Column text(StringView name, int width = 0)
{
    return {.name = name, .type = Type::text, .width = width};
}
constexpr Column ref(StringView name, StringView target, Type type = Type::longInteger)
{
    return {.name = name, .type = type, .refersTo = target};
}
constexpr Column searched(Column column)
{
    column.searched = true;
    return column;
}
constexpr Column ours(Column column)
{
    column.addedByUs = true;
    return column;
}

constexpr Table written(StringView name, std::initializer_list<Column> columns)
{
    return {name, Use::named, Key::given, 1, columns};
}
constexpr Table positional(StringView name, std::initializer_list<Column> columns)
{
    return {name, Use::positional, Key::given, 1, columns};
}
constexpr Table readOnly(StringView name, std::initializer_list<Column> columns)
{
    return {name, Use::read, Key::automatic, 1, columns};
}
/// Association table of two others. Its key is not unique: schools exist that hold a pair twice.
constexpr Table joining(StringView name, std::initializer_list<Column> columns)
{
    return {name, Use::read, Key::repeated, 2, columns};
}

// Default width of the tables that the dialogs only read: 32 bits, since nobody here settles how wide a
// number is there.
constexpr Table centro[] = {
    written(u"EstadoCivil", {{u"IDEstadoCivil", integer}, text(u"Descripcion", 50)}),
    written(u"Idioma", {{u"IDIdioma", integer}, text(u"Descripcion", 50)}),
    written(u"Pais", {{u"IDPais", integer}, text(u"Descripcion", 50)}),
    written(u"Provincia", {{u"IDProvincia", integer}, text(u"Descripcion", 30)}),
    written(u"TipoAlumno", {{u"IDTipoAlumno", integer}, text(u"Descripcion", 50)}),
    written(u"TipoContrato", {{u"IDTipoContrato", integer}, text(u"Nombre", 50)}),
    written(u"TipoNivelEstudios", {{u"IDTipoNivelEstudios", integer}, text(u"Nombre", 50)}),
    written(u"CursoEspecializacion", {{u"IDCEspecializacion", integer}, text(u"Descripcion", 50)}),
    written(u"Observacion",
            {{u"IDObservacion"}, text(u"DescripcionCorta", 50), text(u"DescripcionLarga", 50)}),
    written(u"OpcionMateria", {{u"IDOM", integer},
                               text(u"Descripcion", 50),
                               text(u"DescripcionCorta", 7),
                               text(u"DescripcionLarga", 50),
                               text(u"DescripcionActa", 50)}),
    written(u"TipoMotivoBaja",
            {{u"IDTipoMotivoBaja", integer}, text(u"Nombre", 50), text(u"Descripcion", 50)}),
    // Unlimited width: both texts are stored enciphered, longer than what a person types.
    written(u"Enfermedad", {{u"IDEnfermedad"}, text(u"Nombre"), text(u"Descripcion")}),
    written(u"Nacionalidad",
            {{u"IDNacionalidad", integer}, text(u"Descripcion", 50), text(u"Abreviatura", 3)}),
    written(u"profesion", {{u"IDProfesion"}, text(u"nombre", 50)}),
    written(u"TipoParentesco", {{u"IDTP"}, text(u"Nombre", 50)}),
    written(u"TipoJustificacion", {{u"IDTipoJustificacion"}, text(u"Descripcion", 50)}),
    written(u"TipoMaterialDidactico", {{u"IDTipoMaterialDidactico", integer}, text(u"Nombre", 50)}),
    written(u"TipoCentro", {{u"IDTipocentro", integer}, text(u"Nombre", 50)}),
    // A number stored as text, with the decimal mark of the machine that wrote it.
    written(u"TipoIva", {{u"IDTipoIva", integer}, text(u"Descripcion", 50), text(u"Valor")}),
    written(u"ponderacion", {{u"IDPonderacion"}, text(u"descripcion", 50), {u"puntuacion", decimal}}),
    written(u"TipoIncidencia", {{u"IDTipoIncidencia", integer},
                                text(u"Nombre", 50),
                                text(u"DescripcionCorta", 50),
                                {u"Justificante", flag},
                                {u"Boletin", flag},
                                {u"Ausencia", flag}}),
    written(u"TipoOcurrencia", {{u"IDTO", integer}, text(u"Nombre", 50), {u"Lectivo", flag}}),
    positional(u"Turno", {{u"IDTurno", integer}, text(u"Descripcion", 50), {u"TipoTurno", byte}}),
    positional(u"TipoMiembroCentro", {{u"IDTMC", integer}, text(u"Nombre", 50), {u"Tipo", byte}}),
    written(
        u"TipoTarea",
        {{u"IDTipoTarea", integer}, text(u"Nombre", 50), ref(u"codTipoMiembroCentro", u"TipoMiembroCentro")}),

    written(u"Banco", {{u"IDBanco", integer}, text(u"Nombre", 50), searched(text(u"Numero", 4))}),
    written(u"Sucursal", {{u"IDSucursal", integer},
                          ref(u"CodBanco", u"Banco", integer),
                          text(u"Codigo", 4),
                          text(u"Nombre", 70),
                          text(u"Direccion", 50),
                          text(u"Poblacion", 50),
                          text(u"CodigoPostal", 5),
                          ref(u"CodProvincia", u"Provincia", integer)}),
    positional(u"Presentador", {{u"IDPresentador", integer},
                                text(u"Nombre", 40),
                                text(u"NIF", 9),
                                text(u"Sufijo", 3),
                                ref(u"CodBanco", u"Banco", integer),
                                ref(u"CodSucursal", u"Sucursal", integer)}),
    positional(u"Emisor", {{u"IDEmisor", integer},
                           text(u"Nombre", 50),
                           text(u"CIF", 9),
                           text(u"Sufijo", 3),
                           ref(u"CodPresentador", u"Presentador", integer),
                           text(u"Direccion", 50),
                           text(u"Poblacion", 50),
                           ref(u"CodProvincia", u"Provincia", integer),
                           text(u"CP", 5),
                           ref(u"CodPresentadorMTP", u"PresentadorMTP", integer),
                           text(u"CodigoOrdenante", 10),
                           {u"MTP", flag}}),

    positional(u"ConsejoOrientador_Respuesta", {{u"IDCOResp", integer},
                                                ref(u"CodConsejoOrientador", u"ConsejoOrientador"),
                                                text(u"Descripcion", 200)}),
    positional(u"ConsejoOrientador_Nota", {{u"IDCORNota"},
                                           ref(u"codAlumno", u"Alumno", integer),
                                           ref(u"codSeccion", u"Seccion", integer),
                                           ref(u"codCOResp", u"ConsejoOrientador_Respuesta", integer),
                                           ref(u"codConsejoOrientador", u"ConsejoOrientador", integer)}),
    positional(u"TipoRespInfInd",
               {{u"IDResp", integer}, ref(u"CodTipo", u"TipoInfInd"), text(u"Descripcion", 200)}),
    positional(u"Alumno_InfInd", {ref(u"CodAlumno", u"Alumno"), text(u"Dificultad", 200),
                                  text(u"Valoracion", 200), text(u"Apreciacion", 200)}),
    positional(u"Alumno_InfIndESO",
               {ref(u"CodAlumno", u"Alumno"), text(u"Alumno1", 200), text(u"Alumno2", 200),
                text(u"Alumno3", 200), text(u"Alumno4", 200), text(u"Alumno5", 200),
                text(u"Procedimiento1", 200), text(u"Procedimiento2", 200), text(u"Procedimiento3", 200),
                text(u"Procedimiento4", 200), text(u"Procedimiento5", 200), text(u"Actitud1", 200),
                text(u"Actitud2", 200)}),
    // Not unique, because of a race: two stations that save one section at a time may both leave their
    // ratings; the next save clears them.
    {u"Alumno_InfIndPrim",
     Use::positional,
     Key::repeated,
     3,
     {ref(u"CodAlumno", u"Alumno"), ref(u"codMateria", u"Materia"), ref(u"codTipo", u"TipoInfInd"),
      ref(u"codResp", u"TipoRespInfInd")}},

    readOnly(u"Alumno", {{u"IDAlumno"},
                         text(u"Apellido_1"),
                         text(u"Apellido_2"),
                         text(u"Nombre"),
                         ref(u"codseccion", u"Seccion"),
                         searched(text(u"fechabaja")),
                         ref(u"CodPaisNacimiento", u"Pais"),
                         ref(u"CodTipoAlumno", u"TipoAlumno"),
                         ref(u"CodTipoMotivoBaja", u"TipoMotivoBaja"),
                         ref(u"CodNacionalidad", u"Nacionalidad"),
                         ours(text(u"FechaNacimiento"))}),
    readOnly(u"Personal", {{u"IDPersonal"},
                           ref(u"CodEstadoCivil", u"EstadoCivil"),
                           ref(u"CodPaisNacimiento", u"Pais"),
                           ref(u"CodTipoContrato", u"TipoContrato"),
                           ref(u"CodTipoNivelEstudios", u"TipoNivelEstudios"),
                           ref(u"CodTipoMiembroCentro", u"TipoMiembroCentro"),
                           ref(u"CodUsuario", u"Usuario"),
                           ours(text(u"Apellido_1")),
                           ours(text(u"Apellido_2")),
                           ours(text(u"Nombre"))}),
    readOnly(u"MiembroFamilia", {ours({u"IDMiembroFamilia"}), ref(u"codprofesion", u"profesion"),
                                 ref(u"CodTipoNivelEstudios", u"TipoNivelEstudios"),
                                 ref(u"codTipoParentesco", u"TipoParentesco"),
                                 ours(ref(u"CodAlumno", u"Alumno")), ours(text(u"Nombre"))}),
    readOnly(u"Direccion", {ours({u"IDDireccion"}), ref(u"CodPais", u"Pais"), ours(text(u"Via")),
                            ours(text(u"Poblacion")), ours(text(u"CodigoPostal"))}),
    readOnly(u"Centro",
             {ours({u"IDCentro"}), ref(u"CodIdioma", u"Idioma"), ref(u"codTipoCentro", u"TipoCentro"),
              ours(text(u"Nombre")), ours(ref(u"CodDireccion", u"Direccion"))}),
    joining(u"Centro_Idioma", {ref(u"CodIdioma", u"Idioma"), ours(ref(u"CodCentro", u"Centro"))}),
    joining(u"Centro_TipoEnsenanza",
            {ref(u"codTipoEnsenanza", u"TipoEnsenanza"), ours(ref(u"CodCentro", u"Centro"))}),
    readOnly(u"Centro_Cuenta_Emisor",
             {{u"IDCCE"}, ref(u"CodCuenta", u"Cuenta"), ref(u"CodEmisor", u"Emisor")}),
    joining(u"CEspecializacion_Personal",
            {ref(u"CodCEspecializacion", u"CursoEspecializacion"), ours(ref(u"CodPersonal", u"Personal"))}),
    joining(u"MateriaDetalles_Observacion",
            {ref(u"codObservacion", u"Observacion"), ours(ref(u"codMateriaDetalles", u"MateriaDetalles"))}),
    joining(u"prematriculacion_ponderacion",
            {ref(u"codPonderacion", u"ponderacion"), ours({u"codPrematriculacion"})}),
    joining(u"Ponderacion_Centro",
            {ref(u"codPonderacion", u"ponderacion"), ours(ref(u"CodCentro", u"Centro"))}),
    readOnly(u"IncidenciaAlumno",
             {ours({u"IDIncidenciaAlumno"}), ref(u"CodTipoIncidencia", u"TipoIncidencia"),
              ref(u"codTipoJustificacion", u"TipoJustificacion"), ours(ref(u"CodAlumno", u"Alumno")),
              ours(text(u"Fecha"))}),
    readOnly(u"IncidenciaPersonal",
             {ours({u"IDIncidenciaPersonal"}), ref(u"CodTipoIncidencia", u"TipoIncidencia"),
              ref(u"codTipoJustificacion", u"TipoJustificacion"), ours(ref(u"CodPersonal", u"Personal")),
              ours(text(u"Fecha"))}),
    readOnly(u"Actividad", {ours({u"IDActividad"}), ref(u"CodTipoIva", u"TipoIva"),
                            ref(u"codCCECobro", u"Centro_Cuenta_Emisor"),
                            ref(u"codCCEPago", u"Centro_Cuenta_Emisor"), ours(text(u"Nombre"))}),
    readOnly(u"MaterialDidactico",
             {ours({u"IDMaterialDidactico"}), ref(u"CodTipoMaterialDidactico", u"TipoMaterialDidactico"),
              ours(text(u"Nombre"))}),
    readOnly(u"OcurrenciaCalendario", {ours({u"IDOcurrenciaCalendario"}),
                                       ref(u"CodTipoOcurrencia", u"TipoOcurrencia"), ours(text(u"Fecha"))}),
    readOnly(u"Tarea", {ours({u"IDTarea"}), ref(u"codTipoTarea", u"TipoTarea"),
                        ours(ref(u"CodPersonal", u"Personal")), ours(text(u"Descripcion"))}),
    readOnly(u"Cuenta", {{u"IDCuenta"}, ref(u"codSucursal", u"Sucursal"), ours(text(u"Numero"))}),
    readOnly(u"BancoMTP", {ours({u"IDBancoMTP"}), ref(u"codBanco", u"Banco")}),
    readOnly(u"PresentadorMTP", {{u"IDPresentadorMTP"}, text(u"Nombre")}),
    readOnly(u"Seccion", {{u"IDSeccion"},
                          text(u"Descripcion"),
                          ref(u"CodCurso", u"Curso"),
                          ref(u"CodTutor", u"Personal"),
                          ref(u"CodTurno", u"Turno"),
                          ref(u"CodModelo", u"Modelo")}),
    joining(u"Seccion_Alumno", {ref(u"codAlumno", u"Alumno"), ref(u"codSeccion", u"Seccion")}),
    readOnly(u"Curso", {{u"IDCurso"},
                        text(u"Descripcion"),
                        {u"Orden"},
                        ref(u"codTipoEnsenanza", u"TipoEnsenanza"),
                        {u"finciclo", flag}}),
    readOnly(u"TipoEnsenanza", {{u"IDTipoEnsenanza"}, text(u"Nombre"), {u"Orden"}}),
    readOnly(u"SistemaCalificacion",
             {{u"IDSistemaCalificacion"}, ref(u"CodTipoEnsenanza", u"TipoEnsenanza"), ours(text(u"Nombre"))}),
    readOnly(u"Modelo",
             {{u"IDModelo"}, ref(u"CodSistemaCalificacion", u"SistemaCalificacion"), ours(text(u"Nombre"))}),
    readOnly(u"MateriaDetalles", {{u"IDMateriaDetalles"},
                                  ref(u"CodSeccion", u"Seccion"),
                                  ref(u"CodPersonal", u"Personal"),
                                  ref(u"CodPersonalAsociado", u"Personal"),
                                  ref(u"codMateria", u"Materia")}),
    readOnly(u"Materia", {{u"IDMateria"}, text(u"Nombre"), searched({u"codTipoMateria"})}),
    joining(u"Alumno_MateriaDetalles",
            {ref(u"codAlumno", u"Alumno"), ref(u"codMateriaDetalles", u"MateriaDetalles")}),
    readOnly(u"ConsejoOrientador", {{u"IDConsejoOrientador"}, text(u"Descripcion")}),
    readOnly(u"TipoInfInd", {{u"IDTipo"}, text(u"Descripcion")}),

    // Last on purpose: the deleted-records database takes all tables before it.
    {registrations,
     Use::addedByUs,
     Key::given,
     2,
     {text(u"Formulario", 50),
      {u"Fila"},
      {u"IDUsuario", integer},
      text(u"Estacion", 250),
      text(u"Momento", 30)}},
};

constexpr Table entrada[] = {
    {u"BotonAccesoRapido",
     Use::read,
     Key::given,
     3,
     {{u"IDPerfil", integer}, text(u"Formulario", 50), text(u"Boton", 50)}},
    {u"Perfil", Use::addedByUs, Key::given, 1, {{u"IDPerfil", integer}, text(u"Nombre", 50)}},
    {u"Usuario",
     Use::addedByUs,
     Key::given,
     1,
     {{u"IDUsuario", integer}, text(u"Nombre", 50), ref(u"CodPerfil", u"Perfil", integer)}},
};

} // namespace

std::span<const Table> tables(Database which)
{
    if (which == Database::entrada)
        return entrada;
    const std::span<const Table> live = centro;
    return which == Database::centro ? live : live.first(live.size() - 1);
}

const Table* table(StringView name)
{
    for (const Database which : {Database::centro, Database::entrada})
        for (const Table& each : tables(which))
            if (sameName(each.name, name))
                return &each;
    return nullptr;
}

} // namespace zv::schema
