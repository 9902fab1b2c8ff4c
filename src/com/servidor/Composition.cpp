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
#include <string_view>
#include <thread>

namespace zv::com {

namespace {

/// What shows the dialogs: a guion, a screen, or nothing.
struct Theatre {
    std::unique_ptr<Rehearsal> rehearsal;
    std::unique_ptr<Screen> screen;
    std::thread::id thread = std::this_thread::get_id();

    bool isOfAnotherThread() const { return thread != std::this_thread::get_id(); }
};

std::unique_ptr<Theatre>& theatre()
{
    static std::unique_ptr<Theatre> current;
    return current;
}

/// A process may end without having asked whether it may: then nobody is left to be let go of. It stands
/// behind all instances, so that it goes before them.
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

void open()
{
    constexpr std::string_view byGuion = "guion:";
    auto made = std::make_unique<Theatre>();
    const char* variable = std::getenv("ZV_ESCRITORIO");
    const std::string_view choice = variable == nullptr ? "" : variable;
    if (choice.starts_with(byGuion)) {
        made->rehearsal = std::make_unique<Rehearsal>(std::string(choice.substr(byGuion.size())));
    } else if (!choice.empty()) {
        throw RuntimeError(failure::invalidCall, u"ZV_ESCRITORIO lleva guion: y el nombre de un fichero.");
    } else {
        made->screen = openScreen();
        useDesktop(made->screen ? &made->screen->desktop() : nullptr);
    }
    theatre() = std::move(made);
}

void around(const std::function<void()>& call)
{
    if (!theatre())
        open();
    // Windows live in one thread. Where there are none it is the host's matter that calls follow each other.
    if (theatre()->isOfAnotherThread() && (theatre()->rehearsal || theatre()->screen))
        throw RuntimeError(ZV_E_WRONG_THREAD,
                           u"Llame al módulo siempre desde el hilo en que lo llamó por primera vez.");
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
    if (theatre() && theatre()->screen && theatre()->isOfAnotherThread())
        return false;
    resetSingles();
    useDesktop(nullptr);
    theatre().reset();
    return true;
}

} // namespace zv::com
