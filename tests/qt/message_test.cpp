#include "forms/Controls.h"
#include "module/Hosted.h"
#include "qt/QtDesktop.h"

#include <QApplication>
#include <QMessageBox>

namespace zv::test {

/// Accepts a new row without having filled anything, reads the message, and then fills the field.
struct EmptyHanded final : QtDesktop {
    void runWindow(FormWindow& window) override
    {
        window.ready();
        QApplication::processEvents();
        Control& field = *window.form().find(u"txtPais");
        const QWidget& input = window.viewOf(field).input();
        const auto ground = [&] { return input.palette().color(QPalette::Base); };
        const QColor before = ground();
        front = &window;
        window.act([&](Acts& acts) { return acts.click(*window.form().find(u"cmdPais", 0)); });
        EXPECT_EQ(asked, 1);
        EXPECT_NE(ground(), before);
        window.act([&](Acts& acts) { return acts.type(field, u"Portugal"); });
        QApplication::processEvents();
        EXPECT_EQ(ground(), before);
        window.form().Unload();
    }
    void ask(QMessageBox& box) override
    {
        ++asked;
        box.show();
        QApplication::processEvents();
        EXPECT_FALSE(box.frameGeometry().intersects(front->frameGeometry()));
    }
    const QWidget* front = nullptr;
    int asked = 0;
};

TEST(Message, leaves_the_window_free_and_the_empty_field_tinted)
{
    EmptyHanded desktop;
    openNode(Hosted(&desktop).school, cNombreNodo::Paises);
    EXPECT_EQ(desktop.asked, 1);
}

} // namespace zv::test
