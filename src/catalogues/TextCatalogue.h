#pragma once

#include "dialogs/MaintenanceDialog.h"
#include "forms/Layout.h"

#include <optional>

namespace zv {

class TextCatalogueDialog;
class Routine;

/// What a step says of those behind it.
enum class Then {
    goOn,
    finish, ///< Straight to the step that ends the routine: `close`, `unload` or `press`.
    leave,  ///< The routine is left here; the dialog stays as it is.
};

/// One step of a routine. A routine (load, accept, guard, unload) is a list of them, run in order by one loop
/// (`TextCatalogueDialog::run`): in which steps a dialog has, and where each stands, lies all that it does
/// otherwise than its neighbours.
using Step = Then (TextCatalogueDialog::*)(Routine&);
using Steps = std::span<const Step>;

/// One run of a routine: its error mode, its helper object, the button that was clicked, a guard's answer.
class Routine {
public:
    explicit Routine(int index = 0) : Index(index) {}

    void enterMode() { mode_.emplace(); }
    /// The mode that `Step mode` entered.
    ResumeNext& next() { return mode_.value(); }
    /// Runs a statement: guarded in the mode; before it, a failure is the caller's.
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

/// Captions for a new row and for one that is changed, where no numbered text is one.
struct CaptionTexts {
    StringView nuevo;
    StringView modificado;
};

/// All that sets one catalogue of texts apart from the next: its words and its routines.
struct TextCatalogue {
    CaptionIds captions = {};
    CaptionTexts captionTexts = {}; ///< Of the step `caption`, where there are no numbers.
    StringView joint = u" ";        ///< Between the caption and the row's text.
    StringView table;
    StringView key;
    KeyWidth width = KeyWidth::bits16;
    StringView query;                         ///< Reads the row, {fila}.
    Integer readFailed = message::readFailed; ///< Message of a row that cannot be read.
    StringView insert;                        ///< Pattern: the new key, then each field's text.
    StringView update;                        ///< Pattern: each field's text, then the row's key.
    std::span<const StringView> guards = {};  ///< Queries that find rows that refer to this one, {fila}.

    Steps load;
    Steps accept;
    Steps guard = {}; ///< Without a step the row may always go.
    Steps unload;
};

/// A field of a catalogue of texts, and its design.
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

/// A catalogue of one or more texts: boxes with their labels, "Aceptar" and "Cancelar".
class TextCatalogueDialog : public MaintenanceDialog {
public:
    ~TextCatalogueDialog() override;
    /// Whether no other table refers to the session's row; True at once where no guard is given. Runs without
    /// loading the form.
    bool ComprobarEliminacion();

protected:
    TextCatalogueDialog(StringView name, const TextCatalogue& words);

    /// Places what a dialog has between its texts and its buttons.
    using Extra = std::function<void(Layout&)>;
    /// Gives the fields, the dialog's own members, their design. The first one's text joins the caption. The
    /// buttons are a pair of one name, of which one accepts and the other cancels.
    void assemble(std::initializer_list<TextField> fields, ControlArray<CommandButton, 2>& buttons,
                  const Extra& extra = nullptr, int accepts = aceptar);
    /// The same for two buttons of their own names: the accept presses the cancel button to close.
    void assemble(std::initializer_list<TextField> fields, CommandButton& accept, CommandButton& cancel,
                  const Extra& extra = nullptr);

    void Form_Load() override;
    void Form_Unload() override;

    /// Puts the fields of the row into the boxes.
    virtual void fill(ResumeNext& next);
    /// What the statements take beside the keys: the fields' texts in their order.
    virtual std::vector<Value> values();

    TextBox& firstBox() const { return fields_.front().box; }

    /// A dialog's own step, for its lists.
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
    /// The steps by the names under which the lists hold them.
    struct step {
        // Any routine.
        /// Enters the resume-next mode: from here on a statement that fails is abandoned and left in Err.
        static constexpr Step mode = &TextCatalogueDialog::enterMode;
        /// Makes the helper object, which lives until the routine ends.
        static constexpr Step object = &TextCatalogueDialog::createObject;
        /// Closes the dialog's recordset and forgets it.
        static constexpr Step close = &TextCatalogueDialog::closeRecordset;

