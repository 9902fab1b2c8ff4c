#pragma once

#include <QStringList>

namespace zv::host {

/// What the program ends with.
enum Exit : int {
    done = 0,
    failed = 2 ///< It could not run; standard error says why.
};

/// The commands of the program; `words` is what follows their name. They need a QApplication around them.
int mainWindow(const QStringList& words);
int dialogo(const QStringList& words);
int guion(const QStringList& words);
int galeria(const QStringList& words);

} // namespace zv::host
