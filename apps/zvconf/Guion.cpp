#include "zvconf/Command.h"

#include "module/Module.h"
#include "robot/PlayGuiones.h"
#include "robot/ScriptedStage.h"

#include <iostream>

namespace zv::zvconf {

int guion(Arguments arguments)
{
    installModule();
    return playGuiones(arguments, scriptedStage, std::cout, std::cerr);
}

} // namespace zv::zvconf
