#include "zvconf/Command.h"

#include "module/Module.h"
#include "robot/FreshSchool.h"
#include "runtime/Convert.h"
#include "zvconf/System.h"

namespace zv::zvconf {

int galeria(Arguments arguments)
{
    const Options options(arguments, {}, 1);
    const String& folder = options.operand(0, u"la carpeta");
    installModule();
    const FreshSchool sample(u"sqlite:", true);
    const Gallery drawn = drawWindows(folder, sample.school());
    printLine(decimalText(drawn.pictures) + u" imágenes a " + decimalText(drawn.dots) +
              u" puntos por pulgada en " + folder + u".");
    return done;
}

} // namespace zv::zvconf
