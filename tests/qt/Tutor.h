#pragma once

#include "data/sample/SampleSchool.h"
#include "module/Hosted.h"
#include "qt/QtDesktop.h"
#include "qt/Screen.h"

#include <QTest>

#include <gmock/gmock.h>

namespace zv::test {

/// A tutor before the real windows of a believable school.
struct Report : testing::Test {
    struct Tutor final : QtDesktop {
        std::map<String, std::function<void()>> does;
        void runWindow(FormWindow& window) override
        {
            window.ready();
            QApplication::processEvents();
            front = &window;
            does.at(window.form().Name())();
            if (window.form().Visible())
                window.form().Unload();
        }
        FormWindow* front = nullptr;
    } tutor;
    Hosted hosted{&tutor};
    School& school = hosted.school;

    Report() { fillSampleSchool(school); }
    void open(Byte node) { openNode(school, node, 0); }
    template <class W = QWidget>
    W& widget(const Control& control)
    {
        return dynamic_cast<W&>(tutor.windowOf(control.form())->viewOf(control).input());
    }
    void press(int key, Qt::KeyboardModifiers held = {})
    {
        ++keys;
        QTest::keyClick(tutor.front->focusWidget(), static_cast<Qt::Key>(key), held);
    }
    int keys = 0; ///< How many were pressed.
    void tabTo(const char* name, int key = Qt::Key_Tab)
    {
        for (int steps = 0; tutor.front->focusWidget()->objectName() != QLatin1String(name); ++steps) {
            ASSERT_LT(steps, 20) << name;
            press(key);
        }
    }
    std::string row(const String& sql)
    {
        std::string text;
        for (const Value& value : school.centro->executeNative(sql)->row())
            text += toUtf8(CStr(value)) + " ";
        return text;
    }
    /// Section 1 of the first course, by keyboard alone.
    void chooseSection()
    {
        tabTo("cboCursos");
        press(Qt::Key_Down);
        press(Qt::Key_Tab);
        press(Qt::Key_Down);
        press(Qt::Key_Tab);
        press(Qt::Key_Return);
    }
};

} // namespace zv::test
