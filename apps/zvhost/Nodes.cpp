#include "zvhost/Nodes.h"

#include "data/Schema.h"
#include "session/NodeTable.h"
#include "session/cNombreNodo.h"

#include <algorithm>
#include <deque>
#include <vector>

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

constexpr ListColumn section[] = {{u"Enseñanza"}, {u"Curso"}, {u"Sección"}, {u"Hecho", Kind::progress}};

constexpr ListColumn report[] = {{u"Sección"}, {u"Alumno"},     {u"Informe"}, {u"Escrito", Kind::progress},
                                 {u"Falta"},   {u"Otro nombre"}};

constexpr StringView people = u"Datos de las personas";
constexpr StringView towns = u"Lugares";
constexpr StringView pupils = u"Alumnado";
constexpr StringView workers = u"Personal";
constexpr StringView school = u"Centro";
constexpr StringView money = u"Bancos y recibos";
constexpr StringView reports = u"Orientación e informes";
constexpr StringView others = u"Otras listas";

/// Entry of the host's tree: the node's group, what one of its rows is called, and what its list shows. The
/// rest comes from the module's table of nodes.
struct TreeEntry {
    Byte number;
    StringView group;
    StringView one;
    StringView query = {};
    std::span<const ListColumn> columns = {};
};

constexpr TreeEntry treeEntries[] = {
    {65, people, u"estado civil", u"SELECT IDEstadoCivil, Descripcion FROM EstadoCivil", description},
    {Name::Nacionalidad, people, u"nacionalidad",
     u"SELECT IDNacionalidad, Descripcion, Abreviatura FROM Nacionalidad", nationality},
    {Name::Idiomas, people, u"idioma", u"SELECT IDIdioma, Descripcion FROM Idioma", description},
    {Name::Profesiones, people, u"profesión", u"SELECT IDProfesion, nombre FROM profesion", name},
    {Name::TiposParentesco, people, u"parentesco", u"SELECT IDTP, Nombre FROM TipoParentesco", name},
    {Name::TiposNivelEstudios, people, u"nivel de estudios",
     u"SELECT IDTipoNivelEstudios, Nombre FROM TipoNivelEstudios", name},
    {Name::Enfermedades, people, u"enfermedad", u"SELECT IDEnfermedad, Nombre, Descripcion FROM Enfermedad",
     illness},

    {Name::Paises, towns, u"país", u"SELECT IDPais, Descripcion FROM Pais", description},
    {Name::Provincia, towns, u"provincia", u"SELECT IDProvincia, Descripcion FROM Provincia", description},

    {Name::TiposAlumno, pupils, u"tipo de alumno", u"SELECT IDTipoAlumno, Descripcion FROM TipoAlumno",
     description},
    {Name::TiposMotivoBaja, pupils, u"motivo de baja",
     u"SELECT IDTipoMotivoBaja, Nombre, Descripcion FROM TipoMotivoBaja", leaving},
    {Name::TiposIncidencia, pupils, u"tipo de incidencia",
     u"SELECT IDTipoIncidencia, Nombre, DescripcionCorta, Justificante, Boletin, Ausencia FROM "
     u"TipoIncidencia",
     incident},
    {Name::TiposJustificacion, pupils, u"tipo de justificación",
     u"SELECT IDTipoJustificacion, Descripcion FROM TipoJustificacion", description},
    {Name::Observaciones, pupils, u"observación",
     u"SELECT IDObservacion, DescripcionCorta, DescripcionLarga FROM Observacion", observation},
    {Name::OpcionesMateria, pupils, u"opción de materia",
     u"SELECT IDOM, Descripcion, DescripcionCorta, DescripcionLarga, DescripcionActa FROM OpcionMateria",
     option},
    {Name::Ponderaciones, pupils, u"ponderación",
     u"SELECT IDPonderacion, descripcion, puntuacion FROM ponderacion", weighting},

    {Name::TiposMiembroCentro, workers, u"tipo de miembro del centro",
     u"SELECT IDTMC, Nombre, Tipo FROM TipoMiembroCentro", staff},
    {Name::TiposTarea, workers, u"tipo de tarea",
     u"SELECT t.IDTipoTarea, t.Nombre, m.Nombre AS Miembro FROM TipoTarea t LEFT JOIN TipoMiembroCentro m "
     u"ON t.codTipoMiembroCentro = m.IDTMC",
     task},
    {Name::TiposContrato, workers, u"tipo de contrato", u"SELECT IDTipoContrato, Nombre FROM TipoContrato",
     name},
    {Name::CEspecializacion, workers, u"curso de especialización",
     u"SELECT IDCEspecializacion, Descripcion FROM CursoEspecializacion", description},

    {Name::TipoCentro, school, u"tipo de centro", u"SELECT IDTipocentro, Nombre FROM TipoCentro", name},
    {Name::Turnos, school, u"turno", u"SELECT IDTurno, Descripcion, TipoTurno FROM Turno", shift},
    {Name::TiposOcurrencia, school, u"tipo de ocurrencia",
     u"SELECT IDTO, Nombre, Lectivo FROM TipoOcurrencia", occurrence},
    {Name::TiposMaterialDidactico, school, u"tipo de material didáctico",
     u"SELECT IDTipoMaterialDidactico, Nombre FROM TipoMaterialDidactico", name},

    {Name::OC_Bancos, money, u"banco", u"SELECT IDBanco, Numero, Nombre FROM Banco", bank},
    {Name::Presentador, money, u"presentador",
     u"SELECT p.IDPresentador, p.Nombre, p.NIF, p.Sufijo, b.Nombre AS Banco, s.Nombre AS Sucursal "
     u"FROM Presentador p LEFT JOIN Banco b ON p.CodBanco = b.IDBanco "
     u"LEFT JOIN Sucursal s ON p.CodSucursal = s.IDSucursal",
     submitter},
    {Name::Emisor, money, u"emisor",
     u"SELECT IDEmisor, Nombre, CIF, Sufijo, CodigoOrdenante, Poblacion, MTP FROM Emisor", issuer},
    {Name::TiposIva, money, u"tipo de IVA", u"SELECT IDTipoIva, Descripcion, Valor FROM TipoIva", rate},

    {Name::NotaConsejoOrientador, reports, u"consejo orientador", {}, section},
    {Name::InfIndiv, reports, u"informe individual", {}, section},
    {Name::ConsejoOrientador, reports, u"respuesta del consejo orientador",
     u"SELECT r.IDCOResp, r.Descripcion, c.Descripcion AS Apartado FROM ConsejoOrientador_Respuesta r LEFT "
     u"JOIN ConsejoOrientador c ON r.CodConsejoOrientador = c.IDConsejoOrientador",
     answer},
    {69, reports, u"respuesta de los informes",
     u"SELECT r.IDResp, r.Descripcion, t.Descripcion AS Apartado FROM TipoRespInfInd r "
     u"LEFT JOIN TipoInfInd t ON r.CodTipo = t.IDTipo",
     answer},
};

