#include "zvhost/Widgets.h"

#include <QDialog>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTableView>

#include <thread>

namespace zv::host {

void say(QWidget* parent, const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::Information, title, text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    box.addButton(QStringLiteral("Aceptar"), QMessageBox::AcceptRole);
    box.exec();
}

void sayFailure(QWidget* parent, const QString& text, const std::exception& error)
{
    QMessageBox box(QMessageBox::Warning, QStringLiteral("No se ha podido"), text, QMessageBox::NoButton,
                    parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(QString::fromUtf8(error.what()));
    box.addButton(QStringLiteral("Aceptar"), QMessageBox::AcceptRole);
    box.exec();
}

bool confirm(QWidget* parent, const QString& title, const QString& text, const QString& button)
{
    QMessageBox box(QMessageBox::Question, title, text, QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    const QPushButton* yes = box.addButton(button, QMessageBox::AcceptRole);
    QPushButton* no = box.addButton(QStringLiteral("Cancelar"), QMessageBox::RejectRole);
    box.setDefaultButton(no);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
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

void withProgress(QWidget* parent, const QString& text, const std::function<void()>& work)
{
    QProgressDialog progress(text, QString(), 0, 0, parent);
    progress.setWindowTitle(QStringLiteral("Un momento"));
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setMinimumDuration(0);
    progress.show();
    std::exception_ptr failure;
    QEventLoop loop;
    std::jthread worker([&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    worker.join();
    if (failure)
        std::rethrow_exception(failure);
}

void designTable(QTableView& table)
{
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setSelectionMode(QAbstractItemView::SingleSelection);
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setAlternatingRowColors(true);
    table.setShowGrid(false);
    table.setTabKeyNavigation(false);
    table.setWordWrap(false);
    table.verticalHeader()->hide();
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() * 3 / 2);
    table.horizontalHeader()->setStretchLastSection(true);
    table.horizontalHeader()->setHighlightSections(false);
    table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
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
    row_->addWidget(button);
    QObject::connect(button, &QPushButton::clicked, &dialog_, pressed);
    return *button;
}

QPushButton& ButtonRow::addClose(const QString& text)
{
    return add(text, [this_ = &dialog_] { this_->reject(); });
}

} // namespace zv::host
