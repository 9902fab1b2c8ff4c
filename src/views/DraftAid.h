#pragma once

#include "journal/Journals.h"
#include "journal/Recovery.h"
#include "views/WindowAids.h"
#include "views/WindowSite.h"

#include <vector>

namespace zv {

/// What a window does about typing that was never saved, in the bar over its form: it tells of the drafts
/// that died programs left of this dialog, types them in again, shows them, throws them away. The dialog
/// knows nothing of it.
class DraftAid {
public:
    /// `trouble`: why nothing can be kept, of all windows, until a person has taken note; "" for nothing.
    DraftAid(Form& form, WindowSite& window, WindowAids& aids, String& trouble)
        : form_(form), window_(window), aids_(aids), trouble_(trouble)
    {}

    /// Tells of the drafts of the dialog that has been opened, one after the other.
    void offer();
    /// Tells what there is to tell: a trouble before anything else.
    void tell();

private:
    void tellDraft();
    void recover();
    void view();
    void discard();
    void next();
    std::vector<journal::Item> preview();

    Form& form_;
    WindowSite& window_;
    WindowAids& aids_;
    std::vector<journal::Found> drafts_; ///< The first one is told of.
    std::vector<journal::Item> left_;    ///< Of the first one, when the rest of it has been typed in.
    String done_;                        ///< That it has been.
    String& trouble_;
};

/// Whether to throw a draft away for good.
Question discarding(const journal::Draft& draft);
/// "textos", or "cambios" where a draft has none.
String kindOf(const journal::Draft& draft);
/// "14 alumnos, 23 textos, 2 elecciones": what a draft has that was not saved.
String countOf(const journal::Draft& draft);
/// "hoy a las 10:42": when it was typed last.
String timeOf(const journal::Draft& draft);
/// The lines of the view: values of a draft beside what the dialog shows, or beside what it held then, where
/// no dialog is open.
std::vector<DraftRow> rowsOf(const std::vector<journal::Item>& items);
std::vector<DraftRow> rowsOf(const journal::Draft& draft);

} // namespace zv
