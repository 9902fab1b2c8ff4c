#include "suite/sodium/EncryptoApi.h"

#include "runtime/CreateObject.h"
#include "runtime/Members.h"
#include "suite/sodium/KeyFile.h"

namespace zv {

CipherKey keyFromFile(bool make)
{
    const std::filesystem::path file = keyPlace();
    // Race: another process may create it at the same moment. Result ignored, the file read anew.
    if (make && !exists(file))
        createKey(file, CipherKey::random());
    return readKey(file);
}

void EncryptoApi::Cifrar(String& text) const { text = key_(true).seal(text); }

void EncryptoApi::descifrar(String& text) const
{
    std::optional<String> plain = key_(false).open(text);
    if (!plain)
        failCipher(u"El texto no se puede descifrar: se cifró con otra clave, o se ha cambiado después.");
    text = *std::move(plain);
}

const Member* EncryptoApi::memberNamed(StringView name) const
{
    static constexpr Member members[] = {
        method<&EncryptoApi::Cifrar>(u"Cifrar"),
        method<&EncryptoApi::descifrar>(u"descifrar"),
    };
    return findMember(members, name);
}

void registerCipher(KeySource key)
{
    registerBuiltInClass(u"ZEncryptoAPI.cZEncryptoAPI",
                         [key = std::move(key)] { return std::make_shared<EncryptoApi>(key); });
}

} // namespace zv
