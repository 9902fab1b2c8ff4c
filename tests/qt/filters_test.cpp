#include "module/Hosted.h"
#include "qt/Window.h"

#include "session/DialogDirectory.h"

namespace zv::test {

struct CountingScreen final : QtDesktop {
    void beep() override { ++beeps; }
    int beeps = 0;
};

/// What a person types into a box, what stays of it, and how often it beeps.
struct Typed {
    StringView dialog;
    StringView box;
    std::optional<int> index;
    const char* keys;
    const char* text;
    int beeps;
};

struct Filters : testing::TestWithParam<Typed> {
    CountingScreen screen;
    Hosted hosted{&screen};
};

TEST_P(Filters, keep_what_belongs_to_the_box)
{
    const Typed& typed = GetParam();
    handOver(hosted.school, 1, -1);
    Form& form = dialogs().find(typed.dialog).instance();
    QTimer::singleShot(0, [&] {
        const Control& box = typed.index ? form.reach(typed.box, *typed.index) : form.reach(typed.box);
        auto& line = dynamic_cast<QLineEdit&>(screen.windowOf(form)->viewOf(box).input());
        line.setFocus();
        line.selectAll();
        screen.beeps = 0;
        QTest::keyClicks(&line, typed.keys);
        QApplication::processEvents();
        EXPECT_EQ(line.text().toStdString(), typed.text);
        EXPECT_EQ(screen.beeps, typed.beeps);
        form.Unload();
    });
    form.Show();
}

INSTANTIATE_TEST_SUITE_P(real, Filters,
                         testing::Values(Typed{u"frmBanco", u"txtBanco", 0, "a2-1 00", "2100", 0},
                                         Typed{u"frmBanco", u"txtBanco", 1, "a2", "a2", 0},
                                         Typed{u"frmSucursal", u"txtSucursal", 0, "a2", "a2", 0},
                                         Typed{u"frmSucursal", u"txtSucursal", 2, "1x2 3", "123", 2},
                                         Typed{u"frmSucursal", u"txtSucursal", 3, "28-0012", "28001", 1},
                                         Typed{u"frmPresentador", u"txtSufijo", {}, "1a2", "12", 1},
                                         Typed{u"frmPresentador", u"txtNEntidad", {}, "2a1", "21", 1},
                                         Typed{u"frmEmisor", u"txtSufijo", {}, "x12", "12", 0},
                                         Typed{u"frmEmisor", u"txtCP", {}, "2-8", "28", 0},
                                         Typed{u"frmTipoIva", u"txtTipoIva", {}, "%1,6a%5", "16%", 0},
                                         Typed{
                                             u"frmPonderacion", u"txtPuntuacion", {}, "1x234", "12,34", 0}));

} // namespace zv::test
