// The journal's cost in a real window: a row's dialog is opened, ten keys are typed, and it is accepted, with
// a journal and without one, in pairs. Processor time of the whole process, the thread that syncs
// included, and the time that a person waits. Wants a screen, as a plug-in that draws nothing costs nothing;
// nobody needs to see it (xvfb-run).

#include "Office.h"

#include "journal/Recorder.h"
#include "qt/FormWindow.h"
#include "qt/QtDesktop.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <stdexcept>
#include <vector>

namespace {

using namespace zv;
using namespace zv::bench;

/// Windows with a person at the keyboard, who needs no time to think but sees each letter.
class Screen final : public QtDesktop {
protected:
    void runWindow(FormWindow& window) override
    {
        QTimer::singleShot(0, &window, [&window] {
            for (const char16_t letter : std::u16string_view(u"abcdefghij"))
                key(window, 0, QString(QChar(letter)));
            key(window, Qt::Key_Return, {});
        });
        QtDesktop::runWindow(window);
    }

private:
    static void key(FormWindow& window, int code, const QString& text)
    {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, code, Qt::NoModifier, text);
            if (QWidget* at = window.focusWidget(); at != nullptr && window.alive())
                QCoreApplication::sendEvent(at, &event);
        }
        QCoreApplication::processEvents();
    }
};

/// Milliseconds of the processor, and of the clock, that a changed row takes.
struct Cost {
    double processor = 0;
    double elapsed = 0;
};

Cost row(const Office& office, bool kept)
{
    journal::recording(kept);
    office.centro->executeNative(u"UPDATE EstadoCivil SET Descripcion='Soltero'");
    const std::clock_t processor = std::clock();
    const auto begun = std::chrono::steady_clock::now();
    office.change();
    const Cost cost{
        static_cast<double>(std::clock() - processor) * 1e3 / CLOCKS_PER_SEC,
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begun).count()};
    const Value stored = office.centro->executeNative(u"SELECT Descripcion FROM EstadoCivil")->row().at(0);
    if (CStr(stored).find(u"abcdefghij") == String::npos)
        throw std::runtime_error("the text did not reach the row");
    return cost;
}

double quantile(std::vector<double> values, double part)
{
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

/// Medians, and the middle half of what each pair differs by.
void tell(const char* what, const std::vector<Cost>& without, const std::vector<Cost>& with,
          double Cost::*which)
{
    std::vector<double> parts[3];
    for (std::size_t pair = 0; pair < with.size(); ++pair) {
        parts[0].push_back(without[pair].*which);
        parts[1].push_back(with[pair].*which);
        parts[2].push_back(with[pair].*which / (without[pair].*which));
    }
    const double one = quantile(parts[0], 0.5);
    const double other = quantile(parts[1], 0.5);
    std::cout << what << ": without a journal " << one << " ms, with " << other << " ms, ratio "
              << other / one << "; half of the pairs from " << quantile(parts[2], 0.25) << " to "
              << quantile(parts[2], 0.75) << '\n';
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    Typist nobody;
    const Office office("zv_bench_apuntes", nobody, Durability::full);
    office.centro->executeNative(u"INSERT INTO EstadoCivil (IDEstadoCivil,Descripcion) VALUES (1,'Soltero')");
    qputenv("XDG_STATE_HOME", QByteArray::fromStdString((office.folder / "estado").string()));
    Screen screen;
    screen.keepDrafts();
    useDesktop(&screen);
    const int pairs = argc > 1 ? std::atoi(argv[1]) : 300;
    std::vector<Cost> without;
    std::vector<Cost> with;
    row(office, true);
    for (int pair = 0; pair < pairs; ++pair) {
        const bool first = pair % 2 == 0;
        for (const bool kept : {first, !first})
            (kept ? with : without).push_back(row(office, kept));
    }
    journal::recording(false);
    tell("a row changed in a window, processor (at most 1.1)", without, with, &Cost::processor);
    tell("a row changed in a window, elapsed", without, with, &Cost::elapsed);
    return 0;
}
