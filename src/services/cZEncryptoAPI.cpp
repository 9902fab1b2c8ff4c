#include "services/cZEncryptoAPI.h"

namespace zv {

cZEncryptoAPI cZEncryptoAPI::create() { return cZEncryptoAPI(CreateObject(u"ZEncryptoAPI.cZEncryptoAPI")); }

void cZEncryptoAPI::replace(StringView operation, String& text) const
{
    Arguments arguments{text};
    callByReference(object_, operation, arguments);
    text = CStr(arguments.front());
}

} // namespace zv
