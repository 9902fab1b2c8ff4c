#include "zvhost/ListPage.h"

#include "progress/Definition.h"
#include "qt/QtText.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>

#include <algorithm>

namespace zv::host {
namespace {

/// What counts as missing in a kind of report, by its name, which stands in bold.
QString definitionOf(const QString& report)
{
    QString text;
    for (const progress::Kind kind : progress::kinds)
        if (const QString name = toQt(nameOf(kind)); name == report)
            text = QStringLiteral("<b>%1</b>%2 ").arg(name, toQt(definition(kind)).mid(name.size()));
    return text + toQt(progress::definitionOfAll());
}

} // namespace

ListPage::ListPage(Calls calls) : calls_(std::move(calls))
{
    QFont large = title_.font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    large.setBold(true);
    title_.setFont(large);
    title_.setWordWrap(true);

    search_.setObjectName(QStringLiteral("buscar"));
    search_.setPlaceholderText(QStringLiteral("Buscar en la lista (Ctrl+F)"));
    search_.setAccessibleName(QStringLiteral("Buscar en la lista"));
    search_.installEventFilter(this);
    view_.setSourceModel(&model_);
    table_.setObjectName(QStringLiteral("lista"));
    table_.setModel(&view_);
    table_.setSortingEnabled(true);
    table_.setSelectionMode(QAbstractItemView::ExtendedSelection);
    table_.setContextMenuPolicy(Qt::CustomContextMenu);
    table_.installEventFilter(this);
    direct_.setObjectName(QStringLiteral("abrir"));
    direct_.setAutoDefault(true);
    explanation_.setWordWrap(true);
    whole_.setObjectName(QStringLiteral("completos"));
    whole_.setText(QStringLiteral("&Mostrar también los completos"));
    definition_.setObjectName(QStringLiteral("definicion"));
    definition_.setWordWrap(true);
    definition_.setTextFormat(Qt::RichText);
    arrange();

    connect(&search_, &QLineEdit::textChanged, this, [this](const QString& words) {
        // Lazy: the clear button's pictures take long to load, and most starts end without a search.
        search_.setClearButtonEnabled(true);
        view_.search(words);
        tellCount();
        calls_.selected();
    });
    connect(&table_, &QTableView::doubleClicked, this, [this] { calls_.opened(); });
    connect(&table_, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { calls_.menu(table_.viewport()->mapToGlobal(at)); });
    connect(table_.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        tellDefinition();
        calls_.selected();
    });
    connect(&direct_, &QPushButton::clicked, this, [this] { calls_.direct(); });
    connect(&whole_, &QCheckBox::toggled, this, [this] { hideWhole(); });
}

void ListPage::arrange()
{
    auto* rows = std::make_unique<QVBoxLayout>(this).release();
    rows->addWidget(&title_);
    rows->addWidget(&explanation_);
    count_.setObjectName(QStringLiteral("cuenta"));
    rows->addWidget(&search_);
    rows->addWidget(&table_, 1);
    auto* foot = std::make_unique<QHBoxLayout>().release();
    rows->addLayout(foot);
    foot->addWidget(&count_, 1);
    foot->addWidget(&whole_);
    rows->addWidget(&definition_);
    rows->addWidget(&direct_, 0, Qt::AlignLeft);
    rows->addStretch();
}

void ListPage::showParts(bool list, const QString& direct, const QString& explanation)
{
    for (QWidget* each :
         {static_cast<QWidget*>(&search_), static_cast<QWidget*>(&table_), static_cast<QWidget*>(&count_)})
        each->setVisible(list);
    direct_.setVisible(!direct.isEmpty());
    direct_.setText(direct);
    explanation_.setVisible(!explanation.isEmpty());
    explanation_.setText(explanation);
}

void ListPage::show(const Node& node, std::vector<Row> rows, const ListLook& look)
{
    title_.setText(toQt(node.name));
    table_.setAccessibleName(toQt(node.name));
    if (node.hasList())
        showParts(true, {}, {});
    else if (node.isProgress())
        showParts(true, {},
                  QStringLiteral("Informes a los que les falta algo. Intro abre el del alumno elegido."));
    else if (rows.empty())
        showParts(false, QStringLiteral("A&brir…"),
                  QStringLiteral("Elija la enseñanza, el curso y la sección en la ventana que se abre."));
    else
        showParts(true, QStringLiteral("Elegir la sección en la &ventana…"),
                  QStringLiteral("Secciones, y de cuántos alumnos hay algo escrito. Intro abre la elegida."));
    showProgress(node);
    search_.setText(look.search);
    model_.mark({});
    model_.show(node.columns, std::move(rows));
    table_.sortByColumn(std::clamp(look.column, 0, std::max(0, model_.columnCount() - 1)),
                        look.descending ? Qt::DescendingOrder : Qt::AscendingOrder);
    if (look.widths.size() == model_.columnCount())
        table_.setWidths(look.widths);
    else
        table_.share();
    if (view_.rowCount() != 0)
        table_.choose(0);
    tellCount();
    calls_.selected();
}

