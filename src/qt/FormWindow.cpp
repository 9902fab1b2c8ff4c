#include "qt/FormWindow.h"

#include "qt/Asking.h"
#include "qt/DraftView.h"
#include "qt/GridView.h"
#include "qt/Help.h"
#include "qt/Legible.h"
#include "qt/QtKeys.h"
#include "qt/QtText.h"

#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>

namespace zv {

namespace {

constexpr Long margin = 240;
constexpr int edge = 8; ///< Of a window, in pixels; around what is scrolled to.

} // namespace

FormWindow::FormWindow(Form& form, QWidget* parent, Zoom* zoom)
    : QDialog(parent), FormView(form), zoom_(zoom), sheet_(std::make_unique<QWidget>().release())
{
    room_.setWidget(sheet_);
    room_.setFrameStyle(QFrame::NoFrame);
    room_.setFocusPolicy(Qt::NoFocus);
    if (zoom_ != nullptr) {
        offerMore();
        bar_.emplace(QStringLiteral("avisoVentana"), this);
        connect(qApp, &QApplication::focusChanged, this, &FormWindow::focusMoved);
    }
    line_.setObjectName(QStringLiteral("progreso"));
    line_.setTextFormat(Qt::PlainText);
    line_.setVisible(hasLine());
    setObjectName(toQt(form.Name()));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowCloseButtonHint);
    setWindowModality(Qt::ApplicationModal);
    keepLegible(*this);
    if (!form.Icon.file.empty())
        setWindowIcon(QIcon(toQt(form.Icon.file)));
    build([this](Control& control, const ControlView* frame) {
        return makeView(*this, control, frame != nullptr ? frame->inside() : *sheet_);
    });
    follow();
}

FormWindow::~FormWindow()
{
    detach();
    // The focus moves on once more while the base is destroyed.
    disconnect(qApp, nullptr, this, nullptr);
    ring_.setParent(nullptr); // It stands beside the focused control, in the control's own parent.
    destroyViews();
}

Long FormWindow::textWidth(StringView text) const
{
    return scale().twips(fontMetrics().horizontalAdvance(toQt(text)));
}

QRect FormWindow::placeOf(const Control& control) const
{
    QRect place(
        QPoint(pixels(control.Left()), pixels(control.Top())),
        QPoint(pixels(control.Left() + control.Width()) - 1, pixels(control.Top() + control.Height()) - 1));
    // Over its cell, which the window may have made wider than the model knows.
    if (const MSFlexGrid* under = this->under(control)) {
        const auto& grid = dynamic_cast<const GridView&>(viewOf(*under));
        place.moveTop(grid.widget().y() + below(*under, control));
        place.setHeight(pixels(control.Height()));
        if (const auto column = grid.currentColumn()) {
            place.moveLeft(grid.widget().x() + column->first);
            place.setWidth(column->second);
        }
    }
    return place;
}

QFont FormWindow::fittingFont() const
{
    QFont font = this->font();
    const auto measure = [&font](int size) {
        font.setPixelSize(size);
        const QFontMetrics metrics(font);
        return LetterSize{metrics.height(), metrics.horizontalAdvance(toQt(ordinaryLetters))};
    };
    font.setPixelSize(fittingLetters(scale(), measure));
    return font;
}

void FormWindow::follow()
{
    scale_ = zoom_ == nullptr ? 1 : scaleWanted();
    setFont(fittingFont());
    followCaption();
    followEnabled();
    fit();
    followControls();
    for (const auto& view : views()) {
        // The relation that screen readers follow from a field to its label. A label has one: not the small
        // buttons behind the field.
        const bool button = dynamic_cast<CommandButton*>(&view->control()) != nullptr;
        if (const Control* label = button ? nullptr : view->control().label())
            dynamic_cast<QLabel&>(viewOf(*label).widget()).setBuddy(&view->input());
    }
}

QSize FormWindow::room() const
{
    return withoutFrame(zoom_->bound().value_or(screen()->availableGeometry().size()));
}

double FormWindow::scaleWanted() const
{
    const double perTwip = static_cast<double>(logicalDpiX()) / twipsPerInch;
    const double letters = QFontInfo(QApplication::font()).pixelSize() / (largestFont * perTwip);
    const Long foot = hasLine() ? footHeight : 0;
    const QSize most = room() - QSize(1, 1); // The parts of the window are rounded one by one.
    return magnified(letters, most.width() / (form().Width() * perTwip),
                     most.height() / ((form().Height() + foot) * perTwip), zoom_->percent());
}

void FormWindow::fit()
{
    const QSize whole(pixels(form().Width()), pixels(form().Height()));
    sheet_->setFixedSize(whole);
    const int foot = hasLine() ? pixels(footHeight) : 0;
    const bool barShown = bar_ && !bar_->isHidden();
    const int least = barShown ? bar_->leastWidth() : 0;
    const int over = barShown ? bar_->settle(std::max(least, std::min(whole.width(), room().width()))) : 0;
    const QSize most = zoom_ == nullptr ? whole : room() - QSize(0, foot + over);
    const int bar = room_.verticalScrollBar()->sizeHint().width();
    const ScrollBars bars =
        scrollBars({whole.width(), whole.height()}, {most.width(), most.height()}, {bar, bar});
    const auto shown = [](bool on) { return on ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff; };
    room_.setHorizontalScrollBarPolicy(shown(bars.across));
    room_.setVerticalScrollBarPolicy(shown(bars.down));
    const QSize inner = (whole + QSize(bars.down ? bar : 0, bars.across ? bar : 0)).boundedTo(most);
    room_.setGeometry({{0, over}, inner});
    const int across = std::max(inner.width(), least);
    setFixedSize(across, over + inner.height() + foot);
    if (barShown)
        bar_->setGeometry(0, 0, across, over);
    if (foot > 0) {
        const int beside = pixels(margin);
        line_.setGeometry(beside, over + inner.height(), inner.width() - 2 * beside, pixels(lineHeight));
    }
}

