#include "zvhost/Command.h"

#include "data/history/HistoryEngine.h"
#include "data/odbc/OdbcEngine.h"
#include "data/sqlite/SqliteEngine.h"
#include "module/Module.h"
#include "runtime/Single.h"
#include "suite/sodium/EncryptoApi.h"
#include "zv/Version.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QTranslator>

#include <iostream>
#include <string_view>

namespace zv::host {
namespace {

constexpr const char* help = R"(zvhost: la configuración del centro, en su escritorio.

  zvhost [--bd URL]
      La ventana principal. Sin --bd abre el colegio de la última vez, o pregunta cuál.
  zvhost dialogo NODO --bd URL [--accion N] [--fila N] [--bloqueado] [--usuario N] [--perfil N]
                 [--consulta] [--mtp]
      Abre la ventana de un nodo (su número, o el nombre de la ventana) y termina con ella.
      Con --fila cambia esa fila; sin ella hace una nueva. --bloqueado abre un banco por sus sucursales.
  zvhost guion [--despacio] ...
      Como «zvconf guion», pero en ventanas de verdad; con --despacio, al paso de una persona.
  zvhost galeria CARPETA [--oscuro] [--puntos N] [--tamano ANCHOxALTO]
      Dibuja todas las ventanas como imágenes, a 96 y a 192 puntos por pulgada (al 100 y al 200 %), o sólo
      a N; con --tamano, como caben en una pantalla de esos píxeles.
  zvhost informe --bd URL --seccion N --tipo TIPO CARPETA [--alumno N]... [--todos-en-uno] [--odt]
                 [--papel CARPETA] [--fecha AAAA-MM-DD]
      Escribe en CARPETA los informes de una sección como PDF (PDF/A-1b), uno por alumno o, con
      --todos-en-uno, uno solo; con --odt, para retocarlos. TIPO es primaria, eso o consejo. --papel es la carpeta del centro, con su
      logotipo, su nombre y sus plantillas. No le hace falta pantalla; con Ctrl+C se detiene.
  zvhost informe --plantillas CARPETA
      Escribe en CARPETA las plantillas del programa, para cambiarlas.
  zvhost --version
  zvhost --help

URL es como en «zvconf --help», que dice también dónde poner una contraseña para que no la vea nadie.
Termina con 0 si todo va bien, y con 2 si la orden no se ha podido hacer; guion, como el de zvconf.
)";

/// Message filter: on a screen in memory, without a session, the toolkit warns that nobody bounds its
/// windows' size and that it keeps nothing, which would drown what is said of the dialogs.
void quieten()
{
    static const QtMessageHandler usual =
        qInstallMessageHandler([](QtMsgType kind, const QMessageLogContext& context, const QString& text) {
            if (!text.startsWith(QStringLiteral("This plugin does not support ")) &&
                !text.startsWith(QStringLiteral("QStandardPaths: XDG_RUNTIME_DIR not set")))
                usual(kind, context, text);
        });
}

/// Fallback for pictures and guiones: without a screen Qt draws in memory.
bool prepareScreen(bool needed)
{
#ifdef Q_OS_LINUX
    const char* const inMemory = "offscreen";
    const bool screen = qEnvironmentVariableIsSet("DISPLAY") ||
                        qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
                        qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (!screen && needed) {
        std::cerr
            << "zvhost: no hay pantalla. Ábralo en un escritorio, o use «zvhost guion», «zvhost galeria», "
               "«zvhost informe» o zvconf.\n";
        return false;
    }
    if (!screen)
        qputenv("QT_QPA_PLATFORM", inMemory);
    // The child process that draws the gallery inherits the variable.
    if (qgetenv("QT_QPA_PLATFORM") == inMemory)
        quieten();
#endif
    return true;
}

/// RAII guard: the dialogs are destroyed before the application, also when a command throws.
class Dialogs {
public:
    Dialogs() { installModule(); }
    Dialogs(const Dialogs&) = delete;
    Dialogs& operator=(const Dialogs&) = delete;
    ~Dialogs() { resetSingles(); }
};

int run(int argc, char** argv)
{
    const std::string_view word = argc > 1 ? argv[1] : "";
    if (word == "--help") {
        std::cout << help;
        return done;
    }
    if (word == "--version") {
        std::cout << "zvhost " << version << '\n';
        return done;
    }
    const bool drawn = word == "guion" || word == "galeria" || word == "informe";
    if (!prepareScreen(!drawn))
        return failed;
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("ZVConfiguracion"));
    QApplication::setApplicationName(QStringLiteral("zvhost"));
    QApplication::setApplicationVersion(QString::fromLatin1(version));
    // Desktop file and icon theme of the installed package: desktops take the icon from the one or from the
    // other.
    QApplication::setDesktopFileName(QStringLiteral("zvhost"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("zvhost")));
    QTranslator spanish;
    if (spanish.load(QStringLiteral("qtbase_es"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&spanish);
    registerEngine(sqliteEngine());
    registerEngine(odbcEngine());
    registerEngine(historyEngine());
    registerCipher();
    const Dialogs dialogs;
    const QStringList words = QApplication::arguments();
    return word == "dialogo"   ? dialogo(words.mid(2))
           : word == "guion"   ? guion(words.mid(2))
           : word == "galeria" ? galeria(words.mid(2))
           : word == "informe" ? informe(words.mid(2))
                               : mainWindow(words.mid(1));
}

} // namespace
} // namespace zv::host

int main(int argc, char** argv)
{
    try {
        return zv::host::run(argc, argv);
    } catch (const std::invalid_argument& error) {
        std::cerr << "zvhost: " << error.what() << " Con --help se ven las órdenes.\n";
    } catch (const std::exception& error) {
        std::cerr << "zvhost: " << error.what() << '\n';
    }
    return zv::host::failed;
}
