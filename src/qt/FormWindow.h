#pragma once

#include "qt/ControlView.h"

#include <QDialog>
#include <QEventLoop>

#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace zv {

/// The window of a form. It lives from the form's opening until the form is hidden or unloaded.
class FormWindow final : public QDialog, private ViewHost {
public:
    FormWindow(Form& form, QWidget* parent);
    ~FormWindow() override;

    Form& form() const { return form_; }
    ControlView& viewOf(const Control& control) const { return *views_.at(byControl_.at(&control)); }
    int pixels(Long twips) const override;
    Long twips(int pixels) const;

    bool act(const std::function<bool(Acts&)>& what) override;
    /// Whether the act that ended last could be done; none since the last call gives nothing.
    std::optional<bool> takeOutcome() { return std::exchange(outcome_, std::nullopt); }
    bool busy() const override { return busy_ != 0; }
    bool alive() const override { return alive_; }
    /// The form is gone: the window must not look at it any more.
    void end();
    void changed(const PropertyBase& property);
    void controlChanged(Control& control, const PropertyBase* property);
    /// Everything that is put off until a pause.
    void inStep();
    QWidget* focusWidget() const override { return QDialog::focusWidget(); }
    void takeFocusOver(ControlView& view) override;
    /// Lets a person act until the form is no longer visible.
    void run();
    /// The window is ready for a person.
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
    /// The font in which the texts fit the places that the forms give them.
    QFont fittingFont() const;
    bool fits(const QFontMetrics& font) const;
    void stack();
    void followFocus();

    Form& form_;
    std::vector<std::unique_ptr<ControlView>> views_; ///< A frame before what is in it.
    std::map<const Control*, std::size_t> byControl_;
    std::vector<Control*> stacked_; ///< As they were brought to the front when last looked at.
    QEventLoop loop_;
    std::optional<bool> outcome_;
    int busy_ = 1;
    bool alive_ = true;
};

} // namespace zv
