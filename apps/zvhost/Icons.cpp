#include "zvhost/Icons.h"

#include "qt/Legible.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>

namespace zv::host {
namespace {

/// Side of the square that the drawings are made on.
constexpr double side = 24;

/// A command's name, its name in the icon themes, and its drawing, as a path: M and L move and draw to a
/// point, Z closes; O is a circle (centre, radius), A goes on along an arc of one (centre, radius, start,
/// length in degrees), B begins with one.
struct Drawing {
    const char* command;
    const char* theme;
    const char* path;
};

constexpr const char* padlock = "M 5 11 L 19 11 L 19 21 L 5 21 Z M 8 11 L 8 8 A 12 8 4 180 -180 L 16 11";

constexpr Drawing drawings[] = {
    {"nuevo", "document-new", "M 6 3 L 14 3 L 18 7 L 18 21 L 6 21 Z M 12 10 L 12 18 M 8 14 L 16 14"},
    {"ordenante", "contact-new", "O 10 8 4 B 10 21 7 180 -180 M 20 4 L 20 12 M 16 8 L 24 8"},
    {"modificar", "document-edit", "M 4 20 L 5 15 L 16 4 L 20 8 L 9 19 Z M 13 7 L 17 11"},
    {"sucursales", "go-home",
     "M 3 11 L 12 4 L 21 11 M 6 9 L 6 20 L 18 20 L 18 9 M 10 20 L 10 14 L 14 14 L 14 20"},
    {"eliminar", "edit-delete", "M 6 6 L 18 18 M 18 6 L 6 18"},
    {"historial", "document-open-recent", "O 12 12 9 M 12 6 L 12 12 L 16 14"},
    {"historialLista", "document-open-recent", "O 12 12 9 M 12 6 L 12 12 L 16 14"},
    {"deshacer", "edit-undo", "M 8 4 L 4 8 L 8 12 M 4 8 L 15 8 A 15 13 5 90 -180 L 9 18"},
    {"actualizar", "view-refresh", "B 12 12 8 40 290 M 19 2 L 18 7 L 13 6"},
    {"copiar", "edit-copy", "M 8 8 L 20 8 L 20 21 L 8 21 Z M 5 16 L 4 16 L 4 3 L 16 3 L 16 5"},
    {"encontrar", "edit-find", "O 10 10 6 M 15 15 L 21 21"},
    {"exportar", "document-save-as", "M 12 15 L 12 3 M 8 7 L 12 3 L 16 7 M 5 12 L 5 21 L 19 21 L 19 12"},
    {"imprimir", "document-print",
     "M 7 8 L 7 3 L 17 3 L 17 8 M 7 17 L 3 17 L 3 8 L 21 8 L 21 17 L 17 17 M 7 13 L 17 13 L 17 21 L 7 21 Z"},
    {"papelera", "user-trash",
     "M 4 6 L 20 6 M 9 6 L 9 3 L 15 3 L 15 6 M 6 6 L 7 21 L 17 21 L 18 6 M 10 10 L 10 17 M 14 10 L 14 17"},
    {"enuso", "object-locked", padlock},
    {"progreso", "view-task",
     "M 9 6 L 21 6 M 9 12 L 21 12 M 9 18 L 21 18 M 3 6 L 5 8 L 7 4 M 3 12 L 5 14 L 7 10 M 4 18 L 6 18"},
    {"sesion", "user-identity", "O 12 8 4 B 12 22 8 180 -180"},
    {"otro", "document-open", "M 3 6 L 9 6 L 11 8 L 21 8 L 21 19 L 3 19 Z"},
    {"ayuda", "help-contents", "O 12 12 9 B 12 10 3 170 -230 L 12 14 M 12 17 L 12 18"},
    {"buscarAyuda", "edit-find", "O 10 10 6 M 15 15 L 21 21"},
    {"salir", "application-exit", "M 10 4 L 4 4 L 4 20 L 10 20 M 9 12 L 21 12 M 17 8 L 21 12 L 17 16"},
};

QPainterPath pathOf(const char* drawing)
{
    QPainterPath path;
    const QStringList words = QString::fromLatin1(drawing).split(u' ');
    qsizetype at = 0;
    const auto next = [&] { return words[at++].toDouble(); };
    while (at < words.size()) {
        const QString& verb = words[at++];
        if (verb == u"Z") {
            path.closeSubpath();
            continue;
        }
        const double x = next();
        const double y = next();
        if (verb == u"M")
            path.moveTo(x, y);
        else if (verb == u"L")
            path.lineTo(x, y);
        else {
            const double radius = next();
            const QRectF around(x - radius, y - radius, 2 * radius, 2 * radius);
            if (verb == u"O") {
                path.addEllipse(around);
                continue;
            }
            const double start = next();
            if (verb == u"B")
                path.arcMoveTo(around, start);
            path.arcTo(around, start, next());
        }
    }
    return path;
}

/// Cache: each icon asks at each painting.
const QPalette& colors()
{
    static QPalette mended;
    static qint64 of = 0;
    const QPalette now = QGuiApplication::palette();
    if (of != now.cacheKey()) {
        of = now.cacheKey();
        mended = legible(now);
    }
    return mended;
}

/// Icon engine of a line drawing: it has every size, and follows the palette.
class LineEngine final : public QIconEngine {
public:
    explicit LineEngine(const char* drawing) : drawing_(drawing) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override
    {
        const QPalette& palette = colors();
        const QColor colour = mode == QIcon::Disabled
                                  ? palette.color(QPalette::Disabled, QPalette::WindowText)
                              : mode == QIcon::Selected ? palette.color(QPalette::HighlightedText)
                                                        : palette.color(QPalette::WindowText);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / side, rect.height() / side);
        painter->setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(pathOf(drawing_));
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap drawn(size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        paint(&painter, QRect({}, size), mode, state);
        return drawn;
    }
    QIconEngine* clone() const override { return std::make_unique<LineEngine>(*this).release(); }

private:
    const char* drawing_;
};

QIcon drawn(const char* drawing) { return QIcon(std::make_unique<LineEngine>(drawing).release()); }

} // namespace

QIcon commandIcon(const QString& command)
{
    const auto* found = std::ranges::find_if(
        drawings, [&](const Drawing& each) { return command == QLatin1String(each.command); });
    if (found == std::end(drawings))
        return {};
    return QIcon::fromTheme(QString::fromLatin1(found->theme), drawn(found->path));
}

QIcon heldIcon() { return drawn(padlock); }

} // namespace zv::host
