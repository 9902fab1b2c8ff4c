#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Illnesses: a name and, if wanted, a description of several lines. Both are stored enciphered, and the
/// caption shows the name as it is stored. No guard.
class frmEnfermedad final : public TextCatalogueDialog {
public:
    frmEnfermedad();

    TextBox txtNombre{*this, u"txtNombre"};
    TextBox txtDescripcion{*this, u"txtDescripcion"};
    ControlArray<Label, 2> lblEnfermedad{*this, u"lblEnfermedad"};
    CommandButton cmdAceptar{*this, u"cmdAceptar"};
    CommandButton cmdCancelar{*this, u"cmdCancelar"};

private:
    void fill(ResumeNext& next) override;
    std::vector<Value> values() override;
    void txtDescripcion_GotFocus();
};

} // namespace zv
