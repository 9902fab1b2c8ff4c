#pragma once

#include "paper/Contents.h"

#include <QImage>
#include <QString>

namespace zv::paper {

/// A school's own paper: a folder with what takes the place of the program's. All of it may be missing.
/// <kind>.html is a template, logo.png (or .jpg, .jpeg, .bmp, .svg) a picture, centro.txt the school's name.
class Letterhead {
public:
    Letterhead() = default;
    /// Fails with a RuntimeError (otherData) where a file of the folder cannot be read.
    explicit Letterhead(const QString& folder);

    const QImage& logo() const { return logo_; }
    const String& school() const { return school_; }
    /// The folder's template, or the program's own. Fails as Template does.
    Template page(Kind kind) const;
    /// Writes the program's templates into a folder, for a school to change; those that are there stay. Gives
    /// how many it wrote; fails with a RuntimeError (otherData).
    static int writeTemplates(const QString& folder);

private:
    QString folder_;
    QImage logo_;
    String school_;
};

} // namespace zv::paper
