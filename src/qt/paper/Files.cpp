#include "qt/paper/Files.h"

#include "data/DataError.h"
#include "qt/QtText.h"

#include <QBuffer>
#include <QDir>
#include <QMarginsF>
#include <QPageSize>
#include <QPdfWriter>
#include <QPrinter>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocumentFragment>
#include <QTextDocumentWriter>

#include <algorithm>

namespace zv::paper {
namespace {

constexpr StringView notPrinted =
    u"No ha salido todo: mire si queda sitio en el disco, o si la impresora está encendida.";

[[noreturn]] void fail(const QSaveFile& file, const QString& why)
{
    throw RuntimeError(failure::otherData,
                       fromQt(QStringLiteral("No se puede escribir %1: %2").arg(file.fileName(), why)));
}

QString nameOf(const Reports& reports, std::size_t place)
{
    return toQt(reports.section().sheets.at(place).fullName);
}

/// Through memory: the writer closes its device, which a file that is renamed forbids.
void writeOdt(const QTextDocument& document, QIODevice& device)
{
    QBuffer bytes;
    QTextDocumentWriter(&bytes, "odf").write(&document);
    device.write(bytes.data());
}

/// The reports of one file. False if it was stopped.
class Writer {
public:
    Writer(const Reports& reports, const Progress& progress, int all)
        : reports_(reports), progress_(progress), all_(all)
    {}

    bool pdf(QIODevice& device, Places places, const QString& title)
    {
        QPdfWriter writer(&device);
        writer.setPdfVersion(QPagedPaintDevice::PdfVersion_A1b);
        writer.setResolution(Pages::dots);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageMargins(QMarginsF());
        writer.setTitle(title);
        writer.setCreator(QStringLiteral("zvhost"));
        QPainter painter(&writer);
        return painted(painter, places, [&] { return writer.newPage(); });
    }
    bool painted(QPainter& painter, Places places, const std::function<bool()>& newPage)
    {
        bool first = true;
        return forEach(places, [&](std::size_t place) {
            const Pages pages(reports_.text(place));
            for (int page = 0; page < pages.count(); ++page) {
                if (!first && !newPage())
                    throw RuntimeError(failure::otherData, String(notPrinted));
                first = false;
                pages.paint(painter, page);
            }
        });
    }
    bool odt(QIODevice& device, Places places)
    {
        std::unique_ptr<QTextDocument> whole;
        const bool done = forEach(places, [&](std::size_t place) {
            std::unique_ptr<QTextDocument> one = flowing(reports_.text(place));
            if (whole == nullptr) {
                whole = std::move(one);
                return;
            }
            QTextBlockFormat newPage = one->begin().blockFormat(); // The fragment's first takes this one.
            newPage.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            QTextCursor end(whole.get());
            end.movePosition(QTextCursor::End);
            end.insertBlock(newPage);
            end.insertFragment(QTextDocumentFragment(one.get()));
        });
        if (done && whole != nullptr)
            writeOdt(*whole, device);
        return done;
    }

private:
    template <class Use>
    bool forEach(Places places, Use use)
    {
        for (const std::size_t place : places) {
            if (!progress_(done_, all_, nameOf(reports_, place)))
                return false;
            use(place);
            ++done_;
        }
        return true;
    }

    const Reports& reports_;
    const Progress& progress_;
    int all_;
    int done_ = 0;
};

} // namespace

Made makeFiles(const Reports& reports, Places places, const QString& folder, Format format, Into into,
               const Progress& progress)
{
    Made made;
    if (!QDir().mkpath(folder))
        throw RuntimeError(failure::otherData,
                           fromQt(QStringLiteral("No se puede crear la carpeta %1.").arg(folder)));
    Writer writer(reports, progress, static_cast<int>(places.size()));
    const auto write = [&](const QString& name, Places of) {
        QSaveFile file(QDir(folder).filePath(
            name + (format == Format::pdf ? QStringLiteral(".pdf") : QStringLiteral(".odt"))));
        if (!file.open(QIODevice::WriteOnly))
            fail(file, file.errorString());
        made.stopped = !(format == Format::pdf ? writer.pdf(file, of, name) : writer.odt(file, of));
        if (made.stopped)
            return;
        // Flushed first: on a full disk the commit would put what was cut in its place.
        if (!file.flush() || file.error() != QFileDevice::NoError || !file.commit())
            fail(file, QStringLiteral("mire si queda sitio en el disco."));
        made.files += file.fileName();
    };
    if (into == Into::one && !places.empty())
        write(toQt(fileName(reports.section())), places);
    else
        for (std::size_t at = 0; at < places.size() && !made.stopped; ++at)
            write(reports.fileName(places[at]), places.subspan(at, 1));
    return made;
}

bool print(const Reports& reports, Places places, QPrinter& printer, const Progress& progress)
{
    printer.setFullPage(true);
    QPainter painter(&printer);
    if (!painter.isActive())
        throw RuntimeError(failure::otherData,
                           u"La impresora no responde: mire si está encendida, o elija otra.");
    const QSizeF paper = printer.pageLayout().fullRect(QPageLayout::Millimeter).size();
    const double fits = std::min({1.0, paper.width() / 210, paper.height() / 297});
    painter.scale(fits, fits);
    const bool whole =
        Writer(reports, progress, static_cast<int>(places.size())).painted(painter, places, [&] {
            return printer.newPage();
        });
    if (!whole) {
        printer.abort(); // While it is painted on; afterwards everything is on its way.
        return false;
    }
    if (!painter.end() || printer.printerState() == QPrinter::Error)
        throw RuntimeError(failure::otherData, String(notPrinted));
    return true;
}

} // namespace zv::paper
