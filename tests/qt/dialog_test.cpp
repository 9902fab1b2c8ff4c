#include "qt/Window.h"

#include <QLabel>

namespace zv::test {

using Dialog = WindowTest;

TEST_F(Dialog, tab_goes_through_the_controls_in_order_and_back)
{
    whileOpen([&] {
        std::string order;
        for (int i = 0; i < 11; ++i) {
            order += focused(ficha) + " ";
            QTest::keyClick(screen.windowOf(ficha)->focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(
            order,
            "txtNombre txtNotas chkUno optA optB optC cboLista msgTabla mstTabs.pestañas cmd(0) cmd(1) ");
        EXPECT_EQ(focused(ficha), "txtNombre");
        QTest::keyClick(screen.windowOf(ficha)->focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(focused(ficha), "cmd(1)");
    });
}

TEST_F(Dialog, enter_and_escape_press_the_two_buttons)
{
    ficha.when["cmd(1).Click"] = [&](Integer*) { ficha.Unload(); };
    whileOpen([&] {
        QTest::keyClick(&widget(ficha.chkUno), Qt::Key_Return);
        EXPECT_EQ(seen(), "txtNombre.LostFocus chkUno.GotFocus cmd(0).Click");
        EXPECT_EQ(focused(ficha), "chkUno");
        ficha.cmd(0).Enabled = false;
        QTest::mouseClick(&widget(ficha.cmd(0)), Qt::LeftButton);
        QTest::keyClick(&widget(ficha.chkUno), Qt::Key_Return);
        EXPECT_EQ(seen(), "");
        QTest::keyClick(&widget(ficha.chkUno), Qt::Key_Escape);
        EXPECT_EQ(seen(), "cmd(1).Click Unload");
    });
}

TEST_F(Dialog, a_press_is_taken_back_by_letting_go_elsewhere)
{
    whileOpen([&] {
        for (const Control* each :
             {static_cast<Control*>(&ficha.cmd(0)), static_cast<Control*>(&ficha.chkUno),
              static_cast<Control*>(&ficha.optA)}) {
            QTest::mousePress(&widget(*each), Qt::LeftButton);
            QTest::mouseMove(&widget(*each), {-9, -9});
            QTest::mouseRelease(&widget(*each), Qt::LeftButton, {}, {-9, -9});
        }
        EXPECT_EQ(seen(), "");
        QTest::mouseClick(&widget(ficha.cmd(0)), Qt::LeftButton);
        EXPECT_THAT(seen(), testing::EndsWith("cmd(0).Click"));
    });
}

TEST_F(Dialog, the_frame_unloads_the_form_and_its_background_can_be_clicked)
{
    whileOpen([&] {
        FormWindow& window = *screen.windowOf(ficha);
        QTest::mouseClick(&window, Qt::LeftButton, {}, {2, 2});
        QTest::mouseClick(&widget(ficha.lblNombre), Qt::LeftButton);
        EXPECT_EQ(seen(), "Fondo");
        window.close();
        EXPECT_EQ(seen(), "Unload");
        EXPECT_FALSE(window.isVisible());
    });
}

TEST_F(Dialog, nested_dialogs_block_the_one_below)
{
    ficha.when["cmd(0).Click"] = [&](Integer*) {
        QTimer::singleShot(0, [&] {
            EXPECT_EQ(QApplication::activeModalWidget(), screen.windowOf(other));
            QTest::mouseClick(&widget(other.chkUno), Qt::LeftButton, {}, {8, 8});
            EXPECT_EQ(other.chkUno.Value(), 1);
            ficha.Unload(); // The one below may go first.
            screen.windowOf(other)->close();
        });
        other.Show();
        EXPECT_FALSE(other.Visible());
    };
    whileOpen([&] { QTest::mouseClick(&widget(ficha.cmd(0)), Qt::LeftButton); });
    EXPECT_FALSE(ficha.Visible());
    ficha.when.clear();
    whileOpen([&] { EXPECT_EQ(focused(ficha), "txtNombre"); }); // It opens again.
}

TEST_F(Dialog, a_form_that_a_failing_handler_disabled_can_be_closed)
{
    ficha.when["cmd(0).Click"] = [&](Integer*) {
        ficha.MousePointer = Integer{11};
        ficha.Enabled = false;
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        answerMessage();
        fail(failure::fileMissing, u"escudo.ico");
    };
    ficha.when["cmd(1).Click"] = [&](Integer*) { ficha.Hide(); };
    whileOpen([&] {
        QTest::keyClick(&widget(ficha.txtNombre), Qt::Key_Return);
        EXPECT_THAT(message,
                    testing::AllOf(testing::HasSubstr("Error 53|"), testing::HasSubstr("escudo.ico")));
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        EXPECT_TRUE(screen.windowOf(ficha)->isEnabled());
        EXPECT_EQ(focused(ficha), "txtNombre");
        QTest::keyClick(&widget(ficha.txtNombre), Qt::Key_Escape);
        EXPECT_FALSE(ficha.Visible());
    });
}

TEST_F(Dialog, messages_bear_the_sign_that_their_flags_ask_for)
{
    constexpr std::pair<Integer, QMessageBox::Icon> signs[] = {
        {Integer{16}, QMessageBox::Critical},    {Integer{48}, QMessageBox::Warning},
        {Integer{64}, QMessageBox::Information}, {Integer{112}, QMessageBox::NoIcon},
        {Integer{128}, QMessageBox::NoIcon},
    };
    for (const auto& [flags, icon] : signs) {
        answerMessage();
        MsgBox(u"<b>Texto", flags, u"Título");
        EXPECT_EQ(message, "Título|<b>Texto|" + std::to_string(icon)) << flags;
    }
}

TEST_F(Dialog, screen_readers_hear_labels_and_mandatory_signs)
{
    ficha.lblNombre.Obligatorio = true;
    whileOpen([&] {
        EXPECT_EQ(widget(ficha.txtNombre).accessibleName(), "Nombre");
        EXPECT_EQ(widget(ficha.txtNombre).accessibleDescription(), "Obligatorio");
        EXPECT_THAT(widget<QLabel>(ficha.lblNombre).text().toStdString(), testing::HasSubstr("*"));
        ficha.lblNombre.Obligatorio = false;
        EXPECT_EQ(widget<QLabel>(ficha.lblNombre).text(), "Nombre:");
        EXPECT_EQ(screen.windowOf(ficha)->findChild<QWidget*>("cmd(1)"), &widget(ficha.cmd(1)));
        // What the toolkit focuses by itself, the form takes over.
        ASSERT_TRUE(QTest::qWaitForWindowActive(screen.windowOf(ficha)));
        widget(ficha.cboLista).setFocus();
        pause();
        EXPECT_EQ(ficha.ActiveControl(), &ficha.cboLista);
    });
}

} // namespace zv::test
