#include "zvhost/ManualSearch.h"

#include "qt/Help.h"
#include "qt/QtText.h"
#include "zvhost/ListDialog.h"

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QRegularExpression>

#include <algorithm>

/// Keeps the linker from dropping the resource, see the manual's own window.
static void loadManual() { Q_INIT_RESOURCE(manual); }

namespace zv::host {
namespace {

constexpr ListColumn columns[] = {{u"Página"}, {u"Texto"}};
/// Words of a paragraph by which its place in the page is found again.
constexpr int wordsSought = 6;
/// Words that people type around what they look for, as plainLetters().
constexpr QStringView littleWords =
    u" a al como con cual cuando de deja del donde el en es esta este ha hay he la las le lo los me mi mis "
    u"no o para pero por porque puede puedo que quiero se si son su sus tengo un una uno y ya ";
/// What a longer word begins with, whatever its ending: "imprime", "imprimir"; "copias", "copia".
const QString stem = QStringLiteral("^(.{4,}?)(?:[ai]d[oa]|[aei]r|[aeo])?s?$");

/// What a paragraph is, the first to be shown before the others.
enum class Rank { page, heading, text };

struct Paragraph {
    QString page;
    QString title; ///< Of the page and of the part of it.
    QString text;
    Rank rank;
};

/// Text of a paragraph as the page shows it: without marks, the text of links alone.
QString shownText(QString text)
{
    static const QRegularExpression picture(QStringLiteral("!\\[[^\\]]*\\]\\([^)]*\\)"));
    static const QRegularExpression link(QStringLiteral("\\[([^\\]]*)\\]\\([^)]*\\)"));
    static const QRegularExpression marks(QStringLiteral("\\*\\*|`|^([#\\-\\s]|\\d+\\. )+"));
    return text.remove(picture).replace(link, QStringLiteral("\\1")).remove(marks).simplified();
}

void addPage(std::vector<Paragraph>& all, const QString& file)
{
    QFile page(QStringLiteral(":/manual/") + file);
    if (!page.open(QIODevice::ReadOnly))
        return;
    const QString name = QString(file).remove(QStringLiteral(".md"));
    static const QRegularExpression alone(QStringLiteral("^(#|- |\\d+\\. |\\|)"));
    QString title;
    QString part;
    QString open;
    bool isCode = false;
    const auto close = [&](Rank rank = Rank::text) {
        if (const QString text = shownText(open); !text.isEmpty() && !text.startsWith(u"|-"))
            all.push_back({name, title + part, text, rank});
        open.clear();
    };
    for (const QString& line : QString::fromUtf8(page.readAll()).split(u'\n')) {
        isCode ^= line.startsWith(u"```");
        // A heading, an item and a row of a table stand alone; the lines of a paragraph belong together.
        if (line.trimmed().isEmpty() || alone.match(line).hasMatch())
            close();
        open += line + u' ';
        if (!isCode && line.startsWith(u'#')) {
            const Rank rank = title.isEmpty() ? Rank::page : Rank::heading;
            if (rank == Rank::page)
                title = shownText(line);
            else
                part = QStringLiteral(": ") + shownText(line);
            close(rank);
        } else if (line.startsWith(u'|'))
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
        addPage(all, file);
    std::ranges::stable_sort(all, {}, &Paragraph::rank);
    return all;
}

/// What to look for in the page: the beginning of the paragraph, or of the first cell of a row.
QString soughtIn(const QString& text)
{
    const QString part = text.startsWith(u'|') ? text.section(u'|', 1, 1).trimmed() : text;
    return part.split(u' ').mid(0, wordsSought).join(u' ');
}

/// What is looked for: without the little words, unless there are no others, and without endings.
QString meant(const QString& typed)
{
    static const QRegularExpression signs(QStringLiteral("[¿?¡!]"));
    const QStringList all = searchWords(QString(typed).remove(signs));
    QStringList words;
    std::ranges::copy_if(all, std::back_inserter(words), [](const QString& word) {
        return !littleWords.contains(QString(u' ' + word + u' '));
    });
    if (words.isEmpty())
        words = all;
    static const QRegularExpression beginning(stem);
    return words.replaceInStrings(beginning, QStringLiteral("\\1")).join(u' ');
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
    dialog.searchFor(meant);
    dialog
        .command(QStringLiteral("&Ver la página"), QStringLiteral("La página no se ha podido abrir."),
                 [&](const ListDialog::Rows& rows) {
                     const Paragraph& chosen = all[rows.front()];
                     // The words of a heading may stand elsewhere first, as a message's number does.
                     if (chosen.rank == Rank::text)
                         showHelp(dialog, chosen.page, soughtIn(chosen.text));
                     else
                         showHelp(dialog, chosen.page + u'#' + chosen.text);
                 })
        .setDefault(true);
    dialog.run(QStringLiteral("El manual no está."), ListDialog::Begins::searching);
}

} // namespace zv::host
