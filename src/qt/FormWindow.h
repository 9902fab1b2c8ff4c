#pragma once

#include "qt/Bar.h"
#include "qt/ControlView.h"
#include "qt/FocusRing.h"
#include "qt/PupilGuide.h"
#include "qt/Zoom.h"

#include <QDialog>
#include <QEventLoop>
#include <QScrollArea>

#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace zv {

/// Window (view) of a form, from the form's opening until the form is hidden or unloaded. The form lies on a
/// sheet, which scrolls where it is larger than the screen.
class FormWindow final : public QDialog, private ViewHost {
public:
    /// Without a zoom the window is bare: keys and buttons do what the model does and no more, and the sheet
    /// has its natural size.
    FormWindow(Form& form, QWidget* parent, Zoom* zoom);
    ~FormWindow() override;

    Form& form() const { return form_; }
    ControlView& viewOf(const Control& control) const { return *views_.at(byControl_.at(&control)); }
    int pixels(Long twips) const override;
    Long twips(int pixels) const;
    QRect placeOf(const Control& control) const override;
    bool bare() const override { return !guide_; }
    void columnsMoved() override;

    bool act(const std::function<bool(Acts&)>& what) override;
    /// Takes the result of the last act out: whether it could be done; empty if none ended since the last
    /// call.
    std::optional<bool> takeOutcome() { return std::exchange(outcome_, std::nullopt); }
    bool busy() const override { return busy_ != 0; }
    bool alive() const override { return alive_; }
    /// Detaches the window from its form, which may be destroyed.
    void end();
    void changed(const PropertyBase& property);
    void controlChanged(Control& control, const PropertyBase* property);
    /// Runs every coalesced update.
    void inStep();
    QWidget* focusWidget() const override { return QDialog::focusWidget(); }
    void takeFocusOver(ControlView& view) override;
    /// Nested event loop: lets a person act until the form is no longer visible.
    void run();
    /// A statement has returned: paints how far a save has come. No event is handled.
    void working()
    {
        if (guide_)
            guide_->working();
    }
    /// Ends the set-up: from here on acts are accepted.
    void ready();

    /// Says something in a bar over the form, whose controls stay where they are on their sheet. A bare
    /// window has none.
    void say(const QString& text, const std::vector<Bar::Choice>& choices);
    /// Takes the bar away; the focus goes back to the form.
    void sayNothing();

    void help() override;
    bool pressOwn(const QKeyEvent& event) override;
    bool mayClick(const Control& control) override;

    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

private:
    void build();
    void follow();
    /// Sizes of sheet and window: whole, or as large as the screen allows.
    void fit();
    /// After the size has changed: not beyond the screen's edges.
    void moveInside();
    /// Factor to the natural size: that of the desktop's letters as far as the screen allows, and the zoom.
    double scaleWanted() const;
    QSize room() const;
    bool zoomed(const QKeyEvent& event);
    bool inBar() const;
    void focusMoved(QWidget* from, QWidget* to);
    void look();
    /// Font whose metrics fit the sizes that the forms give their controls.
    QFont fittingFont() const;
    bool fits(const QFontMetrics& font) const;
    void stack();
    void followFocus();
    /// Where a grid is higher than the window, its current line stays in sight.
    void followCell();

    Form& form_;
    // Before the widgets: those send events here while they are made.
    int busy_ = 1;
    bool alive_ = true;
    Zoom* zoom_;
    double scale_ = 1;
    std::optional<Bar> bar_;
    QScrollArea room_{this};
    QWidget* sheet_;
    std::optional<PupilGuide> guide_;
    FocusRing ring_;
    std::vector<std::unique_ptr<ControlView>> views_; ///< Parents first: a frame before what is in it.
    std::map<const Control*, std::size_t> byControl_;
    std::vector<Control*> stacked_; ///< Cache of the stacking order (`Form::frontToBack`) last applied.
    QEventLoop loop_;
    std::optional<bool> outcome_;
};

} // namespace zv
