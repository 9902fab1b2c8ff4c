#pragma once

#include <QStringList>

namespace zv::host {

/// Exit codes of the program.
enum Exit : int {
    done = 0,
    failed = 2 ///< It could not run; standard error says why.
};

/// Entry points of the commands; `words` are the arguments behind the name. They need a QApplication around
/// them.
int mainWindow(const QStringList& words);
int dialogo(const QStringList& words);
int guion(const QStringList& words);
int galeria(const QStringList& words);
int informe(const QStringList& words);

} // namespace zv::host
