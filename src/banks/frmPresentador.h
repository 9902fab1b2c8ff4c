#pragma once

#include "dialogs/MaintenanceDialog.h"

namespace zv {

/// The party that hands in a remittance, with the bank and the branch where it does. Its small buttons open
/// the bank dialog through the facade.
class frmPresentador final : public MaintenanceDialog {
public:
    frmPresentador();

    TextBox txtNombre{*this, u"txtNombre"};
    Label lblNombre{*this, u"lblNombre"};
    TextBox txtNIF{*this, u"txtNIF"};
    Label lblNIF{*this, u"lblNIF"};
    TextBox txtSufijo{*this, u"txtSufijo"};
    Label lblsufijo{*this, u"lblsufijo"};
    Frame fraBanco{*this, u"fraBanco"};
    TextBox txtNEntidad{fraBanco, u"txtNEntidad"};
    Label lblEntidad4{fraBanco, u"lblEntidad", 4};
    ComboBox cboBancos{fraBanco, u"cboBancos"};
    Label lblEntidad0{fraBanco, u"lblEntidad", 0};
    CommandButton cmdNuevoBanco0{fraBanco, u"cmdNuevoBanco", 0};
    ComboBox cboSucursales{fraBanco, u"cboSucursales"};
    Label lblEntidad2{fraBanco, u"lblEntidad", 2};
    CommandButton cmdNuevoBanco1{fraBanco, u"cmdNuevoBanco", 1};
    CommandButton cmdAceptar{*this, u"cmdAceptar"};
    CommandButton cmdCancelar{*this, u"cmdCancelar"};

    bool ComprobarEliminacion();
    void CargarBancos();
    void CargarSucursales(Integer CodBanco);

private:
    void Form_Load() override;
    void Form_Unload() override;
    void txtSufijo_KeyPress(Integer& KeyAscii) { SoloNumeros(KeyAscii); }
    void txtSufijo_Change();
    void txtNEntidad_KeyPress(Integer& KeyAscii) { SoloNumeros(KeyAscii); }
    void txtNEntidad_LostFocus();
    void cboBancos_Click();
    void cmdNuevoBanco0_Click() { openBank(0, cboBancos, u"Banco", u"IDBanco"); }
    void cmdNuevoBanco1_Click();
    void cmdAceptar_Click();
    void cmdCancelar_Click() { Unload(); }

    void CargarCombo(StringView strTabla, StringView strCampoID, StringView strCampoTexto, ComboBox& combo);
    static void SoloNumeros(Integer& KeyAscii);
    void readSubmitter(ResumeNext& next, const cCentroApi& api);
    bool dataGiven(ResumeNext& next);
    bool write(ResumeNext& next, const cCentroApi& api);
    /// Nested dialog of that bank (0: a new one); then the row that was added, if one was, is chosen in the
    /// list.
    void openBank(Long bank, ComboBox& list, StringView table, StringView key);
};

} // namespace zv
