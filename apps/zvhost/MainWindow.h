#pragma once

#include "care/joins/Join.h"
#include "care/rules/Rules.h"
#include "data/history/Losses.h"
#include "journal/Journals.h"
#include "progress/Panel.h"
#include "zvhost/Deletion.h"
#include "zvhost/Host.h"
#include "zvhost/ListPage.h"
#include "zvhost/NodeTree.h"
#include "zvhost/Notice.h"
#include "zvhost/Remembered.h"
#include "zvhost/Sections.h"
#include "zvhost/Undo.h"

#include <QAction>
#include <QMainWindow>
#include <QSplitter>
#include <QTimer>

#include <map>
#include <set>

class QMenu;

namespace zv::host {

/// Main window on a school: the tree of nodes at the left, the rows of the chosen one at the right.
class MainWindow final : public QMainWindow {
public:
    /// Two-phase construction: without a school, to be built while one is being opened; call use() before
    /// show().
    explicit MainWindow(Remembered::Where memory = Remembered::Where::nowhere);
    explicit MainWindow(std::unique_ptr<Host> host) : MainWindow() { use(std::move(host)); }

    Host& host() { return *host_; }
    /// Chooses a node in the tree.
    void go(const Node& node) { tree_.go(node); }
    /// Selects a row of the list that is shown.
    void choose(Long key) { page_.select(key); }
    /// Sets the school to work on, in the place of the one that is open.
    void use(std::unique_ptr<Host> host);

    // Slots of the menus.
    void newRow(Long kind = 0);
    void changeRow(bool branches = false);
    void changeRow(const NamedRow& row, bool branches = false);
    void deleteRows();
    void undo() { undo_.undo(); }
    void copyRows();
    void copyCell();
    void refresh() { readAgain(ListPage::Added::may); }
    void exportCsv();
    /// Opens the window that prints the reports of the chosen section.
    void print();
    void backUp();
    void backUpTo(const QString& file, const QString& phrase);
    void openOther();
    void recycleBin();
    void rowsInUse();
    void showRowHistory();
    void showListHistory();
    void chooseSession();

    /// Follows the rows that others have open: those that became free lose their mark, and one that was asked
    /// for is told. A timer calls it as long as there are any.
    void followHeld();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QAction& action(const QString& name, const QString& text, const QKeySequence& keys,
                    const std::function<void()>& does);
    void buildRowActions();
    void buildActions();
    void buildMenus();
    void buildToolBar();
    void listRecent(QMenu& menu);
    void placeParts();
    /// Shows the list that is chosen, or was when the program ended.
    void goBack();
    void chosen();
    void openChosen();
    void openDirect();
    void openSection(Long id);
    /// Reads what the reports lack, of the sections of the person of the session.
    std::vector<Row> readProgress();
    /// Opens the report of that row of the page: its dialog, at its section and pupil.
    void openReport(Long row);
    /// Reads the rows of a node that has no list of its own.
    std::vector<Row> readRows();
    bool listed() const { return node_ != nullptr && !node_->columns.empty(); }
    bool mayWrite(const QString& title);
    void openDialog(Byte action, Long row, bool branches = false)
    {
        openDialog(*node_, action, row, branches);
    }
    void openDialog(const Node& node, Byte action, Long row, bool branches = false);
    /// Whether the school keeps a history.
    bool remembers() const;
    /// What can be done about something that was lost.
    std::vector<Bar::Choice> seenOrGiven(const std::function<void()>& shows,
                                         const std::function<void()>& gives) const;
    /// Tells what the dialog that has closed saved, and what was lost by it.
    void tellClosed();
    void tellSaved(const history::HistoryConnection::Closed& closed);
    void takeBack(const std::vector<Long>& openings);
    /// Tells what the report's dialog will do to rows of the section that are not as they should be.
    void tellRules(const Node& node, Long section);
    /// Mends what has one remedy, as an act of the history.
    void repairRules(const std::vector<care::Finding>& findings);
    /// Tells what was done, with the way back where the history has it under this opening; 0 for none.
    void tellAct(const QString& text, Long act);
    /// Tells of saves that were cut because their station died.
    void tellCuts();
    /// Tells of what this person typed in this school and never saved, since his program died.
    void tellDrafts();
    void remindOfCopies();
    void tellDraft(const journal::Found& found, bool here);
    void tellForgotten();
    /// Opens the dialog that a draft is of, which offers to type it in again.
    void openDraft(const Node& node, const journal::Opening& opening);
    /// Runs what writes through the history, and reads the list again. False if it failed.
    bool changes(const QString& failed, const std::function<void()>& what);
    void giveBack(const std::vector<history::Loss>& losses);
    /// Ends what a station that died while it joined rows had begun.
    void settleJoins();
    /// Lets the person choose the row that comes into the place of another, and puts it there.
    void replaceRow(const NamedRow& row);
    /// Tells of a new row that another looks like.
    void tellAlike(Long key);
    void joinRows(const care::Pair& pair);
    void part(Long join);
    /// `then` is called with the row that is new, if there is one, when it is shown.
    void readAgain(ListPage::Added added, const std::function<void(Long)>& then = {});
    void readParts();
    void readOn();
    void settleReading();
    void keepLook();
    void switchTo(std::unique_ptr<Host> other);
    /// Enables the commands that the node, the rows and the session have.
    void follow();
    void tellStatus();
    void showMenu(const QPoint& at);
    bool stillThere(const NamedRow& row);
    bool seesHeld(const NamedRow& row);
    void markHeld();
    void tellRemoved(const Node& node, const std::vector<NamedRow>& rows);
    void tellRestored(const std::vector<DeletedRow>& rows);
    void putBack(const Node& node, const std::vector<NamedRow>& rows);

    /// Row that somebody else has open, and that this person asked for.
    struct Wanted {
        const Node* node = nullptr;
        NamedRow row;
    };

    /// List that is being read while the window goes on.
    struct ListReading {
        RowReader reader;
        RowLetters rows; ///< What has been read.
        Long atOnce;     ///< Rows of the next part.
        bool again;      ///< It comes in the place of the one that is shown.
    };

    std::unique_ptr<Host> host_;
    const Node* node_ = nullptr; ///< The list that is shown; nullptr on a group.
    Remembered memory_;
    QWidget whole_;
    Notice notice_;
    QSplitter parts_;
    NodeTree tree_;
    ListPage page_;
    QLabel database_, user_, mode_;
    Undo undo_;
    std::optional<Wanted> wanted_;
    std::set<String> toldRules_;            ///< What tellRules() has told of this school.
    std::vector<progress::Report> reports_; ///< Those of the page of what they lack.
    std::map<std::pair<progress::Kind, Long>, Long> reportKeys_; ///< Their rows, by kind and pupil.
    std::vector<Section> sections_; ///< Those that are listed on the page of a report.
    QTimer watch_, readOn_;
    std::optional<ListReading> reading_;
    QAction *new_ = nullptr, *ordering_ = nullptr, *change_ = nullptr, *delete_ = nullptr,
            *branches_ = nullptr, *undoIt_ = nullptr, *copy_ = nullptr, *copyCell_ = nullptr,
            *progress_ = nullptr, *print_ = nullptr, *refresh_ = nullptr, *csv_ = nullptr, *find_ = nullptr,
            *columns_ = nullptr, *bin_ = nullptr, *rowsInUse_ = nullptr, *history_ = nullptr,
            *listHistory_ = nullptr, *session_ = nullptr, *open_ = nullptr, *help_ = nullptr,
            *findHelp_ = nullptr, *quit_ = nullptr, *backUp_ = nullptr;
};

} // namespace zv::host
