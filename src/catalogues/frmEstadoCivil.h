#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Marital states: a text.
class frmEstadoCivil final : public TextCatalogueDialog {
public:
    frmEstadoCivil();

    TextBox txtIdioma{*this, u"txtIdioma"};
    Label lblPais{*this, u"lblPais"};
    ControlArray<CommandButton, 2> cmdIdioma{*this, u"cmdIdioma"};

    bool ComprobarEliminacion() override;
};

} // namespace zv
