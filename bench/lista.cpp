// A list in the host's window that may be long: until its first rows stand there and until all do, then a
// search, a sort, an export and a reading anew; and of each the longest time in which the window looked at
// nothing else. The peer is the bare engine, which steps through the same rows. Of a school of files, or of
// one at a URL.
#include "Measure.h"

#include "data/Schools.h"
#include "data/odbc/OdbcEngine.h"
#include "data/sqlite/SqliteEngine.h"
#include "module/Module.h"
#include "qt/QtDesktop.h"
#include "qt/QtText.h"
#include "runtime/Convert.h"
#include "runtime/Single.h"
#include "suite/Sample.h"
#include "suite/sodium/EncryptoApi.h"
#include "zvhost/MainWindow.h"
#include "zvhost/Widgets.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QStandardPaths>
#include <QTableView>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTimer>

#include <iostream>
#include <memory>
#include <stdexcept>

namespace {

using namespace zv;
using namespace zv::bench;

/// The longest time between two looks of the event loop, in ms.
class Freezes {
public:
    Freezes()
    {
        QObject::connect(&beat_, &QTimer::timeout, [this] { look(); });
        beat_.start(0);
        since_.start();
    }
    double longest()
    {
        look();
        return longest_;
    }

private:
    void look()
    {
        longest_ = std::max(longest_, static_cast<double>(since_.nsecsElapsed()) / 1e6);
        since_.start();
    }
    QTimer beat_;
    QElapsedTimer since_;
    double longest_ = 0;
};

/// A host's window on a school with a list of so many rows.
class Office {
public:
    Office(const String& url, int rows) : rows_(rows), school_(createSchool(url))
    {
        school_.centro->Execute(u"DELETE FROM Profesion");
        // A thousand times a thousand: a server may limit how deep a recursion goes.
        const String count = decimalText(rows);
        school_.centro->executeNative(u"INSERT INTO Profesion (IDProfesion, nombre) WITH RECURSIVE n(i) AS "
                                      u"(SELECT 0 UNION ALL SELECT i+1 FROM "
                                      u"n WHERE i<999), m(i) AS (SELECT a.i*1000+b.i FROM n a, n b) SELECT "
                                      u"i+1, 'Oficial de ' || ((i*1009)%" +
                                      count + u") || 'ª del gremio' FROM m WHERE i<" + count);
        window_ = std::make_unique<host::MainWindow>(std::make_unique<host::Host>(url, school_));
        window_->show();
        list_ = window_->findChild<QTableView*>(QStringLiteral("lista"));
    }
    Office(const Office&) = delete;
    Office& operator=(const Office&) = delete;
    ~Office()
    {
        window_.reset();
        resetSingles();
    }

