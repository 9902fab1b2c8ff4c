#pragma once

#include "runtime/CreateObject.h"

namespace zv {

/// Proxy of the suite's cipher, late-bound. The key is the cipher's own, which nobody here sees.
class cZEncryptoAPI {
public:
    /// Fails with 429 where the suite has not registered the class.
    static cZEncryptoAPI create();

    /// Enciphers in place.
    void Cifrar(String& text) const { replace(u"Cifrar", text); }
    /// Deciphers in place.
    void descifrar(String& text) const { replace(u"descifrar", text); }

private:
    explicit cZEncryptoAPI(ObjectPtr object) : object_(std::move(object)) {}
    /// Passes the text by reference: the object changes it.
    void replace(StringView operation, String& text) const;

    ObjectPtr object_;
};

} // namespace zv
