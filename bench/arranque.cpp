// Start of the host on the sample school, as its program does it, until its window is painted, against a bare
// window of the same toolkit: time and peak memory, medians of runs that take turns.
#include "FirstPaint.h"

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

#include <algorithm>
#include <optional>

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

struct Runs {
    std::vector<double> milliseconds, megabytes;

    void run(const QString& program, const QStringList& words)
    {
        QProcess process;
        process.start(program, QStringList(words) << QString::number(nowMicroseconds()));
        if (!process.waitForFinished() || process.exitCode() != 0)
            throw std::runtime_error(program.toStdString() + ": " +
                                     process.readAllStandardError().toStdString());
        const QList<QByteArray> words2 = process.readAllStandardOutput().trimmed().split(' ');
        milliseconds.push_back(words2.at(0).toDouble() / 1000);
        megabytes.push_back(words2.at(1).toDouble() / 1024);
    }
};

double median(std::vector<double> numbers)
{
    std::ranges::sort(numbers);
    return numbers[numbers.size() / 2];
}

int compare(const QString& self)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("colegio.db"));
    // The key of the cipher and the school that was open last are the person's own.
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
    registerCipher();
    createSchool(u"sqlite:" + file.toStdU16String(), fillSample);
    Runs bare;
    Runs ours;
    for (int i = 0; i < 15; ++i) {
        bare.run(QFileInfo(self).dir().filePath(QStringLiteral("bench_ventana")), {});
        ours.run(self, {file});
    }
    const auto tell = [](const char* what, double host, double window, const char* unit) {
        std::cout << what << ": host " << host << ' ' << unit << ", bare window " << window << ' ' << unit
                  << ", ratio " << host / window << '\n';
    };
    tell("first paint", median(ours.milliseconds), median(bare.milliseconds), "ms");
    tell("peak memory", median(ours.megabytes), median(bare.megabytes), "MB");
    return 0;
}

} // namespace
} // namespace zv::bench

int main(int argc, char** argv)
{
    zv::registerEngine(zv::sqliteEngine());
    if (argc == 3)
        return zv::bench::startHost(argc, argv, QString::fromLocal8Bit(argv[1]), std::stoll(argv[2]));
    const QCoreApplication application(argc, argv);
    return zv::bench::compare(QCoreApplication::applicationFilePath());
}
