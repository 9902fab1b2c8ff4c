#pragma once

#include "forms/ActObserver.h"
#include "runtime/String.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <vector>

/// The journal: what a person does in a dialog, written down as it happens, so that it can be typed in again
/// after the program or the machine has died.
namespace zv::journal {

/// What a list or a row shows, by what it is and not by its place: the number that the dialog stores, and the
/// text that the person saw.
struct Entry {
    Long number = 0;
    String text = {};
    auto operator<=>(const Entry&) const = default;
};

/// What an input holds: a text, the entry of a list, or 0 and 1 of options and ticks.
struct Content {
    bool none = false; ///< A list of which no entry is chosen.
    Entry value = {};
    bool operator==(const Content&) const = default;
};

enum class Input : unsigned char { text, list, option, tick, rating };

/// An input, and to whom its value belongs. In a section's dialog that is the pupil, and for a rating also
/// the page and the subject.
struct Place {
    Input input = Input::text;
    String control = {};
    int index = -1; ///< In its control array, or -1.
    /// 0, or which of the dialogs that were opened within the journal's own, in their order from 1.
    int within = 0;
    Entry pupil = {};    ///< Number 0 where the dialog holds no section.
    int page = 0;        ///< Tab on which the input was reached; 0 without tabs.
    Entry question = {}; ///< Of a rating: the subject.
    Long column = 0;     ///< Of a rating: where its list was opened.
    String label = {};   ///< What the person sees beside the input.
    /// The same input of the same person, wherever it was reached.
    bool same(const Place& other) const;
};

/// What a value reads as: the text, the entry's text, «sí» or «no»; "" for a list without a choice.
String readAs(const Place& place, const Content& content);

/// A place whose value an act changed.
struct Change {
    std::size_t place = 0; ///< In `Draft::places`.
    Content before = {};   ///< What it held when the dialog first showed it.
    Content after = {};
};

/// Where in the dialog the person is.
struct View {
    Entry pupil = {};
    int page = 0;
    bool operator==(const View&) const = default;
};

/// An act as it is kept: the words of a guion, and what it did.
struct Act {
    ActVerb verb = ActVerb::focus;
    String control = {}; ///< Empty for an act on the form.
    int index = -1;
    String text = {}; ///< Typed or pasted.
    Long first = 0;   ///< As in PersonAct.
    Long second = 0;
    std::optional<Key> key = {};
    Entry entry = {};        ///< What was chosen or clicked at.
    bool inner = false;      ///< In a dialog that changes this one's contents only.
    bool ordered = false;    ///< Not a value in a field: it is to be done again in its turn.
    bool closes = false;     ///< The dialog was closed by it.
    bool leaves = false;     ///< By its cancel button or its frame.
    std::int64_t moment = 0; ///< Seconds since 1970, UTC.
    std::vector<Change> changes = {};
    /// What is shown behind it, where that is no longer what the act before left.
    std::optional<View> view = {};
};

/// What was chosen in a list.
struct Choice {
    String control = {};
    int index = -1;
    Entry entry = {};
};

/// Which dialog of which school a journal is of, and whose.
struct Opening {
    String school = {}; ///< IDCentro, name and RutaBD of the session.
    String schoolName = {};
    Integer person = 0;
    String personName = {};
    String dialog = {};
    Long row = 0; ///< The session's key.
    Byte action = 0;
    Entry section = {};               ///< Of a dialog that another one opened for a choice of its own.
    String opener = {};               ///< Name of that dialog; empty if the host opened it.
    std::vector<Choice> choices = {}; ///< What stood chosen in that dialog's lists,
    String button = {};               ///< and the control by which this one was opened there.
    int buttonIndex = -1;
    String title = {};       ///< Caption of the window.
    std::int64_t moment = 0; ///< Seconds since 1970, UTC.
    /// Whether a person who opens this has the other one's dialog, row and school before him. A new row has
    /// no key yet, and a section is one by itself.
    bool sameAs(const Opening& other) const;
    /// The same school and person.
    bool sameSession(const Opening& other) const { return school == other.school && person == other.person; }
    /// The same person and, by number and name, the same school in another place: it has moved, or that is
    /// another one which is called the same.
    bool elsewhere(const Opening& other) const;
    /// RutaBD of the session: where the school's databases were.
    StringView origin() const;
};

/// Dialogs in which something is only chosen to open another one: nothing of them can be lost.
bool onlyChooses(StringView dialog);

} // namespace zv::journal
