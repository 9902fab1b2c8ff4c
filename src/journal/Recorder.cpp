#include "journal/Recorder.h"

#include "forms/ComboBox.h"
#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/MSFlexGrid.h"
#include "runtime/Single.h"
#include "runtime/System.h"
#include "runtime/Time.h"
#include "session/cConfiguracion.h"

#include <algorithm>

namespace zv::journal {

namespace {

/// Dialogs whose accept button stores nothing: it changes the list of the dialog that opened them.
constexpr StringView withinTheirOpener[] = {u"frmSucursal"};

struct Settings {
    std::filesystem::path folder;
    std::optional<SecretKey> key;
    bool on = false;
    std::function<void(StringView)> tell;
    String told; ///< The trouble that was told last, until a new journal could be written.
};

Settings& settings()
{
    static Settings of;
    return of;
}

std::int64_t now() { return timeHere().time_since_epoch().count(); }

void tellTrouble(StringView why)
{
    Settings& of = settings();
    if (of.told == why)
        return;
    of.told = String(why);
    if (of.tell)
        of.tell(why);
}

std::vector<Choice> chosenIn(const Form& form)
{
    std::vector<Choice> chosen;
    for (const Control* control : form.Controls)
        if (const auto* list = dynamic_cast<const ComboBox*>(control); list && list->ListIndex() >= 0)
            chosen.push_back({list->Name(), list->Index(), entryOf(*list, list->ListIndex())});
    return chosen;
}

Act asKept(const PersonAct& act)
{
    Act kept{.verb = act.verb,
             .text = String(act.text),
             .first = act.first,
             .second = act.second,
             .key = act.key,
             .moment = now()};
    if (act.control == nullptr)
        return kept;
    kept.control = act.control->Name();
    kept.index = act.control->Index();
    if (const auto* list = dynamic_cast<const ComboBox*>(act.control); list && act.verb == ActVerb::choose)
        kept.entry = entryOf(*list, act.first);
    const auto* grid = dynamic_cast<const MSFlexGrid*>(act.control);
    if (grid != nullptr && (act.verb == ActVerb::clickCell || act.verb == ActVerb::doubleClickCell))
        kept.entry = rowOf(*grid, act.first);
    return kept;
}

std::vector<Entry> rowsOf(const MSFlexGrid& grid)
{
    std::vector<Entry> rows;
    rows.reserve(static_cast<std::size_t>(grid.Rows()));
    for (Long row = 0; row < grid.Rows(); ++row)
        rows.push_back(rowOf(grid, row));
    return rows;
}

bool isCancel(const Control* control)
{
    const auto* button = dynamic_cast<const CommandButton*>(control);
    return button != nullptr && button->Cancel();
}

bool mayOpenOrSave(const PersonAct& act)
{
    return dynamic_cast<const CommandButton*>(act.control) != nullptr || act.key == Key::Enter ||
           act.verb == ActVerb::doubleClickCell;
}

} // namespace

Recorder::Open* Recorder::find(const Form* form)
{
    const auto found = std::ranges::find(open_, form, &Open::form);
    return found == open_.end() ? nullptr : &*found;
}

const Recorder::Open* Recorder::find(const Form* form) const
{
    const auto found = std::ranges::find(open_, form, &Open::form);
    return found == open_.end() ? nullptr : &*found;
}

Recorder::Open* Recorder::journalOf(Open& open) { return open.within != nullptr ? find(open.within) : &open; }

void Recorder::loading(Form& form)
{
    std::erase_if(open_, [&](const Open& each) { return each.form == &form; });
    if (!recording() || onlyChooses(form.Name()))
        return;
    Open open{.form = &form, .opening = sessionOpening()};
    open.opening.dialog = form.Name();
    if (const Form* opener = inHand_.empty() ? nullptr : inHand_.back().form; opener != nullptr) {
        Open* below = find(opener);
        if (below != nullptr &&
            std::ranges::find(withinTheirOpener, form.Name()) != std::end(withinTheirOpener)) {
            open.within = below->form;
            ++below->inner;
            Record inner(std::in_place_type<Inner>);
            std::get<Inner>(inner).dialog = form.Name();
            write(*below, inner, false);
        }
        open.opening.opener = opener->Name();
        open.opening.button = inHand_.back().act.control;
        open.opening.buttonIndex = inHand_.back().act.index;
        open.opening.choices = chosenIn(*opener);
        if (SectionControls(form).isSection() && !open.opening.choices.empty())
            open.opening.section = open.opening.choices.back().entry;
    }
    open_.push_back(std::move(open));
}

void Recorder::unloaded(Form& form)
{
    Open* open = find(&form);
    if (open == nullptr)
        return;
    if (open->writer)
        open->writer->remove();
    open->writer.reset();
    open->closed = true;
    if (std::ranges::find(inHand_, &form, &InHand::form) == inHand_.end())
        std::erase_if(open_, [&](const Open& each) { return each.form == &form; });
}

void Recorder::acting(const PersonAct& act)
{
    inHand_.push_back({&act.form, asKept(act)});
    Open* open = find(&act.form);
    if (open == nullptr)
        return;
    if (!open->watch) {
        open->watch = std::make_unique<Watch>(act.form);
        open->opening.title = act.form.Caption();
    }
    const SectionControls& controls = open->watch->controls();
    if (controls.grid != nullptr && !controls.isSection()) {
        InHand& hand = inHand_.back();
        const bool button = dynamic_cast<const CommandButton*>(act.control) != nullptr;
        if (button)
            hand.rows = rowsOf(*controls.grid);
        const Long row = controls.grid->Row();
        if ((button || act.control == controls.grid) && hand.act.entry == Entry() && row > 0 &&
            row < controls.grid->Rows())
            hand.act.entry = rowOf(*controls.grid, row);
    }
    Open* journal = journalOf(*open);
    if (mayOpenOrSave(act) && open == journal)
        write(*journal, Begun{inHand_.back().act}, false);
}

/// What a person does in a grid, and the buttons that change its rows; not the keys that press the form's.
bool Recorder::isOrdered(const Open& open, const PersonAct& act, const std::vector<Entry>& rowsBefore)
{
    const SectionControls& controls = open.watch->controls();
    if (controls.isSection() || controls.grid == nullptr || open.closed || act.verb == ActVerb::focus ||
        act.verb == ActVerb::scroll)
        return false;
    const auto* button = dynamic_cast<const CommandButton*>(act.control);
    if (act.control == controls.grid)
        return act.key != Key::Enter && act.key != Key::Escape;
    return (button != nullptr && !button->Default() && !button->Cancel() &&
            rowsOf(*controls.grid) != rowsBefore);
}

void Recorder::acted(const PersonAct& act, bool done)
{
    Act kept = std::move(inHand_.back().act);
    const std::vector<Entry> rows = std::move(inHand_.back().rows);
    inHand_.pop_back();
    Open* open = find(&act.form);
    if (open == nullptr || !open->watch)
        return;
    Open* journal = journalOf(*open);
    const bool gone = journal == nullptr || journal->closed;
    if (!gone) {
        kept.inner = journal != open;
        kept.ordered = done && !kept.inner && isOrdered(*open, act, rows);
        kept.closes = open->closed;
        kept.leaves =
            kept.closes && (act.verb == ActVerb::close || act.key == Key::Escape || isCancel(act.control));
        const View before = open->watch->view();
        if (!kept.closes)
            noteChanges(*open, *journal, act, kept);
        if (!kept.inner && (journal->viewed != before))
            kept.view = journal->viewed = before;
        const bool starts = !kept.changes.empty() || kept.ordered;
        write(*journal, std::move(kept), starts);
    }
    if (open->closed)
        std::erase_if(open_, [&](const Open& each) { return each.form == &act.form; });
}

/// Lists, options and ticks that belong to no pupil may fill others: what was chosen is chosen again in its
/// turn, and is noted even if it is the same.
void Recorder::noteChanges(Open& open, Open& journal, const PersonAct& act, Act& kept)
{
    std::vector<Watch::Difference> found = open.watch->differences(act.control);
    const auto own = open.watch->choice(act.control);
    const bool changed = own && !found.empty() && found.front().place.same(own->place);
    if (own && !changed && act.verb == ActVerb::choose)
        found.insert(found.begin(), *own);
    kept.ordered |= own && !kept.inner && (changed || act.verb == ActVerb::choose);
    for (Watch::Difference& each : found) {
        each.place.within = kept.inner ? journal.inner : 0;
        kept.changes.push_back({placeIn(journal, each.place), std::move(each.before), std::move(each.after)});
    }
}

std::size_t Recorder::placeIn(Open& journal, const Place& place)
{
    const PlaceKey key{
        place.control,         place.index,         place.within,
        place.pupil.number,    place.pupil.text,    place.input == Input::rating ? place.page : 0,
        place.question.number, place.question.text, place.column};
    const auto [known, fresh] = journal.places.try_emplace(key, journal.places.size());
    if (fresh)
        write(journal, place, false);
    return known->second;
}

bool Recorder::start(Open& journal)
{
    Settings& of = settings();
    try {
        if (!of.key)
            of.key = ownKey(of.folder);
        if (!spool_ || spool_->folder() != of.folder)
            spool_ = std::make_shared<Spool>(of.folder);
        journal.opening.moment = now();
        journal.writer = std::make_unique<Writer>(spool_, *of.key, journal.opening);
        of.told.clear();
    } catch (const std::system_error& error) {
        tellTrouble(wordsFor(error.code()));
    } catch (const std::exception& error) {
        tellTrouble(fromUtf8(error.what()));
    }
    return journal.writer != nullptr;
}

/// Before the first change, and while the file cannot be made, records wait.
void Recorder::write(Open& journal, const Record& record, bool starts)
{
    journal.starts |= starts;
    if (!journal.writer) {
        journal.waiting.push_back(record);
        if (journal.starts && start(journal))
            for (const Record& each : std::exchange(journal.waiting, {}))
                write(journal, each, false);
        return;
    }
    if (const std::error_code error = journal.writer->write(record))
        tellTrouble(wordsFor(error));
}

const Opening* Recorder::opening(const Form& form) const
{
    const Open* open = find(&form);
    return open == nullptr || open->within != nullptr ? nullptr : &open->opening;
}

const Writer* Recorder::writer(const Form& form) const
{
    const Open* open = find(&form);
    return open == nullptr ? nullptr : open->writer.get();
}

std::filesystem::path Recorder::file(const Form& form) const
{
    const Writer* own = writer(form);
    return own == nullptr ? std::filesystem::path() : own->path();
}

bool Recorder::sync(const Form& form)
{
    Open* open = find(&form);
    Open* journal = open != nullptr ? journalOf(*open) : nullptr;
    if (journal == nullptr)
        return onlyChooses(form.Name());
    return journal->writer == nullptr ? !journal->starts
                                      : !journal->writer->pending() && !journal->writer->sync();
}

bool record(const std::filesystem::path& folder)
{
    if (folder.empty() || environment("ZV_DIARIO").value_or("") == "no")
        return false;
    settings().folder = folder;
    settings().key.reset();
    settings().on = true;
    observeActs([]() -> ActObserver& { return recorder(); });
    observeForms([]() -> FormObserver& { return recorder(); });
    return true;
}

bool recording() { return settings().on; }

void recording(bool on) { settings().on = on && !settings().folder.empty(); }

const std::filesystem::path& recordedFolder() { return settings().folder; }

void onTrouble(std::function<void(StringView)> tell) { settings().tell = std::move(tell); }

Recorder& recorder() { return single<Recorder>(); }

Opening sessionOpening()
{
    const cConfiguracion& session = Configuracion();
    return {.school =
                decimalText(session.intIdCentro) + u" " + session.strNombreCentro + u" " + session.RutaBD,
            .schoolName = session.strNombreCentro,
            .person = session.intIDUsuario,
            .personName = session.strNombreUsuario,
            .row = session.lngRowData,
            .action = session.bytAccion,
            .moment = now()};
}

} // namespace zv::journal
