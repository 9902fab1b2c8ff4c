#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// VAT rates: a percentage, kept as the text with its sign and as the fraction.
class frmTipoIva final : public TextCatalogueDialog {
public:
    frmTipoIva();

    TextBox txtTipoIva{*this, u"txtTipoIva"};
    Label lblTipoIva{*this, u"lblTipoIva"};
    ControlArray<CommandButton, 2> cmdTipoIva{*this, u"cmdTipoIva"};

private:
    static const TextCatalogue& words();
    Then forgetRate(Routine& routine);
    Then isPercentage(Routine& routine);
    Then atMostAHundred(Routine& routine);
    Then notTaken(Routine& routine);
    Then fraction(Routine& routine);
    Then releaseIfEnabled(Routine& routine);

    void fill(ResumeNext& next) override;
    std::vector<Value> values() override;
    void txtTipoIva_KeyPress(Integer& KeyAscii);

    /// Reports the message, gives the field the focus, and leaves the routine.
    Then refuse(Routine& routine, Integer messageId);
    /// The text without its last character, the sign.
    String withoutSign() const;

    String strDescripcionInicial; ///< The rate as it was read, which the duplicate check passes over.
    Single valor_ = 0;            ///< The fraction to be stored.
};

} // namespace zv
