#pragma once

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "reports/cConsejoOrientador.h"
#include "runtime/Collection.h"

#include <map>

namespace zv {

/// The answers of the guidance advice for a whole section, pupil by pupil: a unit of work that stays in
/// memory until it is accepted.
class frmConsejoOrientador final : public Form {
public:
    frmConsejoOrientador();

    static constexpr int questions = 8;

    ComboBox cboAlumno{*this, u"cboAlumno"};
    CommandButton cmdAnterior{*this, u"cmdAnterior"};
    CommandButton cmdSiguiente{*this, u"cmdSiguiente"};
    Label Label1{*this, u"Label1"};
    Frame Frame1{*this, u"Frame1"};
    ControlArray<Label, questions> Label2{Frame1, u"Label2"};
    ControlArray<ComboBox, questions> cboRespuesta{Frame1, u"cboRespuesta"};
    ControlArray<CommandButton, 2> cmdNotaManual1{*this, u"cmdNotaManual1"};

private:
    void Form_Load() override;
    void Form_Unload() override;
    void cboAlumno_Click();
    void cmdAnterior_Click();
    void cmdSiguiente_Click();
    void cmdNotaManual1_Click(int Index);

    void readQuestions();
    void readAnswers();
    void readNotes();
    void addNote(const cConsejoOrientador& note);
    /// Stores what the lists show in the notes of the pupil on the screen.
    void keepAnswers();
    void showAnswers(Long pupil);
    void save();
    void insertNote(class ResumeNext& next, const cConsejoOrientador& note);
    static Long nextKey();

    using Notes = Collection<cConsejoOrientador>;
    std::unique_ptr<Notes> colNotas;
    std::map<Long, std::vector<cConsejoOrientador*>> byPupil_;
    Long lngAlumnoActual = 0; ///< The pupil whose answers are shown.
};

} // namespace zv
