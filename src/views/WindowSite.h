#pragma once

#include "forms/Acts.h"
#include "views/Deeper.h"

#include <functional>

namespace zv {

/// Interface of a form's window towards the views in it, as far as it is the same on every desktop
/// (dependency inversion).
class WindowSite {
public:
    /// Runs a person's act, then synchronises the window with the model. False if the act could not be done.
    virtual bool act(const std::function<bool(Acts&)>& what) = 0;
    /// Re-entrancy flag: an act is running, or the window is not yet ready for one.
    virtual bool busy() const = 0;
    /// RAII guard: what the toolkit tells while it lives is not a person's doing.
    virtual Deeper ownDoing() = 0;
    virtual bool alive() const = 0;
    virtual int pixels(Long twips) const = 0;
    /// Whether the window shows what the model says and nothing beyond.
    virtual bool bare() const = 0;
    /// Callback of a grid whose columns have other widths: what lies over a cell follows.
    virtual void columnsMoved() = 0;
    /// Synchronises what is shown, and the focus, with the model.
    virtual void inStep() = 0;
    /// Whether a person's click may go on to the form; the window may ask him first.
    virtual bool mayClick(const Control& control) = 0;
    /// Opens the help at this dialog's page.
    virtual void help() = 0;

protected:
    ~WindowSite() = default;
};

} // namespace zv
