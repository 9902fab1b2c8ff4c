#pragma once

#include "forms/Keys.h"
#include "runtime/Value.h"

#include <functional>
#include <optional>

namespace zv {

class Control;
class Form;

/// What a person can do, in the order of `verbNames`.
enum class ActVerb : unsigned char {
    focus,
    click,
    type,
    key,
    paste,
    select,
    choose,
    clickCell,
    doubleClickCell,
    scroll,
    clickTab,
    clickBackground,
    close
};

/// The verbs as guiones spell them.
inline constexpr StringView verbNames[] = {u"foco",        u"pulsar", u"teclear", u"tecla", u"pegar",
                                           u"seleccionar", u"elegir", u"celda",   u"doble", u"desplazar",
                                           u"pestana",     u"fondo",  u"cerrar"};

/// One act of a person on a form. Of the fields behind the control those hold that its verb has.
struct PersonAct {
    ActVerb verb;
    Form& form;
    Control* control = nullptr;
    StringView text = {}; ///< Typed or pasted.
    Long first = 0;       ///< Entry, row, tab, or start of the selection.
    Long second = 0;      ///< Column, or length of the selection.
    std::optional<Key> key = {};
};

/// Observer of what a person does, whatever the desktop. Its callbacks do not fail.
class ActObserver {
public:
    virtual ~ActObserver() = default;

    /// An act begins. Of an act that is made of others on the same form only the whole is told; those on a
    /// dialog that it opens are told between its two callbacks.
    virtual void acting(const PersonAct& act) = 0;
    /// The act has ended; `done` is false where the control could not be reached, or the act failed.
    virtual void acted(const PersonAct& act, bool done) = 0;
};

/// Registers the observer, by a callback that gives it; without one nobody observes.
void observeActs(ActObserver& (*observer)());
/// Runs an act, and tells the observer before and after it.
bool tellAct(const PersonAct& act, const std::function<bool()>& run);

} // namespace zv
