#pragma once

#include "journal/Draft.h"

namespace zv::journal {

/// What becomes of one value of a draft.
enum class Fate : unsigned char {
    stored,  ///< The dialog shows it already.
    typed,   ///< Typed in; in a preview: would be.
    clash,   ///< Somebody else wrote another value meanwhile, which stays.
    noPlace, ///< The pupil, the answer or the row is no longer there.
    refused  ///< The dialog does not take it.
};

/// A value of a draft beside what the dialog shows: a line of the view «Ver».
struct Item {
    String pupil = {};  ///< Empty where the dialog holds no section.
    String within = {}; ///< What was done to a row of the dialog's own list: its name; else empty.
    String label = {};  ///< Of the field, or the subject.
    String before = {}; ///< What was stored when the draft was written.
    String now = {};    ///< What the dialog shows; empty where there is no place.
    String draft = {};
    Fate fate = Fate::stored;
    Change change = {}; ///< In the draft.
};

/// The values of a draft by themselves, without the dialog: `now` is empty, and each would be typed.
std::vector<Item> itemsOf(const Draft& draft);

} // namespace zv::journal
