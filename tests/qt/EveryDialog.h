#pragma once

#include "data/sample/SampleSchool.h"
#include "forms/Ficha.h"
#include "module/Hosted.h"
#include "qt/QtDesktop.h"
#include "qt/Screen.h"
#include "session/DialogDirectory.h"
#include "suite/sodium/EncryptoApi.h"

namespace zv::test {

/// Shows what each node opens, for a new row and for the first one, of a school with data in all its lists.
/// `state` hears in which state the next windows are.
inline void showEveryDialog(QtDesktop& desktop, const std::function<void(const char*)>& state)
{
    Hosted hosted(&desktop);
    School& school = hosted.school;
    fillSampleSchool(school);
    const CipherKey key = CipherKey::random();
    registerCipher([&](bool) { return key; });
    fillSampleIllnesses(school, [&](StringView text) { return key.seal(text); });
    const auto show = [&](Long action, Long row, int node, const char* called) {
        state(called);
        openNode(school, static_cast<Byte>(node), action, row);
    };
    for (int node = 0; node < 256; ++node) {
        const std::int32_t number = numberOf([&] {
            show(1, 0, node, "-nuevo");
            show(2, 1, node, "-cambio");
        });
        EXPECT_EQ(number, 0) << node;
    }
    show(1, -2, cNombreNodo::Emisor, "-ordenante");
    dialogs().find(u"frmTipoTarea").instance().Show(); // No node opens it.
    registerCipher();
}

} // namespace zv::test
