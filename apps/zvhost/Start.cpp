#include "zvhost/Start.h"

#include "data/SchemaCheck.h"
#include "data/Schools.h"
#include "data/history/HistoryEngine.h"
#include "qt/Legible.h"
#include "qt/QtText.h"
#include "suite/Sample.h"
#include "zvhost/Widgets.h"

#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>
#include <QVBoxLayout>

namespace zv::host {
namespace {

const QString lastSchool = QStringLiteral("ultimoColegio");
const QString recent = QStringLiteral("recientes");
constexpr qsizetype mostRecent = 6;

/// Makes the URL of a file absolute, to hold wherever the program starts next; others hold anyway.
QString lasting(const String& url)
{
    if (engineOf(url).scheme() != u"sqlite")
        return toQt(url);
    return QStringLiteral("sqlite:") + QFileInfo(toQt(locationOf(url))).absoluteFilePath();
}

void remember(const Host& host)
{
    // A URL with a password is not stored.
    if (shownUrl(host.url()) != toQt(host.url()))
        return;
    QSettings settings;
    const QString url = lasting(host.url());
    QStringList schools = recentSchools();
    schools.removeAll(url);
    schools.prepend(url);
    schools = schools.mid(0, mostRecent);
    if (settings.value(lastSchool) != url)
        settings.setValue(lastSchool, url);
    if (recentSchools() != schools)
        settings.setValue(recent, schools);
}

/// Schema check: refuses a school in which the dialogs do not find what they need.
void requireWhole(const School& school, const String& url)
{
    String lacks;
    for (const String& each : checkSchool(school, engineOf(url)))
        lacks += each + u"\n";
    if (!lacks.empty())
        throw RuntimeError(failure::otherData,
                           u"A la base de datos le falta lo que sigue; pida que lo corrija "
                           u"quien la lleva:\n" +
                               lacks);
}

QString cannotOpen(const String& url) { return QStringLiteral("No se puede abrir %1.").arg(shownUrl(url)); }

String urlOf(const QString& file) { return u"sqlite:" + fromQt(QDir::toNativeSeparators(file)); }

/// Default path of a new school.
QString usualFile()
{
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    folder.mkpath(QStringLiteral("."));
    QString file = folder.filePath(QStringLiteral("colegio.db"));
    for (int n = 2; QFile::exists(file); ++n)
        file = folder.filePath(QStringLiteral("colegio%1.db").arg(n));
    return file;
}

/// Builds a large button with what it does under its name.
QPushButton& choice(QVBoxLayout& layout, QDialog& dialog, const QString& text, const QString& what,
                    int result)
{
    auto* button = std::make_unique<QPushButton>(text, &dialog).release();
    auto* line = std::make_unique<QLabel>(what, &dialog).release();
    line->setWordWrap(true);
    line->setIndent(button->fontMetrics().averageCharWidth());
    layout.addWidget(button);
    layout.addWidget(line);
    QObject::connect(button, &QPushButton::clicked, &dialog, [&dialog, result] { dialog.done(result); });
    return *button;
}

enum Choice { cancelled = QDialog::Rejected, sample, empty, existing };

Choice askChoice(QWidget* parent)
{
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("inicio"));
    dialog.setWindowTitle(QStringLiteral("Configuración del centro"));
    keepLegible(dialog);
    QVBoxLayout layout(&dialog);
    choice(layout, dialog, QStringLiteral("Crear un colegio de &ejemplo"),
           QStringLiteral("Con alumnos, bancos e informes inventados, para conocer el programa."), sample)
        .setDefault(true);
    choice(layout, dialog, QStringLiteral("Crear un colegio &vacío"),
           QStringLiteral("Todas las listas están por llenar."), empty);
    choice(layout, dialog, QStringLiteral("&Abrir un colegio que existe…"),
           QStringLiteral("El fichero principal del colegio; los otros dos están a su lado."), existing);
    ButtonRow(layout, dialog).addClose(QStringLiteral("&Cancelar"));
    return static_cast<Choice>(dialog.exec());
}

QString askSchoolFile(QWidget* parent, Choice what)
{
    const QString files = QStringLiteral("Colegios (*.db)");
    if (what != existing)
        return askFile(parent, QStringLiteral("Crear un colegio"), usualFile(), files, QStringLiteral("db"),
                       IfThere::leaves);
    // Normalises: any of its three files stands for the school.
    return QFileDialog::getOpenFileName(parent, QStringLiteral("Abrir un colegio"), QString(), files)
        .remove(QRegularExpression(QStringLiteral("\\.(borrado|entrada)(?=\\.db$)")));
}

} // namespace

std::unique_ptr<Host> openHost(const String& url, const Choices& choices)
{
    School school =
        history::withHistory(openSchool(url, [&](const School& found) { requireWhole(found, url); }), url);
    return std::make_unique<Host>(url, std::move(school), choices);
}

std::unique_ptr<Host> openHostShown(QWidget* parent, const String& url,
                                    const std::function<void()>& meanwhile)
{
    std::unique_ptr<Host> host;
    tried(parent, cannotOpen(url), [&] {
        withProgress(
            parent, QStringLiteral("Se comprueba el colegio…"), [&] { host = openHost(url); }, meanwhile);
        remember(*host);
    });
    return host;
}

std::unique_ptr<Host> createHostShown(QWidget* parent, const String& url, bool sample)
{
    const bool made = tried(parent, QStringLiteral("No se puede crear %1.").arg(toQt(url)), [&] {
        withProgress(parent, QStringLiteral("Se crea el colegio…"),
                     [&] { createSchool(url, sample ? fillSample : nullptr); });
    });
    return made ? openHostShown(parent, url) : nullptr;
}

std::unique_ptr<Host> chooseSchool(QWidget* parent)
{
    for (;;) {
        const Choice what = askChoice(parent);
        if (what == cancelled)
            return nullptr;
        const QString file = askSchoolFile(parent, what);
        if (file.isEmpty())
            continue;
        const String url = urlOf(file);
        if (std::unique_ptr<Host> host =
                what == existing ? openHostShown(parent, url) : createHostShown(parent, url, what == sample))
            return host;
    }
}

QStringList recentSchools() { return QSettings().value(recent).toStringList(); }

std::unique_ptr<Host> startSchool(const std::function<void()>& meanwhile)
{
    if (const QString last = QSettings().value(lastSchool).toString(); !last.isEmpty())
        if (std::unique_ptr<Host> host = openHostShown(nullptr, fromQt(last), meanwhile))
            return host;
    return chooseSchool(nullptr);
}

} // namespace zv::host
