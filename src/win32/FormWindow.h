#pragma once

#include "forms/SectionControls.h"
#include "win32/ControlView.h"
#include "win32/Sheet.h"

#include <deque>
#include <map>
#include <optional>

namespace zv::win32 {

/// Window (view) of a form, from the form's opening until the form is hidden or unloaded.
class FormWindow final : public Window, private ViewHost {
public:
    /// A bare window shows what the model says and no more.
    FormWindow(Form& form, HWND owner, bool bare);
    ~FormWindow() override;

    Form& form() const { return form_; }
    ControlView& viewOf(const Control& control) const { return *views_.at(byControl_.at(&control)); }
    int pixels(Long twips) const override;
    Long twips(int pixels) const;
    const Font& font() const override { return font_; }

    bool act(const std::function<bool(Acts&)>& what) override;
    /// Takes the result of the last act out: whether it could be done; empty if none ended since the last
    /// call.
    std::optional<bool> takeOutcome() { return std::exchange(outcome_, std::nullopt); }
    bool busy() const override { return busy_ != 0; }
    bool alive() const override { return alive_; }
    void show();
    /// Detaches the window from its form, which may be destroyed.
    void end();
    /// While another window is in front of it, nobody acts on it.
    void cover(bool covered);
    void changed(const PropertyBase& property);
    void controlChanged(Control& control, const PropertyBase* property);
    void inStep() override;
    /// Ends the set-up: from here on acts are accepted.
    void ready();
    /// Runs what was put off until the message in hand had ended.
    void runLater();

protected:
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;

private:
    Deeper ownDoing() override { return Deeper(busy_); }
    RECT placeOf(const Control& control) const override;
    bool bare() const override { return bare_; }
    void columnsMoved() override;
    int rowHeight() const override;
    bool focused(const ControlView& view) const override;
    void takeFocusOver(ControlView& view) override;
    void tip(HWND window, const String& text) override;
    void help() override;
    void later(std::function<void()> what) override;

    void build();
    /// Sizes, letters and content, for the screen that the window is on.
    void follow();
    Font fittingFont() const;
    void fit();
    void centre();
    void stack();
    void followFocus();
    void followEnabled();
    void close();

    Form& form_;
    HWND owner_;
    bool bare_;
    // Before the controls' windows: those send messages here while they are made.
    int busy_ = 1;
    bool alive_ = true;
    bool covered_ = false;
    int dots_;
    Font font_;
    Sheet sheet_{handle()};
    SectionControls section_;
    HWND tips_ = nullptr;
    std::map<HWND, String> tipTexts_;
    HICON icon_ = nullptr;
    std::vector<std::unique_ptr<ControlView>> views_; ///< Parents first: a frame before what is in it.
    std::map<const Control*, std::size_t> byControl_;
    std::vector<Control*> stacked_; ///< Cache of the stacking order (`Form::frontToBack`) last applied.
    std::deque<std::function<void()>> later_;
    std::optional<bool> outcome_;
};

} // namespace zv::win32
