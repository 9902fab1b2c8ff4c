#include "data/odbc/Password.h"

#include "data/DataError.h"
#include "runtime/OwnerOnly.h"
#include "runtime/System.h"

#include <fstream>
#include <stdexcept>

namespace zv::odbc {
namespace {

[[noreturn]] void failFile(const std::filesystem::path& file, StringView trouble)
{
    throw LastingFailure(failure::connectionLost, u"El fichero de la contraseña, «" + file.u16string() +
                                                      u"», que nombra ZV_CONTRASENA_FICHERO, " +
                                                      String(trouble));
}

} // namespace

std::optional<String> passwordFromOutside()
{
    if (const auto word = environment("ZV_CONTRASENA"); word && !word->empty())
        return fromUtf8(*word);
    const std::filesystem::path file = pathInEnvironment("ZV_CONTRASENA_FICHERO");
    if (file.empty())
        return std::nullopt;
    std::ifstream stream(file);
    std::string line;
    if (!stream || std::filesystem::is_directory(file))
        failFile(file, u"no se puede leer: corrija su nombre, o dé permiso de lectura a este usuario.");
    if (owneronly::openToOthers(file))
        failFile(file, u"lo pueden leer otros: quíteles el permiso (" + String(owneronly::closingCommand()) +
                           u").");
    std::getline(stream, line);
    while (line.ends_with('\r'))
        line.pop_back();
    if (line.empty())
        failFile(file, u"está vacío: escriba en su primera línea la contraseña.");
    try {
        return fromUtf8(line);
    } catch (const std::invalid_argument&) {
        failFile(file, u"no está en UTF-8: guárdelo así.");
    }
}

} // namespace zv::odbc
