#include "qt/EveryDialog.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTextDocument>

#include <set>

namespace zv::test {

/// Looks at each window that opens, and closes it again.
struct LookingDesktop final : QtDesktop {
    void runWindow(FormWindow& window) override
    {
        window.ready();
        QApplication::processEvents();
        const std::string name = window.objectName().toStdString();
        seen.insert(name);
        for (QWidget* widget : window.findChildren<QWidget*>())
            if (!widget->objectName().isEmpty() && !widget->objectName().startsWith(u"qt_"))
                look(*widget, name + "." + widget->objectName().toStdString());
        picture(window, name + state);
        window.form().Unload();
    }
    void ask(QMessageBox&) override {}

    static void look(const QWidget& widget, const std::string& name)
    {
        if (!widget.isVisible())
            return;
        const QFontMetrics font = widget.fontMetrics();
        int width = 0;
        if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
            QTextDocument text;
            text.setDefaultFont(label->font());
            text.setDocumentMargin(0);
            text.setHtml(label->text());
            if (label->wordWrap())
                text.setTextWidth(label->width());
            EXPECT_LE(text.size().height(), label->height()) << name << " is cut below";
            width = label->wordWrap() ? 0 : static_cast<int>(text.idealWidth());
        } else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
            width = button->isCheckable() ? button->sizeHint().width()
                                          : font.horizontalAdvance(button->text()) + 4;
        }
        EXPECT_LE(width, widget.width()) << name << " is cut";
        if (qobject_cast<const QLineEdit*>(&widget) != nullptr) {
            EXPECT_LE(font.height() + 4, widget.height()) << name;
        }
        if (!widget.isWindow()) {
            EXPECT_TRUE(widget.parentWidget()->rect().contains(widget.geometry())) << name << " sticks out";
        }
    }
    std::set<std::string> seen;
    const char* state = "";
};

TEST(Look, nothing_is_cut_in_any_dialog)
{
    LookingDesktop desktop;
    showEveryDialog(desktop, [&](const char* state) { desktop.state = state; });
    EXPECT_GE(desktop.seen.size(), 20U);
}

} // namespace zv::test
