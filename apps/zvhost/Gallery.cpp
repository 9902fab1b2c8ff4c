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
    openForPortraits(school, [&](const Portrait& next) { desktop.expect(next); });
    drawUnsaved(window.host(), desktop);
    useDesktop(nullptr);
    return desktop.drawn();
}

} // namespace zv::host
