#include "zvhost/Dialogs.h"

#include "qt/QtText.h"
#include "suite/Registrations.h"
#include "zvhost/RowsModel.h"
#include "zvhost/Widgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace zv::host {
namespace {

const QString cannotRead = QStringLiteral("No se ha podido leer.");

/// Dialog with a list and commands on its selected row.
class ListDialog final : public QDialog {
public:
    ListDialog(QWidget* parent, const QString& title, std::span<const ListColumn> columns,
               std::function<std::vector<Row>()> read)
        : QDialog(parent), columns_(columns), read_(std::move(read)), layout_(this), buttons_(layout_, *this)
    {
        setWindowTitle(title);
        table_.setModel(&model_);
        table_.setObjectName(QStringLiteral("filas"));
        designTable(table_);
        layout_.insertWidget(0, &table_);
        layout_.insertWidget(1, &empty_);
        resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 22);
        connect(table_.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { follow(); });
    }

    /// Adds a command: a callback on the selected row's index.
    void command(const QString& text, const QString& failed, const std::function<void(std::size_t)>& does)
    {
        commands_.push_back(&buttons_.add(text, [this, failed, does] {
            const QModelIndex index = table_.currentIndex();
            if (!index.isValid())
                return;
            tried(this, failed, [&] { does(static_cast<std::size_t>(index.row())); });
            tried(this, cannotRead, [&] { reload(index.row()); });
        }));
    }

    void run(const QString& whenEmpty)
    {
        empty_.setText(whenEmpty);
        buttons_.addClose(QStringLiteral("Cerrar"));
        if (!tried(parentWidget(), cannotRead, [&] { reload(0); }))
            return;
        table_.setFocus();
        exec();
    }

private:
    void reload(int row)
    {
        model_.show(columns_, read_());
        table_.resizeColumnsToContents();
        if (model_.rowCount() != 0)
            table_.selectRow(std::min(row, model_.rowCount() - 1));
        empty_.setVisible(model_.rowCount() == 0);
        follow();
    }
    void follow()
    {
        for (QPushButton* each : commands_)
            each->setEnabled(table_.selectionModel()->hasSelection());
    }

    std::span<const ListColumn> columns_;
    std::function<std::vector<Row>()> read_;
    RowsModel model_;
    QVBoxLayout layout_;
    QTableView table_;
    QLabel empty_;
    ButtonRow buttons_;
    std::vector<QPushButton*> commands_;
};

constexpr ListColumn deletedColumns[] = {{u"Lista"}, {u"Nombre"}, {u"Número", ListColumn::Kind::number}};
constexpr ListColumn usedColumns[] = {{u"Ventana"}, {u"Fila"}, {u"Usuario"}, {u"Desde"}, {u"Estación"}};

String windowName(StringView form)
{
    const Node* node = nodeOf(form);
    return String(node == nullptr ? form : node->name);
}

} // namespace

QString reasons(const std::vector<Referrer>& who)
{
    QStringList lines;
    for (const Referrer& each : who) {
        QStringList names;
        for (const String& example : each.examples)
            names += toQt(example);
        lines += QStringLiteral("• %1: %2 (%3%4)")
                     .arg(toQt(nameOfTable(each.table)))
                     .arg(each.count)
                     .arg(names.join(QStringLiteral(", ")),
                          each.count > std::ssize(each.examples) ? QStringLiteral("…") : QString());
    }
    return lines.join(u'\n');
}

void showRecycleBin(QWidget* parent, School& school, bool readOnly)
{
    std::vector<DeletedRow> rows;
    ListDialog dialog(parent, QStringLiteral("Papelera"), deletedColumns, [&] {
        rows = deletedRows(*school.borrado);
        std::vector<Row> shown;
        shown.reserve(rows.size());
        for (const DeletedRow& each : rows) {
            const Node* node = nullptr;
            for (const Node& one : nodes())
                if (sameName(one.table, each.table))
                    node = &one;
            const bool enciphered =
                node != nullptr && node->columns.front().kind == ListColumn::Kind::enciphered;
            shown.push_back({each.key,
                             {Value(nameOfTable(each.table)),
                              Value(enciphered ? deciphered(each.name) : each.name), Value(each.key)}});
        }
        return shown;
    });
    dialog.setObjectName(QStringLiteral("papelera"));
    if (!readOnly)
        dialog.command(QStringLiteral("&Restaurar"), QStringLiteral("La fila no se ha podido restaurar."),
                       [&](std::size_t row) { restore(school, rows[row].table, rows[row].key); });
    dialog.run(QStringLiteral("La papelera está vacía."));
}

