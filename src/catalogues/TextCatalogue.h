#pragma once

#include "catalogues/CatalogueDialog.h"
#include "forms/Layout.h"

namespace zv {

/// When the first steps of a load run: a failure before the mode is entered is the host's, one within is
/// passed over.
enum class Begins { inMode, iconAndObjectBefore, objectBefore };

/// What an accept asks for before it writes.
enum class EmptyTest { firstField, firstFieldThenFocus, everyBox };

/// All that sets one catalogue of texts apart from the next in words.
struct TextCatalogue {
    CaptionIds captions;
    StringView table;
    StringView key;
    StringView load;   ///< Pattern: the row's key.
    StringView insert; ///< Pattern: the new key, then each field's text.
    StringView update; ///< Pattern: each field's text, then the row's key.
    std::span<const StringView> guards =
        {};               ///< Queries that find the rows that refer to this one; patterns: the row's key.
    bool longKey = false; ///< 32-bit key, else 16-bit.
    Begins begins = Begins::inMode;
    EmptyTest test = EmptyTest::firstField;
    bool clearsErr = true;                    ///< Before the row is read.
    Integer readFailed = message::readFailed; ///< Message of a row that cannot be read.
    StringView blank = u" ";                  ///< Between the caption and the row's text.
    bool locksRow = true;
    bool keepsRows =
        true; ///< The recordset stays open until the unload; else the load and the guard close it.
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
class TextCatalogueDialog : public CatalogueDialog {
public:
    ~TextCatalogueDialog() override;
    /// Whether no other table refers to the session's row; True at once where no guard is given. Runs without
    /// loading the form.
    virtual bool ComprobarEliminacion();

protected:
    TextCatalogueDialog(StringView name, const TextCatalogue& words);

    /// Places what a dialog has between its texts and its buttons.
    using Extra = std::function<void(Layout&)>;
    /// Gives the fields, the dialog's own members, their design. The first one's text joins the caption.
    void design(std::initializer_list<TextField> fields, CommandButton& accept, CommandButton& cancel,
                const Extra& extra = nullptr);
    /// The same for a pair of buttons of one name whose first element accepts, or for two of their own names,
    /// where a successful accept closes the dialog by pressing the cancel button.
    template <std::size_t N>
    void assemble(std::initializer_list<TextField> fields, ControlArray<CommandButton, N>& buttons,
                  const Extra& extra = nullptr)
    {
        design(fields, buttons(aceptar), buttons(cancelar), extra);
        for (CommandButton& button : buttons)
            button.Click.bind([this, index = button.Index()] { button_Click(index); });
    }
    void assemble(std::initializer_list<TextField> fields, CommandButton& accept, CommandButton& cancel,
                  const Extra& extra = nullptr);

    void Form_Load() override;
    void Form_Unload() override;
    /// A click on either button of a pair, by its index.
    virtual void button_Click(int Index);
    void cmdAceptar_Click();
    void cmdCancelar_Click() { Unload(); }

    // Pieces of load and accept.
    /// Gives the form its caption, by number where nothing else is said.
    virtual void title(ResumeNext& next) { tagCaption(next, words_.captions); }
    /// Reads the row, joins its text to the caption, shows it and registers the row.
    void showRow(ResumeNext& next, const cCentroApi& api);
    /// What a load reads before the row, for a new one too. False ends the load there.
    virtual bool beforeRow(ResumeNext& next);
    /// Puts the fields of the row into the boxes.
    virtual void fill(ResumeNext& next);
    virtual bool textGiven();
    /// Inserts or updates. False where the dialog has to stay open.
    virtual bool write(ResumeNext& next, const cCentroApi& api);
    /// What the statements take beside the keys: the fields' texts in their order.
    virtual std::vector<Value> values();
    /// Hourglass, safe text, write.
    bool accepted(ResumeNext& next, const cCentroApi& api);
    /// Empty test, hourglass, write: of texts that are safe already.
    bool acceptedSafe(ResumeNext& next, const cCentroApi& api);
    /// The click of button_Click, but for the helper object being made within the mode.
    void clickInMode(int Index);
    /// What a click does where the text is made safe before anything else is asked.
    void clickSafeFirst(int Index);

    TextBox& firstBox() const { return fields_.front().box; }

private:
    const TextCatalogue& words_;
    std::vector<TextField> fields_;
    CommandButton* accept_ = nullptr;
    CommandButton* cancel_ = nullptr;
};

} // namespace zv
