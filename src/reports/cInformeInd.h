#pragma once

#include "runtime/Collection.h"
#include "runtime/Value.h"

#include <memory>

namespace zv {

/// A pupil's rating in one subject for one type of the primary report.
struct cInfPrimaria {
    Long codMateria = 0;
    Long codTipo = 0; ///< 1 to 5, the tab's number.
    Long codResp = 0; ///< The chosen answer, 0 for none.
    String Nombre;    ///< The subject's.
    String Respuesta; ///< The answer as the grid shows it.
    Byte Estado = 0;
};

/// A pupil's individual report: what both kinds of it have, the primary ratings, and the secondary texts.
struct cInformeInd {
    Long CodAlumno = 0;
    String Dificultad;
    String Valoracion;
    String Apreciacion;
    /// Keyed by subject, a blank, and type.
    std::unique_ptr<Collection<cInfPrimaria>> colMaterias = std::make_unique<Collection<cInfPrimaria>>();
    String PropAlumno1, PropAlumno2, PropAlumno3, PropAlumno4, PropAlumno5;
    String Procedimiento1, Procedimiento2, Procedimiento3, Procedimiento4, Procedimiento5;
    String Actitud1, Actitud2;
    Byte Estado = 0;
};

} // namespace zv
