#pragma once

#include <QProcess>
#include <QRectF>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

/// What is on the pages of a file, as programs that are not ours tell it.
namespace zv::host {

inline QString output(const QString& program, const QStringList& words)
{
    QProcess run;
    run.start(program, words);
    EXPECT_TRUE(run.waitForFinished(60'000)) << program.toStdString();
    EXPECT_EQ(run.exitCode(), 0) << program.toStdString() << run.readAllStandardError().toStdString();
    return QString::fromUtf8(run.readAllStandardOutput());
}

/// What is left to compare of a text: its letters, composed, without blanks and marks that nobody sees.
inline QString bare(const QString& text)
{
    QString result;
    for (const char32_t each : text.normalized(QString::NormalizationForm_C).toUcs4())
        if (const auto category = QChar::category(each); each <= 0xFFFF && !QChar::isSpace(each) &&
                                                         category != QChar::Other_Format &&
                                                         category != QChar::Other_Control)
            result += QChar(static_cast<char16_t>(each));
    return result;
}

inline bool turns(const QString& text)
{
    return std::ranges::any_of(text, [](QChar each) {
        const auto direction = each.direction();
        return direction == QChar::DirR || direction == QChar::DirAL ||
               (direction >= QChar::DirLRE && direction <= QChar::DirPDF) ||
               (direction >= QChar::DirLRI && direction <= QChar::DirPDI);
    });
}

/// Arabic letters without the forms that they have in words, which is how pages show them.
inline QString plain(const QString& text) { return text.normalized(QString::NormalizationForm_KC); }

inline bool holdsLettersOf(const QString& page, const QString& text)
{
    return std::ranges::all_of(text, [&](QChar each) { return page.count(each) >= text.count(each); });
}

/// The pages of a file, as pdftotext reads them in the order in which they were painted.
inline QStringList pagesOf(const QString& file)
{
    QStringList pages =
        output(QStringLiteral("pdftotext"), {QStringLiteral("-raw"), file, QStringLiteral("-")}).split(u'\f');
    pages.removeLast();
    return pages;
}

/// Word of a page and its box in points.
struct Word {
    int page;
    QRectF box;
    QString text;
};
inline std::vector<Word> wordsOf(const QString& file)
{
    static const QRegularExpression word(QStringLiteral(
        "<page |<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\" xMax=\"([\\d.]+)\" yMax=\"([\\d.]+)\">([^<]*)<"));
    std::vector<Word> words;
    int page = 0;
    const QString text =
        output(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), file, QStringLiteral("-")});
    for (const QRegularExpressionMatch& found : word.globalMatch(text)) {
        if (found.captured(1).isEmpty()) {
            ++page;
            continue;
        }
        const auto side = [&](int part) { return found.captured(part).toDouble(); };
        words.push_back(
            {page, QRectF(QPointF(side(1), side(2)), QPointF(side(3), side(4))), found.captured(5)});
    }
    return words;
}

/// Everything stands within the margins, and nothing over anything else but the word across the page, whose
/// letters are large.
inline void expectNothingOver(const QString& file)
{
    constexpr double large = 60;
    constexpr double top = 39; // The line before a page's first is painted too, and clipped.
    std::vector<Word> words = wordsOf(file);
    std::erase_if(words, [](const Word& each) {
        return each.box.bottom() < top || (std::max(each.box.height(), each.box.width()) > large &&
                                           QStringLiteral("Borrador").contains(each.text));
    });
    for (std::size_t one = 0; one < words.size(); ++one) {
        EXPECT_TRUE(QRectF(36, 30, 523, 782).contains(words[one].box)) << words[one].text.toStdString();
        for (std::size_t other = one + 1; other < words.size() && words[other].page == words[one].page;
             ++other) {
            const QRectF both = words[one].box & words[other].box;
            EXPECT_FALSE(both.width() > 1 && both.height() > 3)
                << words[one].text.toStdString() << " / " << words[other].text.toStdString();
        }
    }
}

} // namespace zv::host
