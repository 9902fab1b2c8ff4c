#pragma once

#include "qt/Bar.h"
#include "qt/ControlView.h"
#include "qt/FocusRing.h"
#include "qt/Zoom.h"
#include "views/FormView.h"
#include "views/Measures.h"

#include <QDialog>
#include <QEventLoop>
#include <QLabel>
#include <QScrollArea>

#include <optional>
#include <vector>

namespace zv {

/// Window (view) of a form, from the form's opening until the form is hidden or unloaded. The form lies on a
/// sheet, which scrolls where it is larger than the screen.
class FormWindow final : public QDialog, public FormView<ViewSite, ControlView> {
public:
    /// Without a zoom the window is bare: keys and buttons do what the model does and no more, and the sheet
    /// has its natural size.
    FormWindow(Form& form, QWidget* parent, Zoom* zoom);
    ~FormWindow() override;

    int pixels(Long twips) const override { return scale().pixels(twips); }
    /// Of a text in the form's letters, in twips.
    Long textWidth(StringView text) const;
    QRect placeOf(const Control& control) const override;

    /// Detaches the window from its form, which may be destroyed.
    void end();
    QWidget* focusWidget() const override { return QDialog::focusWidget(); }
    /// Nested event loop: lets a person act until the form is no longer visible.
    void run();
    void say(const String& text, const std::vector<BarChoice>& choices) override;
    void sayNothing() override;
    bool asks(const Question& question) override;
    void showDraft(const String& heading, const std::vector<DraftRow>& rows) override;

    void help() override;
    bool pressOwn(const QKeyEvent& event) override;

    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

private:
    Scale scale() const { return Scale(logicalDpiX() * scale_); }
    void follow();
    void fit() override;
    /// After the size has changed: not beyond the screen's edges.
    void moveInside();
    /// Factor to the natural size: that of the desktop's letters as far as the screen allows, and the zoom.
    double scaleWanted() const;
    QSize room() const;
    bool zoomed(const QKeyEvent& event);
    bool inBar() const;
    void focusMoved(QWidget* from, QWidget* to);
    /// Font whose metrics fit the sizes that the forms give their controls.
    QFont fittingFont() const;
    void followCaption() override;
    void followEnabled() override { setEnabled(form().Enabled()); }
    void followFocus() override;
    /// Where a grid is higher than the window, its current line stays in sight.
    void followCell();
    void inStepNow() override;
    void showLine(const String& text) override;
    void paintLine(const String& text) override;
    bool isFocused(const ControlView& view) const override { return view.input().hasFocus(); }
    void putUnder(ControlView& view) override { view.widget().lower(); }
    void putOver(ControlView& view) override { view.widget().raise(); }

    // Before the widgets: those send events here while they are made.
    Zoom* zoom_;
    double scale_ = 1;
    std::optional<Bar> bar_;
    QScrollArea room_{this};
    QWidget* sheet_;
    QLabel line_{this};
    FocusRing ring_;
    QEventLoop loop_;
};

} // namespace zv
