#include "qt/Help.h"

#include "forms/Desktop.h"
#include "qt/Legible.h"
#include "qt/QtText.h"

#include <QBoxLayout>
#include <QDesktopServices>
#include <QDialog>
#include <QFileInfo>
#include <QImage>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <vector>

/// Keeps the linker from dropping the resource: it takes the manual out of its library only for code that
/// names it.
static void loadManual() { Q_INIT_RESOURCE(manual); }

namespace zv {

namespace {

const QString windowName = QStringLiteral("ayuda");
/// Letters of a message by which its explanation is known; fewer are found anywhere.
constexpr qsizetype leastSought = 16;
const QString indexPage = QStringLiteral("README");

QString pageFile(const QString& page) { return QStringLiteral(":/manual/%1.md").arg(page); }
QUrl pageAddress(const QString& page) { return {QStringLiteral("qrc") + pageFile(page)}; }

/// Anchor (behind the "#" of a link) of a heading.
QString anchorOf(const QString& heading)
{
    QString anchor;
    for (const QChar each : heading.toLower())
        if (each == u' ')
            anchor += u'-';
        else if (each.isLetterOrNumber() || each == u'-' || each == u'_')
            anchor += each;
    return anchor;
}

/// Browser of the pages with a style sheet: margins, tables with lines, pictures no wider than the window.
class Pages final : public QTextBrowser {
public:
    using QTextBrowser::QTextBrowser;

    QString heading() const { return document()->firstBlock().text(); }

    /// Selects the first place where the page says that, or failing that its end or its beginning, and
    /// scrolls there. A message may end in what no page can know.
    void seek(const QString& text)
    {
        const qsizetype reason = text.indexOf(QStringLiteral(": "));
        bool found = find(text) || (reason >= 0 && find(text.mid(reason + 2)));
        for (qsizetype end = text.lastIndexOf(u' '); !found && end >= leastSought;
             end = text.lastIndexOf(u' ', end - 1))
            found = find(text.left(end));
        if (!found)
            return;
        // Room below, so that also the page's last words can come to the top.
        QTextFrameFormat whole = document()->rootFrame()->frameFormat();
        whole.setBottomMargin(viewport()->height());
        document()->rootFrame()->setFrameFormat(whole);
        const QTextBlock block = textCursor().block();
        bringToTop(block.previous().blockFormat().headingLevel() > 0 ? block.previous() : block);
    }

    QVariant loadResource(int type, const QUrl& name) override
    {
        QVariant resource = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource)
            return resource;
        const QImage picture = QImage::fromData(resource.toByteArray());
        const int most = viewport()->width() - 4 * fontMetrics().height();
        if (picture.width() <= most)
            return picture;
        QImage smaller =
            picture.scaledToWidth(static_cast<int>(most * devicePixelRatioF()), Qt::SmoothTransformation);
        smaller.setDevicePixelRatio(devicePixelRatioF());
        return smaller;
    }

protected:
    void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override
    {
        QTextBrowser::doSetSource(name, type);
        const double line = fontMetrics().height();
        document()->setDocumentMargin(line);
        spaceHeadings(line);
        ruleTables(*document()->rootFrame(), line);
        colorLinks();
        if (!name.fragment().isEmpty())
            goTo(anchorOf(name.fragment(QUrl::FullyDecoded)));
    }

    void changeEvent(QEvent* event) override
    {
        QTextBrowser::changeEvent(event);
        if (event->type() == QEvent::PaletteChange)
            colorLinks();
    }

private:
    /// The toolkit gives them the application's colour of the moment, which may be too dark for the page.
    void colorLinks()
    {
        std::vector<QTextFragment> links;
        for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
            for (auto part = block.begin(); !part.atEnd(); ++part)
                if (part.fragment().charFormat().isAnchor())
                    links.push_back(part.fragment());
        QTextCharFormat format;
        format.setForeground(palette().link());
        for (const QTextFragment& each : links) {
            QTextCursor link(document());
            link.setPosition(each.position());
            link.setPosition(each.position() + each.length(), QTextCursor::KeepAnchor);
            link.mergeCharFormat(format);
        }
    }
    void spaceHeadings(double line)
    {
        QTextBlockFormat format;
        format.setTopMargin(line);
        for (QTextBlock block = document()->begin().next(); block.isValid(); block = block.next())
            if (block.blockFormat().headingLevel() > 0)
                QTextCursor(block).mergeBlockFormat(format);
    }
    void ruleTables(const QTextFrame& frame, double line)
    {
        for (QTextFrame* each : frame.childFrames()) {
            if (auto* table = qobject_cast<QTextTable*>(each)) {
                QTextTableFormat format = table->format();
                format.setBorderCollapse(true);
                format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
                format.setBorder(1);
                format.setBorderBrush(palette().mid());
                format.setCellPadding(line / 3);
                format.setTopMargin(line / 2);
                format.setBottomMargin(line / 2);
                table->setFormat(format);
            }
            ruleTables(*each, line);
        }
    }
    void goTo(const QString& anchor)
    {
        for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
            if (block.blockFormat().headingLevel() > 0 && anchorOf(block.text()) == anchor) {
                setTextCursor(QTextCursor(block));
                return bringToTop(block);
            }
    }
    void bringToTop(const QTextBlock& block)
    {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + cursorRect(QTextCursor(block)).top() -
                                      fontMetrics().height());
    }
};

