#include "qt/DraftView.h"

#include "qt/EdgeStyle.h"
#include "qt/Legible.h"
#include "qt/QtText.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QDialog>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>

#include <algorithm>
#include <memory>

namespace zv {

namespace {

/// Of the cells whose text is to be copied as it stands.
constexpr int wholeText = Qt::UserRole;

class DraftWindow final : public QDialog {
public:
    DraftWindow(QWidget& owner, const String& heading, const std::vector<DraftRow>& rows) : QDialog(&owner)
    {
        setObjectName(QStringLiteral("borrador"));
        setWindowTitle(toQt(draftTitle));
        setSizeGripEnabled(true);
        keepLegible(*this);
        heading_.setText(toQt(heading));
        heading_.setTextFormat(Qt::PlainText);
        heading_.setWordWrap(true);
        column_.addWidget(&heading_);
        column_.addWidget(&table_, 1);
        column_.addLayout(&row_);
        row_.addStretch();
        row_.addWidget(&copy_);
        row_.addWidget(&close_);
        connect(&copy_, &QPushButton::clicked, this, [this] { copy(); });
        // Later: each column tells for itself.
        connect(table_.horizontalHeader(), &QHeaderView::sectionResized, &table_,
                &QTableView::resizeRowsToContents, Qt::QueuedConnection);
        connect(&close_, &QPushButton::clicked, this, &QDialog::reject);
        copy_.setAutoDefault(false);
        fill(rows);
        drawEdges(*this);
        resize(QSize(fontMetrics().averageCharWidth() * 130, fontMetrics().height() * 32)
                   .boundedTo(owner.screen()->availableSize() * 9 / 10));
        table_.setFocus();
    }

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->matches(QKeySequence::Copy))
            copy();
        else
            QDialog::keyPressEvent(event);
    }

private:
    void fill(const std::vector<DraftRow>& rows)
    {
        table_.setAccessibleName(windowTitle());
        table_.setWordWrap(true);
        table_.setTabKeyNavigation(false);
        table_.setEditTriggers(QAbstractItemView::NoEditTriggers);
        table_.setSelectionMode(QAbstractItemView::ContiguousSelection);
        table_.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        table_.verticalHeader()->hide();
        table_.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        table_.horizontalHeader()->setHighlightSections(false);
        table_.setRowCount(static_cast<int>(rows.size()));
        for (const DraftColumn& each : draftColumns)
            if (std::ranges::any_of(rows, [&](const DraftRow& row) { return !(row.*each.text).empty(); }))
                add(each, rows);
        table_.horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
        table_.setCurrentCell(0, 0);
    }
    void add(const DraftColumn& column, const std::vector<DraftRow>& rows)
    {
        const int place = table_.columnCount();
        table_.insertColumn(place);
        table_.setHorizontalHeaderItem(place,
                                       std::make_unique<QTableWidgetItem>(toQt(column.title)).release());
        for (int line = 0; const DraftRow& row : rows) {
            const QString text = toQt(row.*column.text);
            auto* item =
                std::make_unique<QTableWidgetItem>(column.value && text.isEmpty() ? toQt(emptyValue) : text)
                    .release();
            item->setData(wholeText, text);
            item->setTextAlignment(Qt::AlignLeft | Qt::AlignTop);
            table_.setItem(line++, place, item);
        }
    }
    /// The selected cells; a single one as it stands, several as lines and tabs.
    void copy()
    {
        const QList<QTableWidgetSelectionRange> ranges = table_.selectedRanges();
        if (ranges.isEmpty())
            return;
        QString text;
        for (int line = ranges.front().topRow(); line <= ranges.front().bottomRow(); ++line) {
            if (line > ranges.front().topRow())
                text += u'\n';
            for (int place = ranges.front().leftColumn(); place <= ranges.front().rightColumn(); ++place) {
                if (place > ranges.front().leftColumn())
                    text += u'\t';
                text += table_.item(line, place)->data(wholeText).toString();
            }
        }
        QGuiApplication::clipboard()->setText(text);
    }

    QVBoxLayout column_{this};
    QHBoxLayout row_;
    QLabel heading_;
    QTableWidget table_;
    QPushButton copy_{QStringLiteral("Co&piar")};
    QPushButton close_{QStringLiteral("&Cerrar")};
};

} // namespace

void showDraft(QWidget& owner, const String& heading, const std::vector<DraftRow>& rows)
{
    DraftWindow(owner, heading, rows).exec();
}

} // namespace zv
