#pragma once

#include "runtime/Object.h"
#include "suite/sodium/CipherKey.h"

#include <functional>

namespace zv {

/// Callback that gives the current key. With `make`, it generates one if there is none.
using KeySource = std::function<CipherKey(bool make)>;
/// The key of the key file.
CipherKey keyFromFile(bool make);

/// Stand-in for the suite's cipher, late-bound like it. Encrypting generates a missing key; decrypting does
/// not, as a new key would not open the text.
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

/// Registers the stand-in as the default class "ZEncryptoAPI.cZEncryptoAPI"; one that the host registers
/// takes precedence.
void registerCipher(KeySource key = keyFromFile);

} // namespace zv
