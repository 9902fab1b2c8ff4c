#pragma once

#include "catalogues/OneFieldDialog.h"

namespace zv {

/// Marital states: a text.
class frmEstadoCivil final : public OneFieldDialog {
public:
    frmEstadoCivil();

    TextBox txtIdioma{*this, u"txtIdioma"};
    Label lblPais{*this, u"lblPais"};
    ControlArray<CommandButton, 2> cmdIdioma{*this, u"cmdIdioma"};

    bool ComprobarEliminacion() override;
};

} // namespace zv
