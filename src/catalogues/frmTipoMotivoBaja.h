#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Reasons for leaving the school: a name and, if wanted, a longer text.
class frmTipoMotivoBaja final : public TextCatalogueDialog {
public:
    frmTipoMotivoBaja();

    TextBox txtNombre{*this, u"txtNombre"};
    TextBox txtDescripcion{*this, u"txtDescripcion"};
    ControlArray<Label, 2> lblMotivo{*this, u"lblMotivo"};
    ControlArray<CommandButton, 2> cmdMotivo{*this, u"cmdMotivo"};
};

} // namespace zv
