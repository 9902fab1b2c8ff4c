#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace zv {

/// A field of a draft beside what is stored, as a person reads it.
struct DraftRow {
    QString whom; ///< Pupil or row that it belongs to; "" for the dialog's own.
    QString field;
    QString stored;
    QString draft;
    QString state; ///< Why it cannot be typed in, or what else is to be known; "" for nothing.
};

/// Modal window with a draft field by field, to be read and copied. Blocks until it is closed.
void showDraft(QWidget& owner, const QString& heading, const std::vector<DraftRow>& rows);

} // namespace zv
