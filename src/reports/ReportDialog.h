#pragma once

#include "data/Connection.h"
#include "data/Statement.h"
#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/Layout.h"
#include "forms/TabStrip.h"
#include "reports/cInformeInd.h"

namespace zv {

/// Base class of the two individual reports: the pupils of a section, each with his texts, a unit of work
/// that stays in memory until all are accepted.
class ReportDialog : public Form {
public:
    ComboBox cboAlumno{*this, u"cboAlumno"};
    Label Label9{*this, u"Label9"};
    CommandButton cmdAnterior{*this, u"cmdAnterior"};
    CommandButton cmdSiguiente{*this, u"cmdSiguiente"};
    TabStrip TabInfInd{*this, u"TabInfInd"};

    /// The three texts of the tab "Otros".
    struct CommonTexts {
        explicit CommonTexts(Frame& tab);
        Label Label6;
        TextBox txtDificultad;
        Label Label7;
        TextBox txtValoracion;
        Label Label8;
        TextBox txtAplicacion;
        Layout layout;
    };

protected:
    /// Binding of a text of the report to its box and its column.
    struct ReportText {
        TextBox* box;
        String cInformeInd::*text;
        StringView column;
    };

    ReportDialog(StringView name, StringView caption);
    /// To be called once, by the constructor: the dialog's own texts, the common ones, and its buttons.
    void assemble(std::vector<ReportText> own, CommonTexts& common, ControlArray<CommandButton, 2>& buttons);
    static void designText(TextBox& box);
    static void designText(Label& label, StringView caption, TextBox& box);

    void Form_Load() override;
    void Form_Unload() override { colAlumnos.reset(); }

    /// Query pattern of a section's pupils.
    virtual StringView pupils() const = 0;
    /// Copies what a pupil's row holds beside the texts.
    virtual void readPupil(cInformeInd& report, Recordset& row) = 0;
    /// Writes all of a pupil's report.
    virtual void writePupil(const cInformeInd& report) = 0;
    virtual void TabInfInd_Click() = 0;

    /// Updates or inserts the common texts.
    void writeCommon(const cInformeInd& report) const;
    /// Shows the frame of the chosen tab alone, in front.
    template <std::size_t N>
    void showFrame(ControlArray<Frame, N>& frames)
    {
        for (Frame& frame : frames) {
            frame.Enabled = false;
            frame.Visible = false;
        }
        Frame& chosen = frames(TabInfInd.SelectedItem().Index() - 1);
        chosen.Enabled = true;
        chosen.Visible = true;
        chosen.ZOrder();
    }
    /// The report of the pupil that the list shows; fails with 381 where it shows none.
    cInformeInd& shownReport();

private:
    void cboAlumno_Click();
    void cmdAnterior_Click();
    void cmdSiguiente_Click();
    void cmdNotaManual1_Click(int Index);
    cInformeInd& reportOf(Long pupil) { return colAlumnos->Item(decimalText(pupil)); }

    std::vector<ReportText> texts_;
    CommandButton* accept_ = nullptr;
    std::unique_ptr<Collection<cInformeInd>> colAlumnos;
    Long lngAlumnoActual = 0; ///< The pupil whose texts are shown.
};

} // namespace zv