void ListPage::showProgress(const Node& node)
{
    for (std::size_t column = 0; column < node.columns.size(); ++column)
        table_.setItemDelegateForColumn(static_cast<int>(column),
                                        node.columns[column].kind == ListColumn::Kind::progress ? &progress_
                                                                                                : nullptr);
    const auto column = std::ranges::find(node.columns, ListColumn::Kind::progress, &ListColumn::kind);
    lacking_ = node.isProgress() ? static_cast<int>(column - node.columns.begin()) : -1;
    whole_.setVisible(node.isProgress());
    definition_.setVisible(node.isProgress());
    hideWhole();
}

void ListPage::tellDefinition()
{
    const QModelIndex row = table_.currentIndex();
    if (lacking_ >= 0)
        definition_.setText(definitionOf(row.siblingAtColumn(lacking_ - 1).data().toString()));
}

void ListPage::hideWhole()
{
    view_.hideWhole(whole_.isChecked() ? -1 : lacking_);
    tellCount();
    tellDefinition();
}

void ListPage::showGroup(const QString& name)
{
    title_.setText(name);
    lacking_ = -1;
    whole_.hide();
    definition_.hide();
    showParts(false, {}, QStringLiteral("Elija una de sus listas."));
    model_.show({}, {});
    calls_.selected();
}

ListLook ListPage::look() const
{
    return {table_.horizontalHeader()->sortIndicatorSection(),
            table_.horizontalHeader()->sortIndicatorOrder() == Qt::DescendingOrder, search_.text(),
            table_.shares() ? QList<int>() : table_.widths()};
}

void ListPage::refresh(const Node& node, std::vector<Row> rows, Added added)
{
    std::vector<Long> before = model_.keys();
    std::ranges::sort(before);
    const std::vector<NamedRow> kept = selection();
    const int place = table_.currentIndex().row();
    model_.show(node.columns, std::move(rows));
    const std::vector<Long> now = model_.keys();
    const auto found =
        std::ranges::find_if(now, [&](Long key) { return !std::ranges::binary_search(before, key); });
    if (found != now.end()) {
        if (added == Added::shows && !view_.mapFromSource(model_.index(model_.rowOf(*found), 0)).isValid())
            search_.clear();
        select(*found);
    } else if (!kept.empty() && model_.rowOf(kept.front().key) >= 0)
        select(kept.front().key);
    else if (view_.rowCount() != 0)
        table_.choose(std::clamp(place, 0, view_.rowCount() - 1));
    if (table_.shares())
        table_.share();
    tellCount();
    calls_.selected();
}

void ListPage::select(Long key)
{
    const int row = model_.rowOf(key);
    const QModelIndex index = view_.mapFromSource(row < 0 ? QModelIndex() : model_.index(row, 0));
    if (!index.isValid())
        return;
    table_.choose(index.row());
    table_.scrollTo(index);
}

void ListPage::enter()
{
    if (table_.isHidden()) {
        direct_.setFocus(Qt::OtherFocusReason);
        return;
    }
    // Fallback selection: a search may have hidden the selected row.
    if (!table_.selectionModel()->hasSelection() && view_.rowCount() != 0)
        table_.choose(0);
    table_.setFocus(Qt::OtherFocusReason);
}

std::vector<NamedRow> ListPage::selection() const
{
    QModelIndexList rows = table_.selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    std::vector<NamedRow> found;
    for (const QModelIndex& each : rows)
        found.push_back({model_.keyAt(view_.mapToSource(each).row()), nameAt(each.row())});
    return found;
}

std::optional<Long> ListPage::selected() const
{
    const QModelIndexList rows = table_.selectionModel()->selectedRows();
    if (rows.size() != 1)
        return std::nullopt;
    return model_.keyAt(view_.mapToSource(rows.front()).row());
}

QString ListPage::nameAt(int row) const
{
    QStringList words;
    for (int column = 0; column < std::min(2, view_.columnCount()); ++column)
        words += view_.index(row, column).data().toString();
    words.removeAll(QString());
    return words.join(QStringLiteral(" · "));
}

QString ListPage::rowsAsText() const
{
    QModelIndexList rows = table_.selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    QStringList lines;
    for (const QModelIndex& each : rows) {
        QStringList cells;
        for (int column = 0; column < view_.columnCount(); ++column)
            // A tab or a line of the text itself would begin another cell.
            cells += each.siblingAtColumn(column).data().toString().simplified();
        lines += cells.join(u'\t');
    }
    return lines.join(u'\n');
}

void ListPage::tellCount()
{
    if (lacking_ >= 0) {
        const auto [lacking, all] = view_.lacking(lacking_);
        count_.setText(lacking == 0 ? QStringLiteral("No falta nada en %1 informes").arg(all)
                                    : QStringLiteral("Faltan %1 de %2 informes").arg(lacking).arg(all));
        return;
    }
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
