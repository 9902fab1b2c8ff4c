#include "data/Schema.h"
#include "data/Statement.h"
#include "data/sqlite/SqliteEngine.h"
#include "forms/Ficha.h"
#include "module/Module.h"
#include "robot/FreshSchool.h"
#include "runtime/Single.h"
#include "services/Messages.h"
#include "session/DialogDirectory.h"
#include "session/HostSession.h"
#include "session/NodeTable.h"
#include "session/cAsignarDatos.h"

#include <gmock/gmock.h>

namespace zv::test {

/// What holds for the dialog of every list, whatever its texts: the schema and the labels say what to expect.
struct Catalogue : testing::TestWithParam<StringView> {
    FakeDesktop desktop;
    std::optional<FreshSchool> fresh;
    School school;
    Form* form = nullptr;
    const schema::Table& table =
        *schema::table(std::ranges::find(moduleNodes(), GetParam(), &ModuleNode::dialog)->table);

    Catalogue()
    {
        registerEngine(sqliteEngine());
        installModule();
        school = fresh.emplace(u"sqlite:", false).school();
        if (table.name == u"TipoTarea")
            school.centro->Execute(u"INSERT INTO TipoMiembroCentro VALUES (5,'Otra',1)");
        form = &dialogs().find(GetParam()).instance();
    }
    ~Catalogue() override { resetSingles(); }

    void open(Long action, std::function<void()> step)
    {
        const auto session = newHostSession(school);
        let(*session, u"Accion", action);
        let(*session, u"lngRowData", Long{1});
        cAsignarDatos().ObtenerDatos(session);
        desktop.steps = {std::move(step)};
        form->Show();
        form->Unload();
    }
    /// A new row with a text in every field but one; whether the dialog closed.
    bool accepts(const Control* empty = nullptr)
    {
        bool closed = false;
        open(1, [&] {
            for (Control* control : form->Controls) {
                if (auto* box = dynamic_cast<TextBox*>(control); box && box != empty)
                    box->Text = u"7";
                if (auto* list = dynamic_cast<ComboBox*>(control); list && list != empty)
                    list->ListIndex = Long{0};
            }
            Acts().click(acceptButton());
            closed = !form->Visible();
        });
        return closed;
    }
    Control& acceptButton() const
    {
        return **std::ranges::find(form->Controls, u"334", [](Control* each) { return each->Tag(); });
    }
    std::vector<Control*> fields() const
    {
        std::vector<Control*> result;
        for (Control* control : form->Controls)
            if (dynamic_cast<TextBox*>(control) || dynamic_cast<ComboBox*>(control))
                result.push_back(control);
        return result;
    }
    const schema::Column& key() const { return table.columns().front(); }
    /// The largest key of the live table, 0 for none.
    Long largestKey() const
    {
        const auto rows =
            school.centro->Execute(statement(u"SELECT MAX({}) AS M FROM {}", {key().name, table.name}));
        return rows->Fields(u"M").isNull() ? 0 : CLng(rows->Fields(u"M"));
    }
    void clear() const { school.centro->Execute(statement(u"DELETE FROM {}", {table.name})); }
    void putAmongDeleted(Long row) const
    {
        school.borrado->Execute(statement(u"INSERT INTO {} ({}) VALUES ({})", {table.name, key().name, row}));
    }
};

TEST_P(Catalogue, asks_for_the_fields_whose_labels_bear_the_sign_and_for_no_other)
{
    for (Control* field : fields()) {
        SCOPED_TRACE(toUtf8(field->Name()));
        ASSERT_NE(field->label(), nullptr);
        const auto* label = dynamic_cast<const Label*>(field->label());
        EXPECT_EQ(accepts(field), label->Marca() != u"*");
        clear();
    }
}

TEST_P(Catalogue, draws_keys_of_its_own_table_as_wide_as_its_column)
{
    putAmongDeleted(40);
    EXPECT_TRUE(accepts());
    EXPECT_EQ(largestKey(), 41);
    // Made elsewhere, a table may take any number.
    for (const StringView each : {u"CREATE TABLE Otra AS SELECT * FROM {}", u"DROP TABLE {}",
                                  u"ALTER TABLE Otra RENAME TO {}", u"DELETE FROM {}"})
        school.centro->executeNative(statement(each, {table.name}));
    putAmongDeleted(32767);
    EXPECT_TRUE(accepts());
    EXPECT_EQ(largestKey(), key().type == schema::Type::longInteger ? 32768 : 0);
}

TEST_P(Catalogue, says_that_its_row_cannot_be_read)
{
    school.centro->executeNative(statement(u"DROP TABLE {}", {table.name}));
    open(2, [] {});
    const bool asUpdate = GetParam() == u"frmObservacion";
    EXPECT_THAT(desktop.seen(), testing::HasSubstr(toUtf8(
                                    LoadResString(asUpdate ? message::updateFailed : message::readFailed))));
}

TEST_P(Catalogue, has_boxes_as_wide_as_their_columns_that_are_named_and_selected)
{
    // The texts that are shown differ from those of the design in small things: these are looked at no
    // further.
    const auto begin = [](Control& field) {
        return Left(CStr(get(*const_cast<Control*>(field.label()), u"Caption")), 3);
    };
    std::vector<String> design;
    for (Control* field : fields())
        design.push_back(begin(*field));
    std::vector<int> widths;
    for (const schema::Column& column : table.columns())
        if (column.type == schema::Type::text && column.width != 0)
            widths.push_back(column.width);
    open(1, [&] {
        std::vector<String> shown;
        std::vector<int> boxes;
        for (Control* field : fields()) {
            shown.push_back(begin(*field));
            auto* box = dynamic_cast<TextBox*>(field);
            if (box && !box->RightAligned())
                boxes.push_back(box->MaxLength());
            if (!box)
                continue;
            box->Text = u"abc";
            Acts().focus(acceptButton());
            Acts().focus(*box);
            // Three letters are corrected rather than typed anew.
            EXPECT_EQ(box->SelLength(), box->MaxLength() == 3 ? 0 : 3) << toUtf8(field->Name());
        }
        EXPECT_EQ(shown, design);
        // Enciphered texts are longer than what a person types, in columns without a width.
        EXPECT_TRUE(widths.empty() || boxes == widths);
    });
}

std::vector<StringView> catalogues()
{
    std::vector<StringView> result;
    for (const ModuleNode& node : moduleNodes())
        if (const auto* table = schema::table(node.table);
            table && table->use != schema::Use::read && node.dialog != u"frmBanco" &&
            node.dialog != u"frmPresentador" && node.dialog != u"frmEmisor" &&
            node.dialog.substr(0, 7) != u"frmResp")
            result.push_back(node.dialog);
    return result;
}

INSTANTIATE_TEST_SUITE_P(each, Catalogue, testing::ValuesIn(catalogues()),
                         [](const auto& each) { return toUtf8(each.param); });

} // namespace zv::test
