#pragma once

#include "data/Connection.h"
#include "data/history/Log.h"
#include "data/history/Write.h"

#include <functional>
#include <map>
#include <optional>

namespace zv::history {

/// Names of a table's columns in physical order; empty for a table that is not there.
using ColumnsOf = std::function<std::vector<String>(StringView table)>;

/// Decorator of a live database's connection: keeps what each written row was and is, in one transaction of
/// the engine with the statement, so that there is never one without the other. Other stations see what they
/// would see without. A statement that is not understood runs, and is kept as its text; one that fails is
/// noted when the dialog rests.
class HistoryConnection final : public ConnectionDecorator {
public:
    enum class Begins {
        atOnce,
        withADialog ///< What is written before the first dialog opens, to make a school, is not noted.
    };
    HistoryConnection(ConnectionPtr inner, ColumnsOf columnsOf, Begins begins = Begins::atOnce);

    RecordsetPtr Execute(StringView statement) override;
    RecordsetPtr executeNative(StringView statement) override;
    void dialogOpened(const Opening& opening) override;
    void dialogClosed() override;
    void dialogAtRest() override;

    /// What one opening did.
    struct Part {
        Opening opening = {};
        Long number = 0;                ///< Of its first entry; 0 where nothing was noted.
        Long headBefore = 0;            ///< Number of the newest entry when it began.
        Long tried = 0;                 ///< Rows that were to be inserted or updated, each try counted.
        std::vector<Entry> failed = {}; ///< Also where the database could not keep them; the first thousand.
    };
    /// What a host needs to tell of a dialog that has closed: the outermost opening, and behind it those
    /// within it.
    struct Closed {
        std::vector<Part> parts;
    };
    /// The dialog that closed last, once.
    std::optional<Closed> takeClosed();
    /// Number of the outermost opening's entry; 0 while nothing was noted of it, and outside of any.
    Long openingNumber() const { return open_.empty() ? 0 : open_.front().number; }

    /// Names of a table's columns in physical order; empty for a table that is not there.
    const std::vector<String>& columns(StringView table);

private:
    using Run = std::function<RecordsetPtr(StringView)>;
    struct Open {
        std::size_t part = 0;     ///< Its place in `closing_`.
        Long number = 0;          ///< Of its entry; 0 while nothing was noted.
        Long save = 0;            ///< First entry of the save that runs; 0 for none.
        bool severalRows = false; ///< The save goes on over several statements, and its end is noted.
    };
    /// A row's columns, and the condition that finds it.
    struct Row {
        String key;
        Fields fields;
    };
    using Rows = std::vector<Row>;

    RecordsetPtr run(StringView statement, const Run& run);
    RecordsetPtr runNoted(StringView statement, const Write& write, const Run& run);
    RecordsetPtr runAlone(StringView statement, const Run& run);
    RecordsetPtr runRelease(StringView statement, const Run& run);
    void noteReading(StringView query);
    void noteFailure(const DataError& error, const std::optional<Write>& write);
    bool controlsTransaction(StringView verb);
    void inTransaction(StringView statement, const std::function<void()>& work);

    Fields named(const Write& write) const;
    Rows rowsOf(const Write& write, StringView condition);
    Rows rowsAgain(const Write& write, const Rows& rows);
    void addInserted(Appending& log, const Write& write, StringView statement);
    void addDifferences(Appending& log, const Write& write, Rows before, Rows after);
    void add(Appending& log, Entry entry);
    void addPending(Appending& log);
    void flush();
    void wait(const Entry& note);
    void noteEnd();

    ColumnsOf columnsOf_;
    std::map<String, std::vector<String>> columns_; ///< Cache by the table's name in lower case.
    std::vector<Open> open_;                        ///< Stack of the openings.
    std::vector<Open> before_;                      ///< The stack as the transaction that runs found it.
    std::vector<Entry> pending_;                    ///< Notes that wait for the next transaction.
    std::optional<Closed> closed_;
    Closed closing_; ///< All openings since the outermost one began.
    bool asleep_ = false;
    bool callersTransaction_ = false;
    bool noteFailed_ = false; ///< Until a statement succeeds, or the outermost dialog opens or closes.
    bool missing_ = false;    ///< The history's tables have gone: nothing is noted any more.
};

/// Tables whose dialogs save with several statements, so that a save may be cut between two.
inline constexpr StringView savedInParts[] = {
    u"Banco",         u"Sucursal",         u"ConsejoOrientador_Nota",
    u"Alumno_InfInd", u"Alumno_InfIndESO", u"Alumno_InfIndPrim"};
bool isSavedInParts(StringView table);

/// The history behind a connection, or nullptr where there is none.
HistoryConnection* historyOf(const ConnectionPtr& connection);

} // namespace zv::history
