#pragma once

#include "forms/Acts.h"
#include "forms/MSFlexGrid.h"
#include "robot/Play.h"

#include <exception>
#include <utility>

namespace zv {

/// Desktop of a stage: reports to the play what `Screen` shows. The play reads on from within its modal
/// loops.
template <class Screen>
class Reporting : public Screen {
public:
    explicit Reporting(Play& play) : play_(play) {}

    void opened(Form& form) override
    {
        Screen::opened(form);
        play_.opened(form);
    }
    void closed(Form& form) override
    {
        Screen::closed(form);
        play_.closed(form);
    }
    void messageBox(StringView prompt, Integer flags, StringView title) override
    {
        play_.messageBox(prompt, flags, title);
        Screen::messageBox(prompt, flags, title);
    }
    void beep() override { play_.beep(); }
    void doEvents() override
    {
        play_.repainted();
        Screen::doEvents();
    }
    void handlerFailed(const RuntimeError& error) override
    {
        play_.failed(error);
        Screen::handlerFailed(error);
    }
    void changed(PropertyOwner& owner, const PropertyBase* property) override
    {
        play_.changed(owner, property);
        Screen::changed(owner, property);
    }

    /// Runs a function that sends events to the windows. A mistake of the guion met meanwhile is held back
    /// (exception_ptr) until the toolkit's own routines, which know no exceptions, have returned.
    void acting(const std::function<void()>& events)
    {
        ++acting_;
        try {
            events();
        } catch (...) {
            --acting_;
            throw;
        }
        --acting_;
        breathe();
        if (mistake_)
            std::rethrow_exception(std::exchange(mistake_, nullptr));
    }
    /// Lets the screen catch up.
    virtual void breathe() {}

protected:
    /// The modal loop of a form. A mistake is held back where the form was opened by an event; one that a
    /// command opened has only the play's own routines around it, which would read on.
    void goOn(Form& form)
    {
        const int around = std::exchange(acting_, 0);
        try {
            play_.goOnWhileOpen(form);
            acting_ = around;
        } catch (...) {
            acting_ = around;
            if (acting_ == 0)
                throw;
            mistake_ = std::current_exception();
        }
    }

private:
    Play& play_;
    int acting_ = 0;
    std::exception_ptr mistake_;
};

/// Person at real windows. What no event can reach is acted upon through the model.
template <class StageDesktop>
class WindowPerson : public Person {
public:
    explicit WindowPerson(StageDesktop& desktop) : desktop_(desktop) {}

    bool focus(Control& control) override
    {
        return directly(control.form(), [&](Acts& acts) { return acts.focus(control); });
    }
    bool type(Control& control, StringView text) override
    {
        bool reached = focus(control);
        while (reached && !text.empty()) {
            const Keystroke key = takeKey(text);
            reached = open(control) && write(control, std::get<String>(key));
        }
        return reached;
    }
    /// Where a box has several lines, windows end each as one that is typed; a text with other ends takes
    /// the model's way.
    bool paste(TextBox& box, StringView text) override
    {
        if (box.MultiLine() && Replace(text, u"\r\n", u"").find_first_of(u"\r\n") != String::npos)
            return directly(box.form(), [&](Acts& acts) { return acts.paste(box, text); });
        return really(box.form(), [&] { fromClipboard(box, text); });
    }
    bool select(TextBox& box, Long start, Long length) override
    {
        return directly(box.form(), [&](Acts& acts) { return acts.select(box, start, length); });
    }
    bool scroll(MSFlexGrid& grid, Long row) override
    {
        return directly(grid.form(), [&](Acts& acts) { return acts.scroll(grid, row); });
    }

protected:
    /// Sends a character, of one or two units, to the control that has the focus.
    virtual void character(Control& control, const String& text) = 0;
    /// Puts the text on the clipboard, and sends the key that pastes it.
    virtual void fromClipboard(TextBox& box, StringView text) = 0;
    /// Place of a column among those shown; -1 for a hidden one. Fails with 381 if there is none.
    static int placeOf(const MSFlexGrid& grid, Long column)
    {
        int place = grid.ColWidth(column) == 0 ? -1 : 0;
        for (Long before = 0; before < column && place >= 0; ++before)
            place += grid.ColWidth(before) != 0;
        return place;
    }
    bool open(const Control& control) const { return windowOf(control.form()) != nullptr; }
    auto* windowOf(const Form& form) const { return desktop_.windowOf(form); }
    auto& viewOf(const Control& control) const { return windowOf(control.form())->viewOf(control); }
    /// Runs a function that sends events; whether the act that came of them could be done.
    bool really(Form& form, const std::function<void()>& events)
    {
        auto& window = *windowOf(form);
        window.inStep();
        window.takeOutcome();
        bool done = false;
        desktop_.acting([&] {
            events();
            done = window.takeOutcome().value_or(false);
        });
        return done;
    }
    bool directly(Form& form, const std::function<bool(Acts&)>& act)
    {
        auto& window = *windowOf(form);
        return really(form, [&] { window.act(act); });
    }

private:
    bool write(Control& control, const String& text)
    {
        if (!isWritten(text.front()))
            return directly(control.form(), [&](Acts& acts) { return acts.type(control, text); });
        return really(control.form(), [&] { character(control, text); });
    }

    StageDesktop& desktop_;
};

} // namespace zv
