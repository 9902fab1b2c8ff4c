#pragma once

#include "data/Schools.h"
#include "data/sqlite/SqliteEngine.h"
#include "forms/Desktop.h"
#include "module/Module.h"
#include "runtime/Single.h"
#include "session/HostSession.h"
#include "session/cAsignarDatos.h"
#include "session/cNombreNodo.h"

#include <gtest/gtest.h>

namespace zv::test {

/// Hands the module a session of that school, as a host does before it calls.
inline void handOver(const School& school, Long action, Long row, bool active = true)
{
    const auto session = newHostSession(school);
    let(*session, u"Activa", active);
    let(*session, u"Accion", action);
    let(*session, u"lngRowData", row);
    cAsignarDatos().ObtenerDatos(session);
}

/// Opens what stands behind that node; returns when it has closed.
inline void openNode(const School& school, Byte node, Long action = 1, Long row = 0)
{
    handOver(school, action, row);
    cAsignarDatos().ActivarFormulario(node);
}

/// The whole module on a school of its own, shown on that desktop if there is one.
struct Hosted {
    School school;

    explicit Hosted(Desktop* desktop = nullptr)
    {
        registerEngine(sqliteEngine());
        installModule();
        if (desktop != nullptr)
            useDesktop(desktop);
        school = temporarySchool();
    }
    Hosted(const Hosted&) = delete;
    Hosted& operator=(const Hosted&) = delete;
    ~Hosted()
    {
        resetSingles();
        useDesktop(nullptr);
    }
};

} // namespace zv::test
