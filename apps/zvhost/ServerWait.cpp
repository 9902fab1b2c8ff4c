#include "zvhost/ServerWait.h"

#include "qt/Help.h"
#include "qt/Legible.h"
#include "qt/MessageAid.h"
#include "qt/QtDesktop.h"
#include "qt/QtText.h"
#include "zvhost/Widgets.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

#include <array>
#include <cstdlib>
#include <future>

namespace zv::host {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds betweenAttempts = 2s;
constexpr std::chrono::milliseconds betweenLooks = 200ms;

QWidget* inFront()
{
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : QApplication::activeWindow();
}

/// Application-modal window in the middle of a statement, with a loop of its own. No act reaches a dialog
/// from it: the toolkit keeps a person's input from all other windows, and a timer's statements do not wait.
/// Attempts run in another thread, since a driver may take seconds for one.
class AwayBox final : public QDialog {
public:
    enum class Ending { back, without, closes };

    AwayBox(QWidget* parent, const ServerAway& away) : QDialog(parent), away_(away)
    {
        setObjectName(QStringLiteral("sinServidor"));
        setWindowTitle(QStringLiteral("Sin servidor"));
        setWindowModality(Qt::ApplicationModal);
        keepLegible(*this);
        QFont strong = time_.font();
        strong.setBold(true);
        time_.setFont(strong);
        for (QLabel* each : {&time_, &words_, &choices_}) {
            each->setTextFormat(Qt::PlainText);
            each->setWordWrap(true);
            each->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
            layout_.addWidget(each);
        }
        ButtonRow row(layout_, *this);
        buttons_ = {&row.add(QStringLiteral("&Esperar"), [this] { trySoon(); }),
                    &row.add(QStringLiteral("&Seguir sin él"), [this] { choose(Ending::without); }),
                    &row.add(QStringLiteral("&Cerrar el programa"), [this] { choose(Ending::closes); })};
        for (QPushButton* each : buttons_)
            each->setAutoDefault(true);
        buttons_.front()->setDefault(true);
        connect(&help_, &QShortcut::activated, this,
                [this] { showHelp(*this, QStringLiteral("mensajes"), what_); });
        tell(away.why);
        tick_.callOnTimeout(this, [this] { look(); });
        tick_.start(betweenLooks);
    }

    Ending run()
    {
        QApplication::setOverrideCursor(Qt::ArrowCursor);
        exec();
        QApplication::restoreOverrideCursor();
        if (chosen_ == Ending::closes)
            return Ending::closes;
        return back_ ? Ending::back : Ending::without;
    }
    /// Escape waits on, as does the frame.
    void reject() override { trySoon(); }

protected:
    void closeEvent(QCloseEvent* event) override { event->ignore(); }

private:
    void trySoon() { tried_ = {}; }
    /// What was chosen holds when the attempt that is under way has ended, as its thread does.
    void choose(Ending ending)
    {
        chosen_ = ending;
        for (QPushButton* each : buttons_)
            each->setEnabled(false);
        look();
    }
    void look()
    {
        if (attempt_.valid() && attempt_.wait_for(0s) == std::future_status::ready) {
            tried_ = Clock::now();
            if (const std::optional<Absence> still = attempt_.get())
                tell(*still);
            else
                back_ = true;
        }
        if (back_ || (chosen_ && !attempt_.valid()))
            return accept();
        if (!attempt_.valid() && Clock::now() - tried_ >= betweenAttempts)
            attempt_ = std::async(std::launch::async, away_.tryAgain);
        tellTime();
    }
    void tell(const Absence& why)
    {
        what_ = why.refuses ? QStringLiteral("El servidor no deja entrar")
                            : QStringLiteral("El servidor no responde");
        // Without the seconds: a screen reader would read out each of them.
        time_.setAccessibleName(what_);
        words_.setText(toQt(why.words));
        tellTime();
    }
    void tellTime()
    {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - away_.since);
        time_.setText(QStringLiteral("%1 desde hace %2 s").arg(what_).arg(seconds.count()));
    }

    const ServerAway& away_;
    QVBoxLayout layout_{this};
    QLabel time_, words_;
    QLabel choices_{QStringLiteral(
        "Se vuelve a intentar cada 2 s, y cuando vuelva sigue solo lo que se estaba haciendo. "
        "Con «Seguir sin él» eso falla. "
        "Con «Cerrar el programa» lo escrito queda apuntado, y se recupera al abrir la ventana otra vez.")};
    QShortcut help_{Qt::Key_F1, this};
    std::array<QPushButton*, 3> buttons_{};
    QTimer tick_;
    QString what_;
    Clock::time_point tried_ = Clock::now(); ///< When the last attempt ended.
    std::future<std::optional<Absence>> attempt_;
    std::optional<Ending> chosen_;
    bool back_ = false;
};

} // namespace

void endProcess()
{
    QSettings().sync();
    std::_Exit(EXIT_SUCCESS);
}

ServerWait::ServerWait(const QtDesktop& desktop, std::function<void()> end)
    : desktop_(desktop), end_(std::move(end))
{
    onServerAway(&wait_);
}

ServerWait::~ServerWait() { onServerAway(nullptr); }

bool ServerWait::waited(const ServerAway& away)
{
    constexpr int patience = 3;
    if (away.givenUp && desktop_.told() < toldThen_ + patience)
        return false;
    for (;;) {
        QWidget* window = inFront();
        AwayBox box(window, away);
        if (window != nullptr)
            placeBeside(box, *window);
        const AwayBox::Ending ending = box.run();
        toldThen_ = desktop_.told();
        if (ending != AwayBox::Ending::closes)
            return ending == AwayBox::Ending::back;
        if (!kept())
            continue;
        end_();
        return false;
    }
}

bool ServerWait::kept()
{
    return desktop_.keptDrafts() ||
           confirm(inFront(), QStringLiteral("Cerrar el programa"),
                   QStringLiteral(
                       "Lo que ha escrito en las ventanas abiertas no se ha podido apuntar, y se pierde."),
                   QStringLiteral("&Cerrar"));
}

} // namespace zv::host
