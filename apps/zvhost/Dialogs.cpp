#include "zvhost/Dialogs.h"

#include "qt/EdgeStyle.h"
#include "qt/Legible.h"
#include "qt/QtText.h"
#include "runtime/Convert.h"
#include "suite/Registrations.h"
#include "zvhost/ListDialog.h"
#include "zvhost/People.h"
#include "zvhost/Widgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QFormLayout>
#include <QPushButton>
#include <QTimeZone>

namespace zv::host {
namespace {

constexpr ListColumn deletedColumns[] = {{u"Lista"}, {u"Nombre"}, {u"Eliminada"}, {u"Por"}};
constexpr ListColumn usedColumns[] = {{u"Lista"}, {u"Fila"}, {u"Persona"}, {u"Desde"}, {u"Puesto"}};

/// When a row was deleted, for a column.
QString shownMoment(const String& moment)
{
    QDateTime time = QDateTime::fromString(toQt(moment), QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    time.setTimeZone(QTimeZone::utc());
    return time.isValid() ? time.toLocalTime().toString(QStringLiteral("dd/MM/yyyy H:mm")) : QString();
}

/// Names as a person reads them: those of a list that is stored enciphered are deciphered.
void decipherNames(std::vector<DeletedRow>& rows)
{
    for (DeletedRow& each : rows)
        if (const Node* node = nodeOfTable(each.table);
            node != nullptr && node->columns.front().kind == ListColumn::Kind::enciphered)
            each.name = deciphered(each.name);
}

String shownRow(Connection& centro, const Node* node, Long key)
{
    if (node == nullptr || !node->hasList())
        return u"número " + decimalText(key);
    const String name = nameOfRow(centro, node->table, key);
    if (name.empty())
        return u"número " + decimalText(key);
    return node->columns.front().kind == ListColumn::Kind::enciphered ? deciphered(name) : name;
}

} // namespace

std::vector<DeletedRow> showRecycleBin(QWidget* parent, Host& host)
{
    std::vector<DeletedRow> rows;
    std::vector<DeletedRow> restored;
    ListDialog dialog(parent, QStringLiteral("Papelera"), deletedColumns, [&] {
        rows = deletedRows(*host.school().borrado);
        decipherNames(rows);
        People people(host.school());
        std::vector<Row> shown;
        shown.reserve(rows.size());
        for (const DeletedRow& each : rows)
            shown.push_back(
                {static_cast<Long>(shown.size()),
                 {Value(nameOfTable(each.table)), Value(each.name), Value(fromQt(shownMoment(each.moment))),
                  Value(each.moment.empty() ? String() : fromQt(people.name(each.user)))}});
        return shown;
    });
    dialog.setObjectName(QStringLiteral("papelera"));
    if (!host.choices().readOnly)
        dialog.command(
            QStringLiteral("&Restaurar"), QStringLiteral("La fila no se ha podido restaurar."),
            [&](const ListDialog::Rows& places) {
                for (const std::size_t each : places) {
                    host.act([&] { restore(host.school(), rows[each].table, rows[each].key); });
                    restored.push_back(rows[each]);
                }
            },
            ListDialog::Selects::several);
    dialog.run(QStringLiteral("La papelera está vacía."));
    return restored;
}

void showRowsInUse(QWidget* parent, Host& host)
{
    Connection& centro = *host.school().centro;
    std::vector<Registration> rows;
    ListDialog dialog(parent, QStringLiteral("Filas en uso"), usedColumns, [&] {
        rows = registrations(centro);
        People people(host.school());
        std::vector<Row> shown;
        shown.reserve(rows.size());
        for (const Registration& each : rows) {
            const Node* node = nodeOf(each.form);
            const QString station =
                stationName(each.station) + (each.gone ? QStringLiteral(" (ya ha terminado)") : QString());
            shown.push_back({static_cast<Long>(shown.size()),
                             {Value(node == nullptr ? each.form : String(node->name)),
                              Value(shownRow(centro, node, each.row)), Value(fromQt(people.name(each.user))),
                              Value(fromQt(saidTime(toQt(each.moment)))), Value(fromQt(station))}});
        }
        return shown;
    });
    dialog.setObjectName(QStringLiteral("filasEnUso"));
    const auto free = [&](const ListDialog::Rows& places) {
        const Registration& each = rows[places.front()];
        People people(host.school());
        const QString warning =
            each.gone ? QStringLiteral("El puesto ya ha terminado: nadie la tiene abierta.")
                      : heldBy(people, each) +
                            QStringLiteral(". Si la libera, dos personas podrán cambiarla a la vez, y valdrá "
                                           "lo que escriba la última.");
        if (confirm(&dialog, QStringLiteral("Liberar"), warning, QStringLiteral("&Liberar")))
            release(centro, each.form, each.row);
    };
    if (!host.choices().readOnly)
        dialog.command(QStringLiteral("&Liberar"), QStringLiteral("La fila no se ha podido liberar."), free);
    dialog.run(QStringLiteral("Nadie tiene filas abiertas."));
}

std::optional<Choices> askChoices(QWidget* parent, Host& host)
{
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("sesion"));
    dialog.setWindowTitle(QStringLiteral("Sesión"));
    keepLegible(dialog);
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
    buttons.add(QStringLiteral("&Aceptar"), [&] { dialog.accept(); }).setDefault(true);
    buttons.addClose(QStringLiteral("Ca&ncelar"));
    drawEdges(dialog);
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
