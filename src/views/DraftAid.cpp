#include "views/DraftAid.h"

#include "journal/Recorder.h"
#include "runtime/Convert.h"
#include "runtime/Counted.h"
#include "runtime/Time.h"

#include <algorithm>
#include <chrono>

namespace zv {

namespace {

using journal::Fate;
using journal::Item;

String remark(Fate fate)
{
    switch (fate) {
    case Fate::stored:
        return u"Ya está.";
    case Fate::typed:
        return {};
    case Fate::clash:
        return u"Alguien ha puesto otra cosa después: se queda lo suyo.";
    case Fate::noPlace:
        return u"Ya no tiene sitio.";
    case Fate::refused:
        return u"La ventana no lo admite.";
    }
    return {};
}

String joined(const String& one, const String& other)
{
    return one.empty() || other.empty() ? one + other : one + u", " + other;
}

void addRows(std::vector<DraftRow>& rows, const journal::Draft& draft,
             const std::vector<journal::Step>& steps, const String& within)
{
    for (const journal::Step& step : steps) {
        if (step.value) {
            const journal::Place& place = draft.places[step.value->place];
            const String label = place.label.empty() ? place.control : place.label;
            rows.push_back({joined(place.pupil.text, within),
                            joined(place.question.text, label),
                            readAs(place, step.value->before),
                            readAs(place, step.value->after),
                            {}});
        }
        addRows(rows, draft, step.inner, joined(within, step.act.entry.text));
    }
}

} // namespace

Question discarding(const journal::Draft& draft)
{
    return {.text = u"¿Descartar lo que no se guardó, de " + timeOf(draft) + u"?",
            .detail = countOf(draft) + u". No se podrá recuperar.",
            .yes = u"&Descartar",
            .no = u"&Conservar"};
}

String kindOf(const journal::Draft& draft) { return draft.texts() > 0 ? u"textos" : u"cambios"; }

String countOf(const journal::Draft& draft)
{
    String all;
    const auto add = [&all](const String& part) { all = joined(all, part); };
    if (const std::size_t pupils = draft.pupils(); pupils > 0)
        add(counted(pupils, u"alumno", u"alumnos"));
    if (const std::size_t texts = draft.texts(); texts > 0)
        add(counted(texts, u"texto", u"textos"));
    if (const std::size_t choices = draft.choices(); choices > 0)
        add(counted(choices, u"elección", u"elecciones"));
    if (const std::size_t rows = draft.rows(); rows > 0)
        add(counted(rows, u"fila", u"filas"));
    return all;
}

String timeOf(const journal::Draft& draft)
{
    return whenTold(Seconds(std::chrono::seconds(draft.moment)), timeHere());
}

std::vector<DraftRow> rowsOf(const std::vector<Item>& items)
{
    std::vector<DraftRow> rows;
    rows.reserve(items.size());
    for (const Item& each : items)
        rows.push_back({joined(each.pupil, each.within), each.label,
                        each.fate == Fate::noPlace ? String(u"—") : each.now, each.draft, remark(each.fate)});
    return rows;
}

std::vector<DraftRow> rowsOf(const journal::Draft& draft)
{
    std::vector<DraftRow> rows;
    addRows(rows, draft, draft.steps, {});
    return rows;
}

void DraftAid::offer()
{
    const journal::Opening* opening = journal::recorder().opening(form_);
    if (opening == nullptr)
        return;
    try {
        drafts_ = journal::draftsFor(*opening, journal::recordedFolder());
    } catch (const std::exception& error) {
        // The key cannot be read: nothing will be written either.
        trouble_ = fromUtf8(error.what());
    }
    tell();
}

void DraftAid::tell()
{
    const auto note = [](std::function<void()> does) {
        return std::vector<BarChoice>{{u"Entendido", u'E', std::move(does)}};
    };
    if (!trouble_.empty())
        return aids_.say(u"Lo que escriba no se puede ir apuntando, y se perdería si el programa se cortara. "
                         u"Se puede seguir. Motivo: " +
                             trouble_,
                         note([this] {
                             trouble_.clear();
                             tell();
                         }));
    if (!done_.empty() && left_.empty())
        return aids_.say(done_, note([this] { next(); }));
    if (drafts_.empty())
        return aids_.sayNothing();
    tellDraft();
}

void DraftAid::tellDraft()
{
    const journal::Found& found = drafts_.front();
    std::vector<BarChoice> choices{{u"Ver", u'V', [this] { view(); }},
                                   {u"Descartar", u'D', [this] { discard(); }}};
    if (!done_.empty())
        return aids_.say(done_, choices);
    choices.insert(choices.begin(), {u"Recuperar", u'R', [this] { recover(); }});
    String text = u"Hay " + kindOf(found.draft) + u" sin guardar de " + timeOf(found.draft) + u": " +
                  countOf(found.draft);
    if (found.end == journal::End::spoilt)
        text += u". Lo que seguía no se puede leer";
    aids_.say(text, choices);
}

std::vector<Item> DraftAid::preview()
{
    std::vector<Item> items;
    window_.act([&](Acts& acts) {
        items = journal::Recovery(form_, acts, drafts_.front().draft).preview();
        return true;
    });
    return items;
}

void DraftAid::view()
{
    const journal::Draft& draft = drafts_.front().draft;
    const std::vector<Item> items = done_.empty() ? preview() : left_;
    aids_.showDraft(done_.empty() ? u"Lo que se escribió y no se guardó, de " + timeOf(draft) +
                                        u", junto a lo que hay ahora."
                                  : String(u"Lo que no se ha podido escribir de nuevo."),
                    rowsOf(items));
}

void DraftAid::recover()
{
    std::vector<Item> items;
    window_.act([&](Acts& acts) {
        items = journal::Recovery(form_, acts, drafts_.front().draft).run();
        return true;
    });
    const std::size_t typed = static_cast<std::size_t>(std::ranges::count(items, Fate::typed, &Item::fate));
    left_ = journal::Recovery::left(std::move(items));
    done_ = typed == 0
                ? String(u"No se ha escrito nada")
                : u"Escrito de nuevo: " + counted(typed, u"dato", u"datos") + u"; se guarda con «Aceptar»";
    if (!left_.empty())
        done_ += u". Sin escribir: " + decimalText(static_cast<std::int64_t>(left_.size()));
    // The draft goes when what was typed is on the disk again, and not before.
    try {
        if (journal::recorder().sync(form_) || typed == 0)
            journal::keepOnly(drafts_.front(), left_);
    } catch (const std::exception& error) {
        trouble_ = fromUtf8(error.what());
    }
    tell();
}

void DraftAid::discard()
{
    if (!aids_.asks(discarding(drafts_.front().draft)))
        return;
    journal::discard(drafts_.front().path);
    next();
}

void DraftAid::next()
{
    drafts_.erase(drafts_.begin());
    left_.clear();
    done_.clear();
    tell();
}

} // namespace zv
