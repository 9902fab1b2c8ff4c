#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Kinds of justification of an incident: a text.
class frmTipoJustificacion final : public TextCatalogueDialog {
public:
    frmTipoJustificacion();

    TextBox txtDescripcion{*this, u"txtDescripcion"};
    Label lblDescripcion{*this, u"lblDescripcion"};
    CommandButton cmdAceptar{*this, u"cmdAceptar"};
    CommandButton cmdCancelar{*this, u"cmdCancelar"};
};

} // namespace zv
