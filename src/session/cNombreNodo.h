#pragma once

#include "runtime/Value.h"

namespace zv {

/// Numbers of the nodes of the host's tree, a contract between host and module. Many have no dialog here.
class cNombreNodo {
public:
    static constexpr Byte InfIndiv = 130;
    static constexpr Byte RespInfInd = 129;
    static constexpr Byte NotaConsejoOrientador = 122;
    static constexpr Byte ConsejoOrientador = 68;
    static constexpr Byte CEspecializacion = 67;
    static constexpr Byte Nacionalidad = 66;
    static constexpr Byte Idiomas = 52;
    static constexpr Byte ZorvelCentro2000 = 1;
    static constexpr Byte CentrosExistentes = 2;
    static constexpr Byte NombreColegio = 3;
    static constexpr Byte Administracion = 4;
    static constexpr Byte Prematriculacion = 5;
    static constexpr Byte Alumnos = 6;
    static constexpr Byte Personal = 7;
    static constexpr Byte Centro = 8;
    static constexpr Byte Actividades = 9;
    static constexpr Byte APA = 10;
    static constexpr Byte Recibos = 12;
    static constexpr Byte ReciboCobro = 13;
    static constexpr Byte ReciboPago = 14;
    static constexpr Byte ReciboHistorico = 15;
    static constexpr Byte Remesa = 16;
    static constexpr Byte Claustro = 17;
    static constexpr Byte Mantenimiento = 18;
    static constexpr Byte Cursos = 19;
    static constexpr Byte MaterialDidactico = 20;
    static constexpr Byte Modelos = 21;
    static constexpr Byte SistemasCalificacion = 22;
    static constexpr Byte Materias = 23;
    static constexpr Byte NotasAlumnos = 24;
    static constexpr Byte Secciones = 25;
    static constexpr Byte Seguridad = 26;
    static constexpr Byte Perfiles = 27;
    static constexpr Byte Usuarios = 28;
    static constexpr Byte OpcionesConfiguracion = 29;
    static constexpr Byte OC_Bancos = 30;
    static constexpr Byte Emisor = 31;
    static constexpr Byte Observaciones = 32;
    static constexpr Byte OpcionesMateria = 33;
    static constexpr Byte Paises = 34;
    static constexpr Byte Ponderaciones = 35;
    static constexpr Byte Presentador = 36;
    static constexpr Byte Profesiones = 37;
    static constexpr Byte Provincia = 38;
    static constexpr Byte TiposAlumno = 39;
    static constexpr Byte TipoCentro = 40;
    static constexpr Byte TiposIncidencia = 41;
    static constexpr Byte TiposIva = 42;
    static constexpr Byte TiposContrato = 43;
    static constexpr Byte TiposJustificacion = 44;
    static constexpr Byte TiposMaterialDidactico = 45;
    static constexpr Byte TiposMiembroCentro = 46;
    static constexpr Byte TiposMotivoBaja = 47;
    static constexpr Byte TiposNivelEstudios = 48;
    static constexpr Byte TiposNota = 49;
    static constexpr Byte TiposOcurrencia = 50;
    static constexpr Byte TiposParentesco = 51;
    static constexpr Byte TiposTarea = 0; ///< Unset, so 0; the host asks for it all the same.
    static constexpr Byte Turnos = 53;
    static constexpr Byte Tareas = 54;
    static constexpr Byte Papelera = 55;
    static constexpr Byte PapeleraSeguridad = 56;
    static constexpr Byte Enfermedades = 57;
    static constexpr Byte RemesasRecibidas = 58;
    static constexpr Byte RemesasAEnviar = 59;
    static constexpr Byte RemesasEnviadas = 60;
    static constexpr Byte IncidenciaPersonal = 100;
    static constexpr Byte IncidenciaAlumno = 101;

private:
    static constexpr Byte sinNodo = 11; ///< Reserved: no node is given it.
};

} // namespace zv
