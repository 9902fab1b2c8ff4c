#pragma once

#include "data/Connection.h"
#include "runtime/Single.h"

namespace zv {

class PropertyBag;

/// The session record: all that a dialog knows about the running session. `cAsignarDatos::ObtenerDatos` fills
/// it from the host's session object; dialogs write only bytAccion and lngRowData.
class cConfiguracion final : public Object {
public:
    bool blnSQLServer = false; ///< How statements spell logical true: 1, or else -1.
    Integer intIDPerfil = 0;   ///< Rights profile of the user.
    Integer intIDUsuario = 0;
    String strNombreUsuario;
    Integer intIdCentro = 0;
    String strNombreCentro;
    Integer intIDCursoEscolar = 0;
    Integer intCodCurso = 0;      ///< Never set.
    Integer intTipoEnsenanza = 0; ///< Never set.
    ConnectionPtr conLocalBorradoCentro;
    ConnectionPtr conLocalCentro;
    ConnectionPtr conLocalAppEntrada;
    Long lngRowData = 0; ///< Key of the row that the host has selected.
    Byte bytAccion = 0;  ///< cConstCol::NUEVO or cConstCol::Modificado.
    bool blnPesetas = false;
    bool Activa = false;          ///< False in a read-only session.
    bool blnDatosMedicos = false; ///< Never set.
    bool MTP = false;
    String RutaIcono;
    ObjectPtr datossesion; ///< The host's session object.
    String RutaBD;

    /// Takes over what the host's session object gives, in order: a member that fails leaves those before it.
    void takeOver(const ObjectPtr& session);
    /// Puts the same into a session object.
    void handOver(PropertyBag& session);

    StringView TypeName() const override { return u"cConfiguracion"; }

private:
    const Member* memberNamed(StringView name) const override;
};

inline cConfiguracion& Configuracion() { return single<cConfiguracion>(); }

/// Runs a statement on the school's live database; no connection fails with 91.
RecordsetPtr execute(StringView statement);

} // namespace zv
