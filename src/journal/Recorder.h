#pragma once

#include "forms/ActObserver.h"
#include "forms/FormObserver.h"
#include "journal/Journal.h"
#include "journal/Watch.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <tuple>

namespace zv::journal {

/// Writes the journals of the dialogs that are open: an observer of acts and forms, whatever the desktop. A
/// journal begins with the first change and is deleted when its dialog closes. A single instance: a reset
/// forgets the dialogs that were open, and their journals stay, as after a crash.
class Recorder final : public ActObserver, public FormObserver {
public:
    void acting(const PersonAct& act) override;
    void acted(const PersonAct& act, bool done) override;
    void loading(Form& form) override;
    void unloaded(Form& form) override;
    void atRest(Form& /*form*/) override {}

    /// What is open on that form; nullptr for a form that is not loaded, or within another one's journal, or
    /// of which nothing can be lost.
    const Opening* opening(const Form& form) const;
    /// The journal of that form; empty while it has none.
    std::filesystem::path file(const Form& form) const;
    /// Returns when what was done on that form is on the disk; false if it could not be written, or if
    /// nothing of that form is.
    bool sync(const Form& form);
    /// Ends the thread in the background while no dialog is open.
    void rest()
    {
        if (spool_ && open_.empty())
            spool_->rest();
    }
    /// The journal of that form, to prove what is on the disk; nullptr while it has none.
    const Writer* writer(const Form& form) const;

private:
    using PlaceKey = std::tuple<String, int, int, Long, String, int, Long, String, Long>;
    struct Open {
        Form* form = nullptr;
        Form* within = nullptr; ///< The dialog whose contents alone it changes.
        Opening opening = {};
        std::unique_ptr<Watch> watch = {}; ///< From the first act on.
        std::unique_ptr<Writer> writer = {};
        std::vector<Record> waiting = {}; ///< Until the first change.
        std::map<PlaceKey, std::size_t> places = {};
        int inner = 0;       ///< Dialogs that were opened within it.
        View viewed = {};    ///< That the journal knows.
        bool starts = false; ///< Something has been changed: it is to be written.
        bool closed = false;
    };
    struct InHand {
        const Form* form = nullptr;
        Act act;
        std::vector<Entry> rows = {}; ///< Of the form's grid, before a button was pressed.
    };

    Open* find(const Form* form);
    const Open* find(const Form* form) const;
    Open* journalOf(Open& open);
    void write(Open& journal, const Record& record, bool starts);
    bool start(Open& journal);
    void noteChanges(Open& open, Open& journal, const PersonAct& act, Act& kept);
    std::size_t placeIn(Open& journal, const Place& place);
    static bool isOrdered(const Open& open, const PersonAct& act, const std::vector<Entry>& rowsBefore);

    std::shared_ptr<Spool> spool_;
    std::deque<Open> open_;      ///< In the order in which they were loaded.
    std::vector<InHand> inHand_; ///< Acts that have begun, the outermost first.
};

/// Begins to write journals in that folder, for the rest of the process: observers are registered. With
/// ZV_DIARIO=no in the environment, or without a folder, nothing is written, and it returns false.
bool record(const std::filesystem::path& folder = journal::folder());
/// Whether journals are written. False switches them off again for the dialogs that open from here on.
bool recording();
void recording(bool on);
/// The folder given to record(); empty before.
const std::filesystem::path& recordedFolder();
/// Registers a callback that tells the person, once for each trouble, that and why nothing can be kept.
void onTrouble(std::function<void(StringView)> tell);
Recorder& recorder();
/// What identifies the session's school, and who the person is.
Opening sessionOpening();

} // namespace zv::journal
