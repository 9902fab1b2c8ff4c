#pragma once

#include "dialogs/MaintenanceDialog.h"
#include "forms/Layout.h"

#include <optional>

namespace zv {

class TextCatalogueDialog;
class Routine;

/// Control flow: what a step's result means for the steps behind it.
enum class Then {
    goOn,
    finish, ///< Skips to the step that ends the routine: `close`, `unload` or `press`.
    leave,  ///< Early return: the dialog stays as it is.
};

/// A step of a routine: a member function. A routine (load, accept, guard, unload) is a table of steps that
/// one loop, `TextCatalogueDialog::run`, interprets; a dialog differs from its neighbours only in which steps
/// its tables hold and in what order.
using Step = Then (TextCatalogueDialog::*)(Routine&);
using Steps = std::span<const Step>;

/// Context of one run of a routine: its error mode, its helper object, the button that was clicked, a guard's
/// answer.
class Routine {
public:
    explicit Routine(int index = 0) : Index(index) {}

    void enterMode() { mode_.emplace(); }
    /// The resume-next mode that the step `mode` entered.
    ResumeNext& next() { return mode_.value(); }
    /// Runs a statement: in the mode a failure is trapped and left in Err; before it, the failure propagates
    /// to the caller.
    template <class Statement>
    void operator()(Statement&& statement)
    {
        if (mode_)
            (*mode_)(statement);
        else
            statement();
    }

    int Index;
    cCentroApi api;
    bool answer = true;

private:
    std::optional<ResumeNext> mode_;
};

/// Literal captions, for a new row and for one that is changed, of a form whose caption has no number.
struct CaptionTexts {
    StringView nuevo;
    StringView modificado;
};

/// Descriptor of a catalogue of texts: its words, statements and routines.
struct TextCatalogue {
    CaptionIds captions = {};
    CaptionTexts captionTexts = {}; ///< For the step `caption`, where the form's has no number.
    StringView joint = u" ";        ///< Separator between the caption and the row's text.
    StringView table;
    StringView key;
    KeyWidth width = KeyWidth::bits16;
    StringView query;                         ///< Pattern with {fila}: reads the row.
    Integer readFailed = message::readFailed; ///< Number of the message when that fails.
    StringView insert;                        ///< Pattern: the new key, then each field's text.
    StringView update;                        ///< Pattern: each field's text, then the row's key.
    std::span<const StringView> guards = {};  ///< Patterns with {fila}: find rows that refer to this one.

    Steps load;
    Steps accept;
    Steps guard = {}; ///< Empty: every row may be deleted.
    Steps unload;
};

/// Descriptor of a field: its controls, its column, its design.
struct TextField {
    TextBox& box;
    Label& label;
    StringView caption;
    Integer captionId; ///< 0: none.
    StringView column;
    Long width = 50;
    bool mandatory = true;
    bool selectsAll = true;
};

/// Dialog of a catalogue of one or more texts: boxes with their labels, "Aceptar" and "Cancelar".
class TextCatalogueDialog : public MaintenanceDialog {
public:
    ~TextCatalogueDialog() override;
    /// The guard: whether no other table refers to the session's row; True at once where the descriptor has
    /// none. Runs without loading the form.
    bool ComprobarEliminacion();

protected:
    TextCatalogueDialog(StringView name, const TextCatalogue& words);

    /// Callback that lays out what a dialog has between its texts and its buttons.
    using Extra = std::function<void(Layout&)>;
    /// Designs the fields, the dialog's own members; the text of the first one is appended to the caption.
    /// The buttons are a control array: element `accepts` accepts, the other one cancels.
    void assemble(std::initializer_list<TextField> fields, ControlArray<CommandButton, 2>& buttons,
                  const Extra& extra = nullptr, int accepts = aceptar);
    /// The same for two separate buttons; the accept closes by pressing the cancel button.
    void assemble(std::initializer_list<TextField> fields, CommandButton& accept, CommandButton& cancel,
                  const Extra& extra = nullptr);

    void Form_Load() override;
    void Form_Unload() override;

    /// Copies the row's fields into the boxes.
    virtual void fill(ResumeNext& next);
    /// Values of the insert and the update beside the key: the fields' texts in their order.
    virtual std::vector<Value> values();

    TextBox& firstBox() const { return fields_.front().box; }

    /// Makes a member function of the dialog a step for its tables.
    template <class Dialog>
    static Step own(Then (Dialog::*step)(Routine&))
    {
        return static_cast<Step>(step);
    }

private:
    void run(Steps steps, Routine& routine);
    void design(std::initializer_list<TextField> fields, CommandButton& accept, CommandButton& cancel,
                const Extra& extra);

    Then enterMode(Routine& routine);
    Then createObject(Routine& routine);
    Then setIcon(Routine& routine);
    Then lockControls(Routine& routine);
    Then tagTitle(Routine& routine);
    Then setCaption(Routine& routine);
    Then showTexts(Routine& routine);
    Then onlyExisting(Routine& routine);
    Then clearErr(Routine& routine);
    Then loadRow(Routine& routine);
    Then fillFields(Routine& routine);
    Then holdRow(Routine& routine);
    Then closeRecordset(Routine& routine);

    Then onlyAccepting(Routine& routine);
    Then askFirst(Routine& routine);
    Then askFirstWithFocus(Routine& routine);
    Then askEvery(Routine& routine);
    Then showHourglass(Routine& routine);
    Then makeTextsSafe(Routine& routine);
    Then onlyChanged(Routine& routine);
    Then writeRow(Routine& routine);
    Then unloadForm(Routine& routine);
    Then pressCancel(Routine& routine);

    Then askGuards(Routine& routine);

