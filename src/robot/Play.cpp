#include "robot/Play.h"

#include "robot/Verbs.h"

#include <algorithm>

namespace zv {

Play::Play(const Guion& guion, const School& school, const StageMaker& stage)
    : guion_(guion), transcript_(guion), stage_(stage(*this)),
      state_(
          school, [this](StringView line) { observe(line); },
          [this](StringView step) { transcript_.observeStep(step); })
{
    useDesktop(stage_.desktop.get());
}

void Play::run()
{
    while (playNext()) {
    }
}

bool Play::playNext()
{
    if (transcript_.commandsRead() == guion_.commands.size() && more_)
        more_();
    if (transcript_.commandsRead() == guion_.commands.size())
        return false;
    // A copy: the vector may reallocate, as writeOn() appends while the command is run.
    const GuionCommand command = guion_.commands[transcript_.commandsRead()];
    transcript_.begin();
    findVerb(command.verb)->run(*this, command.arguments);
    return true;
}

void Play::opened(Form& form)
{
    open_.push_back(&form);
    observe(u"muestra " + form.Name() + u" " + zv::quoted(form.Caption()));
}

void Play::closed(Form& form)
{
    leave(form);
    observe(u"cierra " + form.Name());
}

void Play::messageBox(StringView prompt, Integer flags, StringView title)
{
    observe(u"mensaje " + decimalText(flags) + u" " + zv::quoted(title) + u" " + zv::quoted(prompt));
}

void Play::changed(const PropertyOwner& owner, const PropertyBase* property)
{
    const auto* form = dynamic_cast<const Form*>(&owner);
    if (form == nullptr)
        return;
    if (property == &form->MousePointer)
        state_.tracing.step(u"puntero " + decimalText(form->MousePointer()));
    if (property == &form->Visible && !form->Visible())
        state_.tracing.step(u"oculta " + form->Name());
}

void Play::failed(const RuntimeError& error) { observe(u"error " + decimalText(error.number())); }

void Play::leave(Form& form)
{
    const auto place = std::ranges::find(open_, &form);
    if (place == open_.end())
        return;
    last_ = &form;
    open_.erase(place);
}

void Play::goOnWhileOpen(Form& form)
{
    while (form.Visible())
        if (!playNext())
            mistake(u"el guion acaba con la ventana " + form.Name() + u" abierta");
    leave(form); // A form that is only hidden is never reported closed.
}

Form& Play::formToLookAt() const
{
    if (!open_.empty())
        return *open_.back();
    if (last_ == nullptr)
        mistake(u"no se ha mostrado ninguna ventana");
    return *last_;
}

Form& Play::formToActOn() const
{
    if (open_.empty())
        mistake(u"no hay ninguna ventana abierta");
    return *open_.back();
}

Control& Play::control(const GuionArgument& name) const
{
    const Form& form = formToLookAt();
    const MemberName parsed = *parseMember(name.text);
    const std::vector<Long>& indices = parsed.indices;
    const bool named = indices.empty() || (indices.size() == 1 && indices.front() >= 0);
    Control* control =
        named ? form.find(parsed.name, indices.empty() ? Control::noIndex : indices.front()) : nullptr;
    if (control == nullptr)
        mistake(u"la ventana " + form.Name() + u" no tiene el control " + name.text);
    return *control;
}

void Play::callModule(const std::function<void()>& call)
{
    try {
        call();
    } catch (const RuntimeError& error) {
        failed(error);
    }
}

void Play::mistake(StringView reason) const
{
    throw GuionError(guion_.commands[transcript_.commandsRead() - 1].line, reason);
}

} // namespace zv
