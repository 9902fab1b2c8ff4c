#pragma once

#include "data/Connection.h"
#include "runtime/CreateObject.h"

namespace zv {

/// Proxy of the suite's helper object, late-bound. A routine creates one when it needs it and releases it
/// when it ends.
class cCentroApi {
public:
    /// Null object: every operation fails with 91.
    cCentroApi() = default;
    /// Fails with 429 where the suite has not registered the class.
    static cCentroApi create(StringView progId = u"ZVApi.cCentroApi");

    /// Shows the sign of a mandatory field on the labels that carry the marker.
    void Marcar_Obligatorios(Object& controls) const;
    /// Escapes the text of every text box in place, for literals between apostrophes.
    void ComprobarComilla(Object& controls) const;
    /// A key not yet used in the table, live or deleted.
    Value IDMax(const ConnectionPtr& centro, const ConnectionPtr& borrado, StringView table,
                StringView key) const;
    /// False: the row was free and is now registered for this user. True: another user holds it.
    bool registroactivo(const ConnectionPtr& centro, StringView form, Long row, Integer user) const;
    void EliminarRegistroActivo(const ConnectionPtr& centro, StringView form, Long row) const;
    /// Adapts the form's quick-access buttons to the rights of the profile.
    void Comprobar_BotonesAccesoRapido(Object& form, const ConnectionPtr& entrada, Integer profile) const;
    /// Adds an empty entry to a combo box.
    void agregarelementovacio(Object& comboBox) const;
    void incluirpersonalenactividad(const ConnectionPtr& centro, const ConnectionPtr& borrado,
                                    const LongArray& staff, Integer kind) const;

private:
    explicit cCentroApi(ObjectPtr object) : object_(std::move(object)) {}
    ObjectPtr object_;
};

} // namespace zv
