#pragma once

#include "qt/paper/Files.h"
#include "zvhost/Remembered.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QPrintPreviewWidget>
#include <QPrinter>

#include <optional>

namespace zv::host {

/// Window from which a section's reports go to paper: its pupils to tick, and the pages of the one that is
/// chosen.
class PrintDialog final : public QDialog {
public:
    PrintDialog(QWidget* parent, Host& host, Remembered& memory, paper::Kind kind, Long section);

    /// Reads the section anew; a failure is told in the window.
    void load();
    /// Writes the ticked ones into a folder; shows progress, and what was made.
    void write(const QString& folder, paper::Format format);
    void print();
    /// Takes another folder as the school's paper; "" for the program's own.
    void usePaper(const QString& folder);

private:
    QWidget* leftSide();
    QWidget* rightSide();
    void choosePaper();
    void tick(bool all);
    void follow();
    void showPupil();
    void tell(const QString& text);
    std::vector<std::size_t> ticked() const;
    /// Runs work on the ticked ones under a progress window with a way to stop it. False if it failed.
    bool run(const QString& failed, const std::function<void(paper::Places, const paper::Progress&)>& work);

    Host& host_;
    Remembered& memory_;
    paper::Kind kind_;
    Long section_;
    std::optional<paper::Reports> reports_;
    QPrinter printer_{QPrinter::HighResolution};
    QListWidget pupils_;
    QPrintPreviewWidget preview_{&printer_};
    QLabel note_;
    QCheckBox together_{QStringLiteral("&Un solo PDF u ODT para todos")};
    std::vector<QPushButton*> makers_; ///< What needs a ticked pupil.
};

} // namespace zv::host
