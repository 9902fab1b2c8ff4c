#pragma once

#include "forms/Acts.h"
#include "forms/ComboBox.h"

namespace zv::test {

/// Goes on from the dialog that chooses a section to the first one of that kind of teaching for which the
/// sample school has pupils.
template <class Window>
void chooseSection(Window& window, Long kind)
{
    for (const StringView list : {u"cboTipoEnsenanza", u"cboCursos", u"cboSecciones"})
        window.act([&](Acts& acts) {
            auto& box = dynamic_cast<ComboBox&>(*window.form().find(list));
            return acts.choose(box, list == u"cboTipoEnsenanza" ? box.find(kind) : 0);
        });
    window.act([&](Acts& acts) { return acts.click(*window.form().find(u"cmdNotaManual1", 0)); });
}

} // namespace zv::test
