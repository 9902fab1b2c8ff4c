#include "session/NodeTable.h"

#include "data/Schema.h"
#include "session/cNombreNodo.h"

#include <algorithm>

namespace zv {

namespace {

using Name = cNombreNodo;

/// Numbers without a name in cNombreNodo: two nodes of the host that have a dialog all the same.
constexpr Byte nodoEstadoCivil = 65;
constexpr Byte nodoRespuestas = 69;

constexpr ModuleNode node(Byte number, StringView dialog, StringView title, StringView table)
{
    return {
        .dialog = dialog, .title = title, .table = table, .number = number, .opens = true, .guards = true};
}

/// Node of a report: its rows are no lookup table, so none is deleted and no guard asked.
constexpr ModuleNode report(Byte number, StringView dialog, StringView title)
{
    return {.dialog = dialog, .title = title, .number = number, .opens = true, .guards = false};
}

constexpr ModuleNode table[] = {
    node(nodoEstadoCivil, u"frmEstadoCivil", u"Estados civiles", u"EstadoCivil"),
    node(Name::Nacionalidad, u"frmNacionalidad", u"Nacionalidades", u"Nacionalidad"),
    node(Name::Idiomas, u"frmIdioma", u"Idiomas", u"Idioma"),
    node(Name::Profesiones, u"frmProfesion", u"Profesiones", u"profesion"),
    node(Name::TiposParentesco, u"frmTipoParentesco", u"Parentescos", u"TipoParentesco"),
    node(Name::TiposNivelEstudios, u"frmTipoNivelEstudios", u"Niveles de estudios", u"TipoNivelEstudios"),
    node(Name::Enfermedades, u"frmEnfermedad", u"Enfermedades", u"Enfermedad"),
    node(Name::Paises, u"frmPais", u"Países", u"Pais"),
    node(Name::Provincia, u"frmProvincia", u"Provincias", u"Provincia"),
    node(Name::TiposAlumno, u"frmTipoAlumno", u"Tipos de alumno", u"TipoAlumno"),
    node(Name::TiposMotivoBaja, u"frmTipoMotivoBaja", u"Motivos de baja", u"TipoMotivoBaja"),
    node(Name::TiposIncidencia, u"frmTipoIncidencia", u"Tipos de incidencia", u"TipoIncidencia"),
    node(Name::TiposJustificacion, u"frmTipoJustificacion", u"Tipos de justificación", u"TipoJustificacion"),
    node(Name::Observaciones, u"frmObservacion", u"Observaciones", u"Observacion"),
    node(Name::OpcionesMateria, u"frmOpcionMateria", u"Opciones de materia", u"OpcionMateria"),
    node(Name::Ponderaciones, u"frmPonderacion", u"Ponderaciones", u"ponderacion"),
    node(Name::TiposMiembroCentro, u"frmTipoMiembroCentro", u"Tipos de miembro del centro",
         u"TipoMiembroCentro"),
    // Its node never got a number: hosts ask the guard under 0, and no number opens the dialog.
    {.dialog = u"frmTipoTarea",
     .title = u"Tipos de tarea",
     .table = u"TipoTarea",
     .number = Name::TiposTarea,
     .opens = false,
     .guards = true},
    node(Name::TiposContrato, u"frmTipoContrato", u"Tipos de contrato", u"TipoContrato"),
    node(Name::CEspecializacion, u"frmCEspecializacion", u"Cursos de especialización",
         u"CursoEspecializacion"),
    node(Name::TipoCentro, u"frmTipoCentro", u"Tipos de centro", u"TipoCentro"),
    node(Name::Turnos, u"frmTurno", u"Turnos", u"Turno"),
    node(Name::TiposOcurrencia, u"frmTipoOcurrencia", u"Tipos de ocurrencia", u"TipoOcurrencia"),
    node(Name::TiposMaterialDidactico, u"frmTipoMaterialDidactico", u"Tipos de material didáctico",
         u"TipoMaterialDidactico"),
    node(Name::OC_Bancos, u"frmBanco", u"Bancos", u"Banco"),
    node(Name::Presentador, u"frmPresentador", u"Presentadores", u"Presentador"),
    node(Name::Emisor, u"frmEmisor", u"Emisores y ordenantes", u"Emisor"),
    node(Name::TiposIva, u"frmTipoIva", u"Tipos de IVA", u"TipoIva"),
    report(Name::NotaConsejoOrientador, u"frmConsejoOrientador1", u"Consejo orientador"),
    report(Name::InfIndiv, u"frmInformeIndividual", u"Informes individuales"),
    node(Name::ConsejoOrientador, u"frmRespConsejo", u"Respuestas del consejo orientador",
         u"ConsejoOrientador_Respuesta"),
    node(nodoRespuestas, u"frmRespInfInd", u"Respuestas de los informes", u"TipoRespInfInd"),
};

consteval bool eachNumberOnce()
{
    for (const ModuleNode& each : table)
        if (std::ranges::count(table, each.number, &ModuleNode::number) != 1)
            return false;
    return true;
}
static_assert(eachNumberOnce());

} // namespace

StringView ModuleNode::key() const
{
    const schema::Table* rows = schema::table(table);
    return rows == nullptr ? StringView() : rows->columns().front().name;
}

std::span<const ModuleNode> moduleNodes() { return table; }

const ModuleNode* moduleNode(Byte number)
{
    const auto* found = std::ranges::find(table, number, &ModuleNode::number);
    return found == std::end(table) ? nullptr : found;
}

} // namespace zv
