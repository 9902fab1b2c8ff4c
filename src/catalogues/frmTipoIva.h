#pragma once

#include "catalogues/CatalogueDialog.h"

namespace zv {

/// VAT rates: a percentage, kept as the text with its sign and as the fraction.
class frmTipoIva final : public CatalogueDialog {
public:
    frmTipoIva();

    TextBox txtTipoIva{*this, u"txtTipoIva"};
    Label lblTipoIva{*this, u"lblTipoIva"};
    ControlArray<CommandButton, 2> cmdTipoIva{*this, u"cmdTipoIva"};

    bool ComprobarEliminacion();

private:
    void Form_Load() override;
    void Form_Unload() override;
    void txtTipoIva_KeyPress(Integer& KeyAscii);
    void cmdTipoIva_Click(int Index);

    /// Steps of the accept: each reports what is wrong and gives False.
    bool rateGiven(ResumeNext& next);
    bool rateNotTaken(ResumeNext& next, const String& rate);
    bool write(ResumeNext& next, const cCentroApi& api, const String& rate);
    bool refuse(ResumeNext& next, Integer messageId);
    /// The text without its last character, the sign.
    String withoutSign() const;

    String strDescripcionInicial; ///< The rate as it was read: no duplicate of itself.
};

} // namespace zv
