#pragma once

#include "journal/Journals.h"
#include "journal/Recovery.h"
#include "qt/DraftView.h"

#include <QString>

#include <vector>

class QWidget;

namespace zv {

class FormWindow;

/// What a window does about typing that was never saved, in the bar over its form: it tells of the drafts
/// that died programs left of this dialog, types them in again, shows them, throws them away. The dialog
/// knows nothing of it.
class DraftAid {
public:
    /// `trouble`: why nothing can be kept, of all windows, until a person has taken note; "" for nothing.
    DraftAid(FormWindow& window, QString& trouble) : window_(window), trouble_(trouble) {}

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

    FormWindow& window_;
    std::vector<journal::Found> drafts_; ///< The first one is told of.
    std::vector<journal::Item> left_;    ///< Of the first one, when the rest of it has been typed in.
    QString done_;                       ///< That it has been.
    QString& trouble_;
};

/// Asks whether to throw a draft away for good.
bool asksToDiscard(QWidget& owner, const journal::Draft& draft);
/// "textos", or "cambios" where a draft has none.
QString kindOf(const journal::Draft& draft);
/// "14 alumnos, 23 textos, 2 elecciones": what a draft has that was not saved.
QString countOf(const journal::Draft& draft);
/// "hoy a las 10:42": when it was typed last.
QString timeOf(const journal::Draft& draft);
/// The lines of the view: values of a draft beside what the dialog shows, or beside what it held then, where
/// no dialog is open.
std::vector<DraftRow> rowsOf(const std::vector<journal::Item>& items);
std::vector<DraftRow> rowsOf(const journal::Draft& draft);

} // namespace zv
