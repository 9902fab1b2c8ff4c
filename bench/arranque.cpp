// Start of the host on the sample school, as its program does it, until its window is painted, against a bare
// window of the same toolkit: time and peak memory, medians of runs that take turns.
#include "FirstPaint.h"
#include "Measure.h"

#include "data/Schools.h"
#include "data/sqlite/SqliteEngine.h"
#include "module/Module.h"
#include "qt/QtDesktop.h"
#include "runtime/Single.h"
#include "suite/Sample.h"
#include "suite/sodium/EncryptoApi.h"
#include "zvhost/MainWindow.h"
#include "zvhost/Start.h"

#include <QDir>
#include <QLibraryInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTranslator>

#include <optional>
#include <tuple>

namespace zv::bench {
namespace {

int startHost(int argc, char** argv, const QString& file, long long start)
{
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("ZVConfiguracion"));
    QApplication::setApplicationName(QStringLiteral("zvhost"));
    QTranslator spanish;
    if (spanish.load(QStringLiteral("qtbase_es"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&spanish);
    registerCipher();
    installModule();
    QtDesktop desktop;
    useDesktop(&desktop);
    std::optional<host::MainWindow> window;
    std::unique_ptr<host::Host> host =
        host::openHostShown(nullptr, u"sqlite:" + file.toStdU16String(), [&] { window.emplace(); });
    window->use(std::move(host));
    const FirstPaint paint(*window, start);
    const int result = QApplication::exec();
    window.reset();
    resetSingles();
    useDesktop(nullptr);
    return result;
}

/// Runs a program once, and takes the measures that it prints.
void start(benchmark::State& state, const QString& program, const QStringList& words)
{
    for (auto _ : state) {
        QProcess process;
        process.start(program, QStringList(words) << QString::number(nowMicroseconds()));
        if (!process.waitForFinished() || process.exitCode() != 0)
            throw std::runtime_error(program.toStdString() + ": " +
                                     process.readAllStandardError().toStdString());
        const QList<QByteArray> told = process.readAllStandardOutput().trimmed().split(' ');
        state.SetIterationTime(told.at(0).toDouble() / 1e6);
        state.counters["cpu_ms"] = told.at(1).toDouble() / 1e3;
        state.counters["MB"] = told.at(2).toDouble() / 1024;
    }
}

int compare(const QString& self)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("colegio.db"));
    // Isolated from the user's configuration: cipher key, school opened last.
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
    registerCipher();
    createSchool(u"sqlite:" + file.toStdU16String(), fillSample);
    const QString window = QFileInfo(self).dir().filePath(QStringLiteral("bench_ventana"));
    for (const auto& [name, program, words] :
         {std::tuple("ventana", window, QStringList()), std::tuple("anfitrion", self, QStringList(file))})
        timed(benchmark::RegisterBenchmark(name, start, program, words), 15);
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    const auto tell = [](const char* what, double host, double bare, const char* unit) {
        std::cout << what << ": host " << host << ' ' << unit << ", bare window " << bare << ' ' << unit
                  << ", ratio " << host / bare << '\n';
    };
    tell("first paint", medians.elapsed("anfitrion"), medians.elapsed("ventana"), "ms");
    tell("processor until then", medians.counter("anfitrion", "cpu_ms"), medians.counter("ventana", "cpu_ms"),
         "ms");
    tell("peak memory", medians.counter("anfitrion", "MB"), medians.counter("ventana", "MB"), "MB");
    return 0;
}

} // namespace
} // namespace zv::bench

int main(int argc, char** argv)
{
    zv::registerEngine(zv::sqliteEngine());
    if (argc == 3 && argv[1][0] != '-')
        return zv::bench::startHost(argc, argv, QString::fromLocal8Bit(argv[1]), std::stoll(argv[2]));
    zv::bench::initialize(argc, argv);
    const QCoreApplication application(argc, argv);
    return zv::bench::compare(QCoreApplication::applicationFilePath());
}
