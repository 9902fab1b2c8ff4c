#include "zvconf/Command.h"

#include "module/Module.h"
#include "robot/PlayGuiones.h"
#include "robot/ScriptedStage.h"
#include "zvconf/System.h"

#include <iostream>

namespace zv::zvconf {

int guion(Arguments arguments)
{
    installModule();
    std::vector<String> words(arguments.begin(), arguments.end());
    const bool windows = std::erase(words, u"--ventanas") > 0;
    return playGuiones(words, windows ? windowStage() : scriptedStage, std::cout, std::cerr);
}

} // namespace zv::zvconf
