#include "qt/EveryDialog.h"
#include "qt/Walker.h"
#include "qt/Window.h"

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
        picture(*front, front->objectName().toStdString() + "-" + std::to_string(room.width()) + "x" +
                            std::to_string(room.height()));
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
    void goOn(FormWindow& window) const
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
        Stops stops;
        for (Control* each : front->form().Controls)
            if (each->takesFocus() && each->accessible()) {
                stops.insert(&front->viewOf(*each).input());
                read(*each);
            }
        goRound(*front, stops, [this](QWidget& stop) { expectInSight(stop); });
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
    void read(const Control& control)
    {
        const std::string name = front->objectName().toStdString() + "." + toUtf8(control.fullName());
        const QAccessibleInterface& heard = hear(front->viewOf(control).input(), name);
        const auto* label = dynamic_cast<const Label*>(control.label());
        const bool mandatory = label != nullptr && label->Obligatorio() &&
                               dynamic_cast<const CommandButton*>(&control) == nullptr;
        mandatoryFields += mandatory;
        EXPECT_EQ(heard.text(QAccessible::Description).contains(u"Obligatorio"), mandatory) << name;
        // The widget's own value is the dialog's.
        if (const auto* box = dynamic_cast<const TextBox*>(&control)) {
            EXPECT_EQ(heard.text(QAccessible::Value), shown(box->Text())) << name;
            EXPECT_EQ(heard.state().multiLine, box->MultiLine()) << name;
        } else if (const auto* list = dynamic_cast<const ComboBox*>(&control)) {
            EXPECT_EQ(heard.text(QAccessible::Value), toQt(list->Text())) << name;
        } else if (const auto* tick = dynamic_cast<const CheckBox*>(&control)) {
            EXPECT_EQ(heard.state().checked, tick->Value() != 0) << name;
        } else if (const auto* option = dynamic_cast<const OptionButton*>(&control)) {
            EXPECT_EQ(heard.state().checked, option->Value()) << name;
        }
    }
    std::set<std::string> seen;
    FormWindow* front = nullptr;
    QSize room;
    bool secondary = false; ///< Which of two reports the dialog of sections leads to.
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
        desktop.secondary = secondary;
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

TEST_F(Told, what_a_reader_does_by_its_actions_is_an_act_of_the_dialog)
{
    ficha.msgTabla.Cols = 2;
    ficha.msgTabla.Rows = 3;
    const auto does = [&](QWidget& on, const QString& action, int child, const char* event) {
        QAccessibleInterface* target = QAccessible::queryAccessibleInterface(&on);
        if (QAccessibleTableInterface* table = target->tableInterface())
            target = table->cellAt(child, 1);
        else if (child >= 0)
            target = target->child(child);
        ASSERT_THAT(target->actionInterface()->actionNames(), testing::Contains(action));
        target->actionInterface()->doAction(action);
        const auto first = [&] { return notes.log.find(event); };
        EXPECT_TRUE(QTest::qWaitFor([&] { return first() != std::string::npos; }, 1000)) << event;
        EXPECT_EQ(first(), notes.log.rfind(event)) << seen();
    };
    const QString& press = QAccessibleActionInterface::pressAction();
    const QString& toggle = QAccessibleActionInterface::toggleAction();
    whileOpen([&] {
        does(widget(ficha.chkUno), toggle, -1, "chkUno.Click");
        EXPECT_EQ(ficha.chkUno.Value(), 1);
        for (OptionButton* each : {&ficha.optA, &ficha.optB})
            does(widget(*each), toggle, -1, each == &ficha.optA ? "optA.Click" : "optB.Click");
        EXPECT_TRUE(ficha.optB.Value() && !ficha.optA.Value());
        does(widget(ficha.mstTabs), press, 1, "mstTabs.Click");
        EXPECT_EQ(ficha.mstTabs.SelectedItem().Index(), 2);
        does(widget(ficha.msgTabla), toggle, 1, "msgTabla.Click");
        EXPECT_EQ(ficha.msgTabla.Row() * 10 + ficha.msgTabla.Col(), 21);
        does(widget(ficha.cmd(0)), press, -1, "cmd(0).Click");
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
