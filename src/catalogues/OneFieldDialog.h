#pragma once

#include "catalogues/CatalogueDialog.h"

namespace zv {

/// All that sets one catalogue of a single text apart from the next in words.
struct OneFieldCatalogue {
    CaptionIds captions;
    StringView table;
    StringView key;
    StringView column;                  ///< The row's text.
    StringView load;                    ///< Pattern: the row's key.
    StringView insert;                  ///< Pattern: key and text.
    StringView update;                  ///< Pattern: text and the row's key.
    std::span<const StringView> guards; ///< Queries that find the rows that refer to this one; patterns: the row's key.
};

/// A catalogue of one text: a box with its label, "Aceptar" and "Cancelar".
class OneFieldDialog : public CatalogueDialog {
public:
    bool ComprobarEliminacion() override { return unreferenced(words_.guards); }

protected:
    using Buttons = ControlArray<CommandButton, 2>;

    OneFieldDialog(StringView name, const OneFieldCatalogue& words) : CatalogueDialog(name), words_(words) {}

    /// Gives the controls of the dialog, its own members, their design: `caption` and its number `captionId` (0: none) are the
    /// label's, `width` is the text's in 16-bit units.
    void assemble(TextBox& text, Label& label, StringView caption, Integer captionId, Buttons& buttons, Long width = 50);

    void Form_Load() override;
    void Form_Unload() override;
    /// A click on either button, by its index.
    virtual void button_Click(int Index);

    // Pieces of load and accept.
    /// Reads the row, joins its text to the caption behind `blank`, shows it and registers the row.
    void showRow(ResumeNext& next, const cCentroApi& api, StringView blank);
    bool textGiven();
    /// Inserts or updates. False where the dialog has to stay open.
    bool write(ResumeNext& next, const cCentroApi& api);
    /// What a click does where the text is made safe before anything else is asked.
    void clickSafeFirst(int Index);

private:
    const OneFieldCatalogue& words_;
    TextBox* text_ = nullptr;
    Buttons* buttons_ = nullptr;
};

} // namespace zv
