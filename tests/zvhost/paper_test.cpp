// Reports on paper, taken apart again by programs that are not ours.
#include "HostFixture.h"
#include "PdfText.h"

#include "data/NumberOf.h"
#include "data/Statement.h"
#include "qt/Legible.h"
#include "qt/paper/Files.h"
#include "robot/OddTexts.h"

#include <QDir>
#include <QPrinter>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <csignal>
#include <numeric>
#include <sys/resource.h>

namespace zv::host {
namespace {

using paper::Kind;
using paper::Reports;

constexpr Long primarySection = 3;
constexpr Long secondarySection = 13;
constexpr Long advisedSection = 15;
const std::pair<Kind, Long> written[] = {
    {Kind::primary, primarySection}, {Kind::secondary, secondarySection}, {Kind::guidance, advisedSection}};

/// All the pages of a file, without blanks.
QString wholeOf(const QString& file) { return bare(pagesOf(file).join(u'\n')); }

const paper::Progress goOn = [](int, int, const QString&) { return true; };

} // namespace

struct PaperTest : HostTest {
    QTemporaryDir folder;

    Reports reports(Kind kind, Long section, const QString& own = {})
    {
        return {*school.centro, kind, section, own.isEmpty() ? paper::Letterhead() : paper::Letterhead(own),
                std::chrono::year(2026) / 6 / 19};
    }
    static std::vector<std::size_t> everybody(const Reports& all)
    {
        std::vector<std::size_t> places(all.section().sheets.size());
        std::iota(places.begin(), places.end(), 0);
        return places;
    }
    paper::Made make(const Reports& all, paper::Into into = paper::Into::each,
                     paper::Format format = paper::Format::pdf)
    {
        return makeFiles(all, everybody(all), folder.path(), format, into, goOn);
    }
    void run(const String& statement) { school.centro->Execute(statement); }
    /// All fifteen texts of every pupil of the secondary section.
    void writeSecondary(const std::function<String(Long pupil, int text)>& text)
    {
        const Reports all = reports(Kind::secondary, secondarySection);
        for (const paper::Sheet& sheet : all.section().sheets) {
            const auto values = [&](int first, int last) {
                String row = u"(" + decimalText(sheet.pupil);
                for (int each = first; each < last; ++each)
                    row += u"," + textLiteral(text(sheet.pupil, each));
                return row + u")";
            };
            for (const StringView table : {u"Alumno_InfInd", u"Alumno_InfIndESO"})
                run(u"DELETE FROM " + String(table) + u" WHERE CodAlumno=" + decimalText(sheet.pupil));
            run(u"INSERT INTO Alumno_InfInd VALUES " + values(0, 3));
            run(u"INSERT INTO Alumno_InfIndESO VALUES " + values(3, 15));
        }
    }
};

TEST_F(PaperTest, every_text_stands_whole_on_its_pupils_pages_and_on_nobody_elses)
{
    const std::vector<String> odd = oddTexts();
    std::map<std::pair<Long, int>, QString> texts;
    std::size_t next = 0;
    writeSecondary([&](Long pupil, int text) {
        String one = odd[next++ % odd.size()];
        if (one.find_first_of(StringView(u"\0\uFFFE\uFFFF", 3)) != String::npos || !isWellFormed(one))
            one = u"común";
        one = u"p" + decimalText(pupil) + u"t" + decimalText(text) + u": " + String(cut(one, 180)) + u" ¶";
        texts[{pupil, text}] = toQt(one);
        return one;
    });
    const Reports all = reports(Kind::secondary, secondarySection);
    const paper::Made made = make(all);
    ASSERT_EQ(made.files.size(), qsizetype(all.section().sheets.size()));
    int whole = 0;
    int told = 0;
    int pairs = 0;
    for (std::size_t place = 0; place < all.section().sheets.size(); ++place) {
        const Long pupil = all.section().sheets[place].pupil;
        QString page = wholeOf(made.files[qsizetype(place)]);
        const QString lacking = all.lacking(place);
        for (const auto& [owner, text] : texts) {
            const QString wanted = bare(text);
            if (owner.first != pupil) {
                EXPECT_FALSE(page.contains(QStringLiteral("p%1t%2:").arg(owner.first).arg(owner.second)));
                ++pairs;
                continue;
            }
            QString lacks;
            paper::addLacking(text.toStdU16String(), lacks);
            if (!lacks.isEmpty()) {
                ++told;
                EXPECT_TRUE(lacking.contains(lacks.front())) << text.toStdString();
                EXPECT_TRUE(page.contains(QStringLiteral("p%1t%2:").arg(owner.first).arg(owner.second)));
            } else if (turns(text))
                EXPECT_TRUE(holdsLettersOf(plain(page), plain(wanted))) << text.toStdString();
            else
                EXPECT_TRUE(page.contains(wanted)) << wanted.toStdString() << '\n' << page.toStdString();
            ++whole;
        }
    }
    for (std::size_t place = 0; place < all.section().sheets.size(); ++place) {
        const QString page = wholeOf(made.files[qsizetype(place)]);
        for (std::size_t other = 0; other < all.section().sheets.size(); ++other, ++pairs)
            EXPECT_EQ(page.contains(bare(toQt(all.section().sheets[other].fullName))), other == place);
    }
    std::cout << whole << " texts, " << told << " of them told as lacking, " << pairs << " pairs\n";
    EXPECT_GT(whole, 300);
    EXPECT_GT(told, 0);
    EXPECT_GT(pairs, 10'000);
}

TEST_F(PaperTest, every_answer_stands_in_words_on_its_pupils_pages)
{
    std::size_t answers = 0;
    for (const auto& [kind, section] : {written[0], written[2]}) {
        const Reports all = reports(kind, section);
        const QStringList files = make(all).files;
        for (std::size_t place = 0; place < all.section().sheets.size(); ++place) {
            const QString page = wholeOf(files[qsizetype(place)]);
            const paper::Sheet& sheet = all.section().sheets[place];
            std::vector<String> words = sheet.answers;
            words.insert(words.end(), {sheet.assessment, sheet.difficulties, sheet.measures});
            for (const paper::Area& area : sheet.areas)
                words.insert(words.end(), area.answers.begin(), area.answers.end());
            for (const String& each : words)
                EXPECT_TRUE(page.contains(bare(toQt(each)))) << toUtf8(each);
            answers += words.size();
        }
    }
    std::cout << answers << " answers\n";
    EXPECT_GT(answers, 1'000U);
}

TEST_F(PaperTest, a_draft_is_whatever_lacks_something_whoever_wrote_it_and_whoever_shows_it)
{
    const auto sheetOf = [](const Reports& all, Long pupil) -> const paper::Sheet& {
        return *std::ranges::find(all.section().sheets, pupil, &paper::Sheet::pupil);
    };
    const Long left = reports(Kind::secondary, secondarySection).section().sheets.front().pupil;
    const std::vector<paper::Sheet> advised = reports(Kind::guidance, advisedSection).section().sheets;
    const Long hidden = advised[1].pupil;
    const Long several = 10'000 + hidden;
    // Half a report of somebody who has left since.
    run(statement(u"UPDATE Alumno SET fechabaja='1/2/2026' WHERE IDAlumno={}", {left}));
    run(statement(u"UPDATE Alumno_InfInd SET Valoracion='  ' WHERE CodAlumno={}", {left}));
    // One whom the window does not show, with one answer; the last of two notes; answers and questions
    // without words.
    run(statement(u"UPDATE Alumno SET IDAlumno={},Apellido_1=NULL WHERE IDAlumno={}",
                  {several, advised[0].pupil}));
    run(statement(u"UPDATE Alumno SET Nombre=NULL,Apellido_1='',Apellido_2=NULL WHERE IDAlumno={}",
                  {hidden}));
    run(u"DELETE FROM ConsejoOrientador_Nota");
    run(u"DELETE FROM ConsejoOrientador_Respuesta");
    run(u"UPDATE ConsejoOrientador SET Descripcion=' ' WHERE IDConsejoOrientador=3");
    for (Long question = 1; question <= 8; ++question) {
        run(statement(u"INSERT INTO ConsejoOrientador_Respuesta VALUES ({},{},'Sí {}')",
                      {question, question, question}));
        run(statement(u"INSERT INTO ConsejoOrientador_Nota VALUES ({},{},{},{},{})",
                      {question, several, advisedSection, question, question}));
    }
    run(u"INSERT INTO ConsejoOrientador_Respuesta VALUES (20,2,NULL)");
    run(statement(u"INSERT INTO ConsejoOrientador_Nota VALUES (10,{},{},0,1)", {several, advisedSection}));
    run(statement(u"INSERT INTO ConsejoOrientador_Nota VALUES (11,{},{},20,2)", {several, advisedSection}));
    run(statement(u"INSERT INTO ConsejoOrientador_Nota VALUES (12,{},{},3,3)", {hidden, advisedSection}));
    const Reports guidance = reports(Kind::guidance, advisedSection);
    const Reports secondary = reports(Kind::secondary, secondarySection);
    EXPECT_TRUE(sheetOf(secondary, left).left);
    EXPECT_THAT(sheetOf(secondary, left).missing,
                testing::Contains(String(u"Valoración del aprendizaje y promoción")));
    EXPECT_EQ(sheetOf(secondary, left).assessment, u"");
    EXPECT_EQ(sheetOf(guidance, several).missing.size(), 2U);
    EXPECT_EQ(sheetOf(guidance, several).answers[1], u"");
    EXPECT_TRUE(sheetOf(guidance, hidden).hidden);
    EXPECT_EQ(sheetOf(guidance, hidden).missing.size(), 7U);
    const auto place =
        static_cast<std::size_t>(std::ranges::find(guidance.section().sheets, hidden, &paper::Sheet::pupil) -
                                 guidance.section().sheets.begin());
    EXPECT_THAT(guidance.fileName(place).toStdString(), HasSubstr("Alumno " + std::to_string(hidden)));
    EXPECT_THAT(toUtf8(guidance.text(place).html.toStdU16String()), HasSubstr("La pregunta 3"));
    // A section of another kind of teaching, and one of none.
    run(u"UPDATE Seccion SET CodCurso=NULL WHERE IDSeccion=15");
    for (const auto& [kind, section] :
         {std::pair(Kind::primary, secondarySection), std::pair(Kind::guidance, primarySection),
          std::pair(Kind::guidance, Long{15})})
        EXPECT_THROW(reports(kind, section), RuntimeError);
}

TEST_F(PaperTest, a_key_longer_than_a_page_is_printed_over_nothing)
{
    for (int answer = 0; answer < 100; ++answer)
        run(statement(
            u"INSERT INTO TipoRespInfInd VALUES ({},{},'Respuesta larga número {} de las muchas que "
            u"este centro tiene')",
            {Long{1000 + answer}, Long{answer / 20 + 1}, Long{answer}}));
    const Reports all = reports(Kind::primary, primarySection);
    const paper::Made made = makeFiles(all, std::vector<std::size_t>{0}, folder.path(), paper::Format::pdf,
                                       paper::Into::each, goOn);
    const QStringList pages = pagesOf(made.files.front());
    for (const QString& page : pages)
        EXPECT_GT(page.size(), 200) << page.toStdString();
    const QString whole = bare(pages.join(QString()));
    for (int answer = 0; answer < 100; ++answer)
        EXPECT_TRUE(whole.contains(QStringLiteral("número%1de").arg(answer))) << answer;
    expectNothingOver(made.files.front());
}

TEST_F(PaperTest, names_of_files_have_room_in_any_folder_and_a_printer_gets_what_a_file_does)
{
    const String wide(100, u'字');
    run(u"UPDATE Alumno SET Nombre='" + wide + u"',Apellido_1='" + wide + u"'");
    run(u"UPDATE Seccion SET Descripcion='" + wide + u"'");
    run(u"UPDATE Curso SET Descripcion='" + wide + u"'");
    const Reports all = reports(Kind::secondary, secondarySection);
    EXPECT_EQ(make(all).files.size(), qsizetype(all.section().sheets.size()));
    const QStringList filed = pagesOf(make(all, paper::Into::one).files.front());
    for (const bool stops : {false, true}) {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFileName(folder.filePath(QStringLiteral("impreso.pdf")));
        printer.setPageSize(QPageSize(QPageSize::A4));
        EXPECT_EQ(print(all, everybody(all), printer,
                        [stops](int done, int, const QString&) { return !stops || done < 2; }),
                  !stops);
        const QStringList printed = pagesOf(printer.outputFileName());
        EXPECT_EQ(printed.size() < filed.size(), stops);
        EXPECT_EQ(printed.front(), filed.front());
    }
}

TEST_F(PaperTest, texts_of_200_wide_letters_are_neither_cut_nor_broken_over_pages_nor_over_one_another)
{
    const String wide(200, u'W');
    writeSecondary([&](Long, int) { return wide; });
    run(u"UPDATE TipoRespInfInd SET Descripcion='" + wide + u"' WHERE IDResp IN (2,4,9,11,14)");
    run(u"UPDATE ConsejoOrientador_Respuesta SET Descripcion='" + wide + u"'");
    const QStringList headings{QStringLiteral("Respecto al Propio Alumno"),
                               QStringLiteral("Utilización de Procedimientos"),
                               QStringLiteral("Nuevas Actitudes"),
                               QStringLiteral("Valoración por áreas"),
                               QStringLiteral("Dificultades de asimilación en las distintas áreas"),
                               QStringLiteral("Aplicación de medidas educativas")};
    for (const auto& [kind, section] : written) {
        const Reports all = reports(kind, section);
        const paper::Made made = makeFiles(all, std::vector<std::size_t>{0}, folder.path(),
                                           paper::Format::pdf, paper::Into::each, goOn);
        const QStringList pages = pagesOf(made.files.front());
        for (const QString& page : pages) {
            const QStringList lines = page.trimmed().split(u'\n');
            if (kind != Kind::secondary) {
                EXPECT_EQ(page.count(u'W') % 200, 0) << page.toStdString();
            }
            EXPECT_GT(lines.size(), 4) << "signatures alone: " << page.toStdString();
            // Painted after the foot, which comes first.
            EXPECT_FALSE(headings.contains(lines.back())) << page.toStdString();
        }
        if (kind == Kind::secondary) {
            EXPECT_EQ(pages.join(QString()).count(u'W'), 3000);
        }
        expectNothingOver(made.files.front());
    }
}

TEST_F(PaperTest, files_are_archives_whose_letters_are_embedded_large_and_dark_enough)
{
    for (const auto& [kind, section] : written) {
        const Reports all = reports(kind, section);
        const paper::Made made = make(all, paper::Into::one);
        ASSERT_EQ(made.files.size(), 1);
        const QString file = made.files.front();
        EXPECT_THAT(output(QStringLiteral("qpdf"), {QStringLiteral("--check"), file}).toStdString(),
                    HasSubstr("No syntax or stream encoding errors found"));
        const std::string plain = output(QStringLiteral("qpdf"),
                                         {QStringLiteral("--qdf"), QStringLiteral("--object-streams=disable"),
                                          file, QStringLiteral("-")})
                                      .toStdString();
        for (const char* has :
             {"pdfaid:part=\"1\" pdfaid:conformance=\"B\"", "/GTS_PDFA1", "/DestOutputProfile"})
            EXPECT_THAT(plain, HasSubstr(has));
        for (const char* hasNot :
             {"/SMask <", "/SMask 1", "/Transparency", "/Encrypt", "/JavaScript", "/ca 0"})
            EXPECT_THAT(plain, testing::Not(HasSubstr(hasNot)));
        QStringList fonts =
            output(QStringLiteral("pdffonts"), {file}).split(u'\n', Qt::SkipEmptyParts).mid(2);
        EXPECT_FALSE(fonts.isEmpty());
        for (const QString& font : fonts)
            EXPECT_TRUE(font.contains(QRegularExpression(QStringLiteral("\\byes +(yes|no) +yes\\b"))))
                << font.toStdString();
        const QString sizes = output(QStringLiteral("pdftohtml"),
                                     {QStringLiteral("-xml"), QStringLiteral("-i"), QStringLiteral("-zoom"),
                                      QStringLiteral("1"), QStringLiteral("-stdout"), file});
        static const QRegularExpression size(QStringLiteral("<fontspec [^>]*size=\"(\\d+)\""));
        int seen = 0;
        for (const QRegularExpressionMatch& found : size.globalMatch(sizes)) {
            EXPECT_GE(found.captured(1).toInt(), 10) << found.captured(0).toStdString();
            ++seen;
        }
        EXPECT_GT(seen, 2);
        int drafts = 0;
        for (std::size_t place = 0; place < all.section().sheets.size(); ++place)
            drafts += all.isDraft(place) ? 1 : 0;
        EXPECT_GT(drafts, 0);
        const QStringList pages = pagesOf(file);
        EXPECT_EQ(pages.filter(QStringLiteral("Página 1 de ")).filter(QStringLiteral("Borrador · ")).size(),
                  drafts);
        EXPECT_EQ(pages.filter(QStringLiteral("Borrador. Falta: ")).size(), drafts);
    }
}

TEST_F(PaperTest, letters_of_every_colour_stand_out_on_every_ground_of_the_templates)
{
    ASSERT_EQ(paper::Letterhead::writeTemplates(folder.path()), 3);
    for (const QFileInfo& each : QDir(folder.path()).entryInfoList({QStringLiteral("*.html")})) {
        QFile file(each.filePath());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString page = QString::fromUtf8(file.readAll());
        static const QRegularExpression colors(QStringLiteral("(bgcolor=\"|[^-]color: )(#[0-9a-f]{6})"));
        QList<QColor> inks{QColor(51, 51, 51)}; // The word across the pages of a draft.
        QList<QColor> grounds{Qt::white, QColor(229, 229, 229)};
        for (const QRegularExpressionMatch& found : colors.globalMatch(page))
            (found.captured(1).startsWith(u'b') ? grounds : inks).append(QColor(found.captured(2)));
        EXPECT_GT(inks.size(), 3);
        for (const QColor& ink : inks)
            for (const QColor& ground : grounds)
                EXPECT_GE(contrastOf(ink, ground), 7)
                    << ink.name().toStdString() << ground.name().toStdString();
    }
}

TEST_F(PaperTest, what_was_made_before_a_stop_stays_whole_and_nothing_else)
{
    const Reports all = reports(Kind::secondary, secondarySection);
    const paper::Progress third = [](int done, int, const QString&) { return done < 3; };
    for (const auto& [into, files] : {std::pair(paper::Into::each, 3), std::pair(paper::Into::one, 0)}) {
        const QTemporaryDir place;
        const paper::Made made =
            makeFiles(all, everybody(all), place.path(), paper::Format::pdf, into, third);
        EXPECT_TRUE(made.stopped);
        EXPECT_EQ(made.files.size(), files);
        EXPECT_EQ(QDir(place.path()).entryList(QDir::Files | QDir::Hidden).size(), files);
        for (const QString& file : made.files)
            output(QStringLiteral("qpdf"), {QStringLiteral("--check"), file});
    }
}

TEST_F(PaperTest, a_disk_that_fills_is_told_and_leaves_what_was_there)
{
    const Reports all = reports(Kind::secondary, secondarySection);
    const std::vector<std::size_t> first{0};
    rlimit usual{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &usual), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    // Whether the last bytes are still on their way when the file ends, or the first ones fail already.
    for (const auto& disk : {std::pair(paper::Format::odt, 100), std::pair(paper::Format::pdf, 100),
                             std::pair(paper::Format::odt, 2'000), std::pair(paper::Format::pdf, 20'000)}) {
        const paper::Format format = disk.first;
        const int room = disk.second;
        const QString name =
            makeFiles(all, first, folder.path(), format, paper::Into::each, goOn).files.front();
        const auto bytes = [&] {
            QFile file(name);
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            return file.readAll();
        };
        const QByteArray before = bytes();
        ASSERT_GT(before.size(), room);
        std::cout.flush();
        const rlimit tight{static_cast<rlim_t>(room), usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &tight);
        const auto number =
            numberOf([&] { makeFiles(all, first, folder.path(), format, paper::Into::each, goOn); });
        setrlimit(RLIMIT_FSIZE, &usual);
        EXPECT_EQ(number, failure::otherData) << room;
        EXPECT_EQ(bytes(), before) << room;
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

} // namespace zv::host
