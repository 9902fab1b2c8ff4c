#include "qt/Views.h"

#include "qt/GridView.h"
#include "qt/Legible.h"

#include <QAbstractItemView>
#include <QAbstractListModel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

#include <algorithm>

namespace zv {

namespace {

constexpr Long tabHeight = 360;
constexpr int darkest = 128;
constexpr int normal = 100; ///< Width of letters, in hundredths.
constexpr int closest = 70;

template <class C, class V>
std::unique_ptr<ControlView> viewFor(ViewSite& window, Control& control, QWidget& parent)
{
    auto* target = dynamic_cast<C*>(&control);
    return target == nullptr ? nullptr : std::make_unique<V>(window, *target, parent);
}

} // namespace

LabelView::LabelView(ViewSite& window, Label& label, QWidget& parent) : ViewOf(window, label, parent)
{
    watch();
    widget().setAlignment(Qt::AlignLeft | Qt::AlignTop);
    widget().setWordWrap(true);
}

void LabelView::followContent()
{
    const QString caption = toQt(control().Caption());
    QLabel& label = widget();
    // All dialogs have letters of one size: where a caption is wider than its place, they stand closer.
    QFont font = label.parentWidget()->font();
    label.setFont(font);
    label.setWordWrap(label.height() > 2 * label.fontMetrics().height());
    const int needed = label.fontMetrics().horizontalAdvance(caption + QStringLiteral(" *"));
    if (!label.wordWrap() && needed > label.width() && label.width() > 0) {
        font.setStretch(std::max(closest, normal * label.width() / needed));
        label.setFont(font);
    }
    label.setTextFormat(control().Obligatorio() ? Qt::RichText : Qt::PlainText);
    if (!control().Obligatorio()) {
        label.setText(caption);
        label.setAccessibleName(caption);
        return;
    }
    const bool dark = label.palette().color(QPalette::Window).lightness() < darkest;
    label.setText(
        QStringLiteral("%1 <span style=\"color:%2\"><b>*</b></span>")
            .arg(caption.toHtmlEscaped(), dark ? QStringLiteral("#ff8a80") : QStringLiteral("#b3261e")));
    label.setAccessibleName(caption + QStringLiteral(" (obligatorio)"));
}

bool LabelView::handle(QObject&, QEvent& event)
{
    if (event.type() == QEvent::PaletteChange)
        later([this] { followContent(); });
    return false;
}

void FocusedButton::paintEvent(QPaintEvent* event)
{
    QPushButton::paintEvent(event);
    if (!hasFocus())
        return;
    QStylePainter painter(this);
    QStyleOptionFocusRect frame;
    frame.initFrom(this);
    const int inside = frame.rect.height() / 8;
    frame.rect.adjust(inside, inside, -inside, -inside);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, frame);
}

TabsView::TabsView(ViewSite& window, TabStrip& strip, QWidget& parent)
    : ViewOf(window, strip, parent), pane_(std::make_unique<QFrame>(&widget())),
      bar_(std::make_unique<QTabBar>(&widget()))
{
    watch();
    pane_->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    bar_->setExpanding(false);
    bar_->setDrawBase(false);
    bar_->setObjectName(widget().objectName() + QStringLiteral(".pestañas"));
    // By a screen reader: presses and keys are acts before the bar sees them.
    connect(bar_.get(), &QTabBar::currentChanged, this, [this](int tab) {
        later([this, tab] {
            act([&](Acts& acts) { return acts.clickTab(control(), tab + 1); });
            if (this->window().alive())
                followContent();
        });
    });
}

void TabsView::followContent()
{
    TabStrip& strip = control();
    const QSignalBlocker quiet(*bar_);
    while (bar_->count() > strip.tabCount())
        bar_->removeTab(bar_->count() - 1);
    while (bar_->count() < strip.tabCount())
        bar_->addTab({});
    for (Long tab = 1; tab <= strip.tabCount(); ++tab) {
        bar_->setTabText(tab - 1, toQt(strip.Tabs(tab).Caption));
        bar_->setTabToolTip(tab - 1, toQt(strip.Tabs(tab).ToolTipText));
    }
    if (strip.tabCount() > 0)
        bar_->setCurrentIndex(strip.SelectedItem().Index() - 1);
    const int height = window().pixels(tabHeight);
    bar_->setGeometry(0, 0, widget().width(), height);
    pane_->setGeometry(0, height - 1, widget().width(), widget().height() - height + 1);
}

