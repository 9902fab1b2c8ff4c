#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Kinds of school: a text. The buttons' roles are swapped: element 1 of the array accepts, element 0
/// cancels.
class frmTipoCentro final : public TextCatalogueDialog {
public:
    frmTipoCentro();

    TextBox txtTipoCentro{*this, u"txtTipoCentro"};
    Label lblTipoCentro{*this, u"lblTipoCentro"};
    ControlArray<CommandButton, 2> cmdTipoCentro{*this, u"cmdTipoCentro"};

private:
    static const TextCatalogue& words();
    Then nameGiven(Routine& routine);
    void fill(ResumeNext& next) override;
};

} // namespace zv
