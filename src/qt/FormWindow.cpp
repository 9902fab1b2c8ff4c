#include "qt/FormWindow.h"

#include "forms/ComboBox.h"
#include "forms/MSFlexGrid.h"
#include "forms/TabStrip.h"
#include "qt/GridView.h"
#include "qt/Help.h"
#include "qt/Legible.h"
#include "qt/QtKeys.h"
#include "qt/QtText.h"

#include <QApplication>
#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace zv {

namespace {

constexpr int twipsPerInch = 1440;
/// Metrics that the forms assume, in twips: 105 for an ordinary letter, 315 for the height of a field.
const QString ordinaryLetters = QStringLiteral("abcdeghknopqsuvxyz");
constexpr Long letterWidth = 105;
constexpr Long lineHeight = 255;
constexpr Long margin = 240;
constexpr int edge = 8; ///< Of a window, in pixels; around what is scrolled to.
constexpr Long largestFont = 180;
constexpr Long smallestFont = 140;

} // namespace

FormWindow::FormWindow(Form& form, QWidget* parent, Zoom* zoom)
    : QDialog(parent), form_(form), zoom_(zoom), sheet_(std::make_unique<QWidget>().release())
{
    room_.setWidget(sheet_);
    room_.setFrameStyle(QFrame::NoFrame);
    room_.setFocusPolicy(Qt::NoFocus);
    if (zoom_ != nullptr) {
        guide_.emplace(form, *this);
        bar_.emplace(QStringLiteral("avisoVentana"), this);
        connect(qApp, &QApplication::focusChanged, this, &FormWindow::focusMoved);
    }
    setObjectName(toQt(form.Name()));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowCloseButtonHint);
    setWindowModality(Qt::ApplicationModal);
    keepLegible(*this);
    if (!form.Icon.file.empty())
        setWindowIcon(QIcon(toQt(form.Icon.file)));
    build();
    follow();
}

FormWindow::~FormWindow()
{
    alive_ = false;
    // The focus moves on once more while the base is destroyed.
    disconnect(qApp, nullptr, this, nullptr);
    ring_.setParent(nullptr); // It stands beside the focused control, in the control's own parent.
    // Destruction in reverse order: children before their frame.
    while (!views_.empty())
        views_.pop_back();
}

int FormWindow::pixels(Long twips) const
{
    return static_cast<int>(std::lround(static_cast<double>(twips) * logicalDpiX() * scale_ / twipsPerInch));
}

Long FormWindow::twips(int pixels) const
{
    return static_cast<Long>(
        std::lround(static_cast<double>(pixels) * twipsPerInch / logicalDpiX() / scale_));
}

QRect FormWindow::placeOf(const Control& control) const
{
    QRect place(
        QPoint(pixels(control.Left()), pixels(control.Top())),
        QPoint(pixels(control.Left() + control.Width()) - 1, pixels(control.Top() + control.Height()) - 1));
    // Over its cell, which the window may have made wider than the model knows.
    if (guide_ && &control == guide_->controls().floating) {
        const auto& grid = dynamic_cast<const GridView&>(viewOf(*guide_->controls().grid));
        if (const auto column = grid.currentColumn()) {
            place.moveLeft(grid.widget().x() + column->first);
            place.setWidth(column->second);
        }
    }
    return place;
}

void FormWindow::columnsMoved()
{
    if (alive_ && guide_ && guide_->controls().floating != nullptr)
        viewOf(*guide_->controls().floating).followPlace();
}

QFont FormWindow::fittingFont() const
{
    QFont font = this->font();
    for (int size = pixels(largestFont); size >= pixels(smallestFont); --size) {
        font.setPixelSize(size);
        if (fits(QFontMetrics(font)))
            break;
    }
    return font;
}

bool FormWindow::fits(const QFontMetrics& font) const
{
    return font.height() <= pixels(lineHeight) &&
           font.horizontalAdvance(ordinaryLetters) <=
               pixels(letterWidth * static_cast<Long>(ordinaryLetters.size()));
}

void FormWindow::build()
{
    for (Control* control : form_.Controls) {
        QWidget& parent = control->frame() != nullptr ? viewOf(*control->frame()).inside() : *sheet_;
        byControl_[control] = views_.size();
        views_.push_back(makeView(*this, *control, parent));
    }
}

void FormWindow::follow()
{
    scale_ = zoom_ == nullptr ? 1 : scaleWanted();
    setFont(fittingFont());
    setWindowTitle(toQt(form_.Caption()));
    setEnabled(form_.Enabled());
    fit();
    for (const auto& view : views_)
        view->followAll();
    for (const auto& view : views_) {
        view->name();
        // The relation that screen readers follow from a field to its label. A label has one: not the small
        // buttons behind the field.
        const bool button = dynamic_cast<CommandButton*>(&view->control()) != nullptr;
        if (const Control* label = button ? nullptr : view->control().label())
            dynamic_cast<QLabel&>(viewOf(*label).widget()).setBuddy(&view->input());
    }
    stack();
}

