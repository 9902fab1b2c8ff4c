#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Kinds of teaching material: a text.
class frmTipoMaterialDidactico final : public TextCatalogueDialog {
public:
    frmTipoMaterialDidactico();

    TextBox txtNombre{*this, u"txtNombre"};
    Label lblNombre{*this, u"lblNombre"};
    ControlArray<CommandButton, 2> cmdMaterial{*this, u"cmdMaterial"};
};

} // namespace zv