        // Load.
        static constexpr Step icon = &TextCatalogueDialog::setIcon;
        /// Locks the controls in a session that may not change data.
        static constexpr Step lock = &TextCatalogueDialog::lockControls;
        /// The number of the form's caption, for `texts`.
        static constexpr Step title = &TextCatalogueDialog::tagTitle;
        /// The form's caption itself, where it has no number.
        static constexpr Step caption = &TextCatalogueDialog::setCaption;
        /// Numbered texts, then the signs of the mandatory fields.
        static constexpr Step texts = &TextCatalogueDialog::showTexts;
        /// What follows is for a row that is changed; a new one finishes.
        static constexpr Step existing = &TextCatalogueDialog::onlyExisting;
        /// Forgets the failures of the steps before; else `read` reports one of them as its own.
        static constexpr Step clear = &TextCatalogueDialog::clearErr;
        /// Reads the row; a failure is reported, and the load is left.
        static constexpr Step read = &TextCatalogueDialog::loadRow;
        /// Caption and boxes from the row.
        static constexpr Step fill = &TextCatalogueDialog::fillFields;
        /// Registers the row as being changed here; a row that another user holds cannot be accepted.
        static constexpr Step hold = &TextCatalogueDialog::holdRow;

        // Accept.
        /// What follows is for the button that accepts; the other one finishes.
        static constexpr Step accepting = &TextCatalogueDialog::onlyAccepting;
        /// The first field has a text, blanks not counted.
        static constexpr Step given = &TextCatalogueDialog::askFirst;
        /// The same, and the focus goes to the field.
        static constexpr Step givenFocus = &TextCatalogueDialog::askFirstWithFocus;
        /// Every text box and list has a text.
        static constexpr Step givenEvery = &TextCatalogueDialog::askEvery;
        static constexpr Step hourglass = &TextCatalogueDialog::showHourglass;
        /// Texts for literals between apostrophes, in place.
        static constexpr Step safe = &TextCatalogueDialog::makeTextsSafe;
        /// A row whose first text is still the one that was read is not written. It is compared as `safe`
        /// made it, so that one with an apostrophe always counts as changed.
        static constexpr Step changed = &TextCatalogueDialog::onlyChanged;
        /// Inserts or updates; a failed update is reported and leaves the dialog open.
        static constexpr Step write = &TextCatalogueDialog::writeRow;
        static constexpr Step unload = &TextCatalogueDialog::unloadForm;
        /// Closes the dialog by its own cancel button.
        static constexpr Step press = &TextCatalogueDialog::pressCancel;

        // Guard.
        /// Whether the queries find no row.
        static constexpr Step ask = &TextCatalogueDialog::askGuards;

        // Unload.
        /// Takes the registration of the row away, unless another user holds it.
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

/// Routines that several dialogs share.
namespace recipe {

using step = TextCatalogueDialog::step;

inline constexpr Step load[] = {step::mode,  step::icon,  step::object,   step::lock,
                                step::title, step::texts, step::existing, step::clear,
                                step::read,  step::fill,  step::hold};
/// A failure of the steps before shows as a failed read.
inline constexpr Step loadUncleared[] = {step::mode,  step::icon,     step::object, step::lock, step::title,
                                         step::texts, step::existing, step::read,   step::fill, step::hold};
inline constexpr Step loadAndClose[] = {step::mode,  step::icon,  step::object,   step::lock,
                                        step::title, step::texts, step::existing, step::read,
                                        step::fill,  step::hold,  step::close};

inline constexpr Step accept[] = {step::object,    step::mode, step::accepting, step::given,
                                  step::hourglass, step::safe, step::write,     step::unload};
/// The texts are safe before they are asked for.
inline constexpr Step acceptSafeFirst[] = {step::mode,  step::object,    step::accepting, step::safe,
                                           step::given, step::hourglass, step::write,     step::unload};
/// Of two buttons of their own names.
inline constexpr Step acceptAndPress[] = {step::object, step::mode,  step::givenEvery, step::hourglass,
                                          step::safe,   step::write, step::press};

inline constexpr Step guard[] = {step::ask};
inline constexpr Step guardAndClose[] = {step::ask, step::close};

inline constexpr Step unload[] = {step::release, step::hide, step::repaint, step::close};
/// Where load and guard have closed the recordset.
inline constexpr Step unloadClosed[] = {step::release, step::hide, step::repaint};

} // namespace recipe

} // namespace zv
