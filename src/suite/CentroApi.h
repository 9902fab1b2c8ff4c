#pragma once

#include "data/Connection.h"
#include "suite/Station.h"

namespace zv {

/// The stand-in for the suite's helper object, reached by name like it. It keeps nothing between two calls.
class CentroApi final : public Object {
public:
    explicit CentroApi(Station station = thisStation()) : station_(std::move(station)) {}

    /// Sets the sign of every label that carries the marker "*"; captions stay.
    void Marcar_Obligatorios(const ObjectPtr& controls) const;
    /// Doubles the apostrophes of every text box and widens MaxLength where that needs it. A text of its own
    /// that nobody changed since is left alone: a second attempt to write must not double again.
    void ComprobarComilla(const ObjectPtr& controls) const;
    /// One above the largest key of the live and the deleted-records table, 1 when both are empty. Fails
    /// with 6 past 32 bits.
    Long IDMax(Connection& centro, Connection& borrado, StringView table, StringView key) const;
    bool registroactivo(Connection& centro, StringView form, Long row, Integer user) const;
    void EliminarRegistroActivo(Connection& centro, StringView form, Long row) const;
    /// Disables the "..." buttons that the entry database denies to the profile: "cmdX", or "cmdX(0)".
    void Comprobar_BotonesAccesoRapido(const ObjectPtr& form, Connection& entrada, Integer profile) const;
    void agregarelementovacio(const ObjectPtr& comboBox) const;
    /// Checks its arguments only: activities are no part of this system. No staff at all fails with 5.
    void incluirpersonalenactividad(Connection& centro, Connection& borrado, const std::vector<Long>& staff,
                                    Integer kind) const;

    StringView TypeName() const override { return u"cCentroApi"; }

private:
    const Member* memberNamed(StringView name) const override;

    Station station_;
};

/// Makes the stand-in known under "ZVApi.cCentroApi", behind a class that the host registers itself.
void registerSuite();

} // namespace zv
