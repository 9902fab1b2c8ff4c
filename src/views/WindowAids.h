#pragma once

#include "runtime/String.h"

#include <functional>
#include <vector>

namespace zv {

/// A question that is answered by one of two buttons.
struct Question {
    String text;
    String detail;
    String yes; ///< Captions of the buttons; "&" stands before the letter that presses one.
    String no;  ///< What Enter and Escape answer.
};

/// What a bar over a form offers: a button, and its key.
struct BarChoice {
    String text;
    char16_t key = 0; ///< A capital letter, with Alt.
    std::function<void()> does;
};

/// A field of a draft beside what is stored, as a person reads it.
struct DraftRow {
    String whom; ///< Pupil or row that it belongs to; "" for the dialog's own.
    String field;
    String stored;
    String draft;
    String state; ///< Why it cannot be typed in, or what else is to be known; "" for nothing.
};
struct DraftColumn {
    StringView title;
    String DraftRow::*text;
    bool value = false; ///< What a field holds: shown as «(vacío)» where it holds nothing.
};
inline constexpr DraftColumn draftColumns[] = {{u"De quién", &DraftRow::whom},
                                               {u"Campo", &DraftRow::field},
                                               {u"Guardado ahora", &DraftRow::stored, true},
                                               {u"Borrador", &DraftRow::draft, true},
                                               {u"Observación", &DraftRow::state}};
inline constexpr StringView draftTitle = u"Textos sin guardar";
inline constexpr StringView emptyValue = u"(vacío)";

/// What a window does for a person beside showing its form, of itself: the dialog knows nothing of it.
class WindowAids {
public:
    /// Says something in a bar over the form, whose controls stay where they are on their sheet. A bare
    /// window has none.
    virtual void say(const String& text, const std::vector<BarChoice>& choices) = 0;
    /// Takes the bar away; the focus goes back to the form.
    virtual void sayNothing() = 0;
    /// Asks in a window of its own; true for `yes`.
    virtual bool asks(const Question& question) = 0;
    /// Modal window with a draft field by field, to be read and copied. Returns when it is closed.
    virtual void showDraft(const String& heading, const std::vector<DraftRow>& rows) = 0;

protected:
    ~WindowAids() = default;
};

} // namespace zv
