#include "zvhost/ListPage.h"

#include "progress/Definition.h"
#include "qt/EdgeStyle.h"
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
    // A click on a row that is selected already changes no selection, and is a choice all the same.
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
    giveRoom(direct_);
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

void ListPage::takeAway(std::span<const Long> keys)
{
    gone_ = true;
    model_.hide(keys);
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
    const bool settled = reading_ == Reading::done && !model_.isBusy() && model_.rowCount() == 0;
    const QString words = search_.text().trimmed();
    table_.sayEmpty(
        !settled ? QString()
        : !words.isEmpty()
            ? QStringLiteral("Ninguna fila tiene «%1»: borre la búsqueda para verlas todas.").arg(words)
        : lacking_ >= 0 ? QString() // Under it stands that nothing is missing.
                        : QStringLiteral("No hay ninguna fila."));
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
