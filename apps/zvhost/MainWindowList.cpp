// The list at the right: read in parts, so that the window goes on meanwhile.
#include "data/ServerAway.h"
#include "zvhost/MainWindow.h"
#include "zvhost/Widgets.h"

#include <QApplication>

#include <algorithm>

namespace zv::host {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// How long the window reads before it looks at what else there is to do.
constexpr std::chrono::milliseconds turn = 20ms;
constexpr std::chrono::milliseconds whileOthersWork = 200ms;
const QString lastList = QStringLiteral("ventana/lista");
constexpr Long fewestRows = 200;
constexpr Long mostRows = 20000;

} // namespace

/// Reads for one turn, in parts sized to take a quarter to a half of it each.
void MainWindow::readParts()
{
    ListReading& reading = *reading_;
    const Clock::time_point end = Clock::now() + turn;
    for (Clock::time_point begun = Clock::now(); !reading.reader.isDone() && begun < end;) {
        reading.rows.add(reading.reader.next(reading.atOnce));
        const Clock::duration took = Clock::now() - begun;
        if (took < turn / 4)
            reading.atOnce = std::min(reading.atOnce * 2, mostRows);
        else if (took > turn / 2)
            reading.atOnce = std::max(reading.atOnce / 2, fewestRows);
        begun += took;
    }
}

void MainWindow::goBack()
{
    if (tree_.chosen() != nullptr)
        return chosen();
    const Node* last = nodeOf(static_cast<Byte>(memory_.value(lastList).toInt()));
    // 0 is a node of its own: only a kept one means it.
    go(last != nullptr && memory_.value(lastList).isValid() ? *last : nodes().front());
}

void MainWindow::chosen()
{
    keepLook();
    reading_.reset();
    node_ = tree_.chosen();
    if (node_ == nullptr) {
        const QTreeWidgetItem* group = tree_.currentItem();
        page_.showGroup(group == nullptr ? QString() : group->text(0));
        return;
    }
    memory_.set(lastList, int{node_->number});
    RowLetters rows(node_->columns);
    const bool read = tried(this, QStringLiteral("La lista no se ha podido leer."), [&] {
        if (!node_->hasList())
            return rows.add(readRows());
        reading_.emplace(ListReading{RowReader(*host_, *node_), rows, fewestRows, false});
        readParts();
        rows = reading_->rows;
    });
    if (!read)
        reading_.reset();
    page_.show(*node_, std::move(rows), lookOf(memory_, node_->number));
    if (reading_)
        settleReading();
    markHeld();
}

std::vector<Row> MainWindow::readRows()
{
    if (node_->isProgress())
        return readProgress();
    sections_.clear();
    if (node_->hasSections())
        sections_ = sections(*host_, *node_);
    return rowsOf(sections_);
}

void MainWindow::readAgain(ListPage::Added added, const std::function<void(Long)>& then)
{
    notice_.review();
    if (!listed())
        return;
    reading_.reset();
    page_.expect(added, then);
    const bool read = tried(this, QStringLiteral("La lista no se ha podido leer."), [&] {
        RowLetters rows(node_->columns);
        if (!node_->hasList()) {
            rows.add(readRows());
            return page_.refresh(std::move(rows), true);
        }
        reading_.emplace(ListReading{RowReader(*host_, *node_), std::move(rows), fewestRows, true});
        readParts();
    });
    if (!read) {
        reading_.reset();
        page_.forgetExpected();
    }
    if (reading_)
        settleReading();
    markHeld();
}

void MainWindow::readOn()
{
    if (!reading_)
        return readOn_.stop();
    // Not below a dialog: its own statements come first.
    const bool waits = QApplication::activeModalWidget() != nullptr;
    readOn_.start(waits ? whileOthersWork : 0ms);
    if (waits)
        return;
    const Unattended work;
    try {
        readParts();
        settleReading();
    } catch (const RuntimeError&) {
        reading_.reset();
        page_.setReading(ListPage::Reading::failed);
    }
}

/// Shows what has been read: more rows of a list that is new, and all at once of one that is there already,
/// or as soon as they are more than there are.
void MainWindow::settleReading()
{
    const bool done = reading_->reader.isDone();
    if (!reading_->again) {
        // Each time half as many again: to sort them in costs all of them.
        const int there = page_.rowsThere();
        if (reading_->rows.size() > (done ? there : there * 3 / 2))
            page_.grow(reading_->rows);
    } else if (done)
        page_.refresh(reading_->rows, true);
    else if (page_.isPartial() && reading_->rows.size() > page_.rowsThere()) {
        page_.refresh(reading_->rows, false);
        reading_->again = false;
    }
    page_.setReading(done              ? ListPage::Reading::done
                     : reading_->again ? ListPage::Reading::again
                                       : ListPage::Reading::goesOn);
    if (done)
        reading_.reset();
    else
        readOn_.start(0);
}

} // namespace zv::host
