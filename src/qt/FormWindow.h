#pragma once

#include "qt/ControlView.h"

#include <QDialog>
#include <QEventLoop>

#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace zv {

/// Window (view) of a form, from the form's opening until the form is hidden or unloaded.
class FormWindow final : public QDialog, private ViewHost {
public:
    FormWindow(Form& form, QWidget* parent);
    ~FormWindow() override;

    Form& form() const { return form_; }
    ControlView& viewOf(const Control& control) const { return *views_.at(byControl_.at(&control)); }
    int pixels(Long twips) const override;
    Long twips(int pixels) const;

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
    /// Ends the set-up: from here on acts are accepted.
    void ready();

    void help() override;

    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

private:
    void build();
    void follow();
    /// Font whose metrics fit the sizes that the forms give their controls.
    QFont fittingFont() const;
    bool fits(const QFontMetrics& font) const;
    void stack();
    void followFocus();

    Form& form_;
    std::vector<std::unique_ptr<ControlView>> views_; ///< Parents first: a frame before what is in it.
    std::map<const Control*, std::size_t> byControl_;
    std::vector<Control*> stacked_; ///< Cache of the stacking order (`Form::frontToBack`) last applied.
    QEventLoop loop_;
    std::optional<bool> outcome_;
    int busy_ = 1;
    bool alive_ = true;
};

} // namespace zv
