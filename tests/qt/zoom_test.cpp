#include "qt/Window.h"

#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QTemporaryDir>

namespace zv::test {

struct Size : WindowTest {
    FormWindow& window() { return *screen.windowOf(ficha); }
    void press(Qt::Key key) { QTest::keyClick(window().focusWidget(), key, Qt::ControlModifier); }
    int letters() { return window().font().pixelSize(); }
};

TEST_F(Size, follows_the_keys_and_is_remembered)
{
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    screen.rememberZoom();
    whileOpen([&] {
        const QSize natural = window().size();
        const int before = letters();
        for (int times = 0; times < 3; ++times)
            press(Qt::Key_Plus);
        EXPECT_NEAR(window().width(), natural.width() * 1.3, 1);
        EXPECT_NEAR(letters(), before * 1.3, 1);
        press(Qt::Key_Minus);
        EXPECT_NEAR(window().width(), natural.width() * 1.2, 1);
        EXPECT_EQ(seen(), "") << "A zoom key is no act.";
    });
    QtDesktop another;
    another.rememberZoom();
    useDesktop(&another);
    QTimer::singleShot(0, [&] {
        FormWindow& again = *another.windowOf(ficha);
        const int magnified = again.width();
        QTest::keyClick(again.focusWidget(), Qt::Key_0, Qt::ControlModifier);
        EXPECT_NEAR(magnified, again.width() * 1.2, 1);
        ficha.Unload();
    });
    ficha.Show();
    useDesktop(nullptr);
}

TEST_F(Size, larger_than_the_screen_scrolls_and_leaves_nothing_out_of_reach)
{
    whileOpen([&] {
        for (int times = 0; times < 30; ++times)
            press(Qt::Key_Plus);
        const QSize room = window().screen()->availableSize();
        EXPECT_LE(window().width(), room.width());
        EXPECT_LE(window().height(), room.height());
        QWidget& sheet = *window().findChild<QScrollArea*>()->widget();
        ASSERT_GT(sheet.height(), room.height());
        for (int stop = 0; stop < 11; ++stop) {
            QWidget& at = *window().focusWidget();
            const QRect place(at.mapTo(&window(), QPoint()), at.size());
            EXPECT_TRUE(window().rect().contains(place) || at.height() > window().height() / 2 ||
                        at.width() > window().width())
                << at.objectName().toStdString();
            QTest::keyClick(&at, Qt::Key_Tab);
        }
        EXPECT_EQ(focused(ficha), "txtNombre");
        seen();
        QTest::mouseClick(&sheet, Qt::LeftButton, {}, {2, 2});
        EXPECT_EQ(seen(), "Fondo");
    });
}

TEST_F(Size, is_that_of_the_desktops_letters_where_the_screen_has_room)
{
    const QFont before = QApplication::font();
    int natural = 0;
    whileOpen([&] { natural = window().width(); });
    for (const double larger : {1.5, 4.0}) {
        QFont font = before;
        font.setPointSizeF(before.pointSizeF() * larger);
        QApplication::setFont(font);
        whileOpen([&] {
            const QSize room = window().screen()->availableSize();
            EXPECT_TRUE(window().findChild<QScrollArea*>()->horizontalScrollBarPolicy() ==
                        Qt::ScrollBarAlwaysOff);
            EXPECT_GT(window().width(), natural);
            EXPECT_LE(window().width(), std::min<double>(natural * larger + 2, room.width()));
        });
    }
    // Also while the window is open.
    whileOpen([&] {
        const int large = window().width();
        QApplication::setFont(before);
        pause();
        EXPECT_LT(window().width(), large);
        EXPECT_EQ(window().width(), natural);
    });
}

TEST(Magnified, is_a_little_smaller_rather_than_cut_by_the_screen)
{
    EXPECT_DOUBLE_EQ(magnified(1.5, 2, 3, 100), 1.5);
    EXPECT_DOUBLE_EQ(magnified(1.5, 3, 1.2, 100), 1.2);
    EXPECT_DOUBLE_EQ(magnified(1, 2, 0.9, 200), 1.8);
    EXPECT_DOUBLE_EQ(magnified(1, 0.5, 2, 100), 1) << "it scrolls";
}

} // namespace zv::test
