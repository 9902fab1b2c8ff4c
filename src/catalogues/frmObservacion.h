#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Remarks on subjects: a short and a long text, both needed.
class frmObservacion final : public TextCatalogueDialog {
public:
    frmObservacion();

    TextBox txtDescripcionCorta{*this, u"txtDescripcionCorta"};
    Label lblDescripcionCorta{*this, u"lblDescripcionCorta"};
    TextBox txtDescripcionLarga{*this, u"txtDescripcionLarga"};
    Label lblDescripcionLarga{*this, u"lblDescripcionLarga"};
    CommandButton cmdAceptar{*this, u"cmdAceptar"};
    CommandButton cmdCancelar{*this, u"cmdCancelar"};

private:
    void Form_Click() override;
};

} // namespace zv
