#pragma once

#include "runtime/Value.h"

namespace zv {

/// The answer of one pupil to one of the eight questions of the guidance advice.
struct cConsejoOrientador {
    Long IDCORNota = 0; ///< The row's key; of a new one a provisional number until it is inserted.
    Integer CodAlumno = 0;
    Integer codSeccion = 0;
    Integer codCOResp = 0;            ///< The chosen answer, 0 for none.
    Integer codConsejoOrientador = 0; ///< The question, 1 to 8.
    Byte Estado = 0;                  ///< cConstCol::NUEVO or cConstCol::Modificado.
};

} // namespace zv
