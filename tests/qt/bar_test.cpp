#include "qt/DraftView.h"
#include "qt/Walker.h"
#include "qt/Window.h"

namespace zv::test {

struct Bars : WindowTest {
    std::string done;
    FormWindow& front() { return *screen.windowOf(ficha); }
    std::vector<BarChoice> choices()
    {
        return {{u"Recuperar", u'R', [this] { done += "R"; }},
                {u"Ver", u'V', [this] { done += "V"; }},
                {u"Descartar", u'D', [this] { front().sayNothing(); }}};
    }
    void say()
    {
        front().say(u"Hay textos sin guardar de hoy a las 10:42: 14 alumnos, 23 textos", choices());
    }
};

TEST_F(Bars, a_bar_moves_no_control_and_takes_no_key_but_its_own)
{
    whileOpen([&] {
        QWidget& field = widget(ficha.txtNombre);
        const QSize before = front().size();
        const QPoint place = field.pos();
        say();
        picture(front(), "bar-ficha");
        auto& bar = *front().findChild<QWidget*>(QStringLiteral("avisoVentana"));
        EXPECT_EQ(field.pos(), place);
        EXPECT_EQ(front().height(), before.height() + bar.height());
        EXPECT_TRUE(
            bar.geometry().intersected(QRect(field.mapTo(&front(), QPoint()), field.size())).isEmpty());
        EXPECT_EQ(focused(ficha), "txtNombre");
        QTest::keyClicks(&field, "ab");
        seen();
        QTest::keyClick(&field, Qt::Key_R, Qt::AltModifier);
        QTest::keyClick(&field, Qt::Key_F6);
        QWidget* first = front().focusWidget();
        EXPECT_TRUE(bar.isAncestorOf(first));
        QTest::keyClick(first, Qt::Key_X);
        QTest::keyClick(first, Qt::Key_Tab);
        ASSERT_NE(front().focusWidget(), first);
        hear(*front().focusWidget(), "bar");
        QTest::keyClick(front().focusWidget(), Qt::Key_Space);
        QTest::keyClick(front().focusWidget(), Qt::Key_Return);
        QTest::keyClick(front().focusWidget(), Qt::Key_Escape);
        EXPECT_EQ(focused(ficha), "txtNombre");
        EXPECT_EQ(seen(), "") << "only what was typed in the field";
        QTest::mouseClick(&bar, Qt::LeftButton, {}, {2, 2});
        EXPECT_EQ(done, "RVV");
        QTest::keyClick(front().focusWidget(), Qt::Key_F6);
        QTest::keyClick(front().focusWidget(), Qt::Key_D, Qt::AltModifier);
        EXPECT_TRUE(bar.isHidden());
        EXPECT_EQ(front().size(), before);
        EXPECT_EQ(focused(ficha), "txtNombre");
        EXPECT_EQ(toUtf8(ficha.txtNombre.Text()), "ab");
    });
}

} // namespace zv::test
