#include "zvhost/ManualSearch.h"

#include "qt/Help.h"
#include "qt/QtText.h"
#include "zvhost/ListDialog.h"

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QRegularExpression>

/// Keeps the linker from dropping the resource, see the manual's own window.
static void loadManual() { Q_INIT_RESOURCE(manual); }

namespace zv::host {
namespace {

constexpr ListColumn columns[] = {{u"Página"}, {u"Texto"}};
/// Words of a paragraph by which its place in the page is found again.
constexpr int wordsSought = 6;

struct Paragraph {
    QString page;
    QString title;
    QString text;
};

/// Text of a paragraph as the page shows it: without marks, the text of links alone.
QString shownText(QString text)
{
    static const QRegularExpression picture(QStringLiteral("!\\[[^\\]]*\\]\\([^)]*\\)"));
    static const QRegularExpression link(QStringLiteral("\\[([^\\]]*)\\]\\([^)]*\\)"));
    static const QRegularExpression marks(QStringLiteral("\\*\\*|`|^[#\\-\\s]+"));
    return text.remove(picture).replace(link, QStringLiteral("\\1")).remove(marks).simplified();
}

void addPage(std::vector<Paragraph>& all, const QString& file)
{
    QFile page(QStringLiteral(":/manual/") + file);
    if (!page.open(QIODevice::ReadOnly))
        return;
    const QString name = QString(file).remove(QStringLiteral(".md"));
    QString title;
    QString open;
    const auto close = [&] {
        if (const QString text = shownText(open); !text.isEmpty() && !text.startsWith(u"|-"))
            all.push_back({name, title, text});
        open.clear();
    };
    for (const QString& line : QString::fromUtf8(page.readAll()).split(u'\n')) {
        const bool heading = line.startsWith(u'#');
        if (title.isEmpty() && heading) {
            title = shownText(line);
            continue;
        }
        // A heading, an item and a row of a table stand alone; the lines of a paragraph belong together.
        if (line.trimmed().isEmpty() || heading || line.startsWith(u"- ") || line.startsWith(u'|'))
            close();
        open += line + u' ';
        if (heading || line.startsWith(u'|'))
            close();
    }
    close();
}

std::vector<Paragraph> paragraphs()
{
    loadManual();
    std::vector<Paragraph> all;
    for (const QString& file :
         QDir(QStringLiteral(":/manual")).entryList({QStringLiteral("*.md")}, QDir::Files))
        if (file != u"README.md")
            addPage(all, file);
    return all;
}

/// What to look for in the page: the beginning of the paragraph, or of the first cell of a row.
QString soughtIn(const QString& text)
{
    const QString part = text.startsWith(u'|') ? text.section(u'|', 1, 1).trimmed() : text;
    return part.split(u' ').mid(0, wordsSought).join(u' ');
}

} // namespace

void searchManual(QWidget* parent)
{
    const std::vector<Paragraph> all = paragraphs();
    ListDialog dialog(parent, QStringLiteral("Buscar en la ayuda"), columns, [&] {
        std::vector<Row> rows;
        rows.reserve(all.size());
        for (const Paragraph& each : all)
            rows.push_back({static_cast<Long>(rows.size()),
                            {Value(fromQt(each.title)),
                             Value(fromQt(QString(each.text).replace(u'|', u' ').simplified()))}});
        return rows;
    });
    dialog.setObjectName(QStringLiteral("buscarAyuda"));
    dialog
        .command(QStringLiteral("&Ver la página"), QStringLiteral("La página no se ha podido abrir."),
                 [&](const ListDialog::Rows& rows) {
                     const Paragraph& chosen = all[rows.front()];
                     showHelp(dialog, chosen.page, soughtIn(chosen.text));
                 })
        .setDefault(true);
    dialog.run(QStringLiteral("El manual no está."), ListDialog::Begins::searching);
}

} // namespace zv::host
