#pragma once

#include "forms/ComboBox.h"
#include "forms/TabStrip.h"
#include "qt/ControlView.h"
#include "qt/EdgeStyle.h"
#include "qt/QtText.h"
#include "qt/TextView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>

namespace zv {

/// View of a label. The sign of a mandatory field is drawn behind the caption, and said to screen readers.
class LabelView final : public ViewOf<Label, QLabel> {
public:
    LabelView(ViewSite& window, Label& label, QWidget& parent);

protected:
    void followContent() override;
    bool handle(QObject& watched, QEvent& event) override;
};

/// View of a frame with a border and a caption.
class GroupView final : public ViewOf<Frame, QGroupBox> {
public:
    GroupView(ViewSite& window, Frame& frame, QWidget& parent) : ViewOf(window, frame, parent) { watch(); }

protected:
    void followContent() override { widget().setTitle(toQt(control().Caption())); }
};

/// View of a frame that only groups.
class PaneView final : public ViewOf<Frame, QWidget> {
public:
    PaneView(ViewSite& window, Frame& frame, QWidget& parent) : ViewOf(window, frame, parent) { watch(); }

protected:
    void followContent() override {}
};

/// A button that shows the focus inside its edge: many styles draw the edge of the one that Enter presses and
/// of the one that has the focus alike.
class FocusedButton final : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// An option that only the model chooses. It says that it is one of several, which makes it an option and not
/// a tick box to screen readers.
class OptionCircle final : public QRadioButton {
public:
    using QRadioButton::QRadioButton;
    void choose(bool on)
    {
        setAutoExclusive(false); // Which would not let go of the last one.
        setChecked(on);
        setAutoExclusive(true);
    }

protected:
    void nextCheckState() override {}
    void focusInEvent(QFocusEvent* event) override
    {
        setAutoExclusive(false); // Which would take the others out of the round of Tab.
        QRadioButton::focusInEvent(event);
        setAutoExclusive(true);
    }
};

/// View of what is clicked and has a caption: a button, a tick box, an option.
template <class C, class W>
class ButtonView final : public ViewOf<C, W> {
public:
    ButtonView(ViewSite& window, C& control, QWidget& parent) : ViewOf<C, W>(window, control, parent)
    {
        this->watch();
        W& button = this->widget();
        if constexpr (std::is_base_of_v<QPushButton, W>)
            button.setAutoDefault(false);
        else
            drawEdge(button);
        if constexpr (!std::is_same_v<W, QCheckBox>)
            QObject::connect(&button, &W::clicked, this, [this] { clicked(); });
        // A screen reader toggles without a click. Of options the others are let go of, which is no act.
        if constexpr (!std::is_base_of_v<QPushButton, W>)
            QObject::connect(&button, &W::toggled, this, [this](bool on) {
                if (on != isOn() && (on || std::is_same_v<W, QCheckBox>))
                    clicked();
            });
    }

protected:
    void followContent() override
    {
        C& control = this->control();
        this->widget().setText(toQt(control.Caption()));
        if constexpr (std::is_base_of_v<QPushButton, W>)
            this->widget().setDefault(control.Default());
        else if constexpr (std::is_same_v<OptionCircle, W>)
            this->widget().choose(isOn());
        else
            this->widget().setChecked(isOn());
    }

private:
    bool isOn() { return this->control().Value() != 0; }
    void clicked()
    {
        this->click();
        // Synchronised again: the widget ticked itself, and the model has the last word.
        if (this->window().alive())
            followContent();
    }
};

/// View of a tab strip: a bar over a pane, on which the frames of its tabs stand.
class TabsView final : public ViewOf<TabStrip, QWidget> {
public:
    TabsView(ViewSite& window, TabStrip& strip, QWidget& parent);
    QTabBar& input() const override { return *bar_; }

protected:
    void followContent() override;
    bool handle(QObject& watched, QEvent& event) override;

private:
    std::unique_ptr<QFrame> pane_;
    std::unique_ptr<QTabBar> bar_;
};

/// View of a drop-down list.
class ListView final : public ViewOf<ComboBox, QComboBox> {
public:
    ListView(ViewSite& window, ComboBox& box, QWidget& parent);
    ~ListView() override;

protected:
    void followContent() override;
    bool inBulk() const override { return true; }
    bool handle(QObject& watched, QEvent& event) override;

private:
    class Entries;
    std::unique_ptr<Entries> entries_;
    /// Unseen label of a list without one: on Linux a list's name comes by that relation alone.
    std::unique_ptr<QLabel> heard_;
};

} // namespace zv
