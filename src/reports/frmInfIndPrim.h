#pragma once

#include "forms/MSFlexGrid.h"
#include "reports/ReportDialog.h"

namespace zv {

/// The individual reports of a section in primary education: five tabs of ratings by subject, edited by a
/// list that floats over the grid's cell, and one of texts. The grid lies over the frames of the first five
/// tabs.
class frmInfIndPrim final : public ReportDialog {
public:
    frmInfIndPrim();

    ControlArray<Frame, 6> fraInfInd{*this, u"fraInfInd"};
    MSFlexGrid msgValores{*this, u"msgValores"};
    ComboBox cboValor{*this, u"cboValor"};
    CommonTexts otros{fraInfInd(5)};
    ControlArray<CommandButton, 2> cmdNotaManual1{*this, u"cmdNotaManual1"};

private:
    void Form_Load() override;
    StringView pupils() const override;
    void readPupil(cInformeInd& report, Recordset& row) override;
    void writePupil(const cInformeInd& report) override;
    void TabInfInd_Click() override;
    void msgValores_Click();
    void msgValores_LeaveCell() { cboValor.Visible = false; }
    void msgValores_Scroll() { msgValores_LeaveCell(); }
    void cboValor_LostFocus();

    void readRating(cInformeInd& report, Long subject, const String& name, Long type);
    void fillGrid(Long type);
    void fillValues(Long type);
    cInfPrimaria& ratingOf(Long type);

    // Cell under the floating list, from the last click in the grid, and its tab's type.
    Byte bytFila = 0;
    Byte bytColumna = 0;
    Byte bytTipo = 0;
};

} // namespace zv
