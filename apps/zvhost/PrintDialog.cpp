#include "zvhost/PrintDialog.h"

#include "qt/EdgeStyle.h"
#include "qt/Legible.h"
#include "qt/QtText.h"
#include "zvhost/Widgets.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QPrintDialog>
#include <QProgressDialog>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

namespace zv::host {
namespace {

constexpr int placeRole = Qt::UserRole;

} // namespace

PrintDialog::PrintDialog(QWidget* parent, Host& host, Remembered& memory, paper::Kind kind, Long section)
    : QDialog(parent), host_(host), memory_(memory), kind_(kind), section_(section)
{
    setObjectName(QStringLiteral("imprimir"));
    setWindowTitle(QStringLiteral("Imprimir"));
    keepLegible(*this);
    printer_.setPageSize(QPageSize(QPageSize::A4));
    printer_.setFullPage(true);
    auto* parts = std::make_unique<QSplitter>(this).release();
    parts->addWidget(leftSide());
    parts->addWidget(rightSide());
    parts->setStretchFactor(1, 1);
    parts->setChildrenCollapsible(false);
    auto* rows = std::make_unique<QVBoxLayout>(this).release();
    rows->addWidget(parts, 1);
    note_.setWordWrap(true);
    note_.setTextFormat(Qt::PlainText);
    rows->addWidget(&note_);
    ButtonRow buttons(*rows, *this);
    buttons.add(QStringLiteral("Pape&l del centro…"), [this] { choosePaper(); });
    const auto folder = [this](paper::Format format) {
        const QString chosen =
            QFileDialog::getExistingDirectory(this, QStringLiteral("Carpeta para los informes"));
        if (!chosen.isEmpty())
            write(chosen, format);
    };
    makers_ = {&buttons.add(QStringLiteral("&ODT…"), [folder] { folder(paper::Format::odt); }),
               &buttons.add(QStringLiteral("&PDF…"), [folder] { folder(paper::Format::pdf); }),
               &buttons.add(QStringLiteral("&Imprimir…"), [this] { print(); })};
    buttons.addClose(QStringLiteral("&Cerrar"));
    drawEdges(*this);
    connect(&pupils_, &QListWidget::currentItemChanged, this, [this] { showPupil(); });
    connect(&pupils_, &QListWidget::itemChanged, this, [this] { follow(); });
    connect(&preview_, &QPrintPreviewWidget::paintRequested, this, [this](QPrinter* printer) {
        const QListWidgetItem* item = pupils_.currentItem();
        if (reports_ && item != nullptr)
            paper::print(*reports_, std::vector{item->data(placeRole).value<std::size_t>()}, *printer,
                         [](int, int, const QString&) { return true; });
        else
            QPainter(printer).end(); // A blank page; without one the former stays.
    });
    resize(QSize(fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 44)
               .boundedTo(parent != nullptr ? parent->window()->size()
                                            : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX)));
    load();
}

QWidget* PrintDialog::leftSide()
{
    auto* side = std::make_unique<QWidget>(this).release();
    auto* rows = std::make_unique<QVBoxLayout>(side).release();
    rows->setContentsMargins({});
    auto* title = std::make_unique<QLabel>(QStringLiteral("&Alumnos"), side).release();
    title->setBuddy(&pupils_);
    rows->addWidget(title);
    pupils_.setObjectName(QStringLiteral("alumnos"));
    pupils_.setSizeAdjustPolicy(QListWidget::AdjustToContents);
    rows->addWidget(&pupils_, 1);
    auto* ticks = std::make_unique<QHBoxLayout>().release();
    rows->addLayout(ticks);
    for (const bool all : {true, false}) {
        auto* button =
            std::make_unique<QPushButton>(all ? QStringLiteral("&Todos") : QStringLiteral("&Ninguno"), side)
                .release();
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, all] { tick(all); });
        ticks->addWidget(button);
    }
    rows->addWidget(&together_);
    return side;
}

