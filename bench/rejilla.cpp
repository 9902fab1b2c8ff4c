// A grid in a window: from opening its form to the first paint, a page further, and memory, with few rows and
// with many, against the toolkit's own table of the same texts. Processor time, medians, the two in turns.
// And the guidance of a section of 300 pupils, from opening its dialog to the first paint.

#include "Classroom.h"
#include "Measure.h"

#include "forms/Form.h"
#include "forms/MSFlexGrid.h"
#include "qt/FormWindow.h"
#include "qt/QtDesktop.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

#include <ctime>
#include <iostream>
#include <stdexcept>

namespace {

using namespace zv;
using namespace zv::bench;

constexpr int columns = 4;
constexpr int pages = 50;

double processorSeconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

String textAt(Long row, Long column) { return u"Sucursal " + decimalText(row * columns + column); }

/// What a window cost: until it was painted, for each page that was turned, and in memory.
struct Seen {
    double begun = processorSeconds();
    double before = megabytes();
    double painted = 0;
    double page = 0;
    double memory = 0;

    /// To be called when the window is up.
    void paint(QWidget& window, QWidget& widget)
    {
        while (!window.windowHandle()->isExposed())
            QCoreApplication::processEvents();
        widget.repaint();
        painted = processorSeconds() - begun;
    }
    void look(QWidget* grid)
    {
        auto* table = qobject_cast<QAbstractItemView*>(grid);
        if (table == nullptr)
            throw std::runtime_error("the grid has not the focus");
        paint(*table->window(), *table->viewport());
        memory = megabytes() - before;
        const double since = processorSeconds();
        for (int turned = 0; turned < pages; ++turned) {
            QKeyEvent event(QEvent::KeyPress, Qt::Key_PageDown, Qt::NoModifier);
            QCoreApplication::sendEvent(table, &event);
            table->viewport()->repaint();
        }
        page = (processorSeconds() - since) / pages;
        if (table->verticalScrollBar()->value() == 0)
            throw std::runtime_error("no page was turned");
    }
};

class Branches final : public Form {
public:
    explicit Branches(Long rows) : Form(u"frmSucursales")
    {
        Width = 9000;
        Height = 6000;
        list.Width = 8000;
        list.Height = 5000;
        list.Cols = columns;
        list.Rows = rows + 1;
        for (Long row = 1; row <= rows; ++row)
            for (Long column = 0; column < columns; ++column)
                list.setTextMatrix(row, column, textAt(row, column));
    }
    MSFlexGrid list{*this, u"msgLista"};
};

/// Looks at the window that comes up, and closes it.
class Screen final : public QtDesktop {
public:
    std::function<void(FormWindow& window)> looks;

protected:
    void runWindow(FormWindow& window) override
    {
        QTimer::singleShot(0, &window, [&] {
            looks(window);
            window.close();
        });
        QtDesktop::runWindow(window);
    }
};

Seen ours(Screen& screen, Long rows)
{
    Seen seen;
    screen.looks = [&](FormWindow& window) { seen.look(window.focusWidget()); };
    Branches form(rows);
    form.Show();
    return seen;
}

Seen guidance(Screen& screen, const Classroom& room)
{
    useDesktop(&screen);
    room.stage.facade(0);
    single<frmConsejoOrientador1>().cboSecciones.ListIndex = Long{1};
    Seen seen;
    screen.looks = [&](FormWindow& window) { seen.paint(window, window); };
    single<frmConsejoOrientador>().Show();
    return seen;
}

Seen theirs(Long rows)
{
    Seen seen;
    QDialog window;
    QTableWidget table(static_cast<int>(rows), columns);
    for (Long row = 0; row < rows; ++row)
        for (Long column = 0; column < columns; ++column)
            table.setItem(static_cast<int>(row), static_cast<int>(column),
                          new QTableWidgetItem(QString::fromStdU16String(textAt(row, column))));
    QVBoxLayout layout(&window);
    layout.addWidget(&table);
    window.resize(600, 400);
    table.setCurrentCell(0, 0);
    QTimer::singleShot(0, &window, [&] {
        seen.look(&table);
        window.close();
    });
    window.exec();
    return seen;
}

template <class Show>
void measure(benchmark::State& state, Show&& show)
{
    for (auto _ : state) {
        const Seen seen = show(static_cast<Long>(state.range(0)));
        state.SetIterationTime(seen.painted);
        state.counters["page_ms"] = seen.page * 1e3;
        state.counters["MB"] = seen.memory;
    }
}

} // namespace

int main(int argc, char** argv)
{
    initialize(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    Screen screen;
    const Classroom room("zv_bench_rejilla", Long{12});
    useDesktop(&screen);
    timed(benchmark::RegisterBenchmark("consejo",
                                       [&](benchmark::State& state) {
                                           for (auto _ : state)
                                               state.SetIterationTime(guidance(screen, room).painted);
                                       }),
          9);
    for (const Long rows : {2000, 100000}) {
        timed(benchmark::RegisterBenchmark("modulo",
                                           [&](benchmark::State& state) {
                                               measure(state,
                                                       [&](Long count) { return ours(screen, count); });
                                           }),
              9)
            ->Arg(rows);
        timed(benchmark::RegisterBenchmark("qt", [&](benchmark::State& state) { measure(state, theirs); }), 9)
            ->Arg(rows);
    }
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    for (const std::string rows : {"2000", "100000"})
        std::cout << rows << " rows: first paint " << medians.elapsed("modulo" + rows) << " ms ("
                  << medians.elapsed("modulo" + rows) / medians.elapsed("qt" + rows)
                  << " of the toolkit's table), a page " << medians.counter("modulo" + rows, "page_ms")
                  << " ms ("
                  << medians.counter("modulo" + rows, "page_ms") / medians.counter("qt" + rows, "page_ms")
                  << "), " << medians.counter("modulo" + rows, "MB") << " MB ("
                  << medians.counter("modulo" + rows, "MB") / medians.counter("qt" + rows, "MB") << ")\n";
    std::cout << "guidance of 300 pupils, first paint: " << medians.elapsed("consejo")
              << " ms (at most 200)\n";
    useDesktop(nullptr);
    return 0;
}
