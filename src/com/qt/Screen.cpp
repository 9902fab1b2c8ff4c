#include "com/Screen.h"

#include "qt/QtDesktop.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QThread>
#include <QTranslator>

#include <array>
#include <clocale>
#include <string>

namespace zv::com {

namespace {

/// Platform plug-ins in order of preference. The last one, which draws nothing, is a fallback: without it the
/// toolkit aborts the host's process if the display cannot be opened.
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

/// RAII owner of a QApplication for a host without one.
class OwnApplication {
public:
    explicit OwnApplication(const std::function<void()>& ended)
    {
        // Last moment: after that signal the toolkit's thread-local data is destroyed.
        QObject::connect(QThread::currentThread(), &QThread::finished, &application_, ended,
                         Qt::DirectConnection);
        // Restores the host's numeric locale, which QApplication changed.
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
    /// `application` nullptr: uses the host's.
    explicit QtScreen(std::unique_ptr<OwnApplication> application) : application_(std::move(application))
    {
        desktop_.rememberZoom();
        desktop_.keepDrafts();
    }
    Desktop& desktop() override { return desktop_; }
    Reach reach() const override
    {
        const auto* application = qobject_cast<const QApplication*>(QCoreApplication::instance());
        if (application == nullptr)
            return Reach::gone;
        return application->thread() == QThread::currentThread() ? Reach::here : Reach::elsewhere;
    }

private:
    std::unique_ptr<OwnApplication> application_;
    QtDesktop desktop_; ///< Behind the application, so that it is destroyed first.
};

} // namespace

std::unique_ptr<Screen> openScreen(const std::function<void()>& ended)
{
    if (const QCoreApplication* hosts = QCoreApplication::instance()) {
        // A QCoreApplication without GUI aborts the process at the first widget.
        const bool shows = qobject_cast<const QApplication*>(hosts) != nullptr;
        return shows ? std::make_unique<QtScreen>(nullptr) : nullptr;
    }
#ifdef Q_OS_LINUX
    const bool named = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
                       qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (!named)
        return nullptr;
#endif
    auto own = std::make_unique<OwnApplication>(ended);
    return OwnApplication::hasScreen() ? std::make_unique<QtScreen>(std::move(own)) : nullptr;
}

} // namespace zv::com
