#include "qt/DraftAid.h"

#include "journal/Recorder.h"
#include "qt/FormWindow.h"
#include "qt/QtText.h"
#include "runtime/Time.h"

#include <QMessageBox>
#include <QPushButton>
#include <QStringList>

#include <algorithm>
#include <chrono>

namespace zv {

namespace {

using journal::Fate;
using journal::Item;

QString counted(std::size_t count, const char* one, const char* several)
{
    return QStringLiteral("%1 %2").arg(count).arg(QString::fromUtf8(count == 1 ? one : several));
}

QString shown(const journal::Held& held, journal::Input input)
{
    using journal::Input;
    if (held.none)
        return {};
    if (input == Input::tick || input == Input::option)
        return held.value.number != 0 ? QStringLiteral("sí") : QStringLiteral("no");
    return toQt(held.value.text);
}

QString remark(Fate fate)
{
    switch (fate) {
    case Fate::stored:
        return QStringLiteral("Ya está.");
    case Fate::typed:
        return {};
    case Fate::clash:
        return QStringLiteral("Alguien ha puesto otra cosa después: se queda lo suyo.");
    case Fate::noPlace:
        return QStringLiteral("Ya no tiene sitio.");
    case Fate::refused:
        return QStringLiteral("La ventana no lo admite.");
    }
    return {};
}

QString joined(const QString& one, const QString& other)
{
    return one.isEmpty() || other.isEmpty() ? one + other : one + QStringLiteral(", ") + other;
}

void addRows(std::vector<DraftRow>& rows, const journal::Draft& draft,
             const std::vector<journal::Step>& steps, const QString& within)
{
    for (const journal::Step& step : steps) {
        if (step.value) {
            const journal::Place& place = draft.places[step.value->place];
            const QString label = toQt(place.label.empty() ? place.control : place.label);
            rows.push_back({joined(toQt(place.pupil.text), within),
                            joined(toQt(place.question.text), label),
                            shown(step.value->before, place.input),
                            shown(step.value->after, place.input),
                            {}});
        }
        addRows(rows, draft, step.inner, joined(within, toQt(step.act.entry.text)));
    }
}

} // namespace

bool asksToDiscard(QWidget& owner, const journal::Draft& draft)
{
    QMessageBox box(QMessageBox::Warning, owner.windowTitle(),
                    QStringLiteral("¿Descartar lo que no se guardó, de %1?").arg(timeOf(draft)),
                    QMessageBox::NoButton, &owner);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(countOf(draft) + QStringLiteral(". No se podrá recuperar."));
    const QPushButton* throws = box.addButton(QStringLiteral("&Descartar"), QMessageBox::DestructiveRole);
    QPushButton* keeps = box.addButton(QStringLiteral("&Conservar"), QMessageBox::RejectRole);
    box.setDefaultButton(keeps);
    box.setEscapeButton(keeps);
    box.exec();
    return box.clickedButton() == throws;
}

QString kindOf(const journal::Draft& draft)
{
    return draft.texts() > 0 ? QStringLiteral("textos") : QStringLiteral("cambios");
}

QString countOf(const journal::Draft& draft)
{
    QStringList parts;
    if (const std::size_t pupils = draft.pupils(); pupils > 0)
        parts += counted(pupils, "alumno", "alumnos");
    if (const std::size_t texts = draft.texts(); texts > 0)
        parts += counted(texts, "texto", "textos");
    if (const std::size_t choices = draft.choices(); choices > 0)
        parts += counted(choices, "elección", "elecciones");
    if (const std::size_t rows = draft.rows(); rows > 0)
        parts += counted(rows, "fila", "filas");
    return parts.join(QStringLiteral(", "));
}

QString timeOf(const journal::Draft& draft)
{
    return toQt(whenTold(Seconds(std::chrono::seconds(draft.moment)), timeHere()));
}

std::vector<DraftRow> rowsOf(const std::vector<Item>& items)
{
    std::vector<DraftRow> rows;
    rows.reserve(items.size());
    for (const Item& each : items)
        rows.push_back({joined(toQt(each.pupil), toQt(each.within)), toQt(each.label),
                        each.fate == Fate::noPlace ? QStringLiteral("—") : toQt(each.now), toQt(each.draft),
                        remark(each.fate)});
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
    const journal::Opening* opening = journal::recorder().opening(window_.form());
    if (opening == nullptr)
        return;
    try {
        drafts_ = journal::draftsFor(*opening, journal::recordedFolder());
    } catch (const std::exception& error) {
        // The key cannot be read: nothing will be written either.
        trouble_ = QString::fromUtf8(error.what());
    }
    tell();
}

void DraftAid::tell()
{
    const QString understood = QStringLiteral("Entendido");
    if (!trouble_.isEmpty())
        return window_.say(
            QStringLiteral(
                "Lo que escriba no se puede ir apuntando, y se perdería si el programa se cortara. "
                "Se puede seguir. Motivo: %1")
                .arg(trouble_),
            {{understood, Qt::Key_E, [this] {
                  trouble_.clear();
                  tell();
              }}});
    if (!done_.isEmpty() && left_.empty())
        return window_.say(done_, {{understood, Qt::Key_E, [this] { next(); }}});
    if (drafts_.empty())
        return window_.sayNothing();
    tellDraft();
}

void DraftAid::tellDraft()
{
    const journal::Found& found = drafts_.front();
    std::vector<Bar::Choice> choices{{QStringLiteral("Ver"), Qt::Key_V, [this] { view(); }},
                                     {QStringLiteral("Descartar"), Qt::Key_D, [this] { discard(); }}};
    if (!done_.isEmpty())
        return window_.say(done_, choices);
    choices.insert(choices.begin(), {QStringLiteral("Recuperar"), Qt::Key_R, [this] { recover(); }});
    QString text = QStringLiteral("Hay %1 sin guardar de %2: %3")
                       .arg(kindOf(found.draft), timeOf(found.draft), countOf(found.draft));
    if (found.end == journal::End::spoilt)
        text += QStringLiteral(". Lo que seguía no se puede leer");
    window_.say(text, choices);
}

std::vector<Item> DraftAid::preview()
{
    std::vector<Item> items;
    window_.act([&](Acts& acts) {
        items = journal::Recovery(window_.form(), acts, drafts_.front().draft).preview();
        return true;
    });
    return items;
}

void DraftAid::view()
{
    const journal::Draft& draft = drafts_.front().draft;
    const std::vector<Item> items = done_.isEmpty() ? preview() : left_;
    showDraft(window_,
              done_.isEmpty()
                  ? QStringLiteral("Lo que se escribió y no se guardó, de %1, junto a lo que hay ahora.")
                        .arg(timeOf(draft))
                  : QStringLiteral("Lo que no se ha podido escribir de nuevo."),
              rowsOf(items));
}

void DraftAid::recover()
{
    std::vector<Item> items;
    window_.act([&](Acts& acts) {
        items = journal::Recovery(window_.form(), acts, drafts_.front().draft).run();
        return true;
    });
    const std::size_t typed = static_cast<std::size_t>(std::ranges::count(items, Fate::typed, &Item::fate));
    left_ = journal::Recovery::left(std::move(items));
    done_ = typed == 0 ? QStringLiteral("No se ha escrito nada")
                       : QStringLiteral("Escrito de nuevo: %1; se guarda con «Aceptar»")
                             .arg(counted(typed, "dato", "datos"));
    if (!left_.empty())
        done_ += QStringLiteral(". Sin escribir: %1").arg(left_.size());
    // The draft goes when what was typed is on the disk again, and not before.
    try {
        if (journal::recorder().sync(window_.form()) || typed == 0)
            journal::keepOnly(drafts_.front(), left_);
    } catch (const std::exception& error) {
        trouble_ = QString::fromUtf8(error.what());
    }
    tell();
}

void DraftAid::discard()
{
    if (!asksToDiscard(window_, drafts_.front().draft))
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