class HelpWindow final : public QDialog {
public:
    explicit HelpWindow(QWidget& owner) : QDialog(&owner), owner_(owner)
    {
        setObjectName(windowName);
        setWindowModality(Qt::NonModal);
        setSizeGripEnabled(true);
        keepLegible(*this);
        pages_.setAccessibleName(QStringLiteral("Manual"));
        // Palette and font of the desktop, the font a little larger for reading.
        QFont letters = pages_.font();
        letters.setPointSizeF(letters.pointSizeF() * 1.1);
        pages_.setFont(letters);
        column_.addWidget(&pages_);
        column_.addLayout(&row_);
        row_.addWidget(&index_);
        row_.addWidget(&back_);
        row_.addStretch();
        row_.addWidget(&close_);
        for (QPushButton* each : {&index_, &back_, &close_})
            each->setAutoDefault(false);
        back_.setEnabled(false);
        connect(&index_, &QPushButton::clicked, this, [this] { go(indexPage); });
        connect(&back_, &QPushButton::clicked, &pages_, &QTextBrowser::backward);
        connect(&close_, &QPushButton::clicked, this, &QDialog::reject);
        connect(&pages_, &QTextBrowser::backwardAvailable, &back_, &QPushButton::setEnabled);
        connect(&pages_, &QTextBrowser::sourceChanged, this,
                [this] { setWindowTitle(QStringLiteral("Ayuda: ") + pages_.heading()); });
        owner_.installEventFilter(this);
        place();
    }

    void go(const QString& page, const QString& text = {})
    {
        const QString name = page.section(u'#', 0, 0);
        QUrl address = pageAddress(QFile::exists(pageFile(name)) ? name : indexPage);
        address.setFragment(page.section(u'#', 1));
        pages_.setSource(address);
        if (!text.isEmpty())
            pages_.seek(text);
        pages_.setFocus();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // Follows its owner: without it the window would answer to nobody.
        if (event->type() == QEvent::Hide && !event->spontaneous())
            hide();
        return QDialog::eventFilter(watched, event);
    }
    void hideEvent(QHideEvent* event) override
    {
        QDialog::hideEvent(event);
        if (owner_.isVisible())
            owner_.activateWindow();
    }

private:
    /// Positions the window beside the owner, where the screen has room.
    void place()
    {
        const QRect room = owner_.screen()->availableGeometry();
        resize(QSize(fontMetrics().averageCharWidth() * 120, fontMetrics().height() * 44)
                   .boundedTo(room.size() * 9 / 10));
        const QRect beside = owner_.frameGeometry();
        const int top = std::min(beside.top(), room.bottom() - height());
        if (beside.right() + width() < room.right())
            move(beside.right() + 1, std::max(top, room.top()));
        else if (beside.left() - width() > room.left())
            move(beside.left() - width(), std::max(top, room.top()));
    }

    QWidget& owner_;
    QVBoxLayout column_{this};
    QHBoxLayout row_;
    Pages pages_;
    QPushButton index_{QStringLiteral("&Índice")};
    QPushButton back_{QStringLiteral("A&trás")};
    QPushButton close_{QStringLiteral("&Cerrar")};
};

bool openSuiteHelp()
{
    const QString told = toQt(helpFile());
    // Path separators: the suite writes "\" on every system.
    for (const QString& file : {told, QString(told).replace(u'\\', u'/')})
        if (QFileInfo(file).isFile() &&
            QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath())))
            return true;
    return false;
}

} // namespace

void showHelp(QWidget& owner, const QString& page, const QString& text)
{
    if (openSuiteHelp())
        return;
    loadManual();
    auto* window =
        dynamic_cast<HelpWindow*>(owner.findChild<QDialog*>(windowName, Qt::FindDirectChildrenOnly));
    if (window == nullptr)
        window = std::make_unique<HelpWindow>(owner).release();
    window->show();
    window->go(page, text);
    window->raise();
    window->activateWindow();
}

} // namespace zv