bool TabsView::handle(QObject&, QEvent& event)
{
    if (event.type() == QEvent::Wheel)
        return true;
    if (event.type() != QEvent::MouseButtonPress)
        return false;
    const auto& mouse = dynamic_cast<QMouseEvent&>(event);
    const int tab = bar_->tabAt(mouse.position().toPoint());
    if (tab >= 0 && mouse.button() == Qt::LeftButton)
        act([&](Acts& acts) { return acts.clickTab(control(), tab + 1); });
    return true;
}

/// Adapter: the entries as a list model without a copy.
class ListView::Entries final : public QAbstractListModel {
public:
    explicit Entries(const ComboBox& box) : box_(box) {}
    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : count_; }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role != Qt::DisplayRole || index.row() >= box_.ListCount())
            return {};
        return toQt(box_.List(index.row()));
    }
    void refresh()
    {
        beginResetModel();
        count_ = box_.ListCount();
        endResetModel();
    }

private:
    const ComboBox& box_;
    int count_ = 0;
};

ListView::ListView(ViewSite& window, ComboBox& box, QWidget& parent)
    : ViewOf(window, box, parent), entries_(std::make_unique<Entries>(box))
{
    if (box.label() == nullptr) {
        heard_ = std::make_unique<QLabel>(&parent);
        heard_->setBuddy(&widget());
        heard_->hide();
    }
    widget().setModel(entries_.get());
    drawEdge(widget());
    watch();
    connect(&widget(), &QComboBox::activated, this, [this](int index) {
        if (index < control().ListCount())
            act([&](Acts& acts) { return acts.choose(control(), index); });
        if (this->window().alive())
            followContent();
    });
}

ListView::~ListView() = default;

void ListView::followContent()
{
    if (heard_) {
        name(); // Of the row that it floats over.
        heard_->setText(widget().accessibleName());
    }
    const QSignalBlocker quiet(widget());
    entries_->refresh();
    widget().setCurrentIndex(control().ListIndex());
    const QFontMetrics metrics(widget().font());
    int width = std::max<int>(control().DroppedWidth(), widget().width());
    constexpr int looked = 200;
    for (int row = 0; row < std::min<int>(control().ListCount(), looked); ++row)
        width = std::max(width, metrics.horizontalAdvance(toQt(control().List(row))) + metrics.height() * 2);
    widget().view()->setMinimumWidth(width);
    // The opened list is a window of its own, to which no palette comes down.
    widget().view()->setPalette(legible(widget().palette()));
    widget().update();
}

bool ListView::handle(QObject&, QEvent& event)
{
    if (event.type() == QEvent::Wheel)
        return true; // Swallowed: scrolling over a closed list must not choose.
    if (event.type() == QEvent::PaletteChange)
        later([this] { followContent(); });
    if (event.type() != QEvent::MouseButtonPress)
        return false;
    flush();
    return !act([this](Acts& acts) { return acts.focus(control()); }) || !window().alive();
}

std::unique_ptr<ControlView> makeView(ViewSite& window, Control& control, QWidget& parent)
{
    if (auto* box = dynamic_cast<TextBox*>(&control)) {
        if (box->MultiLine())
            return std::make_unique<NotesView>(window, *box, parent);
        return std::make_unique<LineView>(window, *box, parent);
    }
    if (auto* frame = dynamic_cast<Frame*>(&control)) {
        if (frame->Border())
            return std::make_unique<GroupView>(window, *frame, parent);
        return std::make_unique<PaneView>(window, *frame, parent);
    }
    using Maker = std::unique_ptr<ControlView> (*)(ViewSite&, Control&, QWidget&);
    constexpr Maker makers[] = {
        viewFor<Label, LabelView>,
        viewFor<CommandButton, ButtonView<CommandButton, FocusedButton>>,
        viewFor<CheckBox, ButtonView<CheckBox, QCheckBox>>,
        viewFor<OptionButton, ButtonView<OptionButton, OptionCircle>>,
        viewFor<ComboBox, ListView>,
        viewFor<TabStrip, TabsView>,
        viewFor<MSFlexGrid, GridView>,
    };
    return viewBy(makers, window, control, parent);
}

} // namespace zv
