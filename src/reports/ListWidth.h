#pragma once

#include "forms/ComboBox.h"

namespace zv {

/// Sets the opened list's width to its longest entry. As a side effect it chooses each entry in turn, raising
/// Click, and leaves none chosen.
void AjustarAnchoLista(ComboBox& objCombo);
/// Moves the choice by one, back (-1) or forward (+1); does nothing at either end.
void stepChoice(ComboBox& list, Long step);

} // namespace zv
