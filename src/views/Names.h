#pragma once

#include "forms/Control.h"

namespace zv {

/// Accessible name of a control, which a screen reader reads out: the caption of the label that names it;
/// what a button does whose caption is a sign; the page of a tab strip that holds it, with the number of a
/// text among those of the page; what is rated by a list over a grid's row. Empty where the toolkit finds the
/// name itself, in its own text.
String accessibleNameOf(const Control& control);
/// What a screen reader adds to it: that the field is mandatory, and its tip.
String accessibleDescriptionOf(const Control& control);

} // namespace zv
