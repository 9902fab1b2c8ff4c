#pragma once

#include "reports/ReportDialog.h"

namespace zv {

/// The individual reports of a section in secondary education: fifteen texts a pupil, on four tabs.
class frmInfIndESO final : public ReportDialog {
public:
    frmInfIndESO();

    ControlArray<Frame, 4> fraInfInd{*this, u"fraInfInd"};
    Label Label1{fraInfInd(0), u"Label1"};
    TextBox txtCognitiva{fraInfInd(0), u"txtCognitiva"};
    Label Label2{fraInfInd(0), u"Label2"};
    TextBox txtEquilibrio{fraInfInd(0), u"txtEquilibrio"};
    Label Label3{fraInfInd(0), u"Label3"};
    TextBox txtInsercion{fraInfInd(0), u"txtInsercion"};
    Label Label4{fraInfInd(0), u"Label4"};
    TextBox txtMotrices{fraInfInd(0), u"txtMotrices"};
    Label Label5{fraInfInd(0), u"Label5"};
    TextBox txtRelacion{fraInfInd(0), u"txtRelacion"};
    ControlArray<TextBox, 5> txtProc1{fraInfInd(1), u"txtProc1"};
    ControlArray<TextBox, 2> txtActitud{fraInfInd(2), u"txtActitud"};
    CommonTexts otros{fraInfInd(3)};
    ControlArray<CommandButton, 2> cmdNotaManual1{*this, u"cmdNotaManual1"};

private:
    StringView pupils() const override;
    void readPupil(cInformeInd& report, Recordset& row) override;
    void writePupil(const cInformeInd& report) override;
    void TabInfInd_Click() override;
};

} // namespace zv
