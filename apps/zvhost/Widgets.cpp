#include "zvhost/Widgets.h"

#include "data/Engine.h"
#include "qt/EdgeStyle.h"
#include "qt/QtText.h"
#include "qt/Zoom.h"

#include <QCloseEvent>
#include <QEventLoop>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

#include <atomic>
#include <thread>

namespace zv::host {
namespace {

using namespace std::chrono_literals;

/// Delay before the progress dialog: shorter work needs none.
constexpr std::chrono::milliseconds noticeable = 300ms;

/// Progress dialog that cannot be closed.
class Waiting final : public QProgressDialog {
public:
    Waiting(QWidget* parent, const QString& text) : QProgressDialog(text, QString(), 0, 0, parent)
    {
        setWindowTitle(QStringLiteral("Un momento"));
        setWindowModality(Qt::ApplicationModal);
    }
    void reject() override {}

protected:
    void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

/// A text that is higher than the screen scrolls, so that the buttons stay within reach.
void scrollLong(QMessageBox& box)
{
    const QFontMetrics font = box.fontMetrics();
    const QSize room = withoutFrame(box.screen()->availableSize()) - QSize(0, 6 * font.lineSpacing());
    const int width = std::min(room.width() / 2, 500); // At which the box itself breaks its lines.
    const int height =
        font.boundingRect(QRect(0, 0, width, QWIDGETSIZE_MAX), Qt::TextWordWrap, box.text()).height();
    auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    if (height <= room.height() || label == nullptr)
        return;
    auto* area = std::make_unique<QScrollArea>(&box).release();
    // The box gives the label's item up, and nobody else has it.
    const std::unique_ptr<QLayoutItem> item(box.layout()->replaceWidget(label, area));
    label->setWordWrap(true);
    area->setWidget(label);
    area->setWidgetResizable(true);
    drawEdge(*area);
    area->setMinimumSize(width + area->verticalScrollBar()->sizeHint().width(), room.height());
    area->setAccessibleName(box.windowTitle());
}

} // namespace

QString shownUrl(const String& url) { return toQt(withoutPassword(url)); }

void say(QWidget* parent, const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::Information, title, text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    box.addButton(QStringLiteral("&Aceptar"), QMessageBox::AcceptRole);
    scrollLong(box);
    box.exec();
}

void sayFailure(QWidget* parent, const QString& text, const std::exception& error)
{
    QMessageBox box(QMessageBox::Warning, QStringLiteral("No se ha podido"), text, QMessageBox::NoButton,
                    parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(QString::fromUtf8(error.what()));
    box.addButton(QStringLiteral("&Aceptar"), QMessageBox::AcceptRole);
    box.exec();
}

Answer ask(QWidget* parent, const QString& title, const QString& text, const QString& button,
           const QString& other)
{
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    const QPushButton* yes = box.addButton(button, QMessageBox::AcceptRole);
    const QPushButton* second = other.isEmpty() ? nullptr : box.addButton(other, QMessageBox::ActionRole);
    QPushButton* no = box.addButton(QStringLiteral("&Cancelar"), QMessageBox::RejectRole);
    box.setDefaultButton(no);
    box.setEscapeButton(no);
    for (auto* each : box.findChildren<QPushButton*>())
        giveRoom(*each);
    scrollLong(box);
    box.exec();
    return box.clickedButton() == yes                           ? Answer::yes
           : second != nullptr && box.clickedButton() == second ? Answer::other
                                                                : Answer::no;
}

bool confirm(QWidget* parent, const QString& title, const QString& text, const QString& button)
{
    return ask(parent, title, text, button, {}) == Answer::yes;
}

bool tried(QWidget* parent, const QString& failed, const std::function<void()>& what)
{
    try {
        what();
        return true;
    } catch (const std::exception& error) {
        sayFailure(parent, failed, error);
        return false;
    }
}

void withProgress(QWidget* parent, const QString& text, const std::function<void()>& work,
                  const std::function<void()>& meanwhile)
{
    std::exception_ptr failure;
    std::atomic<bool> finished = false;
    QEventLoop loop;
    std::jthread worker([&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        finished = true;
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    if (meanwhile)
        meanwhile();
    QTimer::singleShot(noticeable, &loop, &QEventLoop::quit);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    if (!finished) {
        Waiting dialog(parent, text);
        dialog.show();
        loop.exec();
    }
    worker.join();
    if (failure)
        std::rethrow_exception(failure);
}

QString askFile(QWidget* parent, const QString& title, const QString& place, const QString& kind,
                const QString& suffix, IfThere ifThere)
{
    QFileDialog dialog(parent, title, QString(), kind);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(suffix);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, ifThere == IfThere::leaves);
    dialog.selectFile(place);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

ButtonRow::ButtonRow(QVBoxLayout& layout, QDialog& dialog)
    : dialog_(dialog), row_(std::make_unique<QHBoxLayout>().release())
{
    row_->addStretch();
    layout.addLayout(row_);
}

QPushButton& ButtonRow::add(const QString& text, const std::function<void()>& pressed)
{
    QPushButton* button = std::make_unique<QPushButton>(text, &dialog_).release();
    button->setAutoDefault(false);
    giveRoom(*button);
    row_->addWidget(button);
    QObject::connect(button, &QPushButton::clicked, &dialog_, pressed);
    return *button;
}

QPushButton& ButtonRow::addClose(const QString& text)
{
    return add(text, [this_ = &dialog_] { this_->reject(); });
}

} // namespace zv::host
