#include "qt/Window.h"

#include <QClipboard>

namespace zv::test {

struct Typing : WindowTest {
    QLineEdit& line() { return widget<QLineEdit>(ficha.txtNombre); }
    QPlainTextEdit& notesEdit() { return widget<QPlainTextEdit>(ficha.txtNotas); }
    /// The model's text with its selection in brackets; the widget has to show the same.
    std::string both()
    {
        pause();
        const auto start = static_cast<std::size_t>(ficha.txtNombre.SelStart());
        const auto length = static_cast<std::size_t>(ficha.txtNombre.SelLength());
        QString widget = line().text();
        const int from = line().hasSelectedText() ? line().selectionStart() : line().cursorPosition();
        widget.insert(from + line().selectedText().size(), u']').insert(from, u'[');
        String model = ficha.txtNombre.Text();
        model.insert(start + length, u"]").insert(start, u"[");
        EXPECT_EQ(widget.toStdString(), toUtf8(model));
        return toUtf8(model);
    }
};

TEST_F(Typing, goes_through_the_filters_of_the_box)
{
    ficha.when["txtNombre.KeyPress"] = [](Integer* ascii) {
        *ascii = *ascii == '-' ? Integer{0} : static_cast<Integer>(std::toupper(*ascii));
    };
    whileOpen([&] {
        EXPECT_EQ(focused(ficha), "txtNombre");
        QTest::keyClicks(&line(), "ab-cdefg");
        EXPECT_EQ(both(), "ABCDE[]");
        QTest::keyClick(&line(), Qt::Key_Left);
        QTest::keyClick(&line(), Qt::Key_Backspace);
        QTest::keyClick(&line(), Qt::Key_Home);
        QTest::keyClick(&line(), Qt::Key_Delete);
        EXPECT_EQ(both(), "[]BCE");
        QTest::keyClick(&line(), Qt::Key_Right, Qt::ShiftModifier);
        QTest::keyClick(&line(), Qt::Key_Right, Qt::ShiftModifier);
        EXPECT_EQ(both(), "[BC]E");
        QInputMethodEvent composed(QString(), {});
        composed.setCommitString(QStringLiteral("ñ-"));
        QApplication::sendEvent(&line(), &composed);
        EXPECT_EQ(both(), "ñ[]E"); // A letter beyond ASCII is left alone.
    });
}

TEST_F(Typing, clipboard_and_undo_are_the_platforms)
{
    whileOpen([&] {
        QApplication::clipboard()->setText(QStringLiteral("uno dos"));
        QTest::keyClick(&line(), Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(both(), "uno d[]");
        EXPECT_EQ(seen(), "txtNombre.Change");
        QTest::keyClick(&line(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&line(), Qt::Key_X, Qt::ControlModifier);
        EXPECT_EQ(both(), "[]");
        EXPECT_EQ(QApplication::clipboard()->text(), "uno d");
        QTest::keyClick(&line(), Qt::Key_Z, Qt::ControlModifier);
        pause();
        EXPECT_EQ(ficha.txtNombre.Text(), u"uno d");
        QTest::keyClick(&line(), Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(both(), "[]");
        line().insert(QStringLiteral("demasiado")); // As an assistive program would.
        EXPECT_EQ(both(), "demas[]");
        // Another pupil's text: what was typed for the one before does not come back into it.
        for (TextBox* box : {&ficha.txtNombre, &ficha.txtNotas}) {
            QWidget& input = widget(*box);
            QTest::keyClicks(&input, "x");
            box->Text = String(u"otro");
            QTest::keyClick(&input, Qt::Key_Z, Qt::ControlModifier);
            pause();
            EXPECT_EQ(box->Text(), u"otro");
            QTest::keyClick(&input, Qt::Key_Tab);
            pause();
        }
    });
}

TEST_F(Typing, lines_end_as_the_model_wants_them)
{
    ficha.cmd(0).Default = false;
    whileOpen([&] {
        QTest::keyClicks(&notesEdit(), "uno");
        QTest::keyClick(&notesEdit(), Qt::Key_Return);
        QApplication::clipboard()->setText(QStringLiteral("dos\ntres"));
        QTest::keyClick(&notesEdit(), Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(ficha.txtNotas.Text(), u"uno\r\ndos\r\ntres");
        EXPECT_EQ(notesEdit().toPlainText(), "uno\ndos\ntres");
        QTest::keyClick(&notesEdit(), Qt::Key_Up);
        pause();
        EXPECT_EQ(ficha.txtNotas.SelStart(), 8);
        QTest::keyClicks(&notesEdit(), "!");
        EXPECT_EQ(notesEdit().toPlainText(), "uno\ndos!\ntres");
    });
}

TEST_F(Typing, a_box_that_selects_all_on_focus_keeps_it_selected)
{
    ficha.txtNombre.Text = String(u"viejo");
    ficha.when["txtNombre.GotFocus"] = [&](Integer*) {
        ficha.txtNombre.SelStart = Long{0};
        ficha.txtNombre.SelLength = Long{5};
    };
    whileOpen([&] {
        EXPECT_EQ(both(), "[viejo]");
        QTest::keyClick(&line(), Qt::Key_Tab);
        pause();
        EXPECT_EQ(focused(ficha), "txtNotas");
        EXPECT_FALSE(line().hasSelectedText());
        QTest::keyClick(&notesEdit(), Qt::Key_Backtab);
        EXPECT_EQ(both(), "[viejo]");
        QTest::keyClicks(&line(), "n");
        EXPECT_EQ(both(), "n[]");
        QTest::mouseClick(&widget(ficha.chkUno), Qt::LeftButton, {}, {8, 8});
        QTest::mouseClick(&line(), Qt::LeftButton, {}, line().rect().center());
        EXPECT_EQ(both(), "n[]"); // A click puts the caret where the person points.
    });
}

} // namespace zv::test
