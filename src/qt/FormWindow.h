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
class FormWindow final : public QDialog {
public:
    FormWindow(Form& form, QWidget* parent);
    ~FormWindow() override;

    Form& form() const { return form_; }
    ControlView& viewOf(const Control& control) const { return *views_.at(byControl_.at(&control)); }
    /// Pixels for a measure in twips.
    int pixels(Long twips) const;
    Long twips(int pixels) const;

    /// Does an act of a person and brings the window in step. False if the act could not be done.
    bool act(const std::function<bool(Acts&)>& what);
    /// Whether the act that ended last could be done; none since the last call gives nothing.
    std::optional<bool> takeOutcome() { return std::exchange(outcome_, std::nullopt); }
    /// Whether an act goes on, or the window is not yet ready for one.
    bool busy() const { return busy_ != 0; }
    bool alive() const { return alive_; }
    /// The form is gone: the window must not look at it any more.
    void end();
    void changed(const PropertyBase& property);
    void controlChanged(Control& control, const PropertyBase* property);
    /// Everything that is put off until a pause.
    void inStep();
    /// The toolkit gave the focus to a control (for an assistive program, say): so does the form.
    void takeFocusOver(ControlView& view);
    /// Lets a person act until the form is no longer visible.
    void run();
    /// The window is ready for a person.
    void ready();

    /// Opens the manual at this dialog's page.
    void help();

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
