#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Kinds of pupil: a text.
class frmTipoAlumno final : public TextCatalogueDialog {
public:
    frmTipoAlumno();

    TextBox txtTipoAlumno{*this, u"txtTipoAlumno"};
    Label lblTipoAlumno{*this, u"lblTipoAlumno"};
    ControlArray<CommandButton, 2> cmdTipoAlumno{*this, u"cmdTipoAlumno"};
};

} // namespace zv
