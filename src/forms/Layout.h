#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"

namespace zv {

/// Places the controls of a dialog, declared from top to bottom in its constructor, so that no dialog carries coordinates:
///
///     Layout(*this).row(lblNombre, txtNombre).line({&chkLectivo}).buttons(cmdAceptar, cmdCancelar);
///
/// Labels stand in a column as wide as the widest needs, fields beside them as wide as their texts may get. All twips.
class Layout {
public:
    explicit Layout(Form& form) : form_(form) {}
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;

    /// A label and the field that it names.
    Layout& row(Label& label, Control& field);
    /// Tick boxes or options one under the other, in the column of the fields.
    Layout& line(std::initializer_list<Control*> controls);
    /// Ends the dialog: accept and cancel at the bottom right. Enter presses the one, Escape the other.
    void buttons(CommandButton& accept, CommandButton& cancel);

private:
    struct Line {
        Label* label;
        Control* field;
    };
    Long labelColumn() const;
    static Long fieldWidth(const Control& field);
    static Long fieldHeight(const Control& field);
    Form& form_;
    std::vector<Line> lines_;
};

} // namespace zv
