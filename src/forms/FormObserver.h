#pragma once

namespace zv {

class Form;

/// Observer of the life of all forms, whatever the desktop. Its callbacks do not fail.
class FormObserver {
public:
    virtual ~FormObserver() = default;

    /// A form is about to be loaded.
    virtual void loading(Form& form) = 0;
    /// A form was unloaded, or its load failed.
    virtual void unloaded(Form& form) = 0;
    /// A routine of a form's event has ended.
    virtual void atRest(Form& form) = 0;
};

/// Registers an observer, once, by a callback that gives it. Observers are told in the order in which they
/// were registered.
void observeForms(FormObserver& (*observer)());
/// Tells the registered observers.
void tellObserver(void (FormObserver::*what)(Form&), Form& form);

} // namespace zv
