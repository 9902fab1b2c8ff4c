#include "com/servidor/Composition.h"

#include "com/AsignarDatos.h"
#include "com/Bridge.h"
#include "com/Screen.h"
#include "com/servidor/Rehearsal.h"
#include "module/Module.h"
#include "runtime/Single.h"
#include "session/cConfiguracion.h"
#include "suite/sodium/EncryptoApi.h"

#include <cstdlib>
#include <mutex>
#include <string_view>

namespace zv::com {

namespace {

/// Where dialogs are shown: a guion, a screen, or nowhere (both empty).
struct Theatre {
    std::unique_ptr<Rehearsal> rehearsal;
    std::unique_ptr<Screen> screen;
};

/// Lock of the library, held by the thread inside a call; recursive, since hosts make re-entrant calls.
std::recursive_mutex& gate()
{
    static std::recursive_mutex mutex;
    return mutex;
}

std::unique_ptr<Theatre>& theatre()
{
    static std::unique_ptr<Theatre> current;
    return current;
}

/// Static whose destructor handles a process that ends without DllCanUnloadNow: host objects and windows are
/// leaked on purpose, as what they need may be gone. Constructed after the other statics, hence destroyed
/// before them.
class Farewell {
public:
    Farewell()
    {
        theatre();
        Configuracion();
    }
    Farewell(const Farewell&) = delete;
    Farewell& operator=(const Farewell&) = delete;
    ~Farewell()
    {
        leaveHostObjects();
        static_cast<void>(theatre().release());
    }
};

/// Callback for the end of the thread that owns the windows: another thread may open new ones afterwards.
void closeScreen()
{
    const std::scoped_lock inside(gate());
    useDesktop(nullptr);
    theatre().reset();
}

/// Thread check: fails unless the calling thread may use the windows, if there are any.
void enter(const Theatre& place)
{
    switch (place.screen ? place.screen->reach() : Reach::here) {
    case Reach::here:
        return;
    case Reach::elsewhere:
        throw RuntimeError(ZV_E_WRONG_THREAD,
                           u"Llame al módulo desde el hilo de su QApplication, o en el que "
                           u"lo llamó por primera vez: es el de las ventanas.");
    case Reach::gone:
        throw RuntimeError(
            failure::invalidCall,
            u"La QApplication de las ventanas ya no existe. Suelte los objetos del módulo y llame "
            u"a DllCanUnloadNow antes de soltarla; después se puede empezar de nuevo.");
    }
}

void open()
{
    constexpr std::string_view byGuion = "guion:";
    auto made = std::make_unique<Theatre>();
    const char* variable = std::getenv("ZV_ESCRITORIO");
    const std::string_view choice = variable == nullptr ? "" : variable;
    if (choice.starts_with(byGuion)) {
        made->rehearsal = std::make_unique<Rehearsal>(std::string(choice.substr(byGuion.size())));
    } else if (choice == "ninguno") {
        useDesktop(nullptr);
    } else if (!choice.empty()) {
        throw RuntimeError(failure::invalidCall,
                           u"ZV_ESCRITORIO lleva guion: y el nombre de un fichero, o ninguno.");
    } else {
        made->screen = openScreen(closeScreen);
        enter(*made);
        useDesktop(made->screen ? &made->screen->desktop() : nullptr);
    }
    theatre() = std::move(made);
}

void around(const std::function<void()>& call)
{
    // Not thread-safe: the dialogs are single instances. A second thread is refused instead of made to wait,
    // since a modal dialog may hold the lock for hours.
    const std::unique_lock inside(gate(), std::try_to_lock);
    if (!inside)
        throw RuntimeError(ZV_E_WRONG_THREAD, u"Otro hilo está dentro del módulo: llame cuando haya vuelto.");
    if (theatre())
        enter(*theatre());
    else
        open();
    if (theatre()->rehearsal)
        theatre()->rehearsal->around(call);
    else
        call();
}

} // namespace

void compose()
{
    static const bool composed = [] {
        registerCipher();
        installModule();
        useSurroundings(around);
        return true;
    }();
    static_cast<void>(composed);
    static const Farewell farewell;
}

bool dismantle()
{
    const std::unique_lock inside(gate(), std::try_to_lock);
    if (!inside || (theatre() && theatre()->screen && theatre()->screen->reach() == Reach::elsewhere))
        return false;
    resetSingles();
    useDesktop(nullptr);
    theatre().reset();
    return true;
}

} // namespace zv::com
