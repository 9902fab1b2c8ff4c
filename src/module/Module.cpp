#include "module/Module.h"

#include "data/ServerAway.h"
#include "forms/Desktop.h"
#include "module/Openings.h"
#include "session/App.h"
#include "session/DialogDirectory.h"
#include "session/cConfiguracion.h"
#include "suite/CentroApi.h"
#include "suite/Registrations.h"
#include "zv/Dialogs.h"

namespace zv {

namespace {

/// Registers a dialog. Its static slot is created here, so that it is destroyed after whatever is set up
/// behind the module. A dialog without ComprobarEliminacion has no guard.
template <class Dialog>
void addDialog(StringView name)
{
    singleSlot<Dialog>();
    DialogEntry entry{.instance = []() -> Form& { return single<Dialog>(); },
                      .ComprobarEliminacion = nullptr};
    if constexpr (requires(Dialog & dialog) { dialog.ComprobarEliminacion(); })
        entry.ComprobarEliminacion = [] { return single<Dialog>().ComprobarEliminacion(); };
    dialogs().add(name, std::move(entry));
}

template <class... Dialog>
void addDialogs(DialogList<Dialog...> /*all*/)
{
    const auto* name = std::begin(dialogNames);
    (addDialog<Dialog>(*name++), ...);
}

/// Heartbeat: tells other stations that the rows registered here are not abandoned.
void signOfLife()
{
    const Unattended work;
    try {
        if (const ConnectionPtr& centro = Configuracion().conLocalCentro)
            giveSign(*centro, thisStation());
    } catch (const RuntimeError&) {
        // Best effort: a missed heartbeat does no harm, and a lasting failure is reported by the dialog's
        // next statement.
    }
}

} // namespace

void installModule()
{
    registerSuite();
    onWaiting(signOfLife);
    observeForms([]() -> FormObserver& { return single<Openings>(); });
    onHelp([] { return single<App>().HelpFile; });
    addDialogs(AllDialogs());
}

} // namespace zv