void FormWindow::moveInside()
{
    const QRect area = screen()->availableGeometry();
    const QRect frame = frameGeometry();
    move(within(frame.left(), frame.width(), area.left(), area.left() + area.width()),
         within(frame.top(), frame.height(), area.top(), area.top() + area.height()));
}

void FormWindow::say(const String& text, const std::vector<BarChoice>& choices)
{
    if (!bar_ || !alive())
        return;
    std::vector<Bar::Choice> shown;
    shown.reserve(choices.size());
    // Letters are their own keys.
    for (const BarChoice& each : choices)
        shown.push_back({toQt(each.text), static_cast<Qt::Key>(each.key), each.does});
    bar_->say(toQt(text), shown);
    fit();
    if (isVisible())
        moveInside();
}

bool FormWindow::asks(const Question& question) { return zv::asks(*this, question); }

void FormWindow::showDraft(const String& heading, const std::vector<DraftRow>& rows)
{
    zv::showDraft(*this, heading, rows);
}

void FormWindow::sayNothing()
{
    if (!bar_ || bar_->isHidden())
        return;
    if (inBar() && alive())
        followFocus();
    bar_->hide();
    fit();
}

bool FormWindow::inBar() const { return bar_ && bar_->isAncestorOf(focusWidget()); }

/// The ring follows a person into the bar, and back.
void FormWindow::focusMoved(QWidget* from, QWidget* to)
{
    if (alive() && inBar())
        ring_.setWidget(to);
    else if (alive() && !busy() && bar_->isAncestorOf(from) && to != nullptr)
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
    const auto key = keystrokeOf(event);
    const String* typed = key ? std::get_if<String>(&*key) : nullptr;
    return pressChord(chordOf(event), typed != nullptr ? std::optional(*typed) : std::nullopt);
}

void FormWindow::inStepNow() { followCell(); }

void FormWindow::followFocus()
{
    const Control* active = form().ActiveControl();
    QWidget& wanted = active != nullptr ? viewOf(*active).input() : *this;
    ring_.setWidget(active != nullptr ? &wanted : nullptr);
    if (focusWidget() == &wanted)
        return;
    {
        const Deeper own = ownDoing();
        wanted.setFocus(Qt::OtherFocusReason);
    }
    if (active == nullptr)
        return;
    viewOf(*active).followAll();
    // The whole of it, which for a text the area's own routine does not mean; its beginning, where the whole
    // does not fit. Over a grid's cell, of the grid: what is rated stands in the first column.
    const MSFlexGrid* grid = under(*active);
    const QWidget& seen = grid != nullptr ? viewOf(*grid).widget() : wanted;
    const QSize whole = room_.viewport()->size();
    const QRect place(seen.mapTo(sheet_, QPoint()), seen.size().boundedTo(whole - QSize(edge, edge)));
    const QSize half = (place.size() / 2 + QSize(edge, edge)).boundedTo(whole / 2);
    room_.ensureVisible(place.center().x(), place.center().y(), half.width(), half.height());
}

void FormWindow::followCell()
{
    const Control* active = form().ActiveControl();
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

void FormWindow::end()
{
    detach();
    hide();
    loop_.quit();
}

void FormWindow::followCaption() { setWindowTitle(toQt(form().Caption())); }

void FormWindow::showLine(const String& text)
{
    line_.setText(toQt(text));
    QAccessibleEvent said(&line_, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&said);
}

void FormWindow::paintLine(const String& text)
{
    line_.setText(toQt(text));
    line_.repaint();
}

void FormWindow::run()
{
    ready();
    loop_.exec();
}

void FormWindow::help()
{
    if (!busy())
        showHelp(*this, toQt(form().Name()));
}

void FormWindow::reject() { close(); }

void FormWindow::closeEvent(QCloseEvent* event)
{
    event->ignore(); // Vetoed: the form hides the window, if it closes at all.
    closeForm();
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
    if (alive() && !busy() && named != nullptr && *named == Key::Escape && form().ActiveControl() == nullptr)
        close();
}

void FormWindow::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && !busy())
        act([this](Acts& acts) { return acts.clickBackground(form()); });
}

bool FormWindow::event(QEvent* event)
{
    const bool handled = QDialog::event(event);
    if (alive() && event->type() == QEvent::ScreenChangeInternal)
        follow();
    // Styles draw the focus only once the keyboard has moved it, and forget that when a window opens. Here
    // the acts move it, and it always shows.
    if (event->type() == QEvent::Show || event->type() == QEvent::WindowActivate)
        setAttribute(Qt::WA_KeyboardFocusChange);
    if (alive() && zoom_ != nullptr && event->type() == QEvent::ApplicationFontChange)
        follow();
    return handled;
}

} // namespace zv
