#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Shifts of the school day: a text and one of four kinds.
class frmTurno final : public TextCatalogueDialog {
public:
    frmTurno();

    TextBox txtTurno{*this, u"txtTurno"};
    Label lblTurno{*this, u"lblTurno"};
    OptionButton optDiurno{*this, u"optDiurno"};
    OptionButton optVespertino{*this, u"optVespertino"};
    OptionButton optNocturno{*this, u"optNocturno"};
    OptionButton optDistancia{*this, u"optDistancia"};
    ControlArray<CommandButton, 2> cmdTurno{*this, u"cmdTurno"};

private:
    void fill(ResumeNext& next) override;
    std::vector<Value> values() override;
    /// The option buttons in the order of the kinds 1 to 4.
    std::array<OptionButton*, 4> kinds() { return {&optDiurno, &optVespertino, &optNocturno, &optDistancia}; }
};

} // namespace zv
