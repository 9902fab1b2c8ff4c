#include "qt/Window.h"

#include <QDesktopServices>
#include <QFile>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextBrowser>

namespace zv::test {

struct Help : WindowTest {
    Ficha bank{notes, u"frmBanco"};

    Help() { arrange(bank); }
    ~Help() override { onHelp(nullptr); }
    void whileBankOpen(const std::function<void(QWidget& box)>& person)
    {
        QTimer::singleShot(0, [&] {
            person(widget(bank.txtNombre));
            bank.Unload();
        });
        bank.Show();
    }
    /// What is read where that window asked for help; nullptr if it is not open.
    static QTextBrowser* pages(const QWidget& owner)
    {
        auto* help = owner.findChild<QWidget*>("ayuda");
        return help != nullptr && help->isVisible() ? help->findChild<QTextBrowser*>() : nullptr;
    }
    static std::string title(const QTextBrowser& read) { return read.window()->windowTitle().toStdString(); }
};

TEST_F(Help, f1_opens_the_page_of_the_dialog_and_leaves_the_dialog_as_it_was)
{
    whileBankOpen([&](QWidget& box) {
        QTest::keyClick(&box, Qt::Key_X);
        seen();
        QTest::keyClick(&box, Qt::Key_F1);
        QTextBrowser* read = pages(*box.window());
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(title(*read), "Ayuda: Bancos");
        ASSERT_TRUE(QTest::qWaitForWindowActive(read->window()));
        EXPECT_EQ(QApplication::focusWidget(), read);
        QTest::keyClick(read, Qt::Key_Tab); // The first link is the index, or leads on.
        const QUrl first = read->source();
        QTest::keyClick(read, Qt::Key_Return);
        EXPECT_NE(read->source(), first);
        QTest::keyClick(read, Qt::Key_Left, Qt::AltModifier);
        EXPECT_EQ(title(*read), "Ayuda: Bancos");
        read->setSource(QUrl("mensajes.md#debe-rellenar-todos-los-datos"));
        EXPECT_EQ(read->textCursor().block().text(), "Debe rellenar todos los datos");
        QTest::keyClick(read, Qt::Key_Escape);
        EXPECT_EQ(pages(*box.window()), nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(box.window()));
        EXPECT_EQ(QApplication::focusWidget(), &box);
        EXPECT_EQ(seen(), "");
        QTest::keyClick(&box, Qt::Key_F1);
        bank.Unload();
        EXPECT_EQ(pages(*box.window()), nullptr) << "it goes with its dialog";
    });
}

TEST_F(Help, f1_in_a_message_brings_its_explanation_to_the_top)
{
    const struct {
        const char16_t* message;
        const char* sought;
    } messages[] = {
        {u"Este tipo de I.V.A. ya exite", "Este tipo de I.V.A. ya exite"},
        {u"ERROR al consultar la base de datos", "ERROR al consultar la base de datos"},
        {u"La operación no ha terminado: Desbordamiento", "Desbordamiento"},
        {u"La operación no ha terminado: lo que sea", "La operación no ha terminado:"},
    };
    for (const auto& each : messages) {
        QTimer::singleShot(0, [&] {
            QWidget& box = *QApplication::activeModalWidget();
            EXPECT_TRUE(QTest::qWaitForWindowActive(&box));
            QTest::keyClick(&box, Qt::Key_F1);
            QTextBrowser* read = pages(box);
            EXPECT_EQ(read == nullptr ? "" : read->textCursor().selectedText(), each.sought);
            // Below its heading, if anything.
            EXPECT_LT(read->cursorRect().top(), 6 * read->fontMetrics().height()) << each.sought;
            EXPECT_GE(read->cursorRect().top(), 0) << each.sought;
            box.close();
        });
        MsgBox(each.message, 112, u"Tipo de IVA:");
    }
}

TEST_F(Help, a_help_file_of_the_suite_comes_first)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("ayuda.chm"));
    onHelp([&] { return fromQt(folder.path()) + u"\\ayuda.chm"; });
    QTextBrowser viewer; // Whose slot takes what the desktop would open.
    QDesktopServices::setUrlHandler("file", &viewer, "setSource");
    whileBankOpen([&](QWidget& box) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        QTest::keyClick(&box, Qt::Key_F1);
        EXPECT_EQ(viewer.source(), QUrl::fromLocalFile(file.fileName()));
        EXPECT_EQ(pages(*box.window()), nullptr);
        file.remove();
        QTest::keyClick(&box, Qt::Key_F1);
        EXPECT_NE(pages(*box.window()), nullptr);
    });
    QDesktopServices::unsetUrlHandler("file");
}

} // namespace zv::test
