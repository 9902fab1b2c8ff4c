#include "module/Module.h"

#include "forms/Desktop.h"
#include "session/App.h"
#include "session/DialogDirectory.h"
#include "session/cConfiguracion.h"
#include "suite/CentroApi.h"
#include "suite/Registrations.h"
#include "zv/Dialogs.h"

namespace zv {

namespace {

/// Where the instance will stand is made ready: it then ends after whatever is set up behind the module. A
/// dialog without ComprobarEliminacion has no rows that are deleted.
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

/// Other stations are to see that the rows open here are not left behind.
void signOfLife()
{
    try {
        if (const ConnectionPtr& centro = Configuracion().conLocalCentro)
            giveSign(*centro, thisStation());
    } catch (const RuntimeError&) {
        // A sign may be missed; what fails for good, the dialog's next statement tells.
    }
}

} // namespace

void installModule()
{
    registerSuite();
    onWaiting(signOfLife);
    onHelp([] { return single<App>().HelpFile; });
    addDialogs(AllDialogs());
}

} // namespace zv