void showRowsInUse(QWidget* parent, Connection& centro, bool readOnly)
{
    std::vector<Registration> rows;
    ListDialog dialog(parent, QStringLiteral("Filas en uso"), usedColumns, [&] {
        rows = registrations(centro);
        std::vector<Row> shown;
        shown.reserve(rows.size());
        for (const Registration& each : rows)
            shown.push_back(
                {each.row,
                 {Value(windowName(each.form)), Value(each.row), Value(each.user), Value(each.moment),
                  Value(each.station + (each.gone ? u" (ya ha terminado)" : u""))}});
        return shown;
    });
    dialog.setObjectName(QStringLiteral("filasEnUso"));
    const auto free = [&](std::size_t row) {
        const Registration& each = rows[row];
        const QString warning =
            each.gone ? QStringLiteral("La estación ya ha terminado: nadie la tiene abierta.")
                      : QStringLiteral("La tiene abierta el usuario %1. Si la libera, dos personas podrán "
                                       "cambiarla a la vez, y valdrá lo que escriba la última.")
                            .arg(each.user);
        if (confirm(&dialog, QStringLiteral("Liberar"), warning, QStringLiteral("Liberar")))
            release(centro, each.form, each.row);
    };
    if (!readOnly)
        dialog.command(QStringLiteral("&Liberar"), QStringLiteral("La fila no se ha podido liberar."), free);
    dialog.run(QStringLiteral("Nadie tiene filas abiertas."));
}

std::optional<Choices> askChoices(QWidget* parent, Host& host)
{
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("sesion"));
    dialog.setWindowTitle(QStringLiteral("Sesión"));
    Choices choices = host.choices();
    const std::vector<UserOrProfile> users = host.users();
    const std::vector<UserOrProfile> profiles = host.profiles();

    QComboBox user;
    user.setObjectName(QStringLiteral("usuario"));
    for (const UserOrProfile& each : users)
        user.addItem(toQt(each.name), each.number);
    if (user.findData(choices.user) < 0)
        user.addItem(toQt(choices.userName), choices.user);
    user.setCurrentIndex(user.findData(choices.user));
    QComboBox profile;
    profile.setObjectName(QStringLiteral("perfil"));
    for (const UserOrProfile& each : profiles)
        profile.addItem(toQt(each.name), each.number);
    const auto chooseProfile = [&](Integer number) {
        if (profile.findData(number) < 0)
            profile.addItem(QString::number(number), number);
        profile.setCurrentIndex(profile.findData(number));
    };
    chooseProfile(choices.profile);
    QObject::connect(&user, &QComboBox::currentIndexChanged, &dialog, [&] {
        for (const UserOrProfile& each : users)
            if (each.number == user.currentData().toInt())
                chooseProfile(each.profile);
    });
    QCheckBox readOnly(QStringLiteral("Sólo &consulta: se ve todo y no se cambia nada"));
    readOnly.setObjectName(QStringLiteral("consulta"));
    readOnly.setChecked(choices.readOnly);
    QCheckBox mtp(QStringLiteral("El centro usa el servicio &MTP"));
    mtp.setObjectName(QStringLiteral("mtp"));
    mtp.setChecked(choices.mtp);

    QVBoxLayout layout(&dialog);
    QFormLayout form;
    form.addRow(QStringLiteral("&Usuario:"), &user);
    form.addRow(QStringLiteral("&Perfil:"), &profile);
    layout.addLayout(&form);
    layout.addWidget(&readOnly);
    layout.addWidget(&mtp);
    ButtonRow buttons(layout, dialog);
    buttons.add(QStringLiteral("Aceptar"), [&] { dialog.accept(); }).setDefault(true);
    buttons.addClose(QStringLiteral("Cancelar"));
    const bool accepted = dialog.exec() == QDialog::Accepted;
    layout.removeItem(&form);
    if (!accepted)
        return std::nullopt;
    choices.user = static_cast<Integer>(user.currentData().toInt());
    choices.userName = fromQt(user.currentText());
    choices.profile = static_cast<Integer>(profile.currentData().toInt());
    choices.readOnly = readOnly.isChecked();
    choices.mtp = mtp.isChecked();
    return choices;
}

} // namespace zv::host
