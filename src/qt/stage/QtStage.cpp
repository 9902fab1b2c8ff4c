#include "qt/stage/QtStage.h"

#include "forms/ComboBox.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "qt/QtText.h"
#include "qt/stage/StageDesktop.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTabBar>
#include <QTableView>

namespace zv {

namespace {

constexpr int keyCode(Key key)
{
    switch (key) {
    case Key::Enter:
        return Qt::Key_Return;
    case Key::Escape:
        return Qt::Key_Escape;
    case Key::Tab:
        return Qt::Key_Tab;
    case Key::BackTab:
        return Qt::Key_Backtab;
    case Key::Backspace:
        return Qt::Key_Backspace;
    case Key::Delete:
        return Qt::Key_Delete;
    case Key::Left:
        return Qt::Key_Left;
    case Key::Right:
        return Qt::Key_Right;
    case Key::Up:
        return Qt::Key_Up;
    case Key::Down:
        return Qt::Key_Down;
    case Key::Home:
        return Qt::Key_Home;
    case Key::End:
        return Qt::Key_End;
    }
    return Qt::Key_unknown;
}

void sendKey(QWidget& widget, int code, Qt::KeyboardModifiers held, const QString& text)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, code, held, text);
        QApplication::sendEvent(&widget, &event);
    }
}

void sendMouse(QWidget& widget, QPoint where, std::initializer_list<QEvent::Type> types)
{
    for (const QEvent::Type type : types) {
        QMouseEvent event(type, where, widget.mapToGlobal(where), Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
}

/// Hit test: whether the mouse would hit the widget at that point of it.
bool hit(QWidget& widget, QPoint where)
{
    if (!widget.isVisible() || !widget.rect().contains(where))
        return false;
    QWidget& window = *widget.window();
    return window.childAt(widget.mapTo(&window, where)) == &widget;
}

constexpr std::initializer_list<QEvent::Type> oneClick = {QEvent::MouseButtonPress,
                                                          QEvent::MouseButtonRelease};
constexpr std::initializer_list<QEvent::Type> secondClick = {QEvent::MouseButtonDblClick,
                                                             QEvent::MouseButtonRelease};

class RealPerson final : public WindowPerson<StageDesktop> {
public:
    using WindowPerson::WindowPerson;

    bool click(Control& control) override
    {
        QWidget& widget = widgetOf(control);
        const bool button = dynamic_cast<CommandButton*>(&control) != nullptr;
        const QPoint where(button ? widget.width() / 2 : widget.height() / 2, widget.height() / 2);
        if (!hit(widget, where))
            return directly(control.form(), [&](Acts& acts) { return acts.click(control); });
        return really(control.form(), [&] { sendMouse(widget, where, oneClick); });
    }

    bool key(Control& control, Key key) override
    {
        return really(control.form(),
                      [&] { sendKey(widgetOf(control), keyCode(key), Qt::NoModifier, QString()); });
    }

    bool paste(TextBox& box, StringView text) override
    {
        QApplication::clipboard()->setText(toQt(text));
        return really(box.form(), [&] { sendKey(widgetOf(box), Qt::Key_V, Qt::ControlModifier, QString()); });
    }

    bool choose(ComboBox& box, Long index) override
    {
        auto& list = dynamic_cast<QComboBox&>(widgetOf(box));
        return really(box.form(), [&] {
            list.setCurrentIndex(index);
            Q_EMIT list.activated(index);
        });
    }

    bool clickCell(MSFlexGrid& grid, Long row, Long column) override
    {
        auto& table = dynamic_cast<QTableView&>(widgetOf(grid));
        const int place = placeOf(grid, column);
        // The heading tells its own places: a table without rows has no cell to tell them.
        const QHeaderView& heading = *table.horizontalHeader();
        QWidget& target = row == 0 ? *heading.viewport() : *table.viewport();
        const QPoint where =
            row == 0 ? QPoint(heading.sectionViewportPosition(place) + heading.sectionSize(place) / 2,
                              target.height() / 2)
                     : table.visualRect(table.model()->index(row - 1, place)).center();
        if (place < 0 || !hit(target, where))
            return directly(grid.form(), [&](Acts& acts) { return acts.clickCell(grid, row, column); });
        return really(grid.form(), [&] { sendMouse(target, where, oneClick); });
    }

    bool doubleClickCell(MSFlexGrid& grid, Long row, Long column) override
    {
        if (!clickCell(grid, row, column) || !open(grid))
            return false;
        QWidget& target = *dynamic_cast<QTableView&>(widgetOf(grid)).viewport();
        return really(grid.form(), [&] { sendMouse(target, target.rect().center(), secondClick); });
    }

    bool clickTab(TabStrip& strip, Long tab) override
    {
        auto& bar = dynamic_cast<QTabBar&>(widgetOf(strip));
        const QPoint where = bar.tabRect(tab - 1).center();
        if (!hit(bar, where))
            return directly(strip.form(), [&](Acts& acts) { return acts.clickTab(strip, tab); });
        return really(strip.form(), [&] { sendMouse(bar, where, oneClick); });
    }

    bool clickBackground(Form& form) override
    {
        return really(form, [&] { sendMouse(*windowOf(form), {1, 1}, oneClick); });
    }

    bool close(Form& form) override
    {
        return really(form, [&] { windowOf(form)->close(); });
    }

private:
    void character(Control& control, const String& text) override
    {
        sendKey(widgetOf(control), 0, Qt::NoModifier, toQt(text));
    }
    QWidget& widgetOf(const Control& control) const { return viewOf(control).input(); }
};

} // namespace

StageMaker qtStage(std::chrono::milliseconds pace)
{
    return [pace](Play& play) {
        auto desktop = std::make_unique<StageDesktop>(play, pace);
        auto person = std::make_unique<RealPerson>(*desktop);
        return Stage{std::move(desktop), std::move(person)};
    };
}

} // namespace zv
