#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Kinds of kinship: a text.
class frmTipoParentesco final : public TextCatalogueDialog {
public:
    frmTipoParentesco();

    TextBox txtParentesco{*this, u"txtParentesco"};
    Label lblParentesco{*this, u"lblParentesco"};
    CommandButton cmdAceptar{*this, u"cmdAceptar"};
    CommandButton cmdCancelar{*this, u"cmdCancelar"};
};

} // namespace zv
