#pragma once

#include "data/Schools.h"
#include "data/sample/SampleSchool.h"
#include "data/sqlite/SqliteEngine.h"
#include "forms/Ficha.h"
#include "module/Module.h"
#include "qt/QtDesktop.h"
#include "qt/QtText.h"
#include "qt/Screen.h"
#include "runtime/Single.h"
#include "session/DialogDirectory.h"
#include "session/HostSession.h"
#include "session/cAsignarDatos.h"
#include "session/cNombreNodo.h"
#include "suite/sodium/EncryptoApi.h"

namespace zv::test {

/// Shows what each node opens, for a new row and for the first one, of a school with data in all its lists.
/// `state` hears in which state the next windows are.
inline void showEveryDialog(QtDesktop& desktop, const std::function<void(const char*)>& state)
{
    registerEngine(sqliteEngine());
    installModule();
    useDesktop(&desktop);
    School school = temporarySchool();
    fillSampleSchool(school);
    const CipherKey key = CipherKey::random();
    registerCipher([&](bool) { return key; });
    fillSampleIllnesses(school, [&](StringView text) { return key.seal(text); });
    const auto session = newHostSession(school);
    const auto show = [&](Long action, Long row, int node, const char* called) {
        let(*session, u"Accion", action);
        let(*session, u"lngRowData", row);
        state(called);
        cAsignarDatos facade;
        facade.ObtenerDatos(session);
        facade.ActivarFormulario(static_cast<Byte>(node));
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
    resetSingles();
    registerCipher();
    useDesktop(nullptr);
}

} // namespace zv::test
