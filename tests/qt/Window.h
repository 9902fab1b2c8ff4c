#pragma once

#include "forms/Ficha.h"
#include "qt/QtDesktop.h"
#include "qt/QtText.h"
#include "qt/Screen.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

namespace zv::test {

/// A form with a control of each kind in a real window. What its handlers see is noted by the desktop below.
struct WindowTest : testing::Test {
    FakeDesktop notes;
    Ficha ficha{notes};
    Ficha other{notes, u"Otra"};
    QtDesktop screen;

    WindowTest()
    {
        useDesktop(&screen);
        for (Ficha* form : {&ficha, &other})
            arrange(*form);
    }
    static void arrange(Ficha& form)
    {
        form.lblNombre.Caption = u"Nombre:";
        form.optA.Caption = u"A";
        form.optB.Caption = u"B";
        form.chkUno.Caption = u"Uno";
        form.cmd(0).Caption = u"Aceptar";
        form.cmd(1).Caption = u"Cancelar";
        Layout box(form.fraCaja);
        box.line({&form.optA, &form.optB});
        Layout(form)
            .row(form.lblNombre, form.txtNombre)
            .line({&form.txtNotas, &form.chkUno, &form.optC, &form.cboLista})
            .frame(form.fraCaja, box)
            .block(form.msgTabla, 4)
            .block(form.mstTabs, 3)
            .buttons(form.cmd(0), form.cmd(1));
    }
    /// Shows the form and does that while it is open, as a person would; closes it if it is still open then.
    void whileOpen(const std::function<void()>& person)
    {
        QTimer::singleShot(0, [&] {
            seen();
            person();
            if (ficha.Visible())
                ficha.Unload();
        });
        ficha.Show();
        EXPECT_EQ(screen.windowOf(ficha), nullptr);
    }
    /// Answers the next message box and keeps what it said.
    void answerMessage()
    {
        QTimer::singleShot(0, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            message = box->windowTitle().toStdString() + "|" + box->text().toStdString() + "|" +
                      std::to_string(box->icon());
            ASSERT_EQ(box->buttons().size(), 1);
            QTest::keyClick(box->buttons().front(), Qt::Key_Return);
        });
    }
    std::string message;

    template <class W>
    W& widget(const Control& control)
    {
        return dynamic_cast<W&>(screen.windowOf(control.form())->viewOf(control).input());
    }
    QWidget& widget(const Control& control) { return widget<QWidget>(control); }
    std::string focused(Form& form)
    {
        return screen.windowOf(form)->focusWidget()->objectName().toStdString();
    }
    /// What handlers noted since the last time, but for focus that came and went.
    std::string seen() { return notes.seen(); }
    /// What the widget keeps putting off has been done.
    static void pause() { QApplication::processEvents(); }
};

} // namespace zv::test
