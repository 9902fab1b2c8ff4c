#include "journal/Key.h"

#include "crypto/Sodium.h"
#include "runtime/OwnerOnly.h"
#include "runtime/PrivateFile.h"
#include "runtime/System.h"
#include "runtime/WholeFile.h"

#include <algorithm>
#include <sodium.h>
#include <stdexcept>
#include <string>
#include <utility>

namespace zv::journal {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void failKey(const fs::path& file, StringView trouble)
{
    throw std::runtime_error(toUtf8(u"La clave del diario, «" + file.u16string() + u"», " + String(trouble)));
}

} // namespace

fs::path folder()
{
    constexpr std::pair<const char*, const char*> places[] = {
        {"XDG_STATE_HOME", ""}, {"LOCALAPPDATA", ""}, {"HOME", ".local/state"}};
    for (const auto& [variable, below] : places)
        if (const fs::path state = pathInEnvironment(variable); state.is_absolute())
            return state / below / "ZVConfiguracion" / "diario";
    return {};
}

SecretKey ownKey(const fs::path& folder)
{
    const fs::path file = folder / "clave";
    crypto::useSodium();
    SecretKey key{};
    std::error_code ignored;
    if (!fs::exists(file, ignored)) {
        randombytes_buf(key.data(), key.size());
        // Another program may have made one meanwhile: what is in the file counts.
        createPrivateFile(file, std::string(key.begin(), key.end()));
    }
    if (owneronly::openToOthers(file))
        failKey(file,
                u"la pueden leer otros: quíteles el permiso (" + String(owneronly::closingCommand()) + u").");
    const auto text = wholeFile(file);
    if (!text || text->size() != key.size())
        failKey(file, u"no se puede leer o está estropeada: bórrela, y los diarios que haya con ella.");
    std::ranges::copy(*text, key.begin());
    return key;
}

} // namespace zv::journal
