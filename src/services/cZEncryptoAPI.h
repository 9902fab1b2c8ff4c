#pragma once

#include "runtime/CreateObject.h"

namespace zv {

/// The suite's cipher, reached by name. It keeps a key of its own, which nobody here sees.
class cZEncryptoAPI {
public:
    /// Fails with 429 where the suite has not registered the class.
    static cZEncryptoAPI create();

    /// Puts the enciphered form in the place of a text.
    void Cifrar(String& text) const { replace(u"Cifrar", text); }
    /// Puts the plain form in the place of an enciphered text.
    void descifrar(String& text) const { replace(u"descifrar", text); }

private:
    explicit cZEncryptoAPI(ObjectPtr object) : object_(std::move(object)) {}
    /// The object changes its argument.
    void replace(StringView operation, String& text) const;

    ObjectPtr object_;
};

} // namespace zv
