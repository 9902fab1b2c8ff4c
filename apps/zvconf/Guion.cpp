#include "zvconf/Command.h"

#include "journal/Recorder.h"
#include "module/Module.h"
#include "robot/PlayGuiones.h"
#include "robot/ScriptedStage.h"
#include "runtime/System.h"
#include "zvconf/System.h"

#include <iostream>

namespace zv::zvconf {

int guion(Arguments arguments)
{
    installModule();
    std::vector<String> words(arguments.begin(), arguments.end());
    const bool windows = std::erase(words, u"--ventanas") > 0;
    // Guiones type what nobody wants back; but whoever asks can see that it makes no difference to them.
    if (windows && environment("ZV_DIARIO") == "si")
        journal::record();
    return playGuiones(words, windows ? windowStage() : scriptedStage, std::cout, std::cerr);
}

} // namespace zv::zvconf
