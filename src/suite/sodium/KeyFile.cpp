#include "suite/sodium/KeyFile.h"

#include "runtime/Convert.h"
#include "runtime/OwnerOnly.h"
#include "runtime/PrivateFile.h"
#include "runtime/System.h"
#include "runtime/WholeFile.h"

#include <algorithm>
#include <fstream>
#include <vector>

namespace zv {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view header = "ZVConfiguracion clave 1";

/// Folder named by an environment variable; empty unless absolute.
fs::path folderIn(const char* variable)
{
    fs::path folder = pathInEnvironment(variable);
    return folder.is_absolute() ? folder : fs::path();
}

fs::path configuration()
{
    if (fs::path folder = folderIn("XDG_CONFIG_HOME"); !folder.empty())
        return folder;
    if (fs::path folder = folderIn("APPDATA"); !folder.empty())
        return folder;
    if (const fs::path home = folderIn("HOME"); !home.empty())
        return home / ".config";
    failCipher(u"No se sabe dónde está la clave del cifrado: dé su lugar en la variable ZV_CLAVE.");
}

[[noreturn]] void failFile(const fs::path& file, StringView trouble)
{
    failCipher(u"La clave del cifrado, «" + file.u16string() + u"», " + String(trouble));
}

} // namespace

void failCipher(StringView text) { throw RuntimeError(cipherFailed, String(text)); }

fs::path keyPlace()
{
    if (fs::path place = pathInEnvironment("ZV_CLAVE"); !place.empty())
        return place;
    return configuration() / "ZVConfiguracion" / "clave";
}

CipherKey readKey(const fs::path& file)
{
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found && fs::is_symlink(fs::symlink_status(file, error)))
        failFile(file, u"es un enlace a un fichero que no existe: corrija el enlace, o ponga la clave en su "
                       u"lugar.");
    if (status.type() == fs::file_type::not_found)
        failFile(file, u"no existe: cópiela de otro puesto o de donde se guarda. Sólo si el centro no tiene "
                       u"todavía enfermedades, haga una con «zvconf clave crear».");
    if (status.type() != fs::file_type::regular)
        failFile(file, u"no se puede leer: no es un fichero, o no se tiene permiso.");
    if (fs::file_size(file, error) == 0)
        failFile(file, u"está vacía: ponga en su lugar la copia que guardó.");
    if (owneronly::openToOthers(file))
        failFile(file, u"la pueden leer otros: quíteles el permiso (" + String(owneronly::closingCommand()) +
                           u") y, si alguien la pudo ver, cámbiela con «zvconf clave cambiar».");
    std::ifstream stream(file);
    if (!stream)
        failFile(file, u"no se puede leer: falta el permiso.");
    std::string title;
    std::string text;
    std::getline(stream, title);
    std::getline(stream, text);
    if (title != header)
        failFile(file, u"no es una clave de este programa: ponga la buena en su lugar.");
    const auto key = CipherKey::parse(text);
    if (!key || stream.peek() != std::ifstream::traits_type::eof())
        failFile(file, u"está estropeada o no está entera: ponga una copia buena en su lugar.");
    return *key;
}

std::string keyFileText() { return wholeFile(keyPlace()).value_or(""); }

bool checkKey(const School& school)
{
    std::vector<String> texts;
    for (const ConnectionPtr& base : {school.centro, school.borrado})
        for (auto rows = base->Execute(u"Select Nombre, Descripcion From Enfermedad"); !rows->Eof();
             rows->MoveNext())
            for (const Value& each : rows->row())
                if (!each.isNull() && !CStr(each).empty())
                    texts.push_back(CStr(each));
    if (texts.empty())
        return false;
    const CipherKey key = readKey(keyPlace());
    if (std::ranges::none_of(texts, [&](const String& each) { return key.open(each).has_value(); }))
        failFile(keyPlace(), u"no es la de las enfermedades de este centro: ponga en su lugar la buena, que "
                             u"tienen los demás puestos o una copia.");
    return true;
}

bool createKey(const fs::path& file, const CipherKey& key)
{
    try {
        return createPrivateFile(file, std::string(header) + '\n' + key.text() + '\n');
    } catch (const std::system_error& error) {
        failFile(file, u"no se puede escribir: mire si su carpeta se deja escribir y si queda sitio (" +
                           wordsFor(error.code()) + u").");
    }
}

} // namespace zv
