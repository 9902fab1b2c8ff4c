#pragma once

#include "qt/paper/Reports.h"

#include <QStringList>

#include <functional>
#include <span>

class QPrinter;

namespace zv::paper {

/// Called before each report: how many are done of how many, and whose comes. False stops.
using Progress = std::function<bool(int done, int all, const QString& name)>;
using Places = std::span<const std::size_t>;

enum class Format { pdf, odt };
enum class Into { one, each };

struct Made {
    QStringList files;
    bool stopped = false;
};

/// Writes reports into files of a folder, which is made if need be: PDF as archives want it (PDF/A-1b), or
/// ODT. Each file is written beside its place and comes there when it is whole; what was made before a stop
/// stays, and of one file for all nothing does. Fails with a RuntimeError (otherData) that names the file.
Made makeFiles(const Reports& reports, Places places, const QString& folder, Format format, Into into,
               const Progress& progress);
/// Prints them, on A4 or shrunk to the paper that there is. False if it was stopped, and taken back as far as
/// the printer allows. Fails with a RuntimeError (otherData).
bool print(const Reports& reports, Places places, QPrinter& printer, const Progress& progress);

} // namespace zv::paper
