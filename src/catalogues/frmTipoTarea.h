#pragma once

#include "catalogues/TextCatalogue.h"

namespace zv {

/// Kinds of task: a text, and the occupation that the task belongs to. No node opens this dialog; its guard
/// is asked under 0.
class frmTipoTarea final : public TextCatalogueDialog {
public:
    frmTipoTarea();

    TextBox txtNombre{*this, u"txtNombre"};
    Label lblTarea{*this, u"lblTarea"};
    ComboBox cboMiembroCentro{*this, u"cboMiembroCentro"};
    Label lblMiembro{*this, u"lblMiembro"};
    CommandButton cmdAceptar{*this, u"cmdAceptar"};
    CommandButton cmdCancelar{*this, u"cmdCancelar"};

private:
    static const TextCatalogue& words();
    Then listOccupations(Routine& routine);
    void fill(ResumeNext& next) override;
    std::vector<Value> values() override;
};

} // namespace zv
