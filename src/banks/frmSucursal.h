#pragma once

#include "banks/cSucursal.h"
#include "dialogs/MaintenanceDialog.h"

namespace zv {

/// Dialog of one branch of the bank's list. It changes that list only; the database is written by the bank's
/// accept.
class frmSucursal final : public MaintenanceDialog {
public:
    frmSucursal();

    ControlArray<Label, 6> lblSucursal{*this, u"lblSucursal"};
    ControlArray<TextBox, 5> txtSucursal{*this, u"txtSucursal"};
    ComboBox cboSucursal{*this, u"cboSucursal"};
    ControlArray<CommandButton, 2> cmdSucursal{*this, u"cmdSucursal"};

    /// Removes the branch selected in the bank dialog from the list, or marks it as deleted. The argument is
    /// not read.
    void QuitarSucursal(Integer& IDSucursal);

private:
    void Form_Load() override;
    void Form_Unload() override;
    void txtSucursal_KeyPress(int Index, Integer& KeyAscii);
    void cmdSucursal_Click(int Index);

    void showBranch(ResumeNext& next);
    // Stages of the accept; False ends it.
    bool dataGiven();
    bool addBranch();
    bool changeBranch();
    bool refuse(Integer messageId, int box);
    void take(cSucursal& branch);

    String strCodigoInicial; ///< The branch's number when its dialog opened.
};

} // namespace zv
