#pragma once

#include "data/Connection.h"
#include "suite/Station.h"

namespace zv {

/// Stand-in for the suite's helper object, late-bound like it, and stateless.
class CentroApi final : public Object {
public:
    explicit CentroApi(Station station = thisStation()) : station_(std::move(station)) {}

    /// Sets Obligatorio (the mandatory sign) of each label to whether its marker is "*"; captions stay.
    void Marcar_Obligatorios(const ObjectPtr& controls) const;
    /// Escapes every text box for SQL: doubles its apostrophes, and raises MaxLength where that needs it.
    /// Idempotent: a text that it escaped itself and nobody changed since is left alone, as accepting a
    /// second time must not double again.
    void ComprobarComilla(const ObjectPtr& controls) const;
    /// Next key: the largest of the live and the deleted-records table plus one, 1 when both are empty. Not
    /// reserved: another station may draw the same one. Overflow of 32 bits fails with 6.
    Long IDMax(Connection& centro, Connection& borrado, StringView table, StringView key) const;
    bool registroactivo(Connection& centro, StringView form, Long row, Integer user) const;
    void EliminarRegistroActivo(Connection& centro, StringView form, Long row) const;
    /// Access control: disables the "..." buttons that the entry database denies to the profile, as "cmdX" or
    /// "cmdX(0)".
    void Comprobar_BotonesAccesoRapido(const ObjectPtr& form, Connection& entrada, Integer profile) const;
    void agregarelementovacio(const ObjectPtr& comboBox) const;
    /// No-op that checks its arguments: activities are no part of this system. An empty list fails with 5.
    void incluirpersonalenactividad(Connection& centro, Connection& borrado, const std::vector<Long>& staff,
                                    Integer kind) const;

    StringView TypeName() const override { return u"cCentroApi"; }

private:
    const Member* memberNamed(StringView name) const override;

    Station station_;
};

/// Registers the stand-in as the default class "ZVApi.cCentroApi"; one that the host registers takes
/// precedence.
void registerSuite();

} // namespace zv
