#include "zvhost/ListDialog.h"

#include "qt/EdgeStyle.h"
#include "qt/Legible.h"

#include <QKeyEvent>
#include <QPushButton>

#include <algorithm>

namespace zv::host {
namespace {

const QString cannotRead = QStringLiteral("No se ha podido leer.");

} // namespace

ListDialog::ListDialog(QWidget* parent, const QString& title, std::span<const ListColumn> columns,
                       std::function<std::vector<Row>()> read)
    : QDialog(parent), columns_(columns), read_(std::move(read)), layout_(this), buttons_(layout_, *this)
{
    setWindowTitle(title);
    keepLegible(*this);
    table_.setModel(&model_);
    table_.setObjectName(QStringLiteral("filas"));
    table_.setAccessibleName(title);
    search_.setObjectName(QStringLiteral("buscarFila"));
    search_.setPlaceholderText(QStringLiteral("Buscar (Ctrl+F)"));
    search_.setAccessibleName(QStringLiteral("Buscar"));
    search_.setClearButtonEnabled(true);
    search_.installEventFilter(this);
    auto* find = addAction(QString());
    find->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F));
    connect(find, &QAction::triggered, this, [this] { search_.setFocus(Qt::ShortcutFocusReason); });
    layout_.insertWidget(0, &search_);
    layout_.insertWidget(1, &table_);
    layout_.insertWidget(2, &empty_);
    drawEdges(*this);
    resize(fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 24);
    connect(table_.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { follow(); });
    connect(&table_, &QTableView::doubleClicked, this, [this] {
        for (QPushButton* each : commands_)
            if (each->isDefault())
                each->click();
    });
    connect(&search_, &QLineEdit::textChanged, this, [this](const QString& words) {
        model_.search(meant_ ? meant_(words) : words);
        choose(0);
    });
}

QPushButton& ListDialog::command(const QString& text, const QString& failed,
                                 const std::function<void(const Rows&)>& does, Selects selects)
{
    if (selects == Selects::several)
        table_.setSelectionMode(QAbstractItemView::ExtendedSelection);
    commands_.push_back(&buttons_.add(text, [this, failed, does] {
        const Rows rows = selection();
        if (rows.empty())
            return;
        const int place = table_.currentIndex().row();
        tried(this, failed, [&] { does(rows); });
        tried(this, cannotRead, [&] { reload(place); });
    }));
    return *commands_.back();
}

void ListDialog::run(const QString& whenEmpty, Begins begins)
{
    empty_.setText(whenEmpty);
    buttons_.addClose(QStringLiteral("&Cerrar"));
    if (!tried(parentWidget(), cannotRead, [&] { reload(0); }))
        return;
    if (begins == Begins::searching)
        search_.setFocus();
    else
        table_.setFocus();
    exec();
}

ListDialog::Rows ListDialog::selection() const
{
    Rows rows;
    for (const QModelIndex& each : table_.selectionModel()->selectedRows())
        rows.push_back(static_cast<std::size_t>(model_.keyAt(each.row())));
    std::ranges::sort(rows);
    return rows;
}

void ListDialog::reload(int row)
{
    model_.show(columns_, read_());
    choose(row);
    if (table_.shares())
        table_.share();
}

void ListDialog::choose(int row)
{
    if (model_.rowCount() != 0)
        table_.choose(std::clamp(row, 0, model_.rowCount() - 1));
    empty_.setVisible(model_.rows().size() == 0);
    search_.setVisible(model_.rows().size() != 0);
    follow();
}

void ListDialog::follow()
{
    for (QPushButton* each : commands_)
        each->setEnabled(table_.selectionModel()->hasSelection());
}

bool ListDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != &search_ || event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const auto& key = dynamic_cast<QKeyEvent&>(*event);
    const bool down = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_Down;
    const bool clears = key.key() == Qt::Key_Escape && !search_.text().isEmpty();
    if (down)
        table_.setFocus();
    else if (clears)
        search_.clear();
    return down || clears;
}

} // namespace zv::host
