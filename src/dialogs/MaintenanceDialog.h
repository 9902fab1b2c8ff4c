#pragma once

#include "data/Statement.h"
#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "services/Messages.h"
#include "services/cCentroApi.h"
#include "session/cConfiguracion.h"

#include <span>
#include <utility>

namespace zv {

/// Message numbers of a form's caption: for a new row, and for one that is changed.
struct CaptionIds {
    Integer nuevo;
    Integer modificado;
};

enum class KeyWidth { bits16, bits32 };

/// Table and key column of which `IDMax` gives the next free key.
struct TableKey {
    StringView table;
    StringView column;
    KeyWidth width = KeyWidth::bits16;
};

/// Base class of the maintenance dialogs: the building blocks of their load, accept, guard and unload, which
/// each dialog calls in an order of its own.
class MaintenanceDialog : public Form {
public:
    ~MaintenanceDialog() override;

protected:
    explicit MaintenanceDialog(StringView name);

    /// Indexes into the control array of the two buttons.
    static constexpr int aceptar = 0;
    static constexpr int cancelar = 1;

    // Session record: action and row.
    static bool changesRow();
    static bool createsRow();
    static String rowText();
    /// Substitutes the session's key for each "{fila}" of the pattern.
    static String forRow(StringView pattern);

    // Load.
    void loadIcon();
    void lockDown(ResumeNext& next);
    /// Sets the form's tag to the number of its caption, which `localise` looks up.
    void tagCaption(ResumeNext& next, CaptionIds ids);
    /// Localises by tag: texts by their numbers, then the signs of the mandatory fields.
    void localise(ResumeNext& next, const cCentroApi& api);
    /// Runs a query into the dialog's recordset and tests Err: a failure, even one left by an earlier
    /// statement, is reported and gives False.
    bool readRow(ResumeNext& next, StringView query, Integer messageId = message::readFailed);
    /// Registration (advisory lock) of the row for this user; when another user holds it, the accept button
    /// is disabled.
    void registerRow(ResumeNext& next, const cCentroApi& api, CommandButton& accept);

    // The dialog's one recordset: the result of its last query.
    /// Runs a query. The old recordset is dropped first, so that after a failure its rows are never taken for
    /// the new query's.
    void fetch(StringView query);
    /// Fails with 91 when there is none. Shared ownership, against re-entrant calls: a host that calls the
    /// module from within its own connection may make the dialog fetch another recordset while this one is
    /// read.
    RecordsetPtr rows() const;
    /// Transfers ownership of the recordset; the dialog keeps none.
    RecordsetPtr takeRows() { return std::exchange(rows_, nullptr); }
    Value field(StringView name) const { return rows()->Fields(name); }

    // Accept.
    /// Validates that every text box and list of the form has a text; an empty one is reported.
    bool everyFieldGiven();
    void makeSafe(ResumeNext& next, const cCentroApi& api);
    /// Runs the statement and tests Err: a failure is reported, and the dialog stays open.
    bool update(ResumeNext& next, const std::function<String()>& statement);
    /// Retry loop without limit: draws a key and inserts; when the key was taken in the meantime, again with
    /// another one. Gives the key, 0 where none could be drawn. Any other failure ends the loop, is reported
    /// and stays in Err. `statementFor` gives the statement for a key.
    Long insert(ResumeNext& next, const cCentroApi& api, const TableKey& key,
                const std::function<String(Long)>& statementFor);

    // Guard.
    /// The guard's loop: whether none of the queries (patterns for the row) finds a referring row. A query
    /// that fails is reported and ends the loop; the result stays as the earlier ones gave it, False where it
    /// is the first.
    bool unreferenced(std::span<const StringView> queries);

    // Lists.
    /// Fills the list from the recordset: an entry for each row, a text and a number.
    void addRows(ComboBox& list, StringView text, StringView data);
    /// Chooses the first entry with that number; without one, or for Null, the choice stays as it was. The
    /// number is an argument, read before the call: where the row is gone that read fails, and no failing
    /// condition in here counts as true and chooses the first entry.
    static void choose(ComboBox& list, const Value& data);

    // Unload.
    /// Releases the registration of the row, unless another user holds it.
    void releaseRow();
    void unregisterRow();
    /// Hides the form and runs the event loop once, so that the host repaints.
    void leaveScreen();
    void closeRows();

    // Design.
    static void designLabel(Label& label, StringView caption, Integer captionId, bool mandatory = true);
    /// Designs a text box of `width` 16-bit units at most and its label; on focus the box selects its whole
    /// text.
    static void designField(Label& label, StringView caption, Integer captionId, TextBox& box, Long width,
                            bool mandatory = true);
    static void designButton(CommandButton& button, StringView caption, Integer captionId = 0);
    /// Designs "Aceptar" and "Cancelar" with the numbers of their texts.
    static void designButtons(CommandButton& accept, CommandButton& cancel);
    /// Binds GotFocus to selecting the whole text, so that typing replaces it.
    static void selectAllOnFocus(TextBox& box);

private:
    static Long drawKey(const cCentroApi& api, const TableKey& key);

    RecordsetPtr rows_;
};

/// Key filter: discards a key that is neither a digit nor Backspace. True if it did.
bool onlyDigits(Integer& KeyAscii);
bool isBlank(const TextBox& box);

} // namespace zv
