#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Options of subjects: name, abbreviation and two descriptions, all mandatory. No registration, no guard.
class frmOpcionMateria final : public TextCatalogueDialog {
public:
    frmOpcionMateria();

    TextBox txtNombre{*this, u"txtNombre"};
    Label lblNombre{*this, u"lblNombre"};
    TextBox txtAbreviatura{*this, u"txtAbreviatura"};
    Label lblAbreviatura{*this, u"lblAbreviatura"};
    TextBox txtDescripcion{*this, u"txtDescripcion"};
    Label lblDescripcion{*this, u"lblDescripcion"};
    TextBox txtDescripcionActa{*this, u"txtDescripcionActa"};
    Label lblDescripcionActa{*this, u"lblDescripcionActa"};
    CommandButton cmdAceptar{*this, u"cmdAceptar"};
    CommandButton cmdCancelar{*this, u"cmdCancelar"};

private:
    static const TextCatalogue& words();
    Then hideAnyway(Routine& routine);
};

} // namespace zv