QSize FormWindow::room() const
{
    return withoutFrame(zoom_->bound().value_or(screen()->availableGeometry().size()));
}

double FormWindow::scaleWanted() const
{
    const double natural = static_cast<double>(largestFont) * logicalDpiX() / twipsPerInch;
    const double letters = QFontInfo(QApplication::font()).pixelSize() / natural;
    const double perTwip = static_cast<double>(logicalDpiX()) / twipsPerInch;
    const Long line = guide_->isSection() ? lineHeight : 0;
    const double fits = std::min(room().width() / (form_.Width() * perTwip),
                                 room().height() / ((form_.Height() + line) * perTwip));
    return std::max(1.0, std::min(letters, fits)) * zoom_->percent() / 100;
}

void FormWindow::fit()
{
    const QSize whole(pixels(form_.Width()), pixels(form_.Height()));
    sheet_->setFixedSize(whole);
    const int line = guide_ && guide_->isSection() ? pixels(lineHeight) : 0;
    const bool barShown = bar_ && !bar_->isHidden();
    const int least = barShown ? bar_->leastWidth() : 0;
    const int over = barShown ? bar_->settle(std::max(least, std::min(whole.width(), room().width()))) : 0;
    const QSize most = zoom_ == nullptr ? whole : room() - QSize(0, line + over);
    const int bar = room_.verticalScrollBar()->sizeHint().width();
    const bool wide = whole.width() > most.width();
    const bool high = whole.height() > most.height();
    const auto shown = [](bool bars) { return bars ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff; };
    room_.setHorizontalScrollBarPolicy(shown(wide || (high && whole.width() + bar > most.width())));
    room_.setVerticalScrollBarPolicy(shown(high || (wide && whole.height() + bar > most.height())));
    const QSize bars(high ? bar : 0, wide ? bar : 0);
    const QSize inner = (whole + bars).boundedTo(most);
    room_.setGeometry({{0, over}, inner});
    const int across = std::max(inner.width(), least);
    setFixedSize(across, over + inner.height() + line);
    if (barShown)
        bar_->setGeometry(0, 0, across, over);
    if (line > 0) {
        const int beside = pixels(margin);
        guide_->line().setGeometry(beside, over + inner.height(), inner.width() - 2 * beside, line);
    }
}

void FormWindow::look()
{
    if (guide_ && alive_)
        guide_->look();
}

void FormWindow::moveInside()
{
    const QRect area = screen()->availableGeometry();
    const QRect frame = frameGeometry();
    const auto inside = [](int at, int size, int from, int room) {
        return std::clamp(at, from, std::max(from, from + room - size));
    };
    move(inside(frame.left(), frame.width(), area.left(), area.width()),
         inside(frame.top(), frame.height(), area.top(), area.height()));
}

void FormWindow::say(const QString& text, const std::vector<Bar::Choice>& choices)
{
    if (!bar_ || !alive_)
        return;
    bar_->say(text, choices);
    fit();
    if (isVisible())
        moveInside();
}

void FormWindow::sayNothing()
{
    if (!bar_ || bar_->isHidden())
        return;
    if (inBar() && alive_)
        followFocus();
    bar_->hide();
    fit();
}

bool FormWindow::inBar() const { return bar_ && bar_->isAncestorOf(focusWidget()); }

/// The ring follows a person into the bar, and back.
void FormWindow::focusMoved(QWidget* from, QWidget* to)
{
    if (alive_ && inBar())
        ring_.setWidget(to);
    else if (alive_ && !busy() && bar_->isAncestorOf(from) && to != nullptr)
        followFocus();
}

bool FormWindow::zoomed(const QKeyEvent& event)
{
    if (zoom_ == nullptr || busy() || !zoom_->press(event))
        return false;
    follow();
    moveInside();
    return true;
}

bool FormWindow::pressOwn(const QKeyEvent& event)
{
    if (zoomed(event)) {
        followFocus();
        return true;
    }
    if (zoom_ == nullptr || busy())
        return false;
    if (event.key() == Qt::Key_F6 && !bar_->isHidden())
        return bar_->enter();
    return guide_->press(event, [this](const auto& macro) { return act(macro); });
}

bool FormWindow::mayClick(const Control& control) { return busy() || !guide_ || guide_->mayClick(control); }

void FormWindow::stack()
{
    // Z order: tabs and grids lie under what stands in their place; what was brought to the front lies over
    // all.
    for (const auto& view : views_)
        if (dynamic_cast<TabStrip*>(&view->control()) != nullptr ||
            dynamic_cast<MSFlexGrid*>(&view->control()) != nullptr)
            view->widget().lower();
    for (const auto& view : views_)
        if (dynamic_cast<TabStrip*>(&view->control()) != nullptr)
            view->widget().lower();
    stacked_ = form_.frontToBack();
    for (auto control = stacked_.rbegin(); control != stacked_.rend(); ++control)
        viewOf(**control).widget().raise();
}

