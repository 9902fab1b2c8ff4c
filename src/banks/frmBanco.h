#pragma once

#include "banks/cSucursal.h"
#include "dialogs/MaintenanceDialog.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "runtime/Collection.h"

namespace zv {

/// A bank and, on its second tab, the list of its branches: a unit of work that stays in memory until the
/// whole is accepted.
class frmBanco final : public MaintenanceDialog {
public:
    frmBanco();

    ControlArray<Frame, 2> fraBanco{*this, u"fraBanco"};
    ControlArray<Label, 2> lblBanco{fraBanco(0), u"lblBanco"};
    ControlArray<TextBox, 2> txtBanco{fraBanco(0), u"txtBanco"};
    MSFlexGrid msgBanco{fraBanco(1), u"msgBanco"};
    ControlArray<CommandButton, 5> cmdBotonera{*this, u"cmdBotonera"};
    TabStrip mstBanco{*this, u"mstBanco"};

    bool ComprobarEliminacion();
    void CargarGrid();

    // State that the branch dialog and the facade read and write.
    Byte gBytOperSucursal = 0;       ///< Action of the branch dialog, a row state of cConstCol.
    Integer gintIDSucursalSelec = 0; ///< The branch whose row was clicked last; 0 until one is.
    Property<String> gstrNomNodo{*this, u"gstrNomNodo"};
    /// The branches, keyed by the text of their numbers as Str gives it. Created lazily.
    Collection<cSucursal>& gColSucursal();

private:
    void Form_Load() override;
    void Form_Unload() override;
    void txtBanco_KeyPress(int Index, Integer& KeyAscii);
    void msgBanco_Click();
    void msgBanco_DblClick() { cmdBotonera(3).Value = true; }
    void cmdBotonera_Click(int Index);
    void mstBanco_Click();

    void ConfigurarGrid();
    void readBranches(ResumeNext& next, Recordset& branches, Recordset& bank);
    // What the buttons do.
    void accept(ResumeNext& next, const cCentroApi& api);
    void openBranch(ResumeNext& next, Byte operation);
    void removeBranch(ResumeNext& next);
    // Stages of the accept; False ends it.
    bool dataGiven(ResumeNext& next);
    bool numberFree(ResumeNext& next, StringView query);
    bool writeBank(ResumeNext& next, const cCentroApi& api);
    bool writeBranch(ResumeNext& next, const cCentroApi& api, const cSucursal& branch);

    std::unique_ptr<Collection<cSucursal>> branches_;
};

} // namespace zv
