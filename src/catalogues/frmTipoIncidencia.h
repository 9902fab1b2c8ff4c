#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Kinds of incident: a name, a short text if wanted, and three flags.
class frmTipoIncidencia final : public TextCatalogueDialog {
public:
    frmTipoIncidencia();

    ControlArray<TextBox, 2> txtIncidencia{*this, u"txtIncidencia"};
    ControlArray<Label, 2> lblIncidencia{*this, u"lblIncidencia"};
    CheckBox chkJustificante{*this, u"chkJustificante"};
    CheckBox chkBoletin{*this, u"chkBoletin"};
    CheckBox chkAusencia{*this, u"chkAusencia"};
    ControlArray<CommandButton, 2> cmdIncidencia{*this, u"cmdIncidencia"};

private:
    void fill(ResumeNext& next) override;
    std::vector<Value> values() override;
};

} // namespace zv
