#pragma once

#include "Stage.h"

#include "forms/Acts.h"

namespace zv::bench {

inline constexpr Byte maritalStates = 65;

/// Person who types a new text and presses "Aceptar".
class Typist final : public BusyPerson {
public:
    void runModal(Form& form) override
    {
        Acts acts;
        Control& box = form.reach(u"txtIdioma");
        acts.type(box, next());
        acts.click(form.reach(u"cmdIdioma", 0));
    }
    String next() { return (++changes_ & 1) != 0 ? u"Casada" : u"Soltera"; }

private:
    unsigned changes_ = 0;
};

/// Fixture of a school with that row.
struct Office : Stage {
    using Stage::Stage;
    void change() const { facade(1).ActivarFormulario(maritalStates); }
};

} // namespace zv::bench
