#include "forms/ComboBox.h"
#include "forms/TabStrip.h"
#include "qt/EveryDialog.h"
#include "qt/Window.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QTabBar>
#include <QTableView>
#include <QTest>

#include <gmock/gmock.h>

#include <set>

namespace zv::test {

/// Walks through each window as a screen reader and a person with a keyboard do, and closes it again.
struct ReadingDesktop final : QtDesktop {
    void runWindow(FormWindow& window) override
    {
        window.ready();
        QApplication::processEvents();
        front = &window;
        seen.insert(window.objectName().toStdString());
        EXPECT_LE(front->width(), room.width());
        EXPECT_LE(front->height(), room.height());
        if (const QString folder = qEnvironmentVariable("ZV_PICTURES"); !folder.isEmpty()) {
            EXPECT_TRUE(front->grab().save(QDir(folder).filePath(
                front->objectName() + QStringLiteral("-%1x%2.png").arg(room.width()).arg(room.height()))));
        }
        readPage();
        for (Control* each : window.form().Controls)
            if (auto* strip = dynamic_cast<TabStrip*>(each); strip != nullptr && strip->accessible())
                for (Long tab = 1; tab <= strip->tabCount(); ++tab) {
                    window.act([&](Acts& acts) { return acts.clickTab(*strip, tab); });
                    window.inStep();
                    readPage();
                }
        goOn(window);
        if (window.alive())
            window.form().Unload();
    }
    void ask(QMessageBox&) override {}

    /// Opens what only this dialog leads to: a section, or a branch.
    static void goOn(FormWindow& window)
    {
        for (const StringView list : {u"cboTipoEnsenanza", u"cboCursos", u"cboSecciones"})
            if (auto* box = dynamic_cast<ComboBox*>(window.form().find(list)))
                window.act([&](Acts& acts) {
                    const bool first = !secondary || list != u"cboTipoEnsenanza";
                    return acts.choose(*box, first ? 0 : std::min<Long>(1, box->ListCount() - 1));
                });
        for (const StringView button : {u"cmdNotaManual1", u"cmdBotonera"})
            if (window.alive())
                if (auto* found = window.form().find(button, button == u"cmdBotonera" ? 2 : 0);
                    found != nullptr && window.form().find(u"cboAlumno") == nullptr)
                    window.act([&](Acts& acts) { return acts.click(*found); });
    }

