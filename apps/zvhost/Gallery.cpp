#include "zvhost/Gallery.h"

#include "data/Schools.h"
#include "forms/ComboBox.h"
#include "journal/Recorder.h"
#include "qt/QtDesktop.h"
#include "session/DialogDirectory.h"
#include "session/cConstCol.h"
#include "session/cNombreNodo.h"
#include "suite/Sample.h"
#include "zvhost/MainWindow.h"
#include "zvhost/Sections.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

namespace zv::host {
namespace {

const QString unsaved = QStringLiteral("sin-guardar");
constexpr const char* aside = "aparte";

/// Desktop that draws each window instead of running it, and closes it.
class DrawingDesktop final : public QtDesktop {
public:
    DrawingDesktop(QString folder, QString suffix, std::optional<QSize> screen)
        : folder_(std::move(folder)), suffix_(std::move(suffix))
    {
        screen ? boundTo(*screen) : showWhole();
    }

    int drawn() const { return drawn_; }
    void draw(QWidget& widget, const QString& name) { save(widget.grab(), name); }
    /// Sets the state that the next windows are drawn in; `message`: their accept button is pressed.
    void expect(const QString& state, bool message = false)
    {
        state_ = state;
        message_ = message;
    }

protected:
    /// Opens the nested dialog, which only this one leads to.
    void goOn(FormWindow& window) const
    {
        const bool primary = state_ == QStringLiteral("primaria");
        const auto click = [&](StringView name, int index) {
            if (Control* button = window.alive() ? window.form().find(name, index) : nullptr)
                window.act([&](Acts& acts) { return acts.click(*button); });
        };
        // Cascading lists: the first sections are those for which the sample's tutors have written something.
        for (const StringView list : {u"cboTipoEnsenanza", u"cboCursos", u"cboSecciones"})
            if (auto* box = dynamic_cast<ComboBox*>(window.form().find(list)))
                window.act([&](Acts& acts) {
                    const bool secondary = !primary && list == u"cboTipoEnsenanza";
                    return acts.choose(*box, secondary ? std::min<Long>(1, box->ListCount() - 1) : 0);
                });
        click(u"cmdNotaManual1", 0);
        if (Control* branches = window.alive() ? window.form().find(u"msgBanco") : nullptr) {
            // Acts, so that they do nothing where the grid is hidden.
            window.act(
                [&](Acts& acts) { return acts.key(*branches, Key::Up) && acts.type(*branches, u" "); });
            click(u"cmdBotonera", state_ == QStringLiteral("sucursales") ? 3 : 2);
        }
    }
    static void pressAccept(FormWindow& window)
    {
        for (Control* each : window.form().Controls)
            if (auto* button = dynamic_cast<CommandButton*>(each); button != nullptr && button->Default())
                window.act([&](Acts& acts) { return acts.click(*button); });
    }
    void runWindow(FormWindow& window) override
    {
        window.ready();
        QApplication::processEvents();
        front_ = &window;
        if (message_)
            pressAccept(window);
        else if (state_ != unsaved)
            draw(window, window.objectName() + u'-' + state_);
        else if (window.form().find(u"txtCognitiva") != nullptr) {
            drawDraft(window);
            return window.form().Unload();
        }
        front_ = nullptr;
        goOn(window);
        if (window.alive())
            window.form().Unload();
    }
    void ask(QMessageBox& box) override
    {
        box.show();
        QApplication::processEvents();
        if (front_ == nullptr)
            return;
        // Where they stand on the screen.
        const QPixmap whole = front_->grab();
        const QRect area = front_->geometry() | box.geometry();
        QPixmap both(area.size() * whole.devicePixelRatio());
        both.setDevicePixelRatio(whole.devicePixelRatio());
        both.fill(front_->palette().color(QPalette::Dark));
        QPainter painter(&both);
        painter.drawPixmap(front_->pos() - area.topLeft(), whole);
        painter.drawPixmap(box.pos() - area.topLeft(), box.grab());
        painter.end();
        save(both, front_->objectName() + u'-' + state_);
    }

private:
    /// At first a tutor types for two pupils, and the journal is put aside; when it is there again, the bar
    /// over the same section, and what it shows.
    void drawDraft(FormWindow& window)
    {
        auto* view = window.findChild<QPushButton*>(QStringLiteral("avisoVentanaVer"));
        if (view == nullptr) {
            for (const Long pupil : {2, 4})
                window.act([&](Acts& acts) {
                    return acts.choose(dynamic_cast<ComboBox&>(*window.form().find(u"cboAlumno")), pupil) &&
                           acts.type(*window.form().find(u"txtCognitiva"), u"Razona bien y lo explica. ");
                });
            copy_file(journal::recorder().file(window.form()), journal::recordedFolder() / aside);
            return;
        }
        draw(window, unsaved);
        QTimer::singleShot(0, [this] {
            QApplication::processEvents();
            if (auto* shown = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                draw(*shown, unsaved + QStringLiteral("-ver"));
                shown->reject();
            }
        });
        view->click();
    }
    void save(const QPixmap& picture, const QString& name)
    {
        const QString file = QDir(folder_).filePath(name + suffix_ + QStringLiteral(".png"));
        if (!picture.save(file))
            throw RuntimeError(failure::otherData, u"No se puede escribir " + file.toStdU16String() +
                                                       u": mire si la carpeta existe y hay sitio.");
        ++drawn_;
    }

