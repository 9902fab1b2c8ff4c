#include "robot/FreshSchool.h"

#include "data/Schools.h"
#include "suite/Sample.h"
#include "suite/sodium/EncryptoApi.h"

namespace zv {

FreshSchool::FreshSchool(StringView url, bool sample) : school_(temporarySchool(url))
{
    registerCipher([key = CipherKey::random()](bool) { return key; });
    if (sample)
        fillSample(school_);
}

FreshSchool::~FreshSchool() { registerCipher(); }

} // namespace zv
