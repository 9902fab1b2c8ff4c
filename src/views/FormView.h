#pragma once

#include "forms/ComboBox.h"
#include "forms/Form.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "views/PupilGuide.h"
#include "views/WindowSite.h"

#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace zv {

/// Window (view) of a form, as far as it is the same on every desktop: it runs a person's acts, and keeps the
/// views of the controls in step with the model. `Site` is the toolkit's WindowSite, `View` its ViewBase.
template <class Site, class View>
class FormView : public Site, public WindowAids {
public:
    FormView(const FormView&) = delete;
    FormView& operator=(const FormView&) = delete;

    Form& form() const { return form_; }
    View& viewOf(const Control& control) const { return *byControl_.at(&control); }

    bool act(const std::function<bool(Acts&)>& what) final
    {
        if (!alive_)
            return false;
        bool done = false;
        {
            const Deeper deeper(busy_);
            Acts acts;
            done = what(acts);
        }
        outcome_ = done;
        if (alive_ && !busy())
            inStep();
        return done;
    }
    /// Takes the result of the last act out: whether it could be done; empty if none ended since the last
    /// call.
    std::optional<bool> takeOutcome() { return std::exchange(outcome_, std::nullopt); }
    bool busy() const final { return busy_ != 0; }
    bool alive() const final { return alive_; }
    Deeper ownDoing() final { return Deeper(busy_); }
    void inStep() final
    {
        for (const auto& view : views_)
            view->flush();
        followFocus();
        inStepNow();
        if (guide_ && alive_ && guide_->look())
            showLine(guide_->line());
    }
    /// Ends the set-up: from here on acts are accepted.
    void ready()
    {
        busy_ = 0;
        inStep();
    }

    /// Observer callbacks.
    void changed(const PropertyBase& property)
    {
        if (&property == &form_.Caption)
            followCaption();
        else if (&property == &form_.Enabled)
            followEnabled();
        else if (&property == &form_.Width || &property == &form_.Height)
            fit();
    }
    void controlChanged(Control& control, const PropertyBase* property)
    {
        if (guide_)
            guide_->changed(control, property);
        viewOf(control).changed(property);
        if (property == nullptr && stacked_ != form_.frontToBack())
            stack();
    }
    /// A statement has returned: paints how far a save has come. No event is handled.
    void working()
    {
        if (guide_ && guide_->working())
            paintLine(guide_->line());
    }
    bool bare() const final { return !guide_; }
    void columnsMoved() final
    {
        if (alive_ && guide_ && guide_->controls().floating != nullptr && built(*guide_->controls().floating))
            viewOf(*guide_->controls().floating).followPlace();
    }
    bool mayClick(const Control& control) final { return busy() || !guide_ || guide_->mayClick(control); }
    /// Callback of a focus change that came from the toolkit (an assistive program, say): the form follows.
    void takeFocusOver(View& view) final
    {
        if (busy() || !isFocused(view) || form_.ActiveControl() == &view.control())
            return;
        if (!view.control().takesFocus() || !act([&](Acts& acts) { return acts.focus(view.control()); }))
            followFocus();
    }

protected:
    explicit FormView(Form& form) : form_(form) {}
    ~FormView() = default;

    /// Offers a person more than the model does: the window is not bare.
    void offerMore() { guide_.emplace(form_, *this); }
    /// Whether there is a line under the form.
    bool hasLine() const { return guide_ && guide_->isSection(); }
    /// The grid that the control floats over, and whose shown columns it follows; nullptr if it is no such.
    const MSFlexGrid* under(const Control& control) const
    {
        return guide_ && &control == guide_->controls().floating ? guide_->controls().grid : nullptr;
    }
    /// How far below a grid's top, in pixels, what floats over one of its rows: their heights are rounded one
    /// by one.
    int below(const MSFlexGrid& grid, const Control& floating) const
    {
        const Long row = grid.rowHeight();
        const Long down = floating.Top() - grid.Top();
        return static_cast<int>(down / row) * this->pixels(row) + this->pixels(down % row);
    }
    /// Runs the macro of a key of a section.
    bool pressChord(const std::optional<Chord>& chord, const std::optional<String>& typed)
    {
        if (!guide_)
            return false;
        const auto run = [this](const auto& macro) { return act(macro); };
        return (chord && guide_->press(*chord, run)) || (typed && guide_->type(*typed, run));
    }
    /// Makes a view for each control; `make` gets the control and the view of the frame that it stands in, or
    /// nullptr.
    template <class Make>
    void build(const Make& make)
    {
        for (Control* control : form_.Controls) {
            views_.push_back(
                make(*control, control->frame() != nullptr ? &viewOf(*control->frame()) : nullptr));
            byControl_[control] = views_.back().get();
        }
    }
    /// Copies everything of the controls from the model to the screen.
    void followControls()
    {
        for (const auto& view : views_)
            view->followAll();
        for (const auto& view : views_)
            view->name();
        stack();
    }
    bool built(const Control& control) const { return byControl_.contains(&control); }
    const std::vector<std::unique_ptr<View>>& views() const { return views_; }
    /// Detaches the window from its form, which may be destroyed.
    void detach() { alive_ = false; }
    /// Destruction in reverse order: children before their frame.
    void destroyViews()
    {
        detach();
        while (!views_.empty())
            views_.pop_back();
    }
    /// Closes the form by the window's frame, as a person does, who may be asked first.
    void closeForm()
    {
        if (!busy() && (!guide_ || !form_.Enabled() || guide_->mayLeave()))
            act([this](Acts& acts) { return acts.close(form_); });
    }

    virtual void followCaption() = 0;
    virtual void followEnabled() = 0;
    virtual void followFocus() = 0;
    /// Sizes of sheet and window: whole, or as large as the screen allows.
    virtual void fit() = 0;
    /// The screen is in step with the model, after an act.
    virtual void inStepNow() {}
    /// Shows what the line under the form says, and tells screen readers.
    virtual void showLine(const String& text) = 0;
    /// The same at once, without an event.
    virtual void paintLine(const String& text) = 0;
    /// Whether the toolkit's focus is there.
    virtual bool isFocused(const View& view) const = 0;
    /// Puts a control's window under, or over, all the others in its parent.
    virtual void putUnder(View& view) = 0;
    virtual void putOver(View& view) = 0;

private:
    /// Z order: tabs and grids lie under what stands in their place, tabs under grids; what was brought to
    /// the front lies over all.
    void stack()
    {
        for (const auto& view : views_)
            if (dynamic_cast<MSFlexGrid*>(&view->control()) != nullptr)
                putUnder(*view);
        for (const auto& view : views_)
            if (dynamic_cast<TabStrip*>(&view->control()) != nullptr)
                putUnder(*view);
        stacked_ = form_.frontToBack();
        for (auto control = stacked_.rbegin(); control != stacked_.rend(); ++control)
            putOver(viewOf(**control));
    }

    Form& form_;
    int busy_ = 1;
    bool alive_ = true;
    std::vector<std::unique_ptr<View>> views_; ///< Parents first: a frame before what is in it.
    std::map<const Control*, View*> byControl_;
    std::vector<Control*> stacked_; ///< Cache of the stacking order (`Form::frontToBack`) last applied.
    std::optional<bool> outcome_;
    std::optional<PupilGuide> guide_;
};

} // namespace zv