    host::MainWindow& window() { return *window_; }
    QTableView& list() { return *list_; }
    const host::RowsModel& model() const { return dynamic_cast<const host::RowsModel&>(*list_->model()); }
    void write(const char* words)
    {
        window_->findChild<QLineEdit*>(QStringLiteral("buscar"))->setText(QString::fromUtf8(words));
    }
    /// Runs the window's loop until it shows so many rows of all, of which the first is that number's.
    void await(int shown, int first)
    {
        const QString text = QStringLiteral("Oficial de %1ª del gremio").arg(first);
        QElapsedTimer since;
        since.start();
        while (model().isBusy() || model().rows().size() != rows_ || model().rowCount() != shown ||
               model().index(0, 0).data().toString() != text) {
            QApplication::processEvents();
            if (since.elapsed() > 120000)
                throw std::runtime_error("the list stands still");
        }
        list_->viewport()->repaint();
    }
    int rows() const { return rows_; }
    School& school() { return school_; }

private:
    int rows_;
    School school_;
    std::unique_ptr<host::MainWindow> window_;
    QTableView* list_ = nullptr;
};

/// Times an act of the window, in ms, and its longest freeze.
template <class Act>
void act(benchmark::State& state, const std::string& name, Act&& does)
{
    QElapsedTimer since;
    since.start();
    Freezes freezes;
    does();
    state.counters[name + "_ms"] = static_cast<double>(since.nsecsElapsed()) / 1e6;
    state.counters[name + "_freeze_ms"] = freezes.longest();
}

/// Rows that a search for "77" finds.
int found(int rows)
{
    int count = 0;
    for (int row = 0; row < rows; ++row)
        count += std::to_string(row).find("77") != std::string::npos ? 1 : 0;
    return count;
}

void work(benchmark::State& state, Office& office)
{
    const int rows = office.rows();
    QTableView& list = office.list();
    for (auto _ : state) {
        office.window().go(host::nodes().front());
        QApplication::processEvents();
        const double before = megabytes();
        act(state, "whole", [&] {
            act(state, "first", [&] {
                office.window().go(*host::nodeOf(u"frmProfesion"));
                list.viewport()->repaint();
            });
            office.await(rows, 0);
        });
        state.SetIterationTime(state.counters["whole_ms"].value / 1e3);
        state.counters["MB"] = megabytes() - before;
        act(state, "search", [&] {
            office.write("GREMIO 77");
            office.await(found(rows), 77);
        });
        act(state, "clear", [&] {
            office.write("");
            office.await(rows, 0);
        });
        list.selectionModel()->select({list.model()->index(rows / 2, 0), list.model()->index(rows - 1, 0)},
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        act(state, "sort", [&] {
            list.sortByColumn(0, Qt::DescendingOrder);
            office.await(rows, rows - 1);
        });
        act(state, "export", [&] {
            host::withProgress(&office.window(), QStringLiteral("Exportando…"),
                               [shown = office.model().shownList()] {
                                   QTemporaryFile file;
                                   if (!file.open() || !shown.writeCsv(file))
                                       throw std::runtime_error("nothing was exported");
                               });
        });
        act(state, "again", [&] {
            bool come = false;
            const auto waits =
                QObject::connect(list.model(), &QAbstractItemModel::modelReset, [&] { come = true; });
            office.window().refresh();
            while (!come)
                QApplication::processEvents();
            QObject::disconnect(waits);
        });
        act(state, "all", [&] {
            list.selectAll();
            QApplication::processEvents();
        });
        list.sortByColumn(0, Qt::AscendingOrder);
        office.await(rows, 0);
    }
}

/// The same rows, read and looked at by nobody.
void bare(benchmark::State& state, Office& office)
{
    for (auto _ : state) {
        QElapsedTimer since;
        since.start();
        int seen = 0;
        for (const RecordsetPtr rows =
                 office.school().centro->executeNative(u"SELECT IDProfesion, nombre FROM Profesion");
             !rows->Eof(); rows->MoveNext()) {
            benchmark::DoNotOptimize(rows->row());
            ++seen;
        }
        if (seen != office.rows())
            throw std::runtime_error("the table has other rows");
        state.SetIterationTime(static_cast<double>(since.nsecsElapsed()) / 1e9);
    }
}

} // namespace

int main(int argc, char** argv)
{
    initialize(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    const QApplication application(argc, argv);
    registerEngine(sqliteEngine());
    registerEngine(odbcEngine());
    registerCipher([key = CipherKey::random()](bool) { return key; });
    installModule();
    QtDesktop desktop;
    useDesktop(&desktop);
    const QTemporaryDir room;
    std::vector<int> sizes = {2000, 100000, 1000000};
    if (argc > 1)
        sizes.pop_back();
    std::vector<std::unique_ptr<Office>> offices;
    for (const int rows : sizes) {
        const String url = argc > 1 ? fromUtf8(argv[1]) + u";ESQUEMA=zv_lista" + decimalText(rows)
                                    : u"sqlite:" + fromQt(room.filePath(QStringLiteral("%1.db").arg(rows)));
        Office& office = *offices.emplace_back(std::make_unique<Office>(url, rows));
        const std::string name = "/" + std::to_string(rows);
        timed(benchmark::RegisterBenchmark(("lista" + name).c_str(),
                                           [&](benchmark::State& state) { work(state, office); }),
              5);
        timed(benchmark::RegisterBenchmark(("filas" + name).c_str(),
                                           [&](benchmark::State& state) { bare(state, office); }),
              5);
    }
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    offices.clear();
    useDesktop(nullptr);
    return 0;
}
