#pragma once

#include "runtime/Errors.h"

#include <QString>

#include <functional>

class QDialog;
class QHBoxLayout;
class QPushButton;
class QVBoxLayout;
class QWidget;

namespace zv::host {

/// Redacted URL of a school: without the password of its server.
QString shownUrl(const String& url);
/// Message box with one button.
void say(QWidget* parent, const QString& title, const QString& text);
/// Message box: what could not be done, and why.
void sayFailure(QWidget* parent, const QString& text, const std::exception& error);
/// Confirmation: the button says what is done; "Cancelar" is what Enter and Escape press.
bool confirm(QWidget* parent, const QString& title, const QString& text, const QString& button);
enum class Answer { no, yes, other };
/// As confirm(), with another way out behind a second button; none where `other` is "".
Answer ask(QWidget* parent, const QString& title, const QString& text, const QString& button,
           const QString& other);
/// Error boundary: runs a function and shows a failure of it. False if it failed.
bool tried(QWidget* parent, const QString& failed, const std::function<void()>& what);
/// Runs work in a thread, under a progress dialog if it takes long. Its failure is rethrown here. `meanwhile`
/// runs here at the same time.
void withProgress(QWidget* parent, const QString& text, const std::function<void()>& work,
                  const std::function<void()>& meanwhile = {});

enum class IfThere { asks, leaves };
/// File dialog for a file to write, with `place` as default; a name without an ending gets the suffix. An
/// existing file has to be confirmed, unless it will be left as it is. "" if it was cancelled.
QString askFile(QWidget* parent, const QString& title, const QString& place, const QString& kind,
                const QString& suffix, IfThere ifThere);

/// Builder of a row of buttons at the right, under what the layout holds so far.
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
