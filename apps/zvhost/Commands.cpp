#include "zvhost/Command.h"

#include "data/Schools.h"
#include "journal/Recorder.h"
#include "qt/QtDesktop.h"
#include "qt/QtText.h"
#include "qt/stage/QtStage.h"
#include "robot/PlayGuiones.h"
#include "runtime/System.h"
#include "session/cConstCol.h"
#include "session/cNombreNodo.h"
#include "suite/sodium/EncryptoApi.h"
#include "zvhost/Gallery.h"
#include "zvhost/MainWindow.h"
#include "zvhost/ServerWait.h"
#include "zvhost/Start.h"
#include "zvhost/Widgets.h"
#include "zvhost/Words.h"

#include <QApplication>
#include <QProcess>
#include <QTimer>

#include <iostream>
#include <optional>

namespace zv::host {
namespace {

/// Default pace: what a person takes over an act.
constexpr std::chrono::milliseconds personsPace{600};

/// RAII guard: the dialogs open in windows as long as it lives.
class OnScreen {
public:
    OnScreen()
    {
        desktop_.rememberZoom();
        desktop_.keepDrafts();
        useDesktop(&desktop_);
    }
    OnScreen(const OnScreen&) = delete;
    OnScreen& operator=(const OnScreen&) = delete;
    ~OnScreen() { useDesktop(nullptr); }

private:
    QtDesktop desktop_;
    ServerWait wait_{desktop_};
};

const Node& nodeNamed(const QString& word)
{
    bool number = false;
    const int value = word.toInt(&number);
    const Node* node = !number                      ? nodeOf(fromQt(word))
                       : value >= 0 && value <= 255 ? nodeOf(static_cast<Byte>(value))
                                                    : nullptr;
    if (node == nullptr || node->isProgress())
        throw std::invalid_argument("«" + word.toStdString() +
                                    "» no es un nodo: ponga su número, o el nombre de su ventana.");
    return *node;
}

constexpr char scaleFactor[] = "QT_SCALE_FACTOR";
QString scaleOf(int dots) { return QString::number(dots / 96.0); }

/// Child process of this program, since a process has one resolution.
int drawAgain(const QStringList& words, int dots)
{
    QProcess again;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(scaleFactor), scaleOf(dots));
    again.setProcessEnvironment(environment);
    again.setProcessChannelMode(QProcess::ForwardedChannels);
    QStringList order{QStringLiteral("galeria")};
    if (!words.contains(QStringLiteral("--puntos")))
        order += {QStringLiteral("--puntos"), QString::number(dots)};
    again.start(QCoreApplication::applicationFilePath(), order + words);
    return again.waitForFinished(-1) && again.exitStatus() == QProcess::NormalExit ? again.exitCode()
                                                                                   : failed;
}

void darken()
{
    QPalette palette(QColor(45, 45, 48));
    palette.setColor(QPalette::Base, QColor(30, 30, 32));
    palette.setColor(QPalette::AlternateBase, QColor(38, 38, 41));
    palette.setColor(QPalette::Highlight, QColor(42, 110, 190));
    palette.setColor(QPalette::PlaceholderText, QColor(150, 150, 150));
    palette.setColor(QPalette::ToolTipBase, QColor(62, 58, 40));
    palette.setColor(QPalette::ToolTipText, QColor(240, 240, 240));
    QApplication::setPalette(palette);
}

/// Of a screen, in logical pixels; "1366x768" says it in those of the device.
std::optional<QSize> screenSize(const Words& given)
{
    if (!given.has(QStringLiteral("tamano")))
        return std::nullopt;
    const QString text = given.text(QStringLiteral("tamano"));
    const QStringList sides = text.split(u'x');
    const QSize size(sides.value(0).toInt(), sides.value(1).toInt());
    if (sides.size() != 2 || size.isEmpty())
        throw std::invalid_argument("«" + text.toStdString() +
                                    "» no vale para --tamano: se escribe como 1366x768.");
    return size / qApp->devicePixelRatio();
}

} // namespace

