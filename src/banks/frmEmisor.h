#pragma once

#include "dialogs/MaintenanceDialog.h"

namespace zv {

/// An issuer of remittances, with its suffix and submitter, or an ordering party, with its code and a full
/// address. One table holds both; the dialog takes the shape of the kind.
class frmEmisor final : public MaintenanceDialog {
public:
    frmEmisor();

    Frame fraEntidad{*this, u"fraEntidad"};
    OptionButton optEmisor{fraEntidad, u"optEmisor"};
    OptionButton optOrdenante{fraEntidad, u"optOrdenante"};
    CheckBox chkMTP{*this, u"chkMTP"};
    TextBox txtNombre{*this, u"txtNombre"};
    Label lblNombre{*this, u"lblNombre"};
    TextBox txtNIF{*this, u"txtNIF"};
    Label lblNIF{*this, u"lblNIF"};
    TextBox txtSufijo{*this, u"txtSufijo"};
    Label lblsufijo{*this, u"lblsufijo"};
    TextBox txtCodOrdenante{*this, u"txtCodOrdenante"};
    Label lblCodigoOrdenante{*this, u"lblCodigoOrdenante"};
    TextBox txtDireccion{*this, u"txtDireccion"};
    Label lblDireccion{*this, u"lblDireccion"};
    TextBox txtPoblacion{*this, u"txtPoblacion"};
    Label lblPoblacion{*this, u"lblPoblacion"};
    ComboBox cboProvincia{*this, u"cboProvincia"};
    Label lblProvincia{*this, u"lblProvincia"};
    TextBox txtCP{*this, u"txtCP"};
    Label lblCP{*this, u"lblCP"};
    ComboBox cboPresentador{*this, u"cboPresentador"};
    Label lblPresentador{*this, u"lblPresentador"};
    CommandButton cmdNuevoPresentador{*this, u"cmdNuevoPresentador"};
    CommandButton cmdAceptar{*this, u"cmdAceptar"};
    CommandButton cmdCancelar{*this, u"cmdCancelar"};

    bool ComprobarEliminacion();

private:
    void Form_Load() override;
    void Form_Activate() override;
    void Form_Unload() override;
    void txtSufijo_Change();
    void txtCP_Change();
    void optEmisor_Click();
    void optOrdenante_Click();
    void chkMTP_MouseDown();
    void chkMTP_Click();
    void cmdNuevoPresentador_Click();
    void cmdAceptar_Click();
    void cmdCancelar_Click() { Unload(); }

    void design();
    // Layouts of the two kinds.
    void layoutIssuer();
    void layoutOrderingParty();
    void afterLayout(const cCentroApi& api);
    void moveEnd(Long twips);
    void showSubmitter(bool visible);
    // Load.
    /// Accessor: a field of the row by its name; fails with 91 where the row could not be read.
    using PartyReader = std::function<Value(StringView)>;
    bool readLists(ResumeNext& next);
    bool reportedRead();
    void showService(ResumeNext& next);
    void showParty(ResumeNext& next, const cCentroApi& api);
    void showServiceRow(ResumeNext& next, const PartyReader& party, const cCentroApi& api);
    void showKind(ResumeNext& next, const PartyReader& party);
    // Accept.
    bool dataGiven();
    void write(const cCentroApi& api);
    std::vector<Value> values() const;
    void restrictButtons(const cCentroApi& api);

    Long lngAltura = 0; ///< Full height of the form.
};

} // namespace zv
