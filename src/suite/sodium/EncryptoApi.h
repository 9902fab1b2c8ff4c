#pragma once

#include "runtime/Object.h"
#include "suite/sodium/CipherKey.h"

#include <functional>

namespace zv {

/// Gives the key in use. With `make`, makes one where there is none.
using KeySource = std::function<CipherKey(bool make)>;
/// The key of the key file.
CipherKey keyFromFile(bool make);

/// The stand-in for the suite's cipher, reached by name like it. A first text to encipher makes the key; one
/// to decipher does not, for no new key would open it.
class EncryptoApi final : public Object {
public:
    explicit EncryptoApi(KeySource key) : key_(std::move(key)) {}

    void Cifrar(String& text) const;
    void descifrar(String& text) const;

    StringView TypeName() const override { return u"cZEncryptoAPI"; }

private:
    const Member* memberNamed(StringView name) const override;

    KeySource key_;
};

/// Makes the stand-in known under "ZEncryptoAPI.cZEncryptoAPI", behind a class that the host registers
/// itself.
void registerCipher(KeySource key = keyFromFile);

} // namespace zv
