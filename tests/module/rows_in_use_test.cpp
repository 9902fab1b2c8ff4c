#include "forms/Ficha.h"
#include "module/Hosted.h"
#include "session/DialogDirectory.h"
#include "session/NodeTable.h"
#include "suite/Registrations.h"

namespace zv::test {

/// A dialog that is opened for row 1, there or not.
struct RowInUse : testing::TestWithParam<StringView> {
    FakeDesktop desktop;
    Hosted hosted{&desktop};
    School& school = hosted.school;

    /// Looks at each control of the open dialog, then leaves it by the button with that tag.
    void open(bool active, StringView leavingTag, const std::function<void(Control&)>& look)
    {
        handOver(school, 2, 1, active);
        Form& form = dialogs().find(GetParam()).instance();
        desktop.steps = {[&] {
            Control* leaving = nullptr;
            for (Control* control : form.Controls) {
                look(*control);
                if (control->Tag() == leavingTag)
                    leaving = control;
            }
            ASSERT_NE(leaving, nullptr);
            Acts().click(*leaving);
            EXPECT_FALSE(form.Visible());
        }};
        form.Show();
    }
    Integer holder()
    {
        const auto all = registrations(*school.centro);
        return all.empty() ? Integer{0} : all.front().user;
    }
};

TEST_P(RowInUse, by_another_station_is_shown_and_left_to_it)
{
    ASSERT_FALSE(registerRow(*school.centro, {u"otro-puesto", {}}, GetParam(), 1, 7));
    open(true, u"335", [](const Control& control) {
        EXPECT_EQ(control.Enabled(), control.Tag() != u"334") << toUtf8(control.Name());
    });
    EXPECT_EQ(holder(), 7);
}

TEST_P(RowInUse, in_a_read_only_session_is_registered_and_cannot_be_changed)
{
    open(false, u"340", [this](const Control& control) {
        const bool input = dynamic_cast<const TextBox*>(&control) ||
                           dynamic_cast<const ComboBox*>(&control) || dynamic_cast<const CheckBox*>(&control);
        EXPECT_FALSE(control.Enabled() && (input || control.Tag() == u"334")) << toUtf8(control.Name());
        EXPECT_EQ(holder(), 1);
    });
    // The rates release a row only while it could be accepted.
    EXPECT_EQ(holder(), GetParam() == u"frmTipoIva" ? 1 : 0);
}

TEST_P(RowInUse, is_kept_by_signs_of_life_while_a_person_takes_time)
{
    open(true, u"335", [this](const Control& control) {
        if (control.Tag() != u"335")
            return;
        school.centro->Execute(u"UPDATE RegistroActivo SET Momento='2020-01-01 00:00:00'");
        waiting();
        const auto rows = school.centro->Execute(u"SELECT Momento FROM RegistroActivo");
        EXPECT_NE(CStr(rows->Fields(u"Momento")).find(u'+'), String::npos);
    });
}

/// Options register no row; an issuer enables its fields after its kind.
std::vector<StringView> onRows()
{
    std::vector<StringView> result;
    for (const ModuleNode& node : moduleNodes())
        if (!node.table.empty() && node.dialog != u"frmOpcionMateria" && node.dialog != u"frmEmisor")
            result.push_back(node.dialog);
    return result;
}

INSTANTIATE_TEST_SUITE_P(each, RowInUse, testing::ValuesIn(onRows()),
                         [](const auto& each) { return toUtf8(each.param); });

} // namespace zv::test
