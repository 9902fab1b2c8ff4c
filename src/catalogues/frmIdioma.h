#pragma once

#include "catalogues/OneFieldDialog.h"

namespace zv {

/// Languages: a text.
class frmIdioma final : public OneFieldDialog {
public:
    frmIdioma();

    TextBox txtIdioma{*this, u"txtIdioma"};
    Label lblPais{*this, u"lblPais"};
    ControlArray<CommandButton, 2> cmdIdioma{*this, u"cmdIdioma"};

private:
    void Form_Load() override;
};

} // namespace zv
