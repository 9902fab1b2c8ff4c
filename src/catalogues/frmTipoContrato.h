#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Kinds of contract: a text.
class frmTipoContrato final : public TextCatalogueDialog {
public:
    frmTipoContrato();

    TextBox txtContrato{*this, u"txtContrato"};
    Label lblContrato{*this, u"lblContrato"};
    ControlArray<CommandButton, 2> cmdContrato{*this, u"cmdContrato"};
};

} // namespace zv
