#pragma once

#include "forms/SectionControls.h"
#include "views/FormView.h"
#include "views/Measures.h"
#include "win32/Bar.h"
#include "win32/Sheet.h"
#include "win32/Zoom.h"

#include <deque>
#include <map>
#include <memory>
#include <optional>

namespace zv::win32 {

/// Window (view) of a form, from the form's opening until the form is hidden or unloaded.
class FormWindow final : public Window, public FormView<ViewSite, ControlView> {
public:
    /// Without a zoom the window is bare: it shows what the model says and no more.
    FormWindow(Form& form, HWND owner, Zoom* zoom);
    ~FormWindow() override;

    int pixels(Long twips) const override { return scale_.pixels(twips); }
    /// Of a text in the form's letters, in twips.
    Long textWidth(StringView text) const { return scale_.twips(font_.width(text)); }
    const Font& font() const override { return font_; }

    void show();
    /// Detaches the window from its form, which may be destroyed.
    void end();
    /// While another window is in front of it, nobody acts on it.
    void cover(bool covered);
    /// The thread's other windows, which it keeps from a person as long as it is there; given back.
    void disable(std::vector<HWND> others);
    void giveBack();
    /// Runs what was put off until the message in hand had ended.
    void runLater();
    /// Sizes, letters and content, for the screen that the window is on.
    void follow();

    void say(const String& text, const std::vector<BarChoice>& choices) override;
    void sayNothing() override;
    bool asks(const Question& question) override;
    void showDraft(const String& heading, const std::vector<DraftRow>& rows) override;

protected:
    LRESULT receive(UINT message, WPARAM number, LPARAM data) override;

private:
    RECT placeOf(const Control& control) const override;
    int rowHeight() const override;
    bool focused(const ControlView& view) const override;
    void tip(HWND window, const String& text) override;
    void help() override;
    bool pressOwn(UINT message, WPARAM code) override;
    bool taken(UINT message, WPARAM code);
    bool typeOwn(const String& character) override { return !busy() && pressChord({}, character); }
    void later(std::function<void()> what) override;

    Font fittingFont() const;
    double scaleWanted() const;
    /// With that corner, as far as the screen's edges let it.
    void moveTo(LONG x, LONG y, const RECT& work);
    void centre();
    void moveInside();
    void followSheet();
    void followCaption() override;
    void followEnabled() override;
    void followFocus() override;
    void fit() override;
    void showLine(const String& text) override;
    void paintLine(const String& text) override;
    bool isFocused(const ControlView& view) const override { return GetFocus() == view.handle(); }
    void putUnder(ControlView& view) override;
    void putOver(ControlView& view) override;

    HWND owner_;
    Zoom* zoom_;
    bool covered_ = false;
    Scale scale_;
    Font font_;
    Sheet sheet_{handle(), [this] { followSheet(); }};
    SectionControls section_;
    std::optional<Bar> bar_;
    std::unique_ptr<Window> foot_; ///< Under the form of a section, as wide as the window; else nullptr.
    HWND line_ = nullptr;          ///< In it, its text.
    HWND tips_ = nullptr;
    std::map<HWND, String> tipTexts_;
    HICON icon_ = nullptr;
    std::vector<HWND> disabled_;
    std::deque<std::function<void()>> later_;
};

} // namespace zv::win32