/// Display names of tables without a node, in which rows of the nodes' tables are referred to.
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

/// Generated list of a node without an entry above: its key and its texts.
struct PlainList {
    explicit PlainList(const ModuleNode& node)
    {
        query = u"SELECT " + String(node.key());
        for (const schema::Column& column : schema::table(node.table)->columns()) {
            if (column.type != schema::Type::text)
                continue;
            query += u", " + String(column.name);
            columns.push_back({column.name});
        }
        query += u" FROM " + String(node.table);
    }
    String query;
    std::vector<ListColumn> columns;
};

Node fromModule(const ModuleNode& module)
{
    Node node;
    node.number = module.number;
    node.name = module.title;
    node.form = module.dialog;
    node.table = module.table;
    node.key = module.key();
    return node;
}

std::vector<Node> everyNode()
{
    std::vector<Node> result;
    for (const TreeEntry& entry : treeEntries) {
        Node node = fromModule(*moduleNode(entry.number));
        node.group = entry.group;
        node.one = entry.one;
        node.query = entry.query;
        node.columns = entry.columns;
        result.push_back(node);
    }
    static std::deque<PlainList> lists;
    for (const ModuleNode& module : moduleNodes()) {
        if (std::ranges::find(treeEntries, module.number, &TreeEntry::number) != std::end(treeEntries))
            continue;
        Node node = fromModule(module);
        node.group = others;
        node.one = u"fila";
        if (!module.table.empty()) {
            const PlainList& list = lists.emplace_back(module);
            node.query = list.query;
            node.columns = list.columns;
        }
        result.push_back(node);
    }
    return result;
}

} // namespace

std::span<const Node> nodes()
{
    static const std::vector<Node> all = everyNode();
    return all;
}

const Node& progressNode()
{
    static const Node node{.number = 255,
                           .group = reports,
                           .name = u"Qué falta en los informes",
                           .one = u"informe",
                           .form = {},
                           .columns = report};
    return node;
}

const Node* nodeOf(Byte number)
{
    if (number == progressNode().number)
        return &progressNode();
    const auto all = nodes();
    const auto found = std::ranges::find(all, number, &Node::number);
    return found == all.end() ? nullptr : &*found;
}

const Node* nodeOf(StringView form)
{
    const auto all = nodes();
    const auto found = std::ranges::find_if(all, [&](const Node& each) { return sameName(each.form, form); });
    return found == all.end() ? nullptr : &*found;
}

const Node* nodeOfTable(StringView table)
{
    const auto all = nodes();
    const auto found = std::ranges::find_if(
        all, [&](const Node& each) { return each.hasList() && sameName(each.table, table); });
    return found == all.end() ? nullptr : &*found;
}

StringView nameOfTable(StringView table)
{
    if (const Node* node = nodeOfTable(table))
        return node->name;
    for (const auto& [other, words] : otherTables)
        if (sameName(other, table))
            return words;
    return table;
}

} // namespace zv::host
