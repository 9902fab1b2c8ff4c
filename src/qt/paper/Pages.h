#pragma once

#include "runtime/String.h"

#include <QImage>
#include <QPainter>
#include <QTextDocument>

#include <memory>

namespace zv::paper {

/// What is set on pages.
struct Text {
    QString html;
    QString footer; ///< At the left of each page's foot.
    bool draft = false;
    QImage logo = {}; ///< What the page calls "logo".
};

/// Text on pages of A4. They are the same on a screen, a printer and in a file: the layout is made once, for
/// dots of its own.
class Pages {
public:
    /// Dots per inch of the layout.
    static constexpr int dots = 600;

    explicit Pages(const Text& text);

    int count() const { return document_->pageCount(); }
    /// Paints a page, from 0, with the painter's origin at the corner of the paper.
    void paint(QPainter& painter, int page) const;

private:
    QString footer_;
    bool draft_;
    std::unique_ptr<QTextDocument> document_;
};

/// The same text without pages, for a word processor: what stands on every page stands above and below it.
std::unique_ptr<QTextDocument> flowing(const Text& text);

/// Adds the characters of a text that paper cannot show: those that no font has and those that are none.
void addLacking(StringView text, QString& lacking);

} // namespace zv::paper