int mainWindow(const QStringList& words)
{
    const Words given(words, {valued("bd")});
    if (!given.rest().isEmpty())
        throw std::invalid_argument("«" + shownUrl(fromQt(given.rest().front())).toStdString() +
                                    "» no es una orden.");
    const OnScreen screen;
    std::optional<MainWindow> window;
    const auto build = [&] { window.emplace(Remembered::Where::settings); };
    std::unique_ptr<Host> host = given.has(QStringLiteral("bd"))
                                     ? openHostShown(nullptr, fromQt(given.text(QStringLiteral("bd"))), build)
                                     : startSchool(build);
    int result = failed;
    if (host != nullptr) {
        if (!window)
            build();
        window->use(std::move(host));
        window->show();
        result = QApplication::exec();
    }
    return result;
}

int dialogo(const QStringList& words)
{
    const Words given(words, {valued("bd"), valued("accion"), valued("fila"), valued("usuario"),
                              valued("perfil"), plain("bloqueado"), plain("consulta"), plain("mtp")});
    if (given.rest().size() != 1 || !given.has(QStringLiteral("bd")))
        throw std::invalid_argument("dialogo lleva un NODO y --bd URL.");
    const Node node = nodeNamed(given.rest().front());
    const bool branches = given.has(QStringLiteral("bloqueado"));
    if (branches && node.number != cNombreNodo::OC_Bancos)
        throw std::invalid_argument("--bloqueado es sólo para un banco.");
    const Long row = given.number<Long>(QStringLiteral("fila"), 0);
    const Byte action = given.number<Byte>(
        QStringLiteral("accion"),
        given.has(QStringLiteral("fila")) && row > 0 ? cConstCol::Modificado : cConstCol::NUEVO);
    Choices choices;
    choices.user = given.number<Integer>(QStringLiteral("usuario"), choices.user);
    choices.profile = given.number<Integer>(QStringLiteral("perfil"), choices.profile);
    choices.readOnly = given.has(QStringLiteral("consulta"));
    choices.mtp = given.has(QStringLiteral("mtp"));
    // Not a session of consultation in name alone.
    if (choices.readOnly && !node.hasList())
        throw std::invalid_argument("la ventana «" + toUtf8(node.name) +
                                    "» no distingue la consulta: guarda lo que se acepte en ella.");
    const OnScreen screen;
    const std::unique_ptr<Host> host = openHost(fromQt(given.text(QStringLiteral("bd"))), choices);
    host->open(node, action, row, branches);
    return done;
}

int guion(const QStringList& words)
{
    std::vector<String> passed;
    bool slow = false;
    for (const QString& word : words)
        if (word == QStringLiteral("--despacio"))
            slow = true;
        else
            passed.push_back(fromQt(word));
    // Guiones type what nobody wants back; but whoever asks can see that it makes no difference to them.
    if (environment("ZV_DIARIO") == "si")
        journal::record();
    return playGuiones(passed, qtStage(slow ? personsPace : std::chrono::milliseconds(0)), std::cout,
                       std::cerr);
}

int galeria(const QStringList& words)
{
    const Words given(words, {valued("puntos"), valued("tamano"), plain("oscuro")});
    if (given.rest().size() != 1)
        throw std::invalid_argument("galeria lleva una carpeta.");
    if (!given.has(QStringLiteral("puntos"))) {
        const int small = drawAgain(words, 96);
        return small == done ? drawAgain(words, 192) : small;
    }
    const QString dots = given.text(QStringLiteral("puntos"));
    const int resolution = given.number<int>(QStringLiteral("puntos"), 96);
    if (qEnvironmentVariable(scaleFactor) != scaleOf(resolution))
        return drawAgain(words, resolution);
    if (given.has(QStringLiteral("oscuro")))
        darken();
    // A random key: pictures of a sample never touch the person's own.
    registerCipher([key = CipherKey::random()](bool) { return key; });
    const std::optional<QSize> screen = screenSize(given);
    const int drawn =
        drawGallery(given.rest().front(),
                    u'-' + dots + (screen ? u'-' + given.text(QStringLiteral("tamano")) : QString()) +
                        (given.has(QStringLiteral("oscuro")) ? QStringLiteral("-oscuro") : QString()),
                    screen);
    std::cout << drawn << " imágenes a " << dots.toStdString() << " puntos por pulgada en "
              << given.rest().front().toStdString() << ".\n";
    return done;
}

} // namespace zv::host
