// The window from which reports go to paper.
#include "HostFixture.h"
#include "PdfText.h"

#include "qt/Contrast.h"
#include "zvhost/PrintDialog.h"

#include <QDir>
#include <QTemporaryDir>
#include <QXmlStreamReader>

namespace zv::host {

/// The window of a section whose first two are ticked, and a folder with the school's paper.
struct PrintTest : HostTest {
    QTemporaryDir folder;
    Remembered memory{Remembered::Where::nowhere};
    PrintDialog dialog{window.get(), window->host(), memory, paper::Kind::secondary, 13};
    QListWidget& pupils = *dialog.findChild<QListWidget*>(QStringLiteral("alumnos"));
    const QDir into{folder.filePath(QStringLiteral("salida"))};

    void SetUp() override
    {
        put(QStringLiteral("centro.txt"), "Escola «Mar & Cel»\n");
        QImage logo(3000, 100, QImage::Format_ARGB32);
        logo.fill(Qt::transparent);
        ASSERT_TRUE(logo.save(folder.filePath(QStringLiteral("logo.png"))));
        dialog.usePaper(folder.path());
        for (int row = 2; row < pupils.count(); ++row)
            pupils.item(row)->setCheckState(Qt::Unchecked);
    }
    void put(const QString& name, const char* text)
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) > 0);
    }
    /// The file of the first pupil.
    QString write(paper::Format format)
    {
        dialog.write(into.path(), format);
        return into.filePath(into.entryList(QDir::Files, QDir::Name).value(0));
    }
};

TEST_F(PrintTest, the_pupil_who_is_shown_can_be_read)
{
    dialog.show();
    QApplication::processEvents();
    test::underEachPalette([&] {
        const QRect chosen = pupils.visualItemRect(pupils.item(0)).adjusted(30, 2, -4, -2);
        test::expectLegible({"the pupil who is shown", *pupils.viewport(), chosen});
    });
}

TEST_F(PrintTest, the_ticked_ones_are_written_on_the_schools_paper)
{
    const QStringList pages = pagesOf(write(paper::Format::pdf));
    EXPECT_EQ(into.entryList(QDir::Files).size(), 2);
    EXPECT_EQ(pages.size(), 1) << "a long logo leaves room";
    EXPECT_THAT(pages.front().toStdString(), HasSubstr("Escola «Mar & Cel»"));
}

TEST_F(PrintTest, an_odt_says_what_a_pdf_does_and_has_no_cell_beyond_its_columns)
{
    const QString odt = write(paper::Format::odt);
    EXPECT_EQ(into.entryList(QDir::Files).size(), 2);
    const QString content = output(
        QStringLiteral("python3"),
        {QStringLiteral("-c"),
         QStringLiteral(
             "import sys,zipfile;sys.stdout.buffer.write(zipfile.ZipFile(sys.argv[1]).read('content.xml'))"),
         odt});
    EXPECT_THAT(content.toStdString(), HasSubstr("Escola «Mar &amp; Cel»"));
    EXPECT_FALSE(content.contains(QLatin1String("text-position=\"100%\""))) << "it would be tiny";
    // What PDF has on each page: whose it is, and that it is a draft.
    const bool draft = pupils.item(0)->text().contains(QStringLiteral("(borrador)"));
    EXPECT_EQ(content.contains(QStringLiteral(">Borrador<")), draft);
    EXPECT_TRUE(
        content.contains(pupils.item(0)->text().section(QStringLiteral(" ("), 0, 0) + QStringLiteral(" · ")));
    // Cells beyond the table's columns are shown by no word processor.
    int columns = 0;
    int cells = 0;
    int most = -1;
    for (QXmlStreamReader tags(content); !tags.atEnd(); tags.readNext()) {
        const QStringView tag = tags.isStartElement() ? tags.qualifiedName() : QStringView();
        if (tag == QLatin1String("table:table"))
            columns = 0;
        else if (tag == QLatin1String("table:table-column"))
            ++columns;
        else if (tag == QLatin1String("table:table-row"))
            cells = 0;
        else if (tag == QLatin1String("table:table-cell"))
            most = std::max(most, ++cells - columns);
    }
    EXPECT_EQ(most, 0);
    if (qEnvironmentVariableIsSet("ZV_LARGO")) {
        output(QStringLiteral("soffice"),
               {QStringLiteral("--headless"),
                QStringLiteral("-env:UserInstallation=file://") + folder.filePath(QStringLiteral("perfil")),
                QStringLiteral("--convert-to"), QStringLiteral("pdf"), QStringLiteral("--outdir"),
                folder.path(), odt});
        EXPECT_THAT(pagesOf(folder.filePath(QFileInfo(odt).completeBaseName() + QStringLiteral(".pdf")))
                        .join(QString())
                        .toStdString(),
                    HasSubstr("Escola «Mar & Cel»"));
    }
}

TEST_F(PrintTest, a_template_with_a_slip_prints_nothing_and_says_where_it_is)
{
    put(QStringLiteral("eso.html"), "<p>\n{{alumna}}</p>");
    dialog.load();
    EXPECT_EQ(pupils.count(), 0);
    QStringList told;
    for (const QLabel* each : dialog.findChildren<QLabel*>())
        told += each->text();
    EXPECT_THAT(told.join(u'\n').toStdString(),
                HasSubstr("eso.html está mal, línea 2: no hay ningún campo «alumna»"));
}

} // namespace zv::host
