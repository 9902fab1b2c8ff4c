#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Occupations of the staff: a text and one of three classes.
class frmTipoMiembroCentro final : public TextCatalogueDialog {
public:
    frmTipoMiembroCentro();

    TextBox txtMiembro{*this, u"txtMiembro"};
    Label lblMiembro{*this, u"lblMiembro"};
    Frame Frame1{*this, u"Frame1"};
    OptionButton optAdmin{Frame1, u"optAdmin"};
    OptionButton optSub{Frame1, u"optSub"};
    OptionButton optOtro{Frame1, u"optOtro"};
    ControlArray<CommandButton, 2> cmdMiembro{*this, u"cmdMiembro"};

private:
    void fill(ResumeNext& next) override;
    std::vector<Value> values() override;
};

} // namespace zv
