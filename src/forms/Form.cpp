#include "forms/Form.h"

#include "forms/Desktop.h"
#include "forms/FormObserver.h"
#include "runtime/Members.h"

#include <algorithm>
#include <exception>

namespace zv {

namespace {

constexpr std::int32_t alreadyShown = 400;

} // namespace

Control& ControlList::Item(Long position) const
{
    if (position < 0 || position >= static_cast<Long>(Count()))
        fail(failure::indexOutside);
    return *controls_[static_cast<std::size_t>(position)];
}

const Member* ControlList::memberNamed(StringView name) const
{
    static constexpr Member members[] = {
        property<&ControlList::Count>(u"Count"),
        property<&ControlList::Item>(u"Item"),
    };
    return findMember(members, name);
}

Form::Form(StringView name) : name_(name) {}
Form::~Form() = default;

void Form::Load()
{
    if (loaded_)
        return;
    for (Control* control : Controls)
        sealed_ ? control->restoreDesign() : control->sealDesign();
    sealed_ ? restoreDesign() : sealDesign();
    sealed_ = true;
    Icon = {};
    focus_ = nullptr;
    frontToBack_.clear();
    loaded_ = true;
    tellObserver(&FormObserver::loading, *this);
    try {
        Form_Load();
    } catch (const RuntimeError&) {
        loaded_ = false;
        tellObserver(&FormObserver::unloaded, *this);
        throw;
    }
}

void Form::Show()
{
    if (Visible())
        throw RuntimeError(alreadyShown, u"El formulario ya está visible");
    if (!hasDesktop())
        fail(failure::invalidCall, u"no hay pantalla en la que mostrar " + String(Name()));
    Desktop& screen = desktop();
    Load();
    if (!loaded_) // Form_Load closed it again.
        return;
    Visible = true;
    screen.opened(*this);
    guarded([this] { Form_Activate(); });
    settleFocus();
    if (Visible())
        screen.runModal(*this);
}

void Form::Hide() { Visible = false; }

void Form::Unload()
{
    if (!loaded_ || unloading_)
        return;
    unloading_ = true;
    std::exception_ptr failed;
    try {
        Form_Unload();
    } catch (const RuntimeError&) {
        failed = std::current_exception();
    }
    Visible = false;
    focus_ = nullptr;
    unloading_ = false;
    loaded_ = false;
    tellObserver(&FormObserver::unloaded, *this);
    if (hasDesktop())
        desktop().closed(*this);
    if (failed)
        std::rethrow_exception(failed);
}

Control* Form::find(StringView name, int index) const
{
    for (Control* control : Controls)
        if (control->Index() == index && sameName(control->Name(), name))
            return control;
    return nullptr;
}

Control& Form::reach(StringView name, int index)
{
    Control* control = find(name, index);
    if (control == nullptr)
        fail(failure::memberMissing, name);
    Load();
    return *control;
}

void Form::guarded(const std::function<void()>& event)
{
    const bool enabled = Enabled();
    try {
        event();
        tellObserver(&FormObserver::atRest, *this);
    } catch (const RuntimeError& error) {
        tellObserver(&FormObserver::atRest, *this);
        MousePointer = pointer::standard;
        if (enabled)
            Enabled = true;
        if (!hasDesktop())
            throw;
        desktop().handlerFailed(error);
    }
}

const Member* Form::memberNamed(StringView name) const
{
    static constexpr Member members[] = {
        property<&Form::Name>(u"Name"),
        property<&Form::Controls>(u"Controls"),
        method<&Form::Show>(u"Show"),
        method<&Form::Hide>(u"Hide"),
    };
    return findMember(members, name);
}

void Form::propertyChanged(const PropertyBase& property)
{
    if (hasDesktop())
        desktop().changed(*this, &property);
}

void Form::bringToFront(Control& control)
{
    std::erase(frontToBack_, &control);
    frontToBack_.insert(frontToBack_.begin(), &control);
}

void Form::controlChanged(Control& control, const PropertyBase* property)
{
    if (hasDesktop())
        desktop().changed(control, property);
}

void Form::moveFocus(Control* to, bool byPerson)
{
    const auto raise = [this, byPerson](const Event<>& event) {
        byPerson ? guarded([&event] { event.raise(); }) : event.raise();
    };
    if (to == focus_)
        return;
    Control* from = focus_;
    focus_ = nullptr;
    if (from != nullptr)
        raise(from->LostFocus);
    // Re-check: the handler may have closed the form, or moved the focus itself.
    if (!loaded_ || focus_ != nullptr || to == nullptr || !to->accessible())
        return;
    focus_ = to;
    raise(to->GotFocus);
}

void Form::settleFocus()
{
    if (Visible() && Enabled() && (focus_ == nullptr || !focus_->accessible()))
        moveFocus(nextFocus(focus_, true), true);
}

Control* Form::nextFocus(const Control* from, bool forward) const
{
    std::vector<Control*> order(Controls.begin(), Controls.end());
    if (!forward)
        std::reverse(order.begin(), order.end());
    const auto place = std::find(order.begin(), order.end(), from);
    if (place != order.end())
        std::rotate(order.begin(), place + 1, order.end());
    const auto found = std::find_if(order.begin(), order.end(), [](const Control* control) {
        return control->takesFocus() && control->accessible();
    });
    return found == order.end() ? nullptr : *found;
}

} // namespace zv