bool FormWindow::act(const std::function<bool(Acts&)>& what)
{
    if (!alive_)
        return false;
    ++busy_;
    Acts acts;
    const bool done = what(acts);
    --busy_;
    outcome_ = done;
    if (alive_ && !busy())
        inStep();
    return done;
}

void FormWindow::inStep()
{
    for (const auto& view : views_)
        view->flush();
    followFocus();
    followCell();
    look();
}

void FormWindow::followFocus()
{
    const Control* active = form_.ActiveControl();
    QWidget& wanted = active != nullptr ? viewOf(*active).input() : *this;
    ring_.setWidget(active != nullptr ? &wanted : nullptr);
    if (focusWidget() == &wanted)
        return;
    ++busy_;
    wanted.setFocus(Qt::OtherFocusReason);
    --busy_;
    if (active == nullptr)
        return;
    viewOf(*active).followAll();
    // The whole of it, which for a text the area's own routine does not mean; its beginning, where the whole
    // does not fit. Over a grid's cell, of the grid: what is rated stands in the first column.
    const QWidget& seen =
        guide_ && active == guide_->controls().floating ? viewOf(*guide_->controls().grid).widget() : wanted;
    const QSize whole = room_.viewport()->size();
    const QRect place(seen.mapTo(sheet_, QPoint()), seen.size().boundedTo(whole - QSize(edge, edge)));
    const QSize half = (place.size() / 2 + QSize(edge, edge)).boundedTo(whole / 2);
    room_.ensureVisible(place.center().x(), place.center().y(), half.width(), half.height());
}

void FormWindow::followCell()
{
    const Control* active = form_.ActiveControl();
    const auto* grid = active != nullptr ? dynamic_cast<const GridView*>(&viewOf(*active)) : nullptr;
    if (grid == nullptr)
        return;
    const QTableView& table = grid->widget();
    const QRect cell = table.visualRect(table.currentIndex());
    if (cell.isEmpty())
        return;
    const int across = room_.horizontalScrollBar()->value() + room_.viewport()->width() / 2;
    room_.ensureVisible(across, table.viewport()->mapTo(sheet_, cell.center()).y(), 0, cell.height());
}

void FormWindow::takeFocusOver(ControlView& view)
{
    if (!busy() && view.input().hasFocus() && form_.ActiveControl() != &view.control())
        act([&](Acts& acts) { return acts.focus(view.control()); });
}

void FormWindow::end()
{
    alive_ = false;
    hide();
    loop_.quit();
}

void FormWindow::changed(const PropertyBase& property)
{
    if (&property == &form_.Caption)
        setWindowTitle(toQt(form_.Caption()));
    else if (&property == &form_.Enabled)
        setEnabled(form_.Enabled());
    else if (&property == &form_.Width || &property == &form_.Height)
        fit();
    else if (&property == &form_.Visible && !form_.Visible())
        end();
}

void FormWindow::controlChanged(Control& control, const PropertyBase* property)
{
    if (guide_)
        guide_->changed(control, property);
    viewOf(control).changed(property);
    if (property == nullptr && stacked_ != form_.frontToBack())
        stack();
}

void FormWindow::ready()
{
    busy_ = 0;
    inStep();
}

void FormWindow::run()
{
    ready();
    loop_.exec();
}

void FormWindow::help()
{
    if (!busy())
        showHelp(*this, toQt(form_.Name()));
}

void FormWindow::reject() { close(); }

void FormWindow::closeEvent(QCloseEvent* event)
{
    event->ignore(); // Vetoed: the form hides the window, if it closes at all.
    if (!busy() && (!guide_ || !form_.Enabled() || guide_->mayLeave()))
        act([this](Acts& acts) { return acts.close(form_); });
}

void FormWindow::keyPressEvent(QKeyEvent* event)
{
    // Fallback where no control has the focus: Escape is then a person's way out.
    if (asksForHelp(*event))
        return help();
    if (inBar()) {
        if (zoomed(*event))
            return;
        if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_F6)
            followFocus();
        else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            dynamic_cast<QPushButton&>(*focusWidget()).click();
        return;
    }
    if (pressOwn(*event))
        return;
    const auto key = keystrokeOf(*event);
    const Key* named = key ? std::get_if<Key>(&*key) : nullptr;
    if (alive_ && !busy() && named != nullptr && *named == Key::Escape && form_.ActiveControl() == nullptr)
        close();
}

void FormWindow::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && !busy())
        act([this](Acts& acts) { return acts.clickBackground(form_); });
}

bool FormWindow::event(QEvent* event)
{
    const bool handled = QDialog::event(event);
    if (alive_ && event->type() == QEvent::ScreenChangeInternal)
        follow();
    // Styles draw the focus only once the keyboard has moved it, and forget that when a window opens. Here
    // the acts move it, and it always shows.
    if (event->type() == QEvent::Show || event->type() == QEvent::WindowActivate)
        setAttribute(Qt::WA_KeyboardFocusChange);
    if (alive_ && zoom_ != nullptr && event->type() == QEvent::ApplicationFontChange)
        follow();
    return handled;
}

} // namespace zv
