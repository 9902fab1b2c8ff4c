#include "zvhost/ListPage.h"

#include "qt/QtText.h"
#include "zvhost/Widgets.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>

#include <algorithm>

namespace zv::host {

ListPage::ListPage(Calls calls) : calls_(std::move(calls))
{
    QFont large = title_.font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    large.setBold(true);
    title_.setFont(large);

    search_.setObjectName(QStringLiteral("buscar"));
    search_.setPlaceholderText(QStringLiteral("Buscar en la lista (Ctrl+F)"));
    search_.setAccessibleName(QStringLiteral("Buscar en la lista"));
    search_.installEventFilter(this);
    view_.setSourceModel(&model_);
    table_.setObjectName(QStringLiteral("lista"));
    table_.setModel(&view_);
    table_.setSortingEnabled(true);
    table_.setContextMenuPolicy(Qt::CustomContextMenu);
    table_.installEventFilter(this);
    designTable(table_);
    direct_.setText(QStringLiteral("Abrir…"));
    direct_.setObjectName(QStringLiteral("abrir"));
    direct_.setAutoDefault(true);
    explanation_.setWordWrap(true);

    QWidget* list = std::make_unique<QWidget>().release();
    auto* rows = std::make_unique<QVBoxLayout>(list).release();
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addWidget(&search_);
    rows->addWidget(&table_);
    rows->addWidget(&count_);
    QWidget* way = std::make_unique<QWidget>().release();
    auto* lines = std::make_unique<QVBoxLayout>(way).release();
    lines->setContentsMargins(0, 0, 0, 0);
    lines->addWidget(&explanation_);
    lines->addWidget(&direct_, 0, Qt::AlignLeft);
    lines->addStretch();
    pages_.addWidget(list);
    pages_.addWidget(way);
    auto* whole = std::make_unique<QVBoxLayout>(this).release();
    whole->addWidget(&title_);
    whole->addWidget(&pages_);

    connect(&search_, &QLineEdit::textChanged, this, [this](const QString& words) {
        // Lazy: the clear button's pictures take long to load, and most starts end without a search.
        search_.setClearButtonEnabled(true);
        view_.search(words);
        tellCount();
    });
    connect(&table_, &QTableView::doubleClicked, this, [this] { calls_.opened(); });
    connect(&table_, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { calls_.menu(table_.viewport()->mapToGlobal(at)); });
    connect(table_.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { calls_.selected(); });
    connect(&direct_, &QPushButton::clicked, this, [this] { calls_.opened(); });
}

void ListPage::show(const Node& node, std::vector<Row> rows)
{
    title_.setText(toQt(node.name));
    pages_.setCurrentIndex(node.hasList() ? 0 : 1);
    if (!node.hasList())
        explanation_.setText(
            QStringLiteral("Elija la enseñanza, el curso y la sección en la ventana que se abre."));
    search_.clear();
    model_.show(node.columns, std::move(rows));
    table_.sortByColumn(0, Qt::AscendingOrder);
    table_.resizeColumnsToContents();
    for (int column = 0; column < model_.columnCount(); ++column)
        table_.setColumnWidth(column, std::clamp(table_.columnWidth(column) + 16, 90, 340));
    if (view_.rowCount() != 0)
        table_.selectRow(0);
    tellCount();
    calls_.selected();
}

void ListPage::refresh(const Node& node, std::vector<Row> rows)
{
    std::vector<Long> before = model_.keys();
    std::ranges::sort(before);
    const std::optional<Long> kept = selected();
    const int place = table_.currentIndex().row();
    model_.show(node.columns, std::move(rows));
    const std::vector<Long> now = model_.keys();
    const auto added =
        std::ranges::find_if(now, [&](Long key) { return !std::ranges::binary_search(before, key); });
    if (added != now.end())
        select(*added);
    else if (kept && model_.rowOf(*kept) >= 0)
        select(*kept);
    else if (view_.rowCount() != 0)
        table_.selectRow(std::clamp(place, 0, view_.rowCount() - 1));
    tellCount();
    calls_.selected();
}

void ListPage::select(Long key)
{
    const QModelIndex index = view_.mapFromSource(model_.index(model_.rowOf(key), 0));
    if (!index.isValid())
        return;
    table_.selectRow(index.row());
    table_.scrollTo(index);
}

void ListPage::enter()
{
    // Fallback selection: a search may have hidden the selected row.
    if (!selected() && view_.rowCount() != 0)
        table_.selectRow(0);
    QWidget& place = pages_.currentIndex() == 0 ? static_cast<QWidget&>(table_) : direct_;
    place.setFocus(Qt::OtherFocusReason);
}

std::optional<Long> ListPage::selected() const
{
    const QModelIndexList rows = table_.selectionModel()->selectedRows();
    if (rows.isEmpty())
        return std::nullopt;
    return model_.keyAt(view_.mapToSource(rows.front()).row());
}

QString ListPage::selectedName() const
{
    QStringList words;
    const int row = table_.currentIndex().row();
    for (int column = 0; row >= 0 && column < std::min(2, view_.columnCount()); ++column)
        words += view_.index(row, column).data().toString();
    words.removeAll(QString());
    return words.join(QStringLiteral(" · "));
}

void ListPage::tellCount()
{
    const int all = model_.rowCount();
    const int seen = view_.rowCount();
    const QString rows = all == 1 ? QStringLiteral("1 fila") : QStringLiteral("%1 filas").arg(all);
    count_.setText(seen == all ? rows : QStringLiteral("%1 de %2").arg(seen).arg(rows));
}

bool ListPage::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto& key = dynamic_cast<QKeyEvent&>(*event);
    const bool enters = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (watched == &search_) {
        if (enters || key.key() == Qt::Key_Down)
            enter();
        else if (key.key() == Qt::Key_Escape && !search_.text().isEmpty())
            search_.clear();
        else
            return false;
        return true;
    }
    if (enters && selected()) {
        calls_.opened();
        return true;
    }
    // Type-ahead: typing in the list moves to the search field.
    const bool types = (key.modifiers() & ~Qt::ShiftModifier) == 0 && !key.text().isEmpty() &&
                       key.text().front().isPrint() && !key.text().front().isSpace();
    if (!types)
        return false;
    search_.setFocus(Qt::OtherFocusReason);
    search_.setText(key.text());
    return true;
}

} // namespace zv::host
