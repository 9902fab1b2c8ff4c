#include "zvhost/ListPage.h"

#include "progress/Definition.h"
#include "qt/QtText.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <algorithm>
#include <unordered_set>

namespace zv::host {
namespace {

/// Selected rows that stay so when others are shown; all of a list stay so while it has no more and no fewer.
constexpr std::size_t mostKept = 5000;

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
    // Before the table's own, which forgets the selection.
    connect(&model_, &QAbstractItemModel::modelAboutToBeReset, this, [this] { keepSelection(); });
    table_.setObjectName(QStringLiteral("lista"));
    table_.setModel(&model_);
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
        model_.search(words);
        tellCount();
        calls_.selected();
    });
    connect(&model_, &QAbstractItemModel::modelReset, this, [this] { settle(); });
    connect(&table_, &QTableView::doubleClicked, this, [this] { calls_.opened(); });
    connect(&table_, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { calls_.menu(table_.viewport()->mapToGlobal(at)); });
    connect(table_.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (settling_)
            return;
        chosenByPerson();
        tellDefinition();
        calls_.selected();
    });
    // What is selected already tells nothing when it is chosen.
    connect(&table_, &QTableView::pressed, this, [this] { chosenByPerson(); });
    // After the table's own, which sorts.
    connect(table_.horizontalHeader(), &QHeaderView::sortIndicatorChanged, this, [this] {
        tellCount();
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

void ListPage::show(const Node& node, RowLetters rows, const ListLook& look)
{
    title_.setText(toQt(node.name));
    table_.setAccessibleName(toQt(node.name));
    if (node.hasList())
        showParts(true, {}, {});
    else if (node.isProgress())
        showParts(true, {},
                  QStringLiteral("Informes a los que les falta algo. Intro abre el del alumno elegido."));
    else if (rows.size() == 0)
        showParts(false, QStringLiteral("A&brir…"),
                  QStringLiteral("Elija la enseñanza, el curso y la sección en la ventana que se abre."));
    else
        showParts(true, QStringLiteral("Elegir la sección en la &ventana…"),
                  QStringLiteral("Secciones, y de cuántos alumnos hay algo escrito. Intro abre la elegida."));
    showProgress(node);
    {
        const QSignalBlocker quiet(search_);
        search_.setText(look.search);
    }
    if (!look.search.isEmpty())
        search_.setClearButtonEnabled(true);
    forgetReading();
    model_.mark({});
    // Many rows come a moment later: until then nobody takes one of the list before for theirs.
    model_.show(RowLetters(node.columns), Wish());
    partial_ = true;
    first_ = true;
    const int column = std::clamp(look.column, 0, std::max(0, static_cast<int>(node.columns.size()) - 1));
    model_.show(std::move(rows), {.column = column,
                                  .descending = look.descending,
                                  .words = searchWords(look.search),
                                  .progress = lacking_,
                                  .hidesWhole = !whole_.isChecked()});
    {
        const QSignalBlocker sorted(table_.horizontalHeader());
        table_.horizontalHeader()->setSortIndicator(column, look.descending ? Qt::DescendingOrder
                                                                            : Qt::AscendingOrder);
    }
    if (look.widths.size() == model_.columnCount())
        table_.setWidths(look.widths);
    else
        table_.share();
    table_.scrollToTop();
    tellCount();
    tellDefinition();
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
}

void ListPage::tellDefinition()
{
    const QModelIndex row = table_.currentIndex();
    if (lacking_ >= 0)
        definition_.setText(definitionOf(row.siblingAtColumn(lacking_ - 1).data().toString()));
}

void ListPage::hideWhole()
{
    model_.follow(lacking_, !whole_.isChecked());
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
    forgetReading();
    model_.show({}, Wish());
    calls_.selected();
}

ListLook ListPage::look() const
{
    return {table_.horizontalHeader()->sortIndicatorSection(),
            table_.horizontalHeader()->sortIndicatorOrder() == Qt::DescendingOrder, search_.text(),
            table_.shares() ? QList<int>() : table_.widths()};
}

void ListPage::forgetReading()
{
    reading_ = Reading::done;
    expected_.reset();
    awaited_.reset();
    swap_ = Swap::none;
    gone_ = false;
}

void ListPage::chosenByPerson()
{
    first_ = false;
    awaited_.reset();
}

void ListPage::setReading(Reading reading)
{
    reading_ = reading;
    if (reading == Reading::goesOn)
        partial_ = true;
    if (isWhole() && swap_ == Swap::none)
        partial_ = false;
    if (awaited_)
        select(*awaited_);
    tellCount();
    calls_.selected();
}

void ListPage::expect(Added added, std::function<void(Long)> then)
{
    // A reading that this one cuts short had something to show, too.
    if (expected_ && expected_->added == Added::shows) {
        added = Added::shows;
        if (!then)
            then = std::move(expected_->then);
    }
    expected_ = Expected{added, std::move(then), selectedKeys()};
}

void ListPage::forgetExpected()
{
    expected_.reset();
    setReading(partial_ ? Reading::failed : Reading::done);
}

void ListPage::refresh(RowLetters rows, bool whole)
{
    swap_ = whole ? Swap::whole : Swap::part;
    model_.show(std::move(rows));
    tellCount();
}

void ListPage::hide(std::span<const Long> keys)
{
    gone_ = true;
    model_.hide(keys);
}

void ListPage::keepSelection()
{
    kept_ = {.selected = selectedKeys(), .place = table_.currentIndex().row(), .count = model_.rowCount()};
    if (kept_.place >= 0)
        kept_.current = model_.keyAt(kept_.place);
    const QItemSelection ranges = table_.selectionModel()->selection();
    kept_.all = ranges.size() == 1 && ranges.front().height() == kept_.count && kept_.count > 1;
    if (swap_ == Swap::whole && !partial_)
        kept_.list = model_.rows().sortedKeys();
}

void ListPage::settle()
{
    std::optional<Long> added;
    Expected expected;
    const bool anew = swap_ != Swap::none;
    {
        const QScopedValueRollback settling(settling_, true);
        // Where the person has scrolled to, the list stays.
        table_.setAutoScroll(false);
        if (anew) {
            expected = std::exchange(expected_, std::nullopt).value_or(Expected());
            added = settleAnew(expected);
        }
        restoreSelection(anew);
        table_.setAutoScroll(true);
    }
    kept_ = {};
    if (isWhole())
        partial_ = false;
    if (anew)
        table_.scrollTo(table_.currentIndex());
    if (table_.shares())
        table_.share();
    tellCount();
    tellDefinition();
    calls_.selected();
    if (awaited_ && awaited_ == added)
        search_.clear();
    if (added && expected.then)
        expected.then(*added);
}

std::optional<Long> ListPage::settleAnew(const Expected& expected)
{
    const bool compared = swap_ == Swap::whole && !partial_;
    partial_ = swap_ == Swap::part;
    swap_ = Swap::none;
    std::vector<Long> added;
    if (compared)
        std::ranges::set_difference(model_.rows().sortedKeys(), kept_.list, std::back_inserter(added));
    if (added.empty())
        return std::nullopt;
    const bool isSeen = expected.added == Added::shows || model_.rowOf(added.front()) >= 0;
    if (isSeen && !awaited_ && expected.selected == kept_.selected)
        awaited_ = added.front();
    return added.front();
}

void ListPage::restoreSelection(bool anew)
{
    const bool next = std::exchange(gone_, false) || anew;
    if (awaited_ && model_.rowOf(*awaited_) >= 0)
        select(*awaited_);
    else if (first_)
        chooseFirst();
    else if (kept_.all && kept_.count == model_.rowCount())
        table_.selectAll();
    else if (!selectKeys(kept_.selected) && next && model_.rowCount() != 0)
        table_.choose(std::clamp(kept_.place, 0, model_.rowCount() - 1));
}

bool ListPage::selectKeys(const std::vector<Long>& keys)
{
    QItemSelection found;
    QModelIndex current;
    if (keys.size() == 1) {
        if (const int row = model_.rowOf(keys.front()); row >= 0)
            table_.choose(row);
        return table_.selectionModel()->hasSelection();
    }
    const std::unordered_set<Long> sought(keys.begin(), keys.end());
    const int last = model_.columnCount() - 1;
    for (int row = 0; !sought.empty() && row < model_.rowCount(); ++row)
        if (const Long key = model_.keyAt(row); sought.contains(key)) {
            found.select(model_.index(row, 0), model_.index(row, last));
            if (!current.isValid() || key == kept_.current)
                current = model_.index(row, 0);
        }
    table_.selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    table_.selectionModel()->select(found, QItemSelectionModel::ClearAndSelect);
    return !found.isEmpty();
}

void ListPage::chooseFirst()
{
    const QScopedValueRollback settling(settling_, true);
    if (model_.rowCount() != 0)
        table_.choose(0);
    first_ = true;
}

void ListPage::select(Long key)
{
    chosenByPerson();
    const int row = model_.rowOf(key);
    if (row >= 0) {
        table_.choose(row);
        table_.scrollTo(model_.index(row, 0));
    } else if (!isWhole())
        awaited_ = key;
}

std::vector<Long> ListPage::selectedKeys() const
{
    std::vector<int> places = selectedPlaces();
    if (places.size() > mostKept)
        places = {std::max(0, table_.currentIndex().row())};
    std::vector<Long> keys;
    std::ranges::transform(places, std::back_inserter(keys), [&](int place) { return model_.keyAt(place); });
    return keys;
}

void ListPage::enter()
{
    if (table_.isHidden()) {
        direct_.setFocus(Qt::OtherFocusReason);
        return;
    }
    // Fallback selection: a search may have hidden the selected row.
    if (!hasSelection()) {
        chooseFirst();
        tellDefinition();
        calls_.selected();
    }
    table_.setFocus(Qt::OtherFocusReason);
}

std::vector<int> ListPage::selectedPlaces() const
{
    std::vector<int> places;
    for (const QItemSelectionRange& each : table_.selectionModel()->selection())
        for (int row = each.top(); row <= each.bottom(); ++row)
            places.push_back(row);
    std::ranges::sort(places);
    return places;
}

std::vector<NamedRow> ListPage::selection() const
{
    std::vector<NamedRow> found;
    for (const int each : selectedPlaces())
        found.push_back({model_.keyAt(each), nameAt(each)});
    return found;
}

std::optional<Long> ListPage::selected() const
{
    const QItemSelection ranges = table_.selectionModel()->selection();
    if (ranges.size() != 1 || ranges.front().height() != 1)
        return std::nullopt;
    return model_.keyAt(ranges.front().top());
}

QString ListPage::nameAt(int row) const
{
    QStringList words;
    for (int column = 0; column < std::min(2, model_.columnCount()); ++column)
        words += model_.index(row, column).data().toString();
    words.removeAll(QString());
    return words.join(QStringLiteral(" · "));
}

void ListPage::tellCount()
{
    if (lacking_ >= 0) {
        const auto [lacking, all] = model_.lacking();
        count_.setText(lacking == 0 ? QStringLiteral("No falta nada en %1 informes").arg(all)
                                    : QStringLiteral("Faltan %1 de %2 informes").arg(lacking).arg(all));
        return;
    }
    const int all = model_.rows().size();
    const int seen = model_.rowCount();
    const QString rows = all == 1 ? QStringLiteral("1 fila") : QStringLiteral("%1 filas").arg(all);
    const QString told = seen == all ? rows : QStringLiteral("%1 de %2").arg(seen).arg(rows);
    count_.setText(reading_ == Reading::goesOn  ? told + QStringLiteral(", y se leen más…")
                   : reading_ == Reading::again ? told + QStringLiteral(", y se leen de nuevo…")
                   : reading_ == Reading::failed
                       ? told + QStringLiteral(". No se ha podido leer todo: pulse F5")
                   : model_.isBusy() ? told + QStringLiteral(", un momento…")
                                     : told);
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
    chosenByPerson();
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
