#include "com/Screen.h"

#include "qt/QtDesktop.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <array>

namespace zv::com {

namespace {

/// The toolkit's application around a host that knows nothing of it.
class OwnApplication {
public:
    OwnApplication()
    {
        if (spanish_.load(QStringLiteral("qtbase_es"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            QApplication::installTranslator(&spanish_);
        QApplication::setQuitOnLastWindowClosed(false);
    }

private:
    std::array<char, 16> name_{"ZVConfiguracion"};
    std::array<char*, 2> words_{name_.data(), nullptr};
    int count_ = 1;
    QApplication application_{count_, words_.data()};
    QTranslator spanish_;
};

class QtScreen final : public Screen {
public:
    QtScreen()
    {
        // A host that uses the toolkit itself has one already.
        if (QCoreApplication::instance() == nullptr)
            application_ = std::make_unique<OwnApplication>();
        desktop_ = std::make_unique<QtDesktop>();
    }
    Desktop& desktop() override { return *desktop_; }

private:
    std::unique_ptr<OwnApplication> application_;
    std::unique_ptr<QtDesktop> desktop_; ///< Goes before the application.
};

} // namespace

std::unique_ptr<Screen> openScreen()
{
#ifdef Q_OS_LINUX
    const bool there = QCoreApplication::instance() != nullptr || qEnvironmentVariableIsSet("DISPLAY") ||
                       qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
                       qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (!there)
        return nullptr;
#endif
    return std::make_unique<QtScreen>();
}

} // namespace zv::com
