#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Specialisation courses: a text.
class frmCEspecializacion final : public TextCatalogueDialog {
public:
    frmCEspecializacion();

    TextBox txtDescripcion{*this, u"txtDescripcion"};
    Label lblPais{*this, u"lblPais"};
    ControlArray<CommandButton, 2> cmdIdioma{*this, u"cmdIdioma"};
};

} // namespace zv
