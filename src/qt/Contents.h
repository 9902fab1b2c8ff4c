#pragma once

#include <QString>

namespace zv {

class Form;
struct SectionControls;
class UnsavedPupils;

/// Snapshot of a form as text, for a person who may have to type it again: the caption, and each field by the
/// name that a screen reader has for it.
QString contentsOf(const Form& form);
/// The same of the pupils of a section, as far as they have been shown.
QString contentsOf(const SectionControls& section, const UnsavedPupils& pupils);

} // namespace zv
