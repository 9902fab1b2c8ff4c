#pragma once

#include "data/Connection.h"
#include "forms/Acts.h"

#include <functional>

namespace zv {

/// How a dialog is opened for its picture.
struct Portrait {
    StringView state; ///< Second half of the picture's name, behind the dialog's: "nuevo", "cambio", …
    Byte action = 0;
    Long row = 0;
    bool message = false;  ///< Its accept button is pressed, and the picture is of the message that comes.
    bool readOnly = false; ///< In a session that may not change data.
};

/// Pictures that were drawn, and their dots per inch.
struct Gallery {
    int pictures = 0;
    int dots = 0;
};

/// Opens every dialog behind a node on a sample school, in each state worth a picture: on its table's first
/// row, say. `next` is called before each. Fails with a RuntimeError.
void openForPortraits(const School& school, const std::function<void(const Portrait&)>& next);

/// Runs a person's act at the window of the dialog, if it is still there.
using WindowAct = std::function<void(const std::function<bool(Acts&)>&)>;

/// What a person does for the message, before the picture.
void pressAccept(Form& form, const WindowAct& act);
/// What a person does after the picture: goes on to the dialog that this one alone leads to.
void leadOn(Form& form, const Portrait& portrait, const WindowAct& act);

} // namespace zv