    void readPage()
    {
        std::vector<Control*> stops;
        for (Control* each : front->form().Controls)
            if (each->takesFocus() && each->accessible()) {
                stops.push_back(each);
                read(*each);
            }
        if (stops.empty())
            return;
        for (const bool back : {false, true}) {
            std::set<Control*> reached;
            Control* const start = front->form().ActiveControl();
            do {
                reached.insert(front->form().ActiveControl());
                expectInSight(*front->focusWidget());
                QTest::keyClick(front->focusWidget(), back ? Qt::Key_Backtab : Qt::Key_Tab,
                                back ? Qt::ShiftModifier : Qt::NoModifier);
                ASSERT_LE(++keys, 100000);
            } while (!reached.contains(front->form().ActiveControl()));
            EXPECT_EQ(front->form().ActiveControl(), start) << "a trap";
            EXPECT_EQ(reached, std::set<Control*>(stops.begin(), stops.end())) << nameOf(*start);
        }
    }
    /// A control larger than the window shows a part.
    void expectInSight(QWidget& widget)
    {
        const QRect place(widget.mapTo(front, QPoint()), widget.size());
        const QRect seenOfIt = place & front->rect();
        EXPECT_GE(seenOfIt.width(), std::min(place.width(), front->width() / 2))
            << widget.objectName().toStdString();
        EXPECT_GE(seenOfIt.height(), std::min(place.height(), front->height() / 2))
            << widget.objectName().toStdString();
    }
    std::string nameOf(const Control& control) const
    {
        return front->objectName().toStdString() + "." + toUtf8(control.fullName());
    }
    void read(const Control& control)
    {
        QWidget& widget = front->viewOf(control).input();
        QAccessibleInterface& read = *QAccessible::queryAccessibleInterface(&widget);
        const std::string name = nameOf(control);
        // Where the toolkit ties a field to its label, readers take its name from there.
        const auto labels = read.relations(QAccessible::Label);
        const QAccessibleInterface& named = labels.isEmpty() ? read : *labels.front().first;
        EXPECT_FALSE(named.text(QAccessible::Name).trimmed().isEmpty()) << name << " has no name";
        EXPECT_TRUE(!labels.isEmpty() || dynamic_cast<const ComboBox*>(&control) == nullptr) << name;
        EXPECT_TRUE(read.state().focusable) << name;
        EXPECT_FALSE(read.state().disabled || read.state().invisible) << name;
        const auto* label = dynamic_cast<const Label*>(control.label());
        const bool mandatory = label != nullptr && label->Obligatorio();
        mandatoryFields += mandatory;
        EXPECT_EQ(read.text(QAccessible::Description).contains(u"Obligatorio"), mandatory) << name;
        readValue(control, read, name);
    }
    static void readValue(const Control& control, QAccessibleInterface& read, const std::string& name)
    {
        const auto is = [&](QAccessible::Role role) { EXPECT_EQ(read.role(), role) << name; };
        if (const auto* box = dynamic_cast<const TextBox*>(&control)) {
            is(QAccessible::EditableText);
            EXPECT_EQ(read.text(QAccessible::Value), shown(box->Text())) << name;
            EXPECT_EQ(read.state().multiLine, box->MultiLine()) << name;
        } else if (const auto* list = dynamic_cast<const ComboBox*>(&control)) {
            is(QAccessible::ComboBox);
            EXPECT_EQ(read.text(QAccessible::Value), toQt(list->Text())) << name;
        } else if (const auto* tick = dynamic_cast<const CheckBox*>(&control)) {
            is(QAccessible::CheckBox);
            EXPECT_EQ(read.state().checked, tick->Value() != 0) << name;
        } else if (const auto* option = dynamic_cast<const OptionButton*>(&control)) {
            is(QAccessible::RadioButton);
            EXPECT_EQ(read.state().checked, option->Value()) << name;
        } else if (dynamic_cast<const CommandButton*>(&control) != nullptr) {
            is(QAccessible::Button);
        } else if (dynamic_cast<const TabStrip*>(&control) != nullptr) {
            is(QAccessible::PageTabList);
        } else {
            is(QAccessible::Table);
            QAccessibleTableInterface& table = *read.tableInterface();
            for (int column = 0; column < table.columnCount(); ++column)
                EXPECT_FALSE(table.columnDescription(column).trimmed().isEmpty()) << name << " " << column;
            for (int line = 0; line < table.rowCount(); ++line)
                EXPECT_FALSE(table.cellAt(line, 0)->text(QAccessible::Name).isEmpty()) << name << " " << line;
        }
    }
    std::set<std::string> seen;
    FormWindow* front = nullptr;
    QSize room;
    static inline bool secondary = false;
    int keys = 0;
    int mandatoryFields = 0;
};

TEST(Reader, every_control_of_every_dialog_is_reached_read_and_left_on_small_screens)
{
    // The second screen is one of 1366×768 at 200 %.
    for (const auto& [secondary, room] :
         {std::pair{false, QSize(1024, 600)}, std::pair{true, QSize(683, 384)}}) {
        ReadingDesktop desktop;
        desktop.room = room;
        desktop.boundTo(room);
        ReadingDesktop::secondary = secondary;
        showEveryDialog(desktop, [](const char*) {});
        EXPECT_EQ(desktop.seen.size(), 35U); // All but the report of the other stage.
        EXPECT_GE(desktop.mandatoryFields, 30);
        EXPECT_TRUE(desktop.seen.contains(secondary ? "frmInfIndESO" : "frmInfIndPrim"));
    }
}

using Told = WindowTest;

TEST_F(Told, pages_as_they_change_and_what_is_left_of_a_text_when_it_runs_out)
{
    ficha.txtNotas.MaxLength = 24;
    whileOpen([&] {
        const QAccessibleInterface& tabs = *QAccessible::queryAccessibleInterface(&widget(ficha.mstTabs));
        EXPECT_EQ(tabs.text(QAccessible::Name), "Uno");
        QTest::keyClick(&widget(ficha.txtNombre), Qt::Key_PageDown, Qt::ControlModifier);
        EXPECT_EQ(tabs.text(QAccessible::Name), "Dos");
        // Told by the toolkit whenever it is another text: so not at each letter.
        QWidget& text = widget(ficha.txtNotas);
        std::vector<std::string> told{text.accessibleDescription().toStdString()};
        for (int letter = 0; letter < 25; ++letter) {
            QTest::keyClicks(&text, "a");
            if (const std::string now = text.accessibleDescription().toStdString(); now != told.back())
                told.push_back(now);
        }
        EXPECT_THAT(told,
                    testing::ElementsAre("Quedan más de 20 caracteres", "Quedan más de 10 caracteres",
                                         "Quedan 10 caracteres", "Quedan 9 caracteres", "Quedan 8 caracteres",
                                         "Quedan 7 caracteres", "Quedan 6 caracteres", "Quedan 5 caracteres",
                                         "Quedan 4 caracteres", "Quedan 3 caracteres", "Quedan 2 caracteres",
                                         "Queda 1 carácter", "No caben más caracteres"));
    });
}

TEST_F(Told, hidden_columns_are_no_part_of_a_grid)
{
    ficha.msgTabla.Cols = 3;
    ficha.msgTabla.Rows = 3;
    ficha.msgTabla.setColWidth(0, 0);
    for (Long column = 1; column < 3; ++column)
        ficha.msgTabla.setTextMatrix(0, column, column == 1 ? u"Oficina" : u"Plaza");
    ficha.msgTabla.setTextMatrix(2, 2, u"Mayor, 1");
    whileOpen([&] {
        auto& table = widget<QTableView>(ficha.msgTabla);
        QAccessibleTableInterface& read = *QAccessible::queryAccessibleInterface(&table)->tableInterface();
        ASSERT_EQ(read.columnCount(), 2);
        EXPECT_EQ(read.columnDescription(0), "Oficina");
        EXPECT_EQ(read.cellAt(1, 1)->text(QAccessible::Name), "Mayor, 1");
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                          table.visualRect(table.model()->index(1, 1)).center());
        EXPECT_EQ(ficha.msgTabla.Col(), 2);
        EXPECT_EQ(ficha.msgTabla.Row(), 2);
        EXPECT_EQ(table.currentIndex(), table.model()->index(1, 1));
    });
}

} // namespace zv::test
