// Dialogs in windows of the system: what opening one costs against a bare window with the same controls, and
// whether many openings leave something behind.
//   bench_ventanas.exe [PAIRS]            medians of so many openings of each, in turn; 101 without a number
//   bench_ventanas.exe --fugas [OPENINGS] handles and memory before and after; 1000 without a number
// The second ends with 1 where a handle is left.
#include "Bare.h"

#include "data/Schools.h"
#include "data/sample/SampleSchool.h"
#include "data/sqlite/SqliteEngine.h"
#include "module/Module.h"
#include "runtime/Convert.h"
#include "runtime/Single.h"
#include "session/HostSession.h"
#include "session/cAsignarDatos.h"
#include "session/cConstCol.h"
#include "win32/Win32Desktop.h"

#include <algorithm>
#include <chrono>
#include <iomanip>
#include <iostream>
#include <span>

#include <objbase.h>
#include <psapi.h>

namespace zv::bench {

namespace {

using Clock = std::chrono::steady_clock;

double microseconds(Clock::duration time) { return std::chrono::duration<double, std::micro>(time).count(); }

struct Dialog {
    Byte node;
    const char* name;
};
constexpr Dialog dialogs[] = {{65, "frmEstadoCivil"}, {31, "frmEmisor"}, {30, "frmBanco"}};

/// A person who closes each dialog as soon as it has been painted.
class Watcher final : public win32::Win32Desktop {
public:
    Clock::time_point seen;
    std::vector<Copy> copies; ///< Of the first one, until it is cleared.

protected:
    void runWindow(win32::FormWindow& window) override
    {
        window.ready();
        settle();
        seen = Clock::now();
        if (copies.empty())
            copies = copied(window.handle());
        Form& form = window.form();
        form.guarded([&] { form.Unload(); });
    }
};

/// A sample school in memory, and the dialogs on it.
class Office {
public:
    explicit Office(Watcher& watcher)
    {
        registerEngine(sqliteEngine());
        installModule();
        school_ = temporarySchool();
        fillSampleSchool(school_);
        session_ = newHostSession(school_);
        let(*session_, u"Accion", Long{cConstCol::Modificado});
        let(*session_, u"lngRowData", Long{1});
        facade_.ObtenerDatos(session_);
        useDesktop(&watcher);
    }
    Office(const Office&) = delete;
    Office& operator=(const Office&) = delete;
    ~Office()
    {
        useDesktop(nullptr);
        resetSingles();
    }
    void open(Byte node)
    {
        facade_.ActivarFormulario(node);
        settle();
    }

private:
    School school_;
    std::shared_ptr<PropertyBag> session_;
    cAsignarDatos facade_;
};

double median(std::vector<double> all)
{
    std::ranges::sort(all);
    return all[all.size() / 2];
}

double openBare(const std::vector<Copy>& copies)
{
    std::vector<HFONT> fonts;
    const auto start = Clock::now();
    const HWND window = makeBare(copies, fonts);
    settle();
    const double took = microseconds(Clock::now() - start);
    DestroyWindow(window);
    settle();
    for (const HFONT font : fonts)
        DeleteObject(font);
    return took;
}

void compare(int pairs)
{
    Watcher watcher;
    Office office(watcher);
    std::cout << "medians of " << pairs << " openings, microseconds\n";
    for (const Dialog& dialog : dialogs) {
        watcher.copies.clear();
        office.open(dialog.node);
        static_cast<void>(openBare(watcher.copies));
        std::vector<double> ours;
        std::vector<double> bare;
        std::vector<double> ratios;
        for (int pair = 0; pair < pairs; ++pair) {
            const auto start = Clock::now();
            office.open(dialog.node);
            ours.push_back(microseconds(watcher.seen - start));
            bare.push_back(openBare(watcher.copies));
            ratios.push_back(ours.back() / bare.back());
        }
        std::cout << std::left << std::setw(16) << dialog.name << std::right << std::fixed
                  << std::setprecision(0) << std::setw(4) << watcher.copies.size() << " windows: dialog "
                  << std::setw(6) << median(ours) << ", bare " << std::setw(6) << median(bare) << ", ratio "
                  << std::setprecision(2) << median(ratios) << '\n';
    }
}

/// How many more of that kind this process may have: Wine does not count those there are (GetGuiResources).
template <class Make, class Drop>
int room(Make make, Drop drop)
{
    std::vector<decltype(make())> all;
    while (const auto made = make())
        all.push_back(made);
    for (const auto each : all)
        drop(each);
    return static_cast<int>(all.size());
}

struct Left {
    int gdi = room([] { return CreateSolidBrush(RGB(1, 2, 3)); }, DeleteObject);
    int user = room(CreateMenu, DestroyMenu);
    std::size_t memory = [] {
        PROCESS_MEMORY_COUNTERS counters{};
        GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
        return counters.WorkingSetSize;
    }();
};

/// Whether nothing is left behind.
bool lookForLeaks(int openings)
{
    Watcher watcher;
    Office office(watcher);
    const auto openAll = [&](int times) {
        for (int i = 0; i < times; ++i)
            office.open(dialogs[static_cast<std::size_t>(i) % std::size(dialogs)].node);
    };
    openAll(10); // What is made once.
    const Left before;
    const int parts = openings < 400 ? 1 : 4;
    bool clean = true;
    for (int part = 1; part <= parts; ++part) {
        openAll(openings / parts);
        const Left now;
        std::cout << part * (openings / parts) << " openings: GDI " << before.gdi - now.gdi << ", USER "
                  << before.user - now.user << ", memory "
                  << (static_cast<double>(now.memory) - static_cast<double>(before.memory)) / 1024
                  << " KB more\n";
        clean = now.gdi == before.gdi && now.user == before.user;
    }
    return clean;
}

} // namespace

} // namespace zv::bench

int main(int argc, char** argv)
{
    const std::span words(argv + 1, static_cast<std::size_t>(argc) - 1);
    const bool leaks = !words.empty() && std::string_view(words[0]) == "--fugas";
    const int number = words.size() > (leaks ? 1 : 0) ? std::atoi(words.back()) : leaks ? 1000 : 101;
    static_cast<void>(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    if (leaks)
        return zv::bench::lookForLeaks(number) ? 0 : 1;
    zv::bench::compare(number);
    return 0;
}
