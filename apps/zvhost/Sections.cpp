#include "zvhost/Sections.h"

#include "data/DataError.h"
#include "data/Statement.h"
#include "forms/ComboBox.h"
#include "forms/SectionControls.h"
#include "progress/Panel.h"
#include "qt/FormWindow.h"
#include "runtime/Convert.h"
#include "session/cNombreNodo.h"

#include <QApplication>
#include <QTimer>

#include <algorithm>
#include <set>

namespace zv::host {
namespace {

/// Whether the report's window offers sections of a course.
bool offered(const Node& node, Long kind, Long year, bool endsCycle)
{
    using progress::Kind;
    const progress::Section section{.kind = kind, .year = year, .endsCycle = endsCycle};
    return node.number == cNombreNodo::NotaConsejoOrientador
               ? offers(Kind::guidance, section)
               : offers(Kind::primary, section) || offers(Kind::secondary, section);
}

/// Condition of the sections that the person tutors or teaches.
String own(Host& host)
{
    const RecordsetPtr staff = host.school().centro->Execute(
        statement(u"SELECT IDPersonal FROM Personal WHERE CodUsuario={}", {host.choices().user}));
    const Long person = staff->Eof() ? 0 : CLng(staff->row().front());
    return statement(
        u" WHERE Seccion.CodTutor={} OR Seccion.IDSeccion IN (SELECT CodSeccion FROM MateriaDetalles "
        u"WHERE CodPersonal={} OR CodPersonalAsociado={})",
        {person, person, person});
}

std::set<Long> keys(Connection& centro, StringView query)
{
    std::set<Long> found;
    for (const RecordsetPtr rows = centro.Execute(query); !rows->Eof(); rows->MoveNext())
        found.insert(CLng(rows->row().front()));
    return found;
}

/// Pupils of whom the report says something: a row without any text or answer is no work done.
std::set<Long> pupilsDone(Connection& centro, const Node& node)
{
    if (node.number == cNombreNodo::NotaConsejoOrientador)
        return keys(centro, u"SELECT DISTINCT codAlumno FROM ConsejoOrientador_Nota WHERE codCOResp>0");
    std::set<Long> done = keys(centro, u"SELECT CodAlumno FROM Alumno_InfInd WHERE Dificultad<>'' OR "
                                       u"Valoracion<>'' OR Apreciacion<>''");
    done.merge(keys(centro, u"SELECT DISTINCT CodAlumno FROM Alumno_InfIndPrim WHERE codResp>0"));
    done.merge(keys(
        centro, u"SELECT CodAlumno FROM Alumno_InfIndESO WHERE Alumno1<>'' OR Alumno2<>'' OR Alumno3<>'' OR "
                u"Alumno4<>'' OR Alumno5<>'' OR Procedimiento1<>'' OR Procedimiento2<>'' OR "
                u"Procedimiento3<>'' OR Procedimiento4<>'' OR Procedimiento5<>'' OR Actitud1<>'' OR "
                u"Actitud2<>''"));
    return done;
}

void countPupils(Connection& centro, const Node& node, std::vector<Section>& all)
{
    const std::set<Long> done = pupilsDone(centro, node);
    // As the windows list them: the guidance leaves out who has left, the reports have all of the section.
    const StringView pupils =
        node.number == cNombreNodo::NotaConsejoOrientador
            ? u"SELECT IDAlumno, codseccion FROM Alumno WHERE fechabaja='' OR fechabaja IS NULL"
            : u"SELECT DISTINCT Alumno.IDAlumno, Alumno.codseccion FROM Alumno INNER JOIN Seccion_Alumno ON "
              u"Alumno.IDAlumno=Seccion_Alumno.codAlumno AND Alumno.codseccion=Seccion_Alumno.codSeccion";
    for (const RecordsetPtr rows = centro.Execute(pupils); !rows->Eof(); rows->MoveNext()) {
        const std::vector<Value> pupil = rows->row();
        if (pupil[1].isNull())
            continue;
        const auto section = std::ranges::find(all, CLng(pupil[1]), &Section::id);
        if (section == all.end())
            continue;
        ++section->pupils;
        if (done.contains(CLng(pupil[0])))
            ++section->done;
    }
}

FormWindow* frontWindow() { return dynamic_cast<FormWindow*>(QApplication::activeModalWidget()); }

void choosePupil(Long pupil)
{
    FormWindow* window = frontWindow();
    if (window == nullptr || !window->alive())
        return;
    if (ComboBox* pupils = SectionControls(window->form()).pupils; pupils != nullptr)
        if (const Long place = pupils->find(pupil); place >= 0)
            window->act([&](Acts& acts) { return acts.choose(*pupils, place); });
}

} // namespace

std::vector<Section> offeredSections(Host& host, const Node& node)
{
    std::vector<Section> found;
    Connection& centro = *host.school().centro;
    const String query = u"SELECT Seccion.IDSeccion, Seccion.Descripcion AS Seccion, Curso.IDCurso, "
                         u"Curso.Descripcion AS Curso, "
                         u"Curso.Orden, Curso.finciclo, TipoEnsenanza.IDTipoEnsenanza, "
                         u"TipoEnsenanza.Nombre FROM (Seccion INNER "
                         u"JOIN Curso ON Seccion.CodCurso=Curso.IDCurso) INNER JOIN TipoEnsenanza ON "
                         u"Curso.codTipoEnsenanza=TipoEnsenanza.IDTipoEnsenanza" +
                         (host.choices().profile == 0 ? String() : own(host)) +
                         u" ORDER BY TipoEnsenanza.IDTipoEnsenanza, Curso.Orden, Seccion.Descripcion";
    for (const RecordsetPtr rows = centro.Execute(query); !rows->Eof(); rows->MoveNext()) {
        const std::vector<Value> row = rows->row();
        if (offered(node, CLng(row[6]), row[4].isNull() ? 0 : CLng(row[4]),
                    !row[5].isNull() && CLng(row[5]) != 0))
            found.push_back({CLng(row[0]), CLng(row[2]), CLng(row[6]), String() + row[1], String() + row[3],
                             String() + row[7]});
    }
    return found;
}

std::vector<Section> sections(Host& host, const Node& node)
{
    try {
        std::vector<Section> found = offeredSections(host, node);
        countPupils(*host.school().centro, node, found);
        return found;
    } catch (const RuntimeError& error) {
        // The window itself asks for a section then.
        if (!isLacking(error))
            throw;
        return {};
    }
}

std::vector<Row> rowsOf(const std::vector<Section>& sections)
{
    std::vector<Row> rows;
    rows.reserve(sections.size());
    for (const Section& each : sections)
        rows.push_back({each.id,
                        {Value(each.kindName), Value(each.courseName), Value(each.name),
                         Value(decimalText(each.done) + u" de " + decimalText(each.pupils))}});
    return rows;
}

void chooseSection(const Section& section, Long pupil)
{
    auto* window = frontWindow();
    if (window == nullptr)
        return;
    const std::pair<StringView, Long> choices[] = {
        {u"cboTipoEnsenanza", section.kind}, {u"cboCursos", section.course}, {u"cboSecciones", section.id}};
    for (const auto& [list, wanted] : choices) {
        auto* box = window->alive() ? dynamic_cast<ComboBox*>(window->form().find(list)) : nullptr;
        Long place = 0;
        while (box != nullptr && place < box->ListCount() && box->ItemData(place) != wanted)
            ++place;
        if (box == nullptr || place == box->ListCount())
            return;
        window->act([box, place](Acts& acts) { return acts.choose(*box, place); });
    }
    // Runs in the second window's own loop.
    if (pupil != 0)
        QTimer::singleShot(0, QApplication::instance(), [pupil] { choosePupil(pupil); });
    if (Control* next = window->alive() ? window->form().find(u"cmdNotaManual1", 0) : nullptr)
        window->act([next](Acts& acts) { return acts.click(*next); });
}

} // namespace zv::host
