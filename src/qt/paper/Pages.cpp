#include "qt/paper/Pages.h"

#include "paper/Template.h"
#include "qt/paper/Breaks.h"
#include "qt/paper/Flowing.h"

#include <QAbstractTextDocumentLayout>
#include <QGlyphRun>
#include <QTextBlock>
#include <QTextLayout>
#include <QUrl>

#include <map>

namespace zv::paper {
namespace {

constexpr double dotsPerMm = Pages::dots / 25.4;
// A4, in millimetres.
constexpr double paperWidth = 210;
constexpr double paperHeight = 297;
constexpr double marginAside = 15;
constexpr double marginAbove = 14;
constexpr double bodyHeight = paperHeight - marginAbove - 21;
constexpr double footerTop = paperHeight - 17;
constexpr double footerHeight = 6;
/// Opaque, and so pale that black on it has a contrast of 16.
const QColor pale(229, 229, 229);
const QColor ink(51, 51, 51);

/// Metrics of the layout: a picture of one dot.
QImage& metrics()
{
    static QImage picture = [] {
        QImage made(1, 1, QImage::Format_RGB32);
        made.setDotsPerMeterX(qRound(Pages::dots / 0.0254));
        made.setDotsPerMeterY(qRound(Pages::dots / 0.0254));
        return made;
    }();
    return picture;
}

/// Narrow enough for a table of six columns; the last is where Debian has none of the others.
QFont font(double points)
{
    QFont result;
    result.setFamilies({QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans Condensed"),
                        QStringLiteral("DejaVu Sans"), QStringLiteral("sans-serif")});
    result.setPointSizeF(points);
    // Some spacing, which nobody sees, keeps fi and fl from becoming one letter that no search finds.
    result.setLetterSpacing(QFont::AbsoluteSpacing, 0.02);
    result.setHintingPreference(QFont::PreferNoHinting);
    return result;
}

void fill(QTextDocument& document, const Text& text)
{
    QTextOption option = document.defaultTextOption();
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document.setDefaultTextOption(option);
    document.setDefaultFont(font(11));
    document.setUndoRedoEnabled(false);
    if (!text.logo.isNull())
        document.addResource(QTextDocument::ImageResource, QUrl(QStringLiteral("logo")), text.logo);
    document.setHtml(text.html);
}

/// Whether a font has the character, or it needs none.
bool hasGlyph(char32_t character)
{
    static std::map<char32_t, bool> known;
    const auto [place, added] = known.emplace(character, true);
    const auto category = QChar::category(character);
    if (!added || category == QChar::Other_Format || category == QChar::Separator_Space)
        return place->second;
    QTextLayout layout(QString::fromUcs4(&character, 1), font(10));
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    for (const QGlyphRun& run : layout.glyphRuns())
        if (run.glyphIndexes().contains(0))
            place->second = false;
    return place->second;
}

} // namespace

Pages::Pages(const Text& text)
    : footer_(text.footer), draft_(text.draft), document_(std::make_unique<QTextDocument>())
{
    document_->setDocumentMargin(0);
    document_->documentLayout()->setPaintDevice(&metrics());
    fill(*document_, text);
    document_->setPageSize(QSizeF(paperWidth - 2 * marginAside, bodyHeight) * dotsPerMm);
    breakWell(*document_);
}

void Pages::paint(QPainter& painter, int page) const
{
    painter.save();
    painter.scale(double(painter.device()->logicalDpiX()) / dots,
                  double(painter.device()->logicalDpiY()) / dots);
    if (draft_) {
        painter.save();
        painter.translate(paperWidth / 2 * dotsPerMm, paperHeight / 2 * dotsPerMm);
        painter.rotate(-55);
        QFont large = font(10);
        large.setPixelSize(int(52 * dotsPerMm));
        painter.setFont(large);
        painter.setPen(pale);
        const double half = paperHeight / 2 * dotsPerMm;
        painter.drawText(QRectF(-half, -half, 2 * half, 2 * half), Qt::AlignCenter,
                         QStringLiteral("Borrador"));
        painter.restore();
    }
    const QSizeF body = document_->pageSize();
    QFont small = font(10);
    small.setPixelSize(qRound(10.0 * dots / 72));
    painter.setFont(small);
    painter.setPen(QPen(ink, 0.2 * dotsPerMm));
    const QRectF foot(marginAside * dotsPerMm, footerTop * dotsPerMm, body.width(), footerHeight * dotsPerMm);
    painter.drawLine(foot.topLeft(), foot.topRight());
    const QString place = QStringLiteral("Página %1 de %2").arg(page + 1).arg(count());
    const double room =
        foot.width() - QFontMetricsF(small, &metrics()).horizontalAdvance(place) - 4 * dotsPerMm;
    painter.drawText(foot, Qt::AlignRight | Qt::AlignVCenter, place);
    painter.drawText(foot, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetricsF(small, &metrics()).elidedText(footer_, Qt::ElideRight, room));
    painter.translate(marginAside * dotsPerMm, marginAbove * dotsPerMm - page * body.height());
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = QRectF(0, page * body.height(), body.width(), body.height());
    context.palette.setColor(QPalette::Text, Qt::black);
    painter.setClipRect(context.clip);
    document_->documentLayout()->draw(&painter, context);
    painter.restore();
}

std::unique_ptr<QTextDocument> flowing(const Text& text)
{
    auto document = std::make_unique<QTextDocument>();
    fill(*document, text);
    suitWriter(*document);
    const auto add = [&](QTextCursor::MoveOperation where, const QString& what, double points,
                         Qt::Alignment side) {
        QTextBlockFormat block;
        block.setAlignment(side);
        QTextCharFormat letters;
        letters.setFontPointSize(points);
        letters.setForeground(ink);
        QTextCursor cursor(document.get());
        cursor.movePosition(where);
        cursor.insertBlock(block, letters);
        if (where == QTextCursor::Start) {
            cursor.movePosition(where);
            cursor.setBlockFormat(block);
        }
        cursor.insertText(what, letters);
    };
    add(QTextCursor::End, text.footer, 10, Qt::AlignLeft);
    if (text.draft)
        add(QTextCursor::Start, QStringLiteral("Borrador"), 36, Qt::AlignHCenter);
    return document;
}

void addLacking(StringView text, QString& lacking)
{
    for (const char32_t each : codePoints(text)) {
        const bool lineBreak =
            (each >= u'\t' && each <= u'\r') || each == 0x85 || each == 0x2028 || each == 0x2029;
        if (lineBreak || (isPrintable(each) && hasGlyph(each)))
            continue;
        const QString one = isPrintable(each) ? QString::fromUcs4(&each, 1)
                                              : QStringLiteral("[U+%1]").arg(each, 4, 16, QLatin1Char('0'));
        if (!lacking.contains(one))
            lacking += one;
    }
}

} // namespace zv::paper
