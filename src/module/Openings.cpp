#include "module/Openings.h"

#include "forms/Form.h"
#include "session/cConfiguracion.h"
#include "session/cConstCol.h"
#include "suite/Station.h"

#include <algorithm>

namespace zv {

void Openings::loading(Form& form)
{
    const cConfiguracion& session = Configuracion();
    stack_.push_back({&form, session.conLocalCentro});
    if (session.conLocalCentro)
        session.conLocalCentro->dialogOpened({.dialog = form.Name(),
                                              .row = session.lngRowData,
                                              .creates = session.bytAccion == cConstCol::NUEVO,
                                              .user = session.intIDUsuario,
                                              .userName = session.strNombreUsuario,
                                              .station = thisStation().identity});
}

/// A form that was loaded for the sake of a control only is never unloaded: it goes with the one below it.
void Openings::unloaded(Form& form)
{
    if (std::ranges::find(stack_, &form, &Open::form) == stack_.end())
        return;
    for (bool last = false; !last;) {
        const Open top = stack_.back();
        stack_.pop_back();
        if (top.centro)
            top.centro->dialogClosed();
        last = top.form == &form;
    }
}

void Openings::atRest(Form& form)
{
    if (!stack_.empty() && stack_.back().form == &form && stack_.back().centro)
        stack_.back().centro->dialogAtRest();
}

} // namespace zv
