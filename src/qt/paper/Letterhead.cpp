#include "qt/paper/Letterhead.h"

#include "data/Cells.h"
#include "data/DataError.h"
#include "qt/QtText.h"
#include "runtime/Convert.h"

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QSaveFile>
#include <QtMath>

#include <algorithm>

/// Keeps the linker from dropping the resource.
static void loadTemplates() { Q_INIT_RESOURCE(plantillas); }

namespace zv::paper {
namespace {

/// Width of a logo in dots; more adds nothing on paper but size.
constexpr int widestLogo = 1200;
/// Times its height; a longer one would leave no room for the school's name.
constexpr double longestLogo = 3;

[[noreturn]] void fail(const QString& text) { throw RuntimeError(failure::otherData, fromQt(text)); }

QByteArray bytesOf(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("No se puede leer %1: %2").arg(name, file.errorString()));
    return file.readAll();
}

String textOf(const QString& name)
{
    const QByteArray bytes = bytesOf(name);
    try {
        const StringView mark = u"\uFEFF";
        String text = fromUtf8({bytes.constData(), static_cast<std::size_t>(bytes.size())});
        return text.starts_with(mark) ? text.substr(mark.size()) : text;
    } catch (const std::invalid_argument&) {
        fail(QStringLiteral("%1 no es un texto en UTF-8: guárdelo otra vez con esa codificación.").arg(name));
    }
}

QString templateName(Kind kind) { return toQt(progress::wordOf(kind)) + QStringLiteral(".html"); }

/// On white, since the archive's PDF has no transparency; a long one with white above and below, since pages
/// give it a height.
QImage flat(const QImage& picture)
{
    const QImage result(
        picture.width() > widestLogo ? picture.scaledToWidth(widestLogo, Qt::SmoothTransformation) : picture);
    QImage paper(result.width(), std::max(result.height(), qCeil(result.width() / longestLogo)),
                 QImage::Format_RGB32);
    paper.fill(Qt::white);
    QPainter(&paper).drawImage(0, (paper.height() - result.height()) / 2, result);
    return paper;
}

/// Fails with what to do.
QImage logoIn(const QString& name)
{
    QImageReader reader(name);
    const QImage picture = reader.read();
    if (picture.isNull())
        fail(QStringLiteral(
                 "No se puede leer el logotipo %1: %2. Guárdelo como PNG de no más de 3000 puntos de "
                 "ancho.")
                 .arg(name, reader.errorString()));
    return flat(picture);
}

/// Writes beside its place, so that a full disk leaves what was there.
void write(const QString& name, const QByteArray& bytes)
{
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush() ||
        !file.commit())
        fail(QStringLiteral("No se puede escribir %1: %2").arg(name, file.errorString()));
}

} // namespace

Letterhead::Letterhead(const QString& folder) : folder_(folder)
{
    const QDir files(folder);
    if (!files.exists())
        fail(QStringLiteral("No está la carpeta %1, la del papel del centro.").arg(folder));
    for (const char* suffix : {"png", "jpg", "jpeg", "bmp", "svg"}) {
        const QString name = files.filePath(QStringLiteral("logo.") + QLatin1String(suffix));
        if (!QFile::exists(name))
            continue;
        logo_ = logoIn(name);
        break;
    }
    if (const QString name = files.filePath(QStringLiteral("centro.txt")); QFile::exists(name))
        school_ = fromQt(toQt(textOf(name)).trimmed());
}

Template Letterhead::page(Kind kind) const
{
    loadTemplates();
    const QString own = folder_.isEmpty() ? QString() : QDir(folder_).filePath(templateName(kind));
    const QString name =
        !own.isEmpty() && QFile::exists(own) ? own : QStringLiteral(":/plantillas/") + templateName(kind);
    String text = textOf(name);
    if (isBlank(text))
        fail(QStringLiteral("%1 está vacío: bórrelo para usar la plantilla del programa.").arg(name));
    return {fromQt(name), std::move(text), fieldNames(kind)};
}

int Letterhead::writeTemplates(const QString& folder)
{
    loadTemplates();
    int written = 0;
    if (!QDir().mkpath(folder))
        fail(QStringLiteral("No se puede crear la carpeta %1.").arg(folder));
    for (const Kind kind : progress::kinds) {
        const QString name = QDir(folder).filePath(templateName(kind));
        if (QFile::exists(name))
            continue;
        write(name, bytesOf(QStringLiteral(":/plantillas/") + templateName(kind)));
        ++written;
    }
    return written;
}

} // namespace zv::paper
