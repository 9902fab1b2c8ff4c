#include "zvhost/Nodes.h"

#include "session/cNombreNodo.h"

#include <algorithm>
#include <iterator>

namespace zv::host {
namespace {

using Kind = ListColumn::Kind;
using Name = cNombreNodo;

constexpr ListColumn description[] = {{u"Descripción"}};
constexpr ListColumn name[] = {{u"Nombre"}};
constexpr ListColumn nationality[] = {{u"Nacionalidad"}, {u"Abreviatura"}};
constexpr ListColumn illness[] = {{u"Nombre", Kind::enciphered}, {u"Descripción", Kind::enciphered}};
constexpr ListColumn leaving[] = {{u"Nombre"}, {u"Descripción"}};
constexpr ListColumn observation[] = {{u"Descripción corta"}, {u"Descripción larga"}};
constexpr ListColumn option[] = {{u"Nombre"}, {u"Abreviatura"}, {u"Descripción"}, {u"En el acta"}};
constexpr ListColumn weighting[] = {{u"Descripción"}, {u"Puntuación", Kind::number}};
constexpr ListColumn incident[] = {{u"Nombre"},
                                   {u"Descripción corta"},
                                   {u"Justificante", Kind::flag},
                                   {u"Boletín", Kind::flag},
                                   {u"Ausencia", Kind::flag}};
constexpr ListColumn occurrence[] = {{u"Nombre"}, {u"Lectivo", Kind::flag}};
constexpr StringView shifts[] = {u"Diurno", u"Vespertino", u"Nocturno", u"A distancia"};
constexpr ListColumn shift[] = {{u"Descripción"}, {u"Tipo", Kind::word, shifts}};
constexpr StringView staffKinds[] = {u"Administración", u"Subalterno", u"Otro personal"};
constexpr ListColumn staff[] = {{u"Nombre"}, {u"Tipo", Kind::word, staffKinds}};
constexpr ListColumn task[] = {{u"Nombre"}, {u"Tipo de miembro"}};
constexpr ListColumn rate[] = {{u"Descripción"}, {u"Valor", Kind::number}};
constexpr ListColumn bank[] = {{u"Número"}, {u"Nombre"}};
constexpr ListColumn submitter[] = {{u"Nombre"}, {u"NIF"}, {u"Sufijo"}, {u"Banco"}, {u"Sucursal"}};
constexpr ListColumn issuer[] = {
    {u"Nombre"}, {u"CIF"}, {u"Sufijo"}, {u"Código de ordenante"}, {u"Población"}, {u"MTP", Kind::flag}};
constexpr ListColumn answer[] = {{u"Descripción"}, {u"Apartado"}};

constexpr StringView people = u"Datos de las personas";
constexpr StringView places = u"Lugares";
constexpr StringView pupils = u"Alumnado";
constexpr StringView workers = u"Personal";
constexpr StringView school = u"Centro";
constexpr StringView money = u"Bancos y recibos";
constexpr StringView reports = u"Orientación e informes";

constexpr Node all[] = {
    {65, people, u"Estados civiles", u"estado civil", u"frmEstadoCivil", u"EstadoCivil", u"IDEstadoCivil",
     u"SELECT IDEstadoCivil, Descripcion FROM EstadoCivil", description},
    {Name::Nacionalidad, people, u"Nacionalidades", u"nacionalidad", u"frmNacionalidad", u"Nacionalidad",
     u"IDNacionalidad", u"SELECT IDNacionalidad, Descripcion, Abreviatura FROM Nacionalidad", nationality},
    {Name::Idiomas, people, u"Idiomas", u"idioma", u"frmIdioma", u"Idioma", u"IDIdioma",
     u"SELECT IDIdioma, Descripcion FROM Idioma", description},
    {Name::Profesiones, people, u"Profesiones", u"profesión", u"frmProfesion", u"profesion", u"IDProfesion",
     u"SELECT IDProfesion, nombre FROM profesion", name},
    {Name::TiposParentesco, people, u"Parentescos", u"parentesco", u"frmTipoParentesco", u"TipoParentesco",
     u"IDTP", u"SELECT IDTP, Nombre FROM TipoParentesco", name},
    {Name::TiposNivelEstudios, people, u"Niveles de estudios", u"nivel de estudios", u"frmTipoNivelEstudios",
     u"TipoNivelEstudios", u"IDTipoNivelEstudios",
     u"SELECT IDTipoNivelEstudios, Nombre FROM TipoNivelEstudios", name},
    {Name::Enfermedades, people, u"Enfermedades", u"enfermedad", u"frmEnfermedad", u"Enfermedad",
     u"IDEnfermedad", u"SELECT IDEnfermedad, Nombre, Descripcion FROM Enfermedad", illness},

    {Name::Paises, places, u"Países", u"país", u"frmPais", u"Pais", u"IDPais",
     u"SELECT IDPais, Descripcion FROM Pais", description},
    {Name::Provincia, places, u"Provincias", u"provincia", u"frmProvincia", u"Provincia", u"IDProvincia",
     u"SELECT IDProvincia, Descripcion FROM Provincia", description},

    {Name::TiposAlumno, pupils, u"Tipos de alumno", u"tipo de alumno", u"frmTipoAlumno", u"TipoAlumno",
     u"IDTipoAlumno", u"SELECT IDTipoAlumno, Descripcion FROM TipoAlumno", description},
    {Name::TiposMotivoBaja, pupils, u"Motivos de baja", u"motivo de baja", u"frmTipoMotivoBaja",
     u"TipoMotivoBaja", u"IDTipoMotivoBaja",
     u"SELECT IDTipoMotivoBaja, Nombre, Descripcion FROM TipoMotivoBaja", leaving},
    {Name::TiposIncidencia, pupils, u"Tipos de incidencia", u"tipo de incidencia", u"frmTipoIncidencia",
     u"TipoIncidencia", u"IDTipoIncidencia",
     u"SELECT IDTipoIncidencia, Nombre, DescripcionCorta, Justificante, Boletin, Ausencia FROM "
     u"TipoIncidencia",
     incident},
    {Name::TiposJustificacion, pupils, u"Tipos de justificación", u"tipo de justificación",
     u"frmTipoJustificacion", u"TipoJustificacion", u"IDTipoJustificacion",
     u"SELECT IDTipoJustificacion, Descripcion FROM TipoJustificacion", description},
    {Name::Observaciones, pupils, u"Observaciones", u"observación", u"frmObservacion", u"Observacion",
     u"IDObservacion", u"SELECT IDObservacion, DescripcionCorta, DescripcionLarga FROM Observacion",
     observation},
    {Name::OpcionesMateria, pupils, u"Opciones de materia", u"opción de materia", u"frmOpcionMateria",
     u"OpcionMateria", u"IDOM",
     u"SELECT IDOM, Descripcion, DescripcionCorta, DescripcionLarga, DescripcionActa FROM OpcionMateria",
     option},
    {Name::Ponderaciones, pupils, u"Ponderaciones", u"ponderación", u"frmPonderacion", u"ponderacion",
     u"IDPonderacion", u"SELECT IDPonderacion, descripcion, puntuacion FROM ponderacion", weighting},

    {Name::TiposMiembroCentro, workers, u"Tipos de miembro del centro", u"tipo de miembro del centro",
     u"frmTipoMiembroCentro", u"TipoMiembroCentro", u"IDTMC",
     u"SELECT IDTMC, Nombre, Tipo FROM TipoMiembroCentro", staff},
    {Name::TiposTarea, workers, u"Tipos de tarea", u"tipo de tarea", u"frmTipoTarea", u"TipoTarea",
     u"IDTipoTarea",
     u"SELECT t.IDTipoTarea, t.Nombre, m.Nombre AS Miembro FROM TipoTarea t LEFT JOIN TipoMiembroCentro m "
     u"ON t.codTipoMiembroCentro = m.IDTMC",
     task},
    {Name::TiposContrato, workers, u"Tipos de contrato", u"tipo de contrato", u"frmTipoContrato",
     u"TipoContrato", u"IDTipoContrato", u"SELECT IDTipoContrato, Nombre FROM TipoContrato", name},
    {Name::CEspecializacion, workers, u"Cursos de especialización", u"curso de especialización",
     u"frmCEspecializacion", u"CursoEspecializacion", u"IDCEspecializacion",
     u"SELECT IDCEspecializacion, Descripcion FROM CursoEspecializacion", description},

    {Name::TipoCentro, school, u"Tipos de centro", u"tipo de centro", u"frmTipoCentro", u"TipoCentro",
     u"IDTipocentro", u"SELECT IDTipocentro, Nombre FROM TipoCentro", name},
    {Name::Turnos, school, u"Turnos", u"turno", u"frmTurno", u"Turno", u"IDTurno",
     u"SELECT IDTurno, Descripcion, TipoTurno FROM Turno", shift},
    {Name::TiposOcurrencia, school, u"Tipos de ocurrencia", u"tipo de ocurrencia", u"frmTipoOcurrencia",
     u"TipoOcurrencia", u"IDTO", u"SELECT IDTO, Nombre, Lectivo FROM TipoOcurrencia", occurrence},
    {Name::TiposMaterialDidactico, school, u"Tipos de material didáctico", u"tipo de material didáctico",
     u"frmTipoMaterialDidactico", u"TipoMaterialDidactico", u"IDTipoMaterialDidactico",
     u"SELECT IDTipoMaterialDidactico, Nombre FROM TipoMaterialDidactico", name},

    {Name::OC_Bancos, money, u"Bancos", u"banco", u"frmBanco", u"Banco", u"IDBanco",
     u"SELECT IDBanco, Numero, Nombre FROM Banco", bank},
    {Name::Presentador, money, u"Presentadores", u"presentador", u"frmPresentador", u"Presentador",
     u"IDPresentador",
     u"SELECT p.IDPresentador, p.Nombre, p.NIF, p.Sufijo, b.Nombre AS Banco, s.Nombre AS Sucursal "
     u"FROM Presentador p LEFT JOIN Banco b ON p.CodBanco = b.IDBanco "
     u"LEFT JOIN Sucursal s ON p.CodSucursal = s.IDSucursal",
     submitter},
    {Name::Emisor, money, u"Emisores y ordenantes", u"emisor", u"frmEmisor", u"Emisor", u"IDEmisor",
     u"SELECT IDEmisor, Nombre, CIF, Sufijo, CodigoOrdenante, Poblacion, MTP FROM Emisor", issuer},
    {Name::TiposIva, money, u"Tipos de IVA", u"tipo de IVA", u"frmTipoIva", u"TipoIva", u"IDTipoIva",
     u"SELECT IDTipoIva, Descripcion, Valor FROM TipoIva", rate},

    {Name::NotaConsejoOrientador, reports, u"Consejo orientador", u"consejo orientador",
     u"frmConsejoOrientador1"},
    {Name::InfIndiv, reports, u"Informes individuales", u"informe individual", u"frmInformeIndividual"},
    {Name::ConsejoOrientador, reports, u"Respuestas del consejo orientador",
     u"respuesta del consejo orientador", u"frmRespConsejo", u"ConsejoOrientador_Respuesta", u"IDCOResp",
     u"SELECT r.IDCOResp, r.Descripcion, c.Descripcion AS Apartado FROM ConsejoOrientador_Respuesta r LEFT "
     u"JOIN ConsejoOrientador c ON r.CodConsejoOrientador = c.IDConsejoOrientador",
     answer},
    {69, reports, u"Respuestas de los informes", u"respuesta de los informes", u"frmRespInfInd",
     u"TipoRespInfInd", u"IDResp",
     u"SELECT r.IDResp, r.Descripcion, t.Descripcion AS Apartado FROM TipoRespInfInd r "
     u"LEFT JOIN TipoInfInd t ON r.CodTipo = t.IDTipo",
     answer},
};

/// Tables without a node of their own, in which rows of the nodes' tables are named.
constexpr std::pair<StringView, StringView> otherTables[] = {
    {u"Sucursal", u"Sucursales"},
    {u"Cuenta", u"Cuentas"},
    {u"BancoMTP", u"Bancos del servicio MTP"},
    {u"PresentadorMTP", u"Presentadores del servicio MTP"},
    {u"Centro_Cuenta_Emisor", u"Cuentas de emisores del centro"},
    {u"Alumno", u"Alumnos"},
    {u"Personal", u"Miembros del personal"},
    {u"MiembroFamilia", u"Familiares"},
    {u"Direccion", u"Direcciones"},
    {u"Centro", u"Centros"},
    {u"Centro_Idioma", u"Idiomas de los centros"},
    {u"CEspecializacion_Personal", u"Especializaciones del personal"},
    {u"MateriaDetalles_Observacion", u"Observaciones de las materias"},
    {u"prematriculacion_ponderacion", u"Ponderaciones de prematriculaciones"},
    {u"Ponderacion_Centro", u"Ponderaciones de los centros"},
    {u"IncidenciaAlumno", u"Incidencias de alumnos"},
    {u"IncidenciaPersonal", u"Incidencias del personal"},
    {u"Actividad", u"Actividades"},
    {u"MaterialDidactico", u"Material didáctico"},
    {u"OcurrenciaCalendario", u"Ocurrencias del calendario"},
    {u"Tarea", u"Tareas"},
    {u"Seccion", u"Secciones"},
    {u"ConsejoOrientador_Nota", u"Notas del consejo orientador"},
    {u"Alumno_InfIndPrim", u"Valoraciones de informes de primaria"},
};

} // namespace

std::span<const Node> nodes() { return all; }

const Node* nodeOf(Byte number)
{
    const auto found = std::ranges::find(all, number, &Node::number);
    return found == std::end(all) ? nullptr : found;
}

const Node* nodeOf(StringView form)
{
    const auto found = std::ranges::find_if(all, [&](const Node& each) { return sameName(each.form, form); });
    return found == std::end(all) ? nullptr : found;
}

StringView nameOfTable(StringView table)
{
    for (const Node& each : all)
        if (sameName(each.table, table))
            return each.name;
    for (const auto& [known, words] : otherTables)
        if (sameName(known, table))
            return words;
    return table;
}

} // namespace zv::host
