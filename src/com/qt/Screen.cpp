#include "com/Screen.h"

#include "qt/QtDesktop.h"
#include "runtime/Errors.h"

#include <zvconfiguracion/automation.h>

#include <QApplication>
#include <QLibraryInfo>
#include <QThread>
#include <QTranslator>

#include <array>
#include <clocale>
#include <string>

namespace zv::com {

namespace {

/// What the toolkit tries in turn. The last shows nothing: without it, a screen that is named but not there
/// would end the host's process.
QByteArray platforms()
{
#ifdef Q_OS_LINUX
    QByteArray wanted = qgetenv("QT_QPA_PLATFORM");
    if (wanted.isEmpty())
        wanted = qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ? "wayland;xcb" : "xcb";
    return wanted + ";minimal";
#else
    return {};
#endif
}

/// The toolkit's application around a host that knows nothing of it.
class OwnApplication {
public:
    OwnApplication()
    {
        // The toolkit sets the process's locale: the host goes on reading its numbers as before.
        std::setlocale(LC_NUMERIC, numbers_.c_str());
        if (spanish_.load(QStringLiteral("qtbase_es"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            QApplication::installTranslator(&spanish_);
        QApplication::setQuitOnLastWindowClosed(false);
    }
    static bool hasScreen() { return QApplication::platformName() != QLatin1String("minimal"); }

private:
    std::string numbers_ = std::setlocale(LC_NUMERIC, nullptr);
    QByteArray name_ = "ZVConfiguracion";
    QByteArray option_ = "-platform";
    QByteArray platforms_ = platforms();
    std::array<char*, 4> words_{name_.data(), option_.data(), platforms_.data(), nullptr};
    int count_ = platforms_.isEmpty() ? 1 : 3;
    QApplication application_{count_, words_.data()};
    QTranslator spanish_;
};

class QtScreen final : public Screen {
public:
    /// Without an application of its own it uses the host's.
    explicit QtScreen(std::unique_ptr<OwnApplication> application) : application_(std::move(application)) {}
    Desktop& desktop() override { return desktop_; }

private:
    std::unique_ptr<OwnApplication> application_;
    QtDesktop desktop_; ///< Goes before the application.
};

} // namespace

std::unique_ptr<Screen> openScreen()
{
    if (const QCoreApplication* hosts = QCoreApplication::instance()) {
        if (hosts->thread() != QThread::currentThread())
            throw RuntimeError(
                ZV_E_WRONG_THREAD,
                u"Llame al módulo desde el hilo de su QApplication, que es el de las ventanas.");
        // One that is made for no windows ends the process at the first.
        const bool shows = qobject_cast<const QApplication*>(hosts) != nullptr;
        return shows ? std::make_unique<QtScreen>(nullptr) : nullptr;
    }
#ifdef Q_OS_LINUX
    const bool named = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
                       qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (!named)
        return nullptr;
#endif
    auto own = std::make_unique<OwnApplication>();
    return OwnApplication::hasScreen() ? std::make_unique<QtScreen>(std::move(own)) : nullptr;
}

} // namespace zv::com
