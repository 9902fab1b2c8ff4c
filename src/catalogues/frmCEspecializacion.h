#pragma once

#include "catalogues/OneFieldDialog.h"

namespace zv {

/// Specialisation courses: a text.
class frmCEspecializacion final : public OneFieldDialog {
public:
    frmCEspecializacion();

    TextBox txtDescripcion{*this, u"txtDescripcion"};
    Label lblPais{*this, u"lblPais"};
    ControlArray<CommandButton, 2> cmdIdioma{*this, u"cmdIdioma"};

private:
    void Form_Load() override;
};

} // namespace zv
