#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Occupations of family members: a text.
class frmProfesion final : public TextCatalogueDialog {
public:
    frmProfesion();

    TextBox txtProfesion{*this, u"txtProfesion"};
    Label lblProfesion{*this, u"lblProfesion"};
    CommandButton cmdAceptar{*this, u"cmdAceptar"};
    CommandButton cmdCancelar{*this, u"cmdCancelar"};
};

} // namespace zv
