#include "suite/Sample.h"

#include "data/sample/SampleSchool.h"
#include "services/cZEncryptoAPI.h"

namespace zv {

void fillSample(School& school)
{
    fillSampleSchool(school);
    fillSampleIllnesses(school, [cipher = cZEncryptoAPI::create()](StringView text) {
        String enciphered(text);
        cipher.Cifrar(enciphered);
        return enciphered;
    });
}

} // namespace zv
