#include "zvhost/KeptText.h"

#include "runtime/PrivateFile.h"
#include "runtime/System.h"
#include "zvhost/Widgets.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QUrl>

#include <stdexcept>

namespace zv::host {
namespace {

namespace fs = std::filesystem;

const QString nameBefore = QStringLiteral("sin-servidor-");
const QString nameBehind = QStringLiteral(".txt");

/// Empty where the system says nothing of the person.
fs::path stateFolder()
{
    constexpr std::pair<const char*, const char*> places[] = {
        {"XDG_STATE_HOME", ""}, {"LOCALAPPDATA", ""}, {"HOME", ".local/state"}};
    for (const auto& [variable, below] : places)
        if (const fs::path folder = pathInEnvironment(variable); folder.is_absolute())
            return folder / below / "ZVConfiguracion";
    return {};
}

/// Whether the file need not be told of again.
void offer(QWidget* parent, const QString& file)
{
    QMessageBox box(QMessageBox::Information, QStringLiteral("Guardado al cerrar"),
                    QStringLiteral("Al cerrar sin servidor se guardó lo que mostraban las ventanas, en\n%1")
                        .arg(QDir::toNativeSeparators(file)),
                    QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(QStringLiteral(
        "Escriba otra vez lo que no esté en el colegio, y después bórrelo: lleva datos de personas."));
    const QPushButton* opens = box.addButton(QStringLiteral("&Abrir"), QMessageBox::AcceptRole);
    const QPushButton* deletes = box.addButton(QStringLiteral("&Borrar"), QMessageBox::DestructiveRole);
    QPushButton* later = box.addButton(QStringLiteral("&Más tarde"), QMessageBox::RejectRole);
    box.setDefaultButton(later);
    box.setEscapeButton(later);
    box.exec();
    if (box.clickedButton() == opens)
        QDesktopServices::openUrl(QUrl::fromLocalFile(file));
    else if (box.clickedButton() == deletes && !QFile::remove(file))
        say(parent, QStringLiteral("No se ha podido"), QStringLiteral("El fichero no se ha borrado."));
}

} // namespace

QString keepText(const QString& text)
{
    const fs::path folder = stateFolder();
    if (folder.empty())
        throw std::runtime_error("No se sabe dónde: falta la variable HOME.");
    const QDateTime now = QDateTime::currentDateTime();
    const QString name = nameBefore + now.toString(QStringLiteral("yyyy-MM-dd-HHmmss-zzz")) + nameBehind;
    const QString head =
        QStringLiteral("Lo que mostraban las ventanas al cerrar el programa sin servidor, el %1.\n"
                       "Puede que una parte ya esté en el colegio: mírelo antes de escribirlo otra vez.\n")
            .arg(now.toString(QStringLiteral("dd/MM/yyyy 'a las' HH:mm")));
    const fs::path file = folder / name.toStdU16String();
    if (!createPrivateFile(file, (head + text).toStdString()))
        throw std::runtime_error("El fichero ya existe.");
    return QString::fromStdU16String(file.u16string());
}

void offerKeptTexts(QWidget* parent)
{
    const QDir folder(QString::fromStdU16String(stateFolder().u16string()));
    if (!stateFolder().empty())
        for (const QString& name :
             folder.entryList({nameBefore + u'*' + nameBehind}, QDir::Files, QDir::Name))
            offer(parent, folder.filePath(name));
}

} // namespace zv::host
