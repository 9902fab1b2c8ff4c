#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Provinces: a text.
class frmProvincia final : public TextCatalogueDialog {
public:
    frmProvincia();

    TextBox txtProvincia{*this, u"txtProvincia"};
    Label lblProvincia{*this, u"lblProvincia"};
    ControlArray<CommandButton, 2> cmdProvincia{*this, u"cmdProvincia"};
};

} // namespace zv