    Then releaseRegistration(Routine& routine);
    Then hideForm(Routine& routine);
    Then letRepaint(Routine& routine);

public:
    /// Names of the steps, for the tables.
    struct step {
        // Any routine.
        /// Clears Err and enters the resume-next mode: from here on a failing statement is abandoned and its
        /// failure left in Err.
        static constexpr Step mode = &TextCatalogueDialog::enterMode;
        /// Creates the suite's helper object, which is released when the routine ends.
        static constexpr Step object = &TextCatalogueDialog::createObject;
        /// Closes and drops the dialog's recordset.
        static constexpr Step close = &TextCatalogueDialog::closeRecordset;

        // Load.
        static constexpr Step icon = &TextCatalogueDialog::setIcon;
        /// Disables the controls in a read-only session.
        static constexpr Step lock = &TextCatalogueDialog::lockControls;
        /// Tags the form with the number of its caption, which `texts` looks up.
        static constexpr Step title = &TextCatalogueDialog::tagTitle;
        /// Sets the caption of a form whose caption has no number.
        static constexpr Step caption = &TextCatalogueDialog::setCaption;
        /// Localises by tag, then shows the signs of the mandatory fields.
        static constexpr Step texts = &TextCatalogueDialog::showTexts;
        /// Condition: goes on for a row that is changed; for a new one, finishes.
        static constexpr Step existing = &TextCatalogueDialog::onlyExisting;
        /// Clears Err; without this step `read` reports a failure of the steps before as its own.
        static constexpr Step clear = &TextCatalogueDialog::clearErr;
        /// Queries the row; a failure is reported, and the load returns early.
        static constexpr Step read = &TextCatalogueDialog::loadRow;
        /// Fills caption and boxes from the row.
        static constexpr Step fill = &TextCatalogueDialog::fillFields;
        /// Registration (advisory lock) of the row; when another user holds it, the accept button is
        /// disabled.
        static constexpr Step hold = &TextCatalogueDialog::holdRow;

        // Accept.
        /// Condition: goes on for the accept button; for the other one, finishes.
        static constexpr Step accepting = &TextCatalogueDialog::onlyAccepting;
        /// Validation: the first field has a text, blanks not counted.
        static constexpr Step given = &TextCatalogueDialog::askFirst;
        /// The same, and an empty field gets the focus.
        static constexpr Step givenFocus = &TextCatalogueDialog::askFirstWithFocus;
        /// Validation: every text box and list has a text.
        static constexpr Step givenEvery = &TextCatalogueDialog::askEvery;
        static constexpr Step hourglass = &TextCatalogueDialog::showHourglass;
        /// Escapes the texts in place, for literals between apostrophes.
        static constexpr Step safe = &TextCatalogueDialog::makeTextsSafe;
        /// Dirty check: finishes, unsaved, for a row whose first text is still the one that was read; a new
        /// row goes on. `safe` has escaped the text by then, so that one with an apostrophe always counts as
        /// changed.
        static constexpr Step changed = &TextCatalogueDialog::onlyChanged;
        /// Inserts (with the retry loop of `insert`) or updates. A failed insert is reported and goes on; a
        /// failed update, or a failure of an earlier step that is still in Err, is reported and returns
        /// early.
        static constexpr Step write = &TextCatalogueDialog::writeRow;
        static constexpr Step unload = &TextCatalogueDialog::unloadForm;
        /// Closes the dialog by pressing its own cancel button.
        static constexpr Step press = &TextCatalogueDialog::pressCancel;

        // Guard.
        /// Runs the guard's queries; the answer is whether they find no row.
        static constexpr Step ask = &TextCatalogueDialog::askGuards;

        // Unload.
        /// Releases the registration of the row, unless another user holds it.
        static constexpr Step release = &TextCatalogueDialog::releaseRegistration;
        static constexpr Step hide = &TextCatalogueDialog::hideForm;
        static constexpr Step repaint = &TextCatalogueDialog::letRepaint;
    };

private:
    const TextCatalogue& words_;
    std::vector<TextField> fields_;
    CommandButton* accept_ = nullptr;
    CommandButton* cancel_ = nullptr;
};

/// Recipes: routines that several dialogs share.
namespace recipe {

using step = TextCatalogueDialog::step;

inline constexpr Step load[] = {step::mode,  step::icon,  step::object,   step::lock,
                                step::title, step::texts, step::existing, step::clear,
                                step::read,  step::fill,  step::hold};
/// Without `clear`: a failure of the steps before is reported as a failed read.
inline constexpr Step loadUncleared[] = {step::mode,  step::icon,     step::object, step::lock, step::title,
                                         step::texts, step::existing, step::read,   step::fill, step::hold};
inline constexpr Step loadAndClose[] = {step::mode,  step::icon,  step::object,   step::lock,
                                        step::title, step::texts, step::existing, step::read,
                                        step::fill,  step::hold,  step::close};

inline constexpr Step accept[] = {step::object,    step::mode, step::accepting, step::given,
                                  step::hourglass, step::safe, step::write,     step::unload};
/// Escapes the texts before it validates them.
inline constexpr Step acceptSafeFirst[] = {step::mode,  step::object,    step::accepting, step::safe,
                                           step::given, step::hourglass, step::write,     step::unload};
/// For two separate buttons.
inline constexpr Step acceptAndPress[] = {step::object, step::mode,  step::givenEvery, step::hourglass,
                                          step::safe,   step::write, step::press};

inline constexpr Step guard[] = {step::ask};
inline constexpr Step guardAndClose[] = {step::ask, step::close};

inline constexpr Step unload[] = {step::release, step::hide, step::repaint, step::close};
/// For dialogs whose load and guard close the recordset.
inline constexpr Step unloadClosed[] = {step::release, step::hide, step::repaint};

} // namespace recipe

} // namespace zv
