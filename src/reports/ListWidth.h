#pragma once

#include "forms/ComboBox.h"

namespace zv {

/// Makes the opened list as wide as its longest entry. It chooses each entry in turn, for real, and leaves
/// none chosen.
void AjustarAnchoLista(ComboBox& objCombo);
/// Chooses the previous (-1) or next (+1) entry, with nothing happening at either end.
void stepChoice(ComboBox& list, Long step);

} // namespace zv