    QString folder_;
    QString suffix_;
    QString state_;
    bool message_ = false;
    QWidget* front_ = nullptr;
    int drawn_ = 0;
};

void drawNode(Host& host, DrawingDesktop& desktop, const Node& node)
{
    const Long first = node.hasList() ? host.rows(node).front().key : 0;
    const auto open = [&](const QString& state, Byte action, Long row, bool message = false,
                          bool branches = false) {
        desktop.expect(state, message);
        host.open(node, action, row, branches);
    };
    open(QStringLiteral("nuevo"), cConstCol::NUEVO, 0);
    if (node.number == cNombreNodo::InfIndiv)
        open(QStringLiteral("primaria"), cConstCol::NUEVO, 0);
    if (!node.hasList())
        return;
    open(QStringLiteral("cambio"), cConstCol::Modificado, first);
    open(QStringLiteral("mensaje"), cConstCol::NUEVO, 0, true);
    Choices choices = host.choices();
    choices.readOnly = true;
    host.choose(choices);
    open(QStringLiteral("consulta"), cConstCol::Modificado, first);
    choices.readOnly = false;
    host.choose(choices);
    if (node.number == cNombreNodo::OC_Bancos)
        open(QStringLiteral("sucursales"), cConstCol::Modificado, first, false, true);
    if (node.number == cNombreNodo::Emisor)
        open(QStringLiteral("ordenante"), cConstCol::NUEVO, -2);
}

/// The bar over a section whose typing was never saved, on journals of its own.
void drawUnsaved(Host& host, DrawingDesktop& desktop)
{
    const QTemporaryDir folder;
    if (!journal::record(folder.path().toStdU16String()))
        return;
    desktop.expect(unsaved);
    host.open(*nodeOf(cNombreNodo::InfIndiv), cConstCol::NUEVO, 0);
    const std::filesystem::path& journals = journal::recordedFolder();
    rename(journals / aside, journals / (aside + toUtf8(journal::extension)));
    host.open(*nodeOf(cNombreNodo::InfIndiv), cConstCol::NUEVO, 0);
    journal::recording(false);
}

void drawHost(MainWindow& window, DrawingDesktop& desktop)
{
    const auto list = [&](Byte node, const char* name) {
        window.go(*nodeOf(node));
        QApplication::processEvents();
        desktop.draw(window, QString::fromLatin1(name));
    };
    QApplication::processEvents();
    desktop.draw(window, QStringLiteral("principal"));
    list(cNombreNodo::Emisor, "principal-emisores");
    list(cNombreNodo::InfIndiv, "principal-informes");
    window.go(progressNode());
    window.findChild<QLineEdit*>(QStringLiteral("buscar"))->setText(QStringLiteral("1º A ESO secundaria"));
    QApplication::processEvents();
    desktop.draw(window, QStringLiteral("principal-progreso"));
    window.go(*nodeOf(cNombreNodo::InfIndiv));
    // The first section whose reports are written.
    for (const Section& each : sections(window.host(), *nodeOf(cNombreNodo::InfIndiv)))
        if (each.done > 0) {
            window.choose(each.id);
            break;
        }
    for (const char* name : {"imprimir", "papelera", "enuso", "sesion", "buscarAyuda"}) {
        // Runs in the dialog's own loop.
        QTimer::singleShot(0, [&] {
            QApplication::processEvents();
            if (QWidget* dialog = QApplication::activeModalWidget()) {
                desktop.draw(*dialog, QStringLiteral("principal-") + QString::fromLatin1(name));
                dialog->close();
            }
        });
        window.findChild<QAction*>(QString::fromLatin1(name))->trigger();
    }
    window.findChild<QAction*>(QStringLiteral("ayuda"))->trigger();
    QApplication::processEvents();
    auto& help = *window.findChild<QDialog*>(QStringLiteral("ayuda"));
    desktop.draw(help, QStringLiteral("principal-ayuda"));
    help.close();
}

} // namespace

int drawGallery(const QString& folder, const QString& suffix, std::optional<QSize> screen)
{
    QDir().mkpath(folder);
    DrawingDesktop desktop(folder, suffix, screen);
    useDesktop(&desktop);
    School school = temporarySchool();
    fillSample(school);
    MainWindow window(std::make_unique<Host>(u"sqlite:colegio.db", school));
    // The screen in memory is smaller than any desktop's.
    window.resize(QSize(window.fontMetrics().averageCharWidth() * 170, window.fontMetrics().height() * 42)
                      .boundedTo(screen.value_or(QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX))));
    window.show();
    drawHost(window, desktop);
    for (const Node& node : nodes())
        drawNode(window.host(), desktop, node);
    drawUnsaved(window.host(), desktop);
    useDesktop(nullptr);
    return desktop.drawn();
}

} // namespace zv::host
