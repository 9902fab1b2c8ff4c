// The window's care of the school as a whole.
#include "care/copies/Copies.h"
#include "data/Schools.h"
#include "qt/QtText.h"
#include "suite/sodium/KeyFile.h"
#include "zvhost/MainWindow.h"
#include "zvhost/Reminder.h"
#include "zvhost/Widgets.h"

#include <QDate>
#include <QDesktopServices>
#include <QFileInfo>
#include <QInputDialog>
#include <QUrl>

namespace zv::host {

void MainWindow::backUp()
{
    const QString title = QStringLiteral("Copia de seguridad");
    const QString name = QStringLiteral("colegio-") + QDate::currentDate().toString(Qt::ISODate);
    const QString file = askFile(this, title, name, QStringLiteral("Copias de seguridad (*.zvcopia)"),
                                 QStringLiteral("zvcopia"), IfThere::leaves);
    if (file.isEmpty())
        return;
    bool given = false;
    const auto ask = [&](const QString& words) {
        return QInputDialog::getText(this, title, words, QLineEdit::Password, QString(), &given).trimmed();
    };
    const QString first = QStringLiteral("Frase con que se guarda dentro la clave de las enfermedades.\n"
                                         "Sin frase, la copia no lleva la clave y sin ella no se leen.");
    QString words = first;
    for (;;) {
        const QString phrase = ask(words);
        if (!given)
            return;
        // Nobody sees what is typed: with a slip in it, the key could never be taken out again.
        if (phrase.isEmpty() || ask(QStringLiteral("Otra vez la misma frase.")) == phrase) {
            if (given)
                backUpTo(file, phrase);
            return;
        }
        if (!given)
            return;
        words = QStringLiteral("No eran iguales.\n") + first;
    }
}

void MainWindow::backUpTo(const QString& file, const QString& phrase)
{
    care::CopyReport report;
    const bool made = tried(this, QStringLiteral("La copia de seguridad no se ha podido hacer."), [&] {
        withProgress(this, QStringLiteral("Se copia el colegio, y se comprueba la copia…"), [&] {
            if (!phrase.isEmpty() && !checkKey(inspectSchool(host_->url())))
                readKey(keyPlace());
            report = care::takeCopy(host_->url(), fromQt(file), keyFileText(), phrase.toStdString());
        });
    });
    if (!made)
        return;
    Reminder(memory_, *host_).copied(file);
    undo_.tell((report.faults.empty()
                    ? QStringLiteral("Copia comprobada en %1: %2 filas, %3")
                    : QStringLiteral("Copia DEFECTUOSA en %1: %2 filas, %3. ") + toQt(report.faults.front()))
                   .arg(QFileInfo(file).fileName())
                   .arg(report.rows)
                   .arg(report.hasKey ? QStringLiteral("con la clave de las enfermedades")
                                      : QStringLiteral("sin la clave de las enfermedades")),
               QStringLiteral("Abrir la carpeta"),
               [file] { QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absolutePath())); });
}

void MainWindow::remindOfCopies()
{
    if (host_->choices().readOnly)
        return;
    if (const QString text = Reminder(memory_, *host_).due(); !text.isEmpty())
        notice_.tell({.text = text, .choices = {{QStringLiteral("Hacer una copia"), Qt::Key_P, [this] {
                                                     notice_.next();
                                                     backUp();
                                                 }}}});
}

} // namespace zv::host
