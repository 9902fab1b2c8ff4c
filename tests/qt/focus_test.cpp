#include "qt/Legible.h"
#include "qt/Window.h"

namespace zv::test {

using Focus = WindowTest;

/// Contrast of what stands out most from the commonest colour of that part of a picture.
double contrastIn(const QImage& picture)
{
    std::map<QRgb, int> count;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++count[picture.pixel(x, y)];
    const auto commonest = std::ranges::max_element(count, {}, &std::pair<const QRgb, int>::second);
    double most = 1;
    for (const auto& [color, times] : count)
        most = std::max(most, contrastOf(QColor(color), QColor(commonest->first)));
    return most;
}

TEST_F(Focus, that_comes_by_keyboard_shows_at_every_kind_of_control)
{
    ficha.msgTabla.AddItem(u"Una");
    whileOpen([&] {
        pause();
        FormWindow& window = *screen.windowOf(ficha);
        for (int i = 0; i < 11; ++i) {
            QWidget& left = *window.focusWidget();
            const QImage with = left.grab().toImage();
            QTest::keyClick(&left, Qt::Key_Tab);
            pause();
            EXPECT_NE(with, left.grab().toImage()) << left.objectName().toStdString();
        }
    });
}

TEST_F(Focus, the_line_that_was_clicked_shows_until_another_is)
{
    ficha.msgTabla.Rows = 4;
    for (Long row = 1; row < 4; ++row)
        ficha.msgTabla.setRowData(row, 10 * row);
    whileOpen([&] {
        auto& table = widget<QTableView>(ficha.msgTabla);
        const auto chosen = [&] {
            const QModelIndexList rows = table.selectionModel()->selectedRows();
            return rows.isEmpty() ? 0 : rows.front().row() + 1;
        };
        EXPECT_EQ(chosen(), 0);
        const auto click = [&](int row) {
            QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                              table.visualRect(table.model()->index(row - 1, 0)).center());
        };
        click(2);
        EXPECT_EQ(chosen(), 2);
        QTest::keyClick(&table, Qt::Key_Down);
        EXPECT_EQ(chosen(), 2);
        QTest::keyClick(&table, Qt::Key_Space);
        EXPECT_EQ(chosen(), 3);
        ficha.msgTabla.RemoveItem(1);
        pause();
        EXPECT_EQ(chosen(), 2);
    });
}

TEST_F(Focus, what_is_locked_can_be_read_in_light_and_in_dark)
{
    const QPalette before = QApplication::palette();
    ficha.cboLista.AddItem(u"Madrid");
    whileOpen([&] {
        ficha.txtNombre.Text = u"Madrid";
        ficha.txtNotas.Text = u"Madrid";
        ficha.cboLista.ListIndex = 0;
        for (const QPalette& palette : {before, QPalette(QColor(45, 45, 48)), QPalette(Qt::white)}) {
            QApplication::setPalette(palette);
            for (Control* each : std::initializer_list<Control*>{
                     &ficha.txtNombre, &ficha.txtNotas, &ficha.cboLista, &ficha.chkUno, &ficha.optA}) {
                each->Enabled = false;
                pause();
                QWidget& shown = widget(*each);
                // The text, without the edge, the mark before it or the arrow behind it.
                const int edge = 4;
                const int mark = shown.inherits("QAbstractButton") ? shown.height() : edge;
                const QRect text = shown.rect().adjusted(
                    mark, edge, shown.inherits("QComboBox") ? -shown.height() : -edge, -edge);
                EXPECT_GE(contrastIn(shown.grab(text).toImage()), 4.5) << shown.objectName().toStdString();
            }
        }
    });
    QApplication::setPalette(before);
}

} // namespace zv::test
