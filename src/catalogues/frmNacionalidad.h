#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Nationalities: a text and, if wanted, its abbreviation.
class frmNacionalidad final : public TextCatalogueDialog {
public:
    frmNacionalidad();

    TextBox txtNacionalidad{*this, u"txtNacionalidad"};
    Label lblPais{*this, u"lblPais"};
    TextBox txtAbreviatura{*this, u"txtAbreviatura"};
    Label Label1{*this, u"Label1"};
    ControlArray<CommandButton, 2> cmdNacionalidad{*this, u"cmdNacionalidad"};

private:
    void fill(ResumeNext& next) override;
};

} // namespace zv
