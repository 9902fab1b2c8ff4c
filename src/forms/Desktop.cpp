#include "forms/Desktop.h"

namespace zv {

namespace {

constexpr Long averageCharacterWidth = 105; ///< Twips, of an ordinary 9-point font.

Desktop*& current()
{
    static Desktop* desktop = nullptr;
    return desktop;
}

std::function<void()>& whileWaiting()
{
    static std::function<void()> act;
    return act;
}

std::function<String()>& helpPlace()
{
    static std::function<String()> place;
    return place;
}

} // namespace

Long Desktop::textWidth(StringView text) { return static_cast<Long>(text.size()) * averageCharacterWidth; }

void Desktop::changed(PropertyOwner&, const PropertyBase*) {}

Desktop& desktop()
{
    if (current() == nullptr)
        fail(failure::invalidCall, u"no hay escritorio en el que mostrar ventanas");
    return *current();
}

bool hasDesktop() { return current() != nullptr; }

void useDesktop(Desktop* desktop) { current() = desktop; }

void onWaiting(std::function<void()> act) { whileWaiting() = std::move(act); }

void waiting()
{
    if (whileWaiting())
        whileWaiting()();
}

String helpFile() { return helpPlace() ? helpPlace()() : String(); }

void onHelp(std::function<String()> file) { helpPlace() = std::move(file); }

void MsgBox(StringView prompt, Integer flags, StringView title)
{
    if (hasDesktop())
        return desktop().messageBox(prompt, flags, title);
    const String unseen = u"Sin pantalla no se ha mostrado: «" + String(prompt) + u"».";
    if (Err().Number == 0)
        throw RuntimeError(failure::invalidCall, unseen);
    throw RuntimeError(Err().Number, Err().Description + u" " + unseen);
}

void Beep()
{
    if (hasDesktop())
        desktop().beep();
}

void DoEvents()
{
    if (hasDesktop())
        desktop().doEvents();
}

} // namespace zv
