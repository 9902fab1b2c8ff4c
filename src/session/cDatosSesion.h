#pragma once

#include "runtime/Value.h"

namespace zv {

/// Session record for hosts. The module neither creates nor reads one: ObtenerDatos is late-bound and takes
/// any object with its members, which are more than these.
struct cDatosSesion {
    Integer IDPerfil = 0;
    Integer IDCentro = 0;
    String NombreCentro;
    Integer IDUsuario = 0;
    String NombreUsuario;
    Integer IDCursoEscolar = 0;
    String ValorCursoEscolar;
    bool Activa = false;
    bool Pesetas = false;
    String CadenaUdlActiva;
    bool MTP = false;
    String RutaAplicacion;
};

} // namespace zv
