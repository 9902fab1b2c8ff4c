#pragma once

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"

#include <utility>
#include <variant>
#include <vector>

namespace zv {

/// Options of which one is chosen, each with the words for it.
struct OptionChoice {
    std::vector<std::pair<String, OptionButton*>> words;
};

/// A field of a dialog as the column of a list that fills it.
struct ImportField {
    std::vector<String> headings; ///< The first is the one that a message names.
    bool mandatory = false;       ///< A list without that column is refused.
    /// The control; none for a column that the dialog works out by itself.
    std::variant<std::monostate, TextBox*, ComboBox*, CheckBox*, OptionChoice> target;
};

/// The fields of a loaded dialog, in the order of its controls.
std::vector<ImportField> importFieldsOf(Form& form);
/// Whether lists can be imported into the dialog at all.
bool takesLists(StringView dialog);

/// Whether a person takes two words for the same: without regard to case, accents, blanks and a colon
/// behind.
bool sameWord(StringView a, StringView b);

/// Fills the field by a person's acts. Gives why that could not be done, in Spanish; "" where it was.
String fillIn(const ImportField& field, StringView cell);

} // namespace zv
