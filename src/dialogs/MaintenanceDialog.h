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

/// Numbers of a dialog's captions for a new row and for one that is changed.
struct CaptionIds {
    Integer nuevo;
    Integer modificado;
};

/// Width of a table's key: 16 bits or 32.
enum class KeyWidth { bits16, bits32 };

/// Where the key of a new row is drawn.
struct TableKey {
    StringView table;
    StringView column;
    KeyWidth width = KeyWidth::bits16;
};

/// The template of the maintenance dialogs: named pieces of their load, accept, guard and unload, which each
/// dialog puts together in its own order.
class MaintenanceDialog : public Form {
public:
    ~MaintenanceDialog() override;

protected:
    explicit MaintenanceDialog(StringView name);

    /// Elements of the array of the two buttons.
    static constexpr int aceptar = 0;
    static constexpr int cancelar = 1;

    // The session's row.
    static bool changesRow();
    static bool createsRow();
    static String rowText();
    /// The statement with the row's key in the place of each "{fila}".
    static String forRow(StringView pattern);

    // Load.
    void loadIcon();
    void lockDown(ResumeNext& next);
    /// The tag that gives the form its caption.
    void tagCaption(ResumeNext& next, CaptionIds ids);
    /// Texts by number, then the signs of the mandatory fields.
    void localise(ResumeNext& next, const cCentroApi& api);
    /// Runs a query into the dialog's recordset and tests Err: a failure, were it an earlier statement's, is
    /// reported and gives False.
    bool readRow(ResumeNext& next, StringView query, Integer messageId = message::readFailed);
    /// Registers the row for the user; a row in use by another cannot be accepted.
    void registerRow(ResumeNext& next, const cCentroApi& api, CommandButton& accept);

    // The dialog's recordset: the last result that it fetched.
    /// A query that fails leaves no rows, so that an earlier result is never read for this one.
    void fetch(StringView query);
    /// Fails with 91 when there is none. Counted: a host that calls the module from within its own connection
    /// may make the dialog fetch others.
    RecordsetPtr rows() const;
    /// Hands the recordset over: the dialog keeps none.
    RecordsetPtr takeRows() { return std::exchange(rows_, nullptr); }
    Value field(StringView name) const { return rows()->Fields(name); }

    // Accept.
    /// Whether every text box and list of the form has a text; an empty one is reported.
    bool everyFieldGiven();
    void makeSafe(ResumeNext& next, const cCentroApi& api);
    /// Tests Err after a change: a failure is reported, and the dialog stays open.
    bool update(ResumeNext& next, const std::function<String()>& statement);
    /// Draws a key and inserts, and again with another key while the one drawn is taken by then (a retry
    /// without limit); gives the key, 0 where none could be drawn. Any other failure is reported and stays in
    /// Err. `statementFor` gives the statement for a key.
    Long insert(ResumeNext& next, const cCentroApi& api, const TableKey& key,
                const std::function<String(Long)>& statementFor);

    // Guard.
    /// Whether none of the queries (patterns for the row) finds one. A failing one is reported and leaves the
    /// result as the earlier ones gave it, False where it is the first.
    bool unreferenced(std::span<const StringView> queries);

    // Lists.
    /// An entry for each row of the recordset: a text and a number.
    void addRows(ComboBox& list, StringView text, StringView data);
    /// Chooses the first entry with that number; without one the choice stays as it was. Null is no entry's.
    /// Where the number cannot be read, the row being gone, nothing is looked for: the comparison is no
    /// condition that fails and chooses the first.
    static void choose(ComboBox& list, const Value& data);

    // Unload.
    /// Takes the registration of the row away, unless another user holds it.
    void releaseRow();
    void unregisterRow();
    /// Hides the form and lets the host repaint.
    void leaveScreen();
    void closeRows();

    // Design.
    static void designLabel(Label& label, StringView caption, Integer captionId, bool mandatory = true);
    /// A text box of so many units and its label; the box selects its whole text on focus.
    static void designField(Label& label, StringView caption, Integer captionId, TextBox& box, Long width,
                            bool mandatory = true);
    static void designButton(CommandButton& button, StringView caption, Integer captionId = 0);
    /// "Aceptar" and "Cancelar", with the numbers of their texts.
    static void designButtons(CommandButton& accept, CommandButton& cancel);
    /// Selects the whole text when the box gets the focus, so that typing replaces it.
    static void selectAllOnFocus(TextBox& box);

private:
    static Long drawKey(const cCentroApi& api, const TableKey& key);

    RecordsetPtr rows_;
};

/// Discards a key that is neither a digit nor Backspace; whether it did.
bool onlyDigits(Integer& KeyAscii);
bool isBlank(const TextBox& box);

} // namespace zv
