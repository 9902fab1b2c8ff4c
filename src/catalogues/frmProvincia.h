#pragma once

#include "catalogues/OneFieldDialog.h"

namespace zv {

/// Provinces: a text.
class frmProvincia final : public OneFieldDialog {
public:
    frmProvincia();

    TextBox txtProvincia{*this, u"txtProvincia"};
    Label lblProvincia{*this, u"lblProvincia"};
    ControlArray<CommandButton, 2> cmdProvincia{*this, u"cmdProvincia"};
};

} // namespace zv
