#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Weightings: a name and a score, which is shown with a comma and stored with a point.
class frmPonderacion final : public TextCatalogueDialog {
public:
    frmPonderacion();

    TextBox txtDescripcion{*this, u"txtDescripcion"};
    Label lblPonderacion{*this, u"lblPonderacion"};
    TextBox txtPuntuacion{*this, u"txtPuntuacion"};
    Label lblPuntuacion{*this, u"lblPuntuacion"};
    CommandButton cmdAceptar{*this, u"cmdAceptar"};
    CommandButton cmdCancelar{*this, u"cmdCancelar"};

private:
    static const TextCatalogue& words();
    Then textsGiven(Routine& routine);
    std::vector<Value> values() override;
    void txtPuntuacion_KeyDown(Integer& KeyCode);
    void txtPuntuacion_KeyPress(Integer& KeyAscii);
};

} // namespace zv
