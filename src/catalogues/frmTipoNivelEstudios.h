#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Levels of studies: a text.
class frmTipoNivelEstudios final : public TextCatalogueDialog {
public:
    frmTipoNivelEstudios();

    TextBox txtNombre{*this, u"txtNombre"};
    Label lblMiembro{*this, u"lblMiembro"};
    ControlArray<CommandButton, 2> cmdNivel{*this, u"cmdNivel"};
};

} // namespace zv
