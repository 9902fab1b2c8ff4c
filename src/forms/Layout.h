#pragma once

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"

namespace zv {

/// Which keys press the two buttons that end a dialog.
enum class ButtonKeys {
    enterAndEscape,
    escape, ///< Where Enter belongs to a field of several lines.
    none,   ///< Where a stray key must neither save nor lose anything.
};

/// Places the controls of a dialog, declared from top to bottom in its constructor, so that no dialog carries
/// coordinates:
///
///     Layout(*this).row(lblNombre, txtNombre).line({&chkLectivo}).buttons(cmdAceptar, cmdCancelar);
///
/// Labels stand in a column as wide as the widest needs, fields beside them as wide as their texts may get.
/// MaxLength, MultiLine and captions count, so they are set before. Nothing is placed until buttons() or
/// end(). All twips.
class Layout {
public:
    /// Layout of a form, or of a frame that is then given to frame() or tabs() of the layout around it.
    explicit Layout(Container& container) : container_(container) {}

    /// Minimum width of the label column, for captions that come later: that of this text.
    Layout& labels(StringView sample);
    /// A label and the field that it names (which is recorded, as in all that take a label); small buttons
    /// ("...", "<", ">") behind the field.
    Layout& row(Label& label, Control& field, std::initializer_list<CommandButton*> small = {});
    /// A label over its field, for long questions. The field is as wide as the dialog.
    Layout& above(Label& label, Control& field);
    /// Tick boxes, options or fields without a label, one under the other, in the column of the fields.
    Layout& line(std::initializer_list<Control*> controls);
    /// A control as wide as the dialog and so many lines high: a grid.
    Layout& block(Control& control, Long lines);
    /// Buttons side by side at the right.
    Layout& bar(std::initializer_list<CommandButton*> buttons);
    /// A frame around controls of its own.
    Layout& frame(Frame& frame, Layout inside);
    /// A strip and the frames of its tabs, all in the same place. They lose their borders.
    Layout& tabs(TabStrip& strip, std::initializer_list<Layout> pages);
    /// A control of the form that lies over the pages of the tabs given last.
    Layout& over(Control& control);
    /// A floating field, which code positions: it gets only its size.
    Layout& floating(Control& field);
    /// Ends the dialog: accept and cancel at the bottom right.
    void buttons(CommandButton& accept, CommandButton& cancel, ButtonKeys keys = ButtonKeys::enterAndEscape);
    /// Ends a dialog whose buttons stand in a bar or nowhere.
    void end();

private:
    enum class Shape { beside, above, line, block, bar, frame, tabs };
    struct Item {
        Shape shape;
        Label* label = nullptr;
        std::vector<Control*> controls;
        Long lines = 1;
        std::vector<Layout> pages;
        std::vector<Control*> over;
    };
    Layout& add(Item item);
    Long labelColumn() const;
    /// Width of the widest item.
    Long neededWidth() const;
    Long neededWidth(const Item& item) const;
    /// Positions everything from that point on; gives the bottom edge.
    Long place(Long left, Long top, Long width) const;
    Long placeItem(const Item& item, Long left, Long top, Long width) const;
    Long placeRow(const Item& item, Long left, Long top) const;
    static Long placePages(const Item& item, Long left, Long top, Long width);
    /// Positions the frame and its content; gives its height.
    Long placeFrame(Long left, Long top, Long width) const;

    Container& container_;
    Long sample_ = 0;
    std::vector<Item> items_;
};

} // namespace zv
