#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Languages: a text.
class frmIdioma final : public TextCatalogueDialog {
public:
    frmIdioma();

    TextBox txtIdioma{*this, u"txtIdioma"};
    Label lblPais{*this, u"lblPais"};
    ControlArray<CommandButton, 2> cmdIdioma{*this, u"cmdIdioma"};
};

} // namespace zv
