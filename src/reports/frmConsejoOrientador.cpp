#include "reports/frmConsejoOrientador.h"

#include "data/Statement.h"
#include "dialogs/MaintenanceDialog.h"
#include "forms/Desktop.h"
#include "forms/Layout.h"
#include "reports/ListWidth.h"
#include "reports/frmConsejoOrientador1.h"
#include "session/cConstCol.h"

#include <set>

namespace zv {

namespace {

Long section() { return single<frmConsejoOrientador1>().section(); }

/// Set of pupils as the text of an IN list. Membership is a substring search of that text: 12 is found in
/// 112.
class PupilList {
public:
    /// Adds a pupil; False if the text holds him, or one whose number ends in his, already.
    bool add(Long pupil)
    {
        if (!asked_.insert(pupil).second)
            return false;
        const String entry = decimalText(pupil) + u" ,";
        if (text_.find(entry) != String::npos)
            return false;
        text_ += entry;
        return true;
    }
    /// The list without its last comma.
    String text() const { return Left(text_, static_cast<long>(text_.size()) - 1); }

private:
    String text_;
    std::set<Long> asked_; ///< Cache of the search: the text only grows, so a pupil once found stays found.
};

} // namespace

frmConsejoOrientador::frmConsejoOrientador() : Form(u"frmConsejoOrientador")
{
    Caption = u"Introducción de Datos al Consejo Orientador. Paso 2 de 2";
    cmdAnterior.Caption = u"<";
    cmdSiguiente.Caption = u">";
    Label1.Caption = u"Alumno:";
    Frame1.Caption = u"Introducción de datos de los Alumnos";
    cmdNotaManual1(0).Caption = u"Aceptar";
    cmdNotaManual1(1).Caption = u"Cancelar";
    on(cboAlumno.Click, &frmConsejoOrientador::cboAlumno_Click);
    on(cmdAnterior.Click, &frmConsejoOrientador::cmdAnterior_Click);
    on(cmdSiguiente.Click, &frmConsejoOrientador::cmdSiguiente_Click);
    on(cmdNotaManual1, &CommandButton::Click, &frmConsejoOrientador::cmdNotaManual1_Click);
    Layout questionsLayout(Frame1);
    for (int question = 0; question < questions; ++question) {
        Label2(question).Caption = u"Label2";
        questionsLayout.above(Label2(question), cboRespuesta(question));
    }
    Layout(*this)
        .row(Label1, cboAlumno, {&cmdAnterior, &cmdSiguiente})
        .frame(Frame1, questionsLayout)
        .buttons(cmdNotaManual1(0), cmdNotaManual1(1), ButtonKeys::none);
}

void frmConsejoOrientador::Form_Load()
{
    lngAlumnoActual = 0;
    // Reset: a load that failed leaves its notes behind.
    byPupil_.clear();
    colNotas.reset();
    Icon = LoadPicture(Configuracion().RutaIcono);
    readQuestions();
    readAnswers();
    readNotes();
    AjustarAnchoLista(cboAlumno);
    if (cboAlumno.ListCount() >= 1)
        cboAlumno.ListIndex = Long{0};
}

void frmConsejoOrientador::readQuestions()
{
    const RecordsetPtr rows = execute(u"SELECT IDConsejoOrientador,Descripcion FROM ConsejoOrientador");
    for (; !rows->Eof(); rows->MoveNext()) {
        Label& label = Label2(CLng(rows->Fields(u"IDConsejoOrientador")) - 1);
        label.Caption = rows->Fields(u"Descripcion");
        label.ToolTipText = rows->Fields(u"Descripcion");
    }
}

void frmConsejoOrientador::readAnswers()
{
    for (ComboBox& list : cboRespuesta) {
        list.AddItem(u" ");
        list.setItemData(list.NewIndex(), 0);
    }
    const RecordsetPtr rows =
        execute(u"SELECT IDCOResp, CodConsejoOrientador, Descripcion FROM ConsejoOrientador_Respuesta");
    for (; !rows->Eof(); rows->MoveNext()) {
        ComboBox& list = cboRespuesta(CLng(rows->Fields(u"codConsejoOrientador")) - 1);
        list.AddItem(CStr(rows->Fields(u"Descripcion")));
        list.setItemData(list.NewIndex(), CLng(rows->Fields(u"IDCOResp")));
    }
    for (ComboBox& list : cboRespuesta)
        AjustarAnchoLista(list);
}

Long frmConsejoOrientador::nextKey()
{
    const RecordsetPtr rows = execute(u"SELECT MAX(IDCORNota) AS Maximo FROM ConsejoOrientador_Nota");
    const Value largest = rows->Eof() ? Value(Null()) : rows->Fields(u"Maximo");
    return largest.isNull() ? 1 : CLng(largest) + 1;
}

void frmConsejoOrientador::addNote(const cConsejoOrientador& note)
{
    if (!colNotas)
        colNotas = std::make_unique<Notes>();
    colNotas->Add(note, decimalText(note.IDCORNota));
}

/// Creates a note to be inserted for each question of a pupil without notes; an existing note is updated in
/// any case.
void frmConsejoOrientador::readNotes()
{
    Long provisional = nextKey();
    const Long chosen = section();
    PupilList listed;
    const RecordsetPtr rows = execute(statement(
        u"SELECT Alumno.IDAlumno, Alumno.Apellido_1 + ' ' + Alumno.Apellido_2 + ', ' + Alumno.Nombre AS "
        u"ALNombre, "
        u"ConsejoOrientador_Nota.* FROM ConsejoOrientador_Nota RIGHT JOIN Alumno ON "
        u"Alumno.IDAlumno=ConsejoOrientador_Nota.codAlumno WHERE (fechabaja='' or fechabaja IS NULL) AND "
        u"Alumno.codseccion={} ORDER BY Alumno.Apellido_1,Alumno.Apellido_2,Alumno.Nombre",
        {chosen}));
    for (; !rows->Eof(); rows->MoveNext()) {
        cConsejoOrientador note;
        note.CodAlumno = CInt(rows->Fields(u"IDAlumno"));
        const Value key = rows->Fields(u"IDCORNota");
        if (key.isNull()) {
            note.codSeccion = CInt(chosen);
            note.Estado = cConstCol::NUEVO;
            for (note.codConsejoOrientador = 1; note.codConsejoOrientador <= questions;
                 ++note.codConsejoOrientador) {
                note.IDCORNota = provisional++;
                addNote(note);
            }
        } else {
            note.codConsejoOrientador = CInt(rows->Fields(u"codConsejoOrientador"));
            note.codCOResp = CInt(rows->Fields(u"codCOResp"));
            note.codSeccion = CInt(rows->Fields(u"codSeccion"));
            note.IDCORNota = CLng(key);
            note.Estado = cConstCol::Modificado;
            addNote(note);
        }
        if (listed.add(note.CodAlumno)) {
            cboAlumno.AddItem(String() + rows->Fields(u"ALNombre"));
            cboAlumno.setItemData(cboAlumno.NewIndex(), note.CodAlumno);
        }
    }
    if (colNotas)
        for (cConsejoOrientador& note : *colNotas)
            byPupil_[note.CodAlumno].push_back(&note);
}

void frmConsejoOrientador::keepAnswers()
{
    if (lngAlumnoActual <= 0)
        return;
    for (cConsejoOrientador* note : byPupil_[lngAlumnoActual]) {
        const ComboBox& list = cboRespuesta(note->codConsejoOrientador - 1);
        note->codCOResp = CInt(list.ItemData(list.ListIndex()));
    }
}

/// Stale entries stay: the lists of questions for which the pupil has no note keep what the pupil before
/// showed.
void frmConsejoOrientador::showAnswers(Long pupil)
{
    for (const cConsejoOrientador* note : byPupil_[pupil]) {
        ComboBox& list = cboRespuesta(note->codConsejoOrientador - 1);
        list.ListIndex = Long{0};
        if (note->codCOResp <= 0)
            continue;
        // Overflow checks: a byte counts the entries. A list of more than it holds is not searched, and a
        // search without a find fails where it would count one past the last.
        static_cast<void>(CByte(list.ListCount() - 1));
        const Long answer = list.find(note->codCOResp);
        if (answer >= 0)
            list.ListIndex = answer;
        else
            static_cast<void>(CByte(list.ListCount()));
    }
}

void frmConsejoOrientador::cboAlumno_Click()
{
    if (cboAlumno.ListIndex() < 0)
        return;
    const Long pupil = cboAlumno.ItemData(cboAlumno.ListIndex());
    if (pupil == lngAlumnoActual)
        return;
    keepAnswers();
    showAnswers(pupil);
    lngAlumnoActual = pupil;
}

void frmConsejoOrientador::cmdAnterior_Click() { stepChoice(cboAlumno, -1); }

void frmConsejoOrientador::cmdSiguiente_Click() { stepChoice(cboAlumno, 1); }

void frmConsejoOrientador::cmdNotaManual1_Click(int Index)
{
    Enabled = false;
    MousePointer = pointer::hourglass;
    if (Index == 0 && colNotas && colNotas->Count() > 0) {
        keepAnswers();
        save();
    }
    MousePointer = pointer::standard;
    Unload();
}

void frmConsejoOrientador::save()
{
    PupilList written;
    ResumeNext next;
    for (const cConsejoOrientador& note : *colNotas) {
        if (note.Estado == cConstCol::NUEVO)
            insertNote(next, note);
        else
            next([&] {
                execute(statement(u"UPDATE ConsejoOrientador_Nota SET codCOResp={} WHERE IDCORNota={}",
                                  {note.codCOResp, note.IDCORNota}));
            });
        written.add(note.CodAlumno);
    }
    ResumeNext::leave();
    // Purges the notes of pupils who have left the section.
    execute(statement(u"DELETE FROM ConsejoOrientador_Nota WHERE codSeccion={} AND codAlumno NOT IN ({})",
                      {section(), written.text()}));
}

/// Retry loop without limit: a key that another station took is drawn anew; any other failure is reported,
/// and tried again too.
void frmConsejoOrientador::insertNote(ResumeNext& next, const cConsejoOrientador& note)
{
    Long id = 0;
    do {
        if (!next([&] { id = nextKey(); }))
            id = 1;
        Err().Clear();
        next([&] {
            execute(
                statement(u"INSERT INTO ConsejoOrientador_Nota VALUES ({},{},{},{},{})",
                          {id, note.CodAlumno, note.codSeccion, note.codCOResp, note.codConsejoOrientador}));
        });
        if (Err().Number != 0 && Err().Number != failure::keyExists) {
            Enabled = true;
            MousePointer = pointer::standard;
            Beep();
            MsgBox(u"Se ha producido un error al insertar datos en la Base de datos. Revise de nuevo estas "
                   u"notas.",
                   sign::information, LoadResString(message::title));
            Enabled = false;
            MousePointer = pointer::hourglass;
        }
    } while (Err().Number != 0);
}

void frmConsejoOrientador::Form_Unload()
{
    byPupil_.clear();
    colNotas.reset();
}

} // namespace zv
