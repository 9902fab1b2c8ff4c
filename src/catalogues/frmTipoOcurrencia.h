#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Kinds of calendar event: a text, and whether it is a teaching day.
class frmTipoOcurrencia final : public TextCatalogueDialog {
public:
    frmTipoOcurrencia();

    TextBox txtNombre{*this, u"txtNombre"};
    ControlArray<Label, 1> lblMotivo{*this, u"lblMotivo"};
    CheckBox chkLectivo{*this, u"chkLectivo"};
    ControlArray<CommandButton, 2> cmdOcurrencia{*this, u"cmdOcurrencia"};

private:
    void fill(ResumeNext& next) override;
    std::vector<Value> values() override { return {txtNombre.Text(), chkLectivo.Value()}; }
};

} // namespace zv