QWidget* PrintDialog::rightSide()
{
    auto* side = std::make_unique<QWidget>(this).release();
    auto* rows = std::make_unique<QVBoxLayout>(side).release();
    rows->setContentsMargins({});
    auto* zoom = std::make_unique<QHBoxLayout>().release();
    rows->addLayout(zoom);
    const auto add = [&](const QString& text, const std::function<void()>& does) {
        auto* button = std::make_unique<QPushButton>(text, side).release();
        button->setAutoDefault(false);
        giveRoom(*button);
        connect(button, &QPushButton::clicked, this, does);
        zoom->addWidget(button);
    };
    add(QStringLiteral("A&mpliar"), [this] { preview_.zoomIn(); });
    add(QStringLiteral("&Reducir"), [this] { preview_.zoomOut(); });
    add(QStringLiteral("Pá&gina entera"), [this] { preview_.fitInView(); });
    add(QStringLiteral("Anc&ho"), [this] { preview_.fitToWidth(); });
    zoom->addStretch();
    preview_.setViewMode(QPrintPreviewWidget::AllPagesView);
    preview_.setZoomMode(QPrintPreviewWidget::FitInView);
    preview_.setAccessibleName(QStringLiteral("Vista de las páginas"));
    rows->addWidget(&preview_, 1);
    return side;
}

void PrintDialog::tell(const QString& text)
{
    note_.setText(text);
    note_.setVisible(!text.isEmpty());
}

void PrintDialog::load()
{
    const int before = std::max(0, pupils_.currentRow());
    reports_.reset();
    pupils_.clear();
    tell({});
    try {
        const QString own = paperOf(memory_, host_.url());
        reports_.emplace(*host_.school().centro, kind_, section_,
                         own.isEmpty() ? paper::Letterhead() : paper::Letterhead(own),
                         paper::dayOf(QDate::currentDate()));
    } catch (const std::exception& error) {
        tell(QString::fromUtf8(error.what()));
    }
    const std::size_t all = reports_ ? reports_->section().sheets.size() : 0;
    for (std::size_t place = 0; place < all; ++place) {
        auto* item =
            std::make_unique<QListWidgetItem>(
                toQt(reports_->section().sheets[place].fullName) +
                    (reports_->isDraft(place) ? QStringLiteral(" (borrador)") : QString()) +
                    (reports_->section().sheets[place].left ? QStringLiteral(" (de baja)") : QString()) +
                    (reports_->section().sheets[place].hidden ? QStringLiteral(" (su ventana no lo muestra)")
                                                              : QString()) +
                    (reports_->lacking(place).isEmpty() ? QString() : QStringLiteral(" (faltan letras)")),
                &pupils_)
                .release();
        item->setData(placeRole, QVariant::fromValue(place));
        item->setCheckState(reports_->section().sheets[place].left ? Qt::Unchecked : Qt::Checked);
    }
    if (reports_) {
        setWindowTitle(QStringLiteral("Imprimir — %1, %2")
                           .arg(toQt(reports_->section().course), toQt(reports_->section().section)));
        if (all == 0)
            tell(QStringLiteral("La sección no tiene alumnos para este informe."));
    }
    pupils_.setCurrentRow(std::min(before, pupils_.count() - 1));
    follow();
}

void PrintDialog::tick(bool all)
{
    for (int row = 0; row < pupils_.count(); ++row)
        pupils_.item(row)->setCheckState(all ? Qt::Checked : Qt::Unchecked);
}

void PrintDialog::follow()
{
    for (QPushButton* each : makers_)
        each->setEnabled(!ticked().empty());
}

void PrintDialog::showPupil()
{
    preview_.updatePreview();
    const QListWidgetItem* item = pupils_.currentItem();
    if (!reports_ || item == nullptr)
        return;
    const QString lacking = reports_->lacking(item->data(placeRole).value<std::size_t>());
    tell(lacking.isEmpty()
             ? QString()
             : QStringLiteral("Caracteres que ninguna letra de este equipo puede mostrar: %1").arg(lacking));
}

