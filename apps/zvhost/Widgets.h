#pragma once

#include "runtime/Errors.h"

#include <QString>

#include <functional>

class QDialog;
class QHBoxLayout;
class QPushButton;
class QTableView;
class QVBoxLayout;
class QWidget;

namespace zv::host {

/// A school's URL for everybody's eyes: without the password of its server.
QString shownUrl(const String& url);
/// Says something, with one button.
void say(QWidget* parent, const QString& title, const QString& text);
/// Says that something could not be done, and why.
void sayFailure(QWidget* parent, const QString& text, const std::exception& error);
/// Asks whether to do what the button says; "Cancelar" is what Enter and Escape press.
bool confirm(QWidget* parent, const QString& title, const QString& text, const QString& button);
/// Does something and shows a failure of it. False if it failed.
bool tried(QWidget* parent, const QString& failed, const std::function<void()>& what);
/// Does work beside the screen, which says what goes on if it takes long. Its failure is thrown here.
/// `meanwhile` is done here at the same time.
void withProgress(QWidget* parent, const QString& text, const std::function<void()>& work,
                  const std::function<void()>& meanwhile = {});

enum class IfThere { asks, leaves };
/// Asks for a file to write, `place` to begin with; one named without an ending gets the suffix. Asks before
/// it names one that is there, unless that will be left as it is. "" if it was cancelled.
QString askFile(QWidget* parent, const QString& title, const QString& place, const QString& kind,
                const QString& suffix, IfThere ifThere);

/// A table of rows that are selected whole and not edited.
void designTable(QTableView& table);
/// A row of buttons at the right, under what the layout holds so far.
class ButtonRow {
public:
    ButtonRow(QVBoxLayout& layout, QDialog& dialog);
    QPushButton& add(const QString& text, const std::function<void()>& pressed);
    /// The last button, which Escape presses too.
    QPushButton& addClose(const QString& text);

private:
    QDialog& dialog_;
    QHBoxLayout* row_;
};

} // namespace zv::host
