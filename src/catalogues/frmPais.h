#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Countries: a text.
class frmPais final : public TextCatalogueDialog {
public:
    frmPais();

    TextBox txtPais{*this, u"txtPais"};
    Label lblPais{*this, u"lblPais"};
    ControlArray<CommandButton, 2> cmdPais{*this, u"cmdPais"};
};

} // namespace zv