std::vector<std::size_t> PrintDialog::ticked() const
{
    std::vector<std::size_t> places;
    for (int row = 0; row < pupils_.count(); ++row)
        if (pupils_.item(row)->checkState() == Qt::Checked)
            places.push_back(pupils_.item(row)->data(placeRole).value<std::size_t>());
    return places;
}

bool PrintDialog::run(const QString& failed,
                      const std::function<void(paper::Places, const paper::Progress&)>& work)
{
    const std::vector<std::size_t> places = ticked();
    QProgressDialog progress(QString(), QStringLiteral("&Detener"), 0, static_cast<int>(places.size()), this);
    progress.setWindowTitle(QStringLiteral("Un momento"));
    progress.setWindowModality(Qt::WindowModal);
    return tried(this, failed, [&] {
        work(places, [&](int done, int all, const QString& name) {
            progress.setLabelText(QStringLiteral("%1 de %2: %3").arg(done + 1).arg(all).arg(name));
            progress.setValue(done); // Handles events too.
            return !progress.wasCanceled();
        });
    });
}

void PrintDialog::write(const QString& folder, paper::Format format)
{
    paper::Made made;
    const auto make = [&](paper::Places places, const paper::Progress& progress) {
        made = paper::makeFiles(*reports_, places, folder, format,
                                together_.isChecked() ? paper::Into::one : paper::Into::each, progress);
    };
    if (!run(QStringLiteral("Los informes no se han podido escribir."), make)) {
        tell(QStringLiteral("No están todos; los que se hicieron antes del fallo quedan enteros en ") +
             QDir::toNativeSeparators(folder));
        return;
    }
    tell((made.stopped ? QStringLiteral("Se ha detenido; lo que estaba hecho queda entero. ") : QString()) +
         (made.files.size() == 1 ? QStringLiteral("1 fichero")
                                 : QStringLiteral("%1 ficheros").arg(made.files.size())) +
         QStringLiteral(" en ") + QDir::toNativeSeparators(folder));
}

void PrintDialog::print()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    QPrintDialog dialog(&printer, this);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false); // Pupils are ticked instead.
    if (dialog.exec() != QDialog::Accepted)
        return;
    run(QStringLiteral("No se ha podido imprimir."),
        [&](paper::Places places, const paper::Progress& progress) {
            if (!paper::print(*reports_, places, printer, progress))
                tell(QStringLiteral("Se ha detenido: no se ha mandado nada a la impresora, o no todo."));
        });
}

void PrintDialog::usePaper(const QString& folder)
{
    keepPaper(memory_, host_.url(), folder);
    load();
}

void PrintDialog::choosePaper()
{
    const QString now = paperOf(memory_, host_.url());
    const Answer answer = ask(
        this, QStringLiteral("Papel del centro"),
        QStringLiteral("Una carpeta puede tener el logotipo (logo.png), el nombre del centro (centro.txt) y "
                       "plantillas propias (primaria.html, eso.html, consejo.html).\n\nAhora: %1")
            .arg(now.isEmpty() ? QStringLiteral("el papel del programa.") : QDir::toNativeSeparators(now)),
        QStringLiteral("&Elegir una carpeta…"),
        now.isEmpty() ? QString() : QStringLiteral("El papel del &programa"));
    if (answer == Answer::other)
        usePaper({});
    if (answer != Answer::yes)
        return;
    const QString folder = QFileDialog::getExistingDirectory(this, QStringLiteral("Papel del centro"), now);
    if (folder.isEmpty())
        return;
    if (confirm(
            this, QStringLiteral("Papel del centro"),
            QStringLiteral("¿Se escriben en esa carpeta las plantillas del programa que no estén en ella, "
                           "para cambiarlas?"),
            QStringLiteral("&Escribir las plantillas")))
        tried(this, QStringLiteral("Las plantillas no se han podido escribir."),
              [&] { paper::Letterhead::writeTemplates(folder); });
    usePaper(folder);
}

} // namespace zv::host
