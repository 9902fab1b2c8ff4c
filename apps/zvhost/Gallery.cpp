#include "zvhost/Gallery.h"

#include "data/Schools.h"
#include "forms/ComboBox.h"
#include "journal/Recorder.h"
#include "qt/QtDesktop.h"
#include "qt/QtText.h"
#include "robot/Portraits.h"
#include "session/cConstCol.h"
#include "session/cNombreNodo.h"
#include "suite/Sample.h"
#include "zvhost/MainWindow.h"
#include "zvhost/Sections.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <deque>
#include <functional>

namespace zv::host {
namespace {

constexpr StringView unsaved = u"sin-guardar";
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
    /// Sets how the next windows are drawn.
    void expect(const Portrait& portrait) { portrait_ = portrait; }

protected:
    void runWindow(FormWindow& window) override
    {
        const WindowAct act = [&](const auto& what) { window.act(what); };
        window.ready();
        QApplication::processEvents();
        front_ = &window;
        if (portrait_.message)
            pressAccept(window.form(), act);
        else if (portrait_.state != unsaved)
            draw(window, nameOf(window));
        else if (window.form().find(u"txtCognitiva") != nullptr) {
            drawDraft(window);
            return window.form().Unload();
        }
        front_ = nullptr;
        leadOn(window.form(), portrait_, act);
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
        save(both, nameOf(*front_));
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
        draw(window, toQt(unsaved));
        QTimer::singleShot(0, [this] {
            QApplication::processEvents();
            if (auto* shown = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                draw(*shown, toQt(unsaved) + QStringLiteral("-ver"));
                shown->reject();
            }
        });
        view->click();
    }
    QString nameOf(const QWidget& window) const { return window.objectName() + u'-' + toQt(portrait_.state); }
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
    Portrait portrait_;
    QWidget* front_ = nullptr;
    int drawn_ = 0;
};

/// The bar over a section whose typing was never saved, on journals of its own.
void drawUnsaved(Host& host, DrawingDesktop& desktop)
{
    const QTemporaryDir folder;
    if (!journal::record(folder.path().toStdU16String()))
        return;
    desktop.expect({.state = unsaved});
    host.open(*nodeOf(cNombreNodo::InfIndiv), cConstCol::NUEVO, 0);
    const std::filesystem::path& journals = journal::recordedFolder();
    rename(journals / aside, journals / (aside + toUtf8(journal::extension)));
    host.open(*nodeOf(cNombreNodo::InfIndiv), cConstCol::NUEVO, 0);
    journal::recording(false);
}

using Draw = std::function<void(QWidget&, const QString&)>;

/// A window that comes, by the name of its picture, and the button that is pressed in it afterwards; without
/// one it is closed.
struct Step {
    QString name;
    QString pressed = {};
};

/// Draws windows that run loops of their own, each as soon as it is there, while `life` lasts. What is drawn
/// is out of `steps`.
void drawNext(QObject& life, const Draw& draw, std::deque<Step>& steps)
{
    if (steps.empty())
        return;
    QTimer::singleShot(0, &life, [&] {
        QApplication::processEvents();
        QWidget* dialog = QApplication::activeModalWidget();
        if (dialog == nullptr)
            return;
        const Step step = steps.front();
        steps.pop_front();
        draw(*dialog, step.name);
        drawNext(life, draw, steps);
        for (auto* each : dialog->findChildren<QAbstractButton*>())
            if (!step.pressed.isEmpty() && each->text() == step.pressed)
                return each->click();
        dialog->close();
    });
}

void drawLists(MainWindow& window, const Draw& draw)
{
    const auto list = [&](const Node& node, const char* name, const char* search = "") {
        window.go(node);
        window.findChild<QLineEdit*>(QStringLiteral("buscar"))->setText(QString::fromUtf8(search));
        QApplication::processEvents();
        draw(window, QString::fromLatin1(name));
    };
    QApplication::processEvents();
    draw(window, {});
    list(*nodeOf(cNombreNodo::Emisor), "emisores");
    list(*nodeOf(cNombreNodo::InfIndiv), "informes");
    list(progressNode(), "progreso", "1º A ESO secundaria");
    list(*nodeOf(cNombreNodo::OC_Bancos), "sin-filas", "banco que no hay");
    for (const QAction* each : window.menuBar()->actions())
        draw(*each->menu(), QStringLiteral("menu-") + QString(each->text()).remove(u'&').toLower());
}

void drawDialogs(MainWindow& window, const Draw& draw)
{
    const auto command = [&](const char* name, std::deque<Step> steps) {
        QObject life;
        drawNext(life, draw, steps);
        window.findChild<QAction*>(QString::fromLatin1(name))->trigger();
        if (!steps.empty())
            throw RuntimeError(failure::otherData, u"No se ha abierto la ventana de la imagen principal-" +
                                                       steps.front().name.toStdU16String() + u".");
    };
    window.go(*nodeOf(cNombreNodo::InfIndiv));
    // The first section whose reports are written.
    for (const Section& each : sections(window.host(), *nodeOf(cNombreNodo::InfIndiv)))
        if (each.done > 0) {
            window.choose(each.id);
            break;
        }
    command("imprimir", {{QStringLiteral("imprimir")}});
    // Of the sample's rows the first is referred to, and the last by nobody.
    window.go(*nodeOf(cNombreNodo::TiposOcurrencia));
    window.choose(1);
    command("eliminar", {{QStringLiteral("no-se-puede"), QStringLiteral("&Sustituir por…")},
                         {QStringLiteral("sustituir")}});
    window.choose(7);
    command("eliminar", {{QStringLiteral("eliminar"), QStringLiteral("&Eliminar")}});
    window.host().school().centro->Execute(
        u"INSERT INTO RegistroActivo VALUES ('frmTipoOcurrencia',2,2,'otra 1 1',CURRENT_TIMESTAMP)");
    window.followHeld();
    QApplication::processEvents();
    draw(window, QStringLiteral("eliminada"));
    for (const char* name : {"papelera", "enuso", "historialLista", "sesion", "buscarAyuda"})
        command(name, {{QString::fromLatin1(name)}});
    command("otro", {{QStringLiteral("inicio")}});
    window.findChild<QAction*>(QStringLiteral("ayuda"))->trigger();
    QApplication::processEvents();
    auto& help = *window.findChild<QDialog*>(QStringLiteral("ayuda"));
    draw(help, QStringLiteral("ayuda"));
    help.close();
}

} // namespace

int drawGallery(const QString& folder, const QString& suffix, std::optional<QSize> screen)
{
    QDir().mkpath(folder);
    DrawingDesktop desktop(folder, suffix, screen);
    useDesktop(&desktop);
    School school = temporarySchool(u"historial:sqlite:");
    fillSample(school);
    MainWindow window(std::make_unique<Host>(u"sqlite:colegio.db", school));
    // The screen in memory is smaller than any desktop's.
    window.resize(QSize(window.fontMetrics().averageCharWidth() * 170, window.fontMetrics().height() * 42)
                      .boundedTo(screen.value_or(QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX))));
    window.show();
    const Draw draw = [&](QWidget& widget, const QString& name) {
        desktop.draw(widget, (QStringLiteral("principal-") + name).chopped(name.isEmpty() ? 1 : 0));
    };
    drawLists(window, draw);
    drawDialogs(window, draw);
    openForPortraits(school, [&](const Portrait& next) { desktop.expect(next); });
    drawUnsaved(window.host(), desktop);
    useDesktop(nullptr);
    return desktop.drawn();
}

} // namespace zv::host
