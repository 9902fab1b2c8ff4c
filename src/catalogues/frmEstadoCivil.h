#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Marital states: a text.
class frmEstadoCivil final : public TextCatalogueDialog {
public:
    frmEstadoCivil();

    TextBox txtIdioma{*this, u"txtIdioma"};
    Label lblPais{*this, u"lblPais"};
    ControlArray<CommandButton, 2> cmdIdioma{*this, u"cmdIdioma"};

private:
    static const TextCatalogue& words();
    Then askUntested(Routine& routine);
};

} // namespace zv
