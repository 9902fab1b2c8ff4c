// What was typed and never saved, because the program died: told at the start, opened again, thrown away.
#include "journal/Recorder.h"
#include "qt/Asking.h"
#include "qt/DraftView.h"
#include "qt/QtText.h"
#include "runtime/Time.h"
#include "session/cConstCol.h"
#include "views/DraftAid.h"
#include "zvhost/MainWindow.h"
#include "zvhost/Widgets.h"

#include <chrono>

namespace zv::host {

namespace {

/// After how many days a draft is told to be old.
constexpr int oldDays = 30;

QString ageOf(const journal::Draft& draft)
{
    const auto days = std::chrono::duration_cast<std::chrono::days>(timeHere().time_since_epoch() -
                                                                    std::chrono::seconds(draft.moment))
                          .count();
    return days < oldDays ? QString() : QStringLiteral(". Lleva %1 días así: ábralo, o descártelo").arg(days);
}

} // namespace

void MainWindow::tellDrafts()
{
    notice_.forget(Notice::Drafts::all);
    if (!journal::recording())
        return;
    host_->handSession();
    try {
        for (const journal::Found& each : journal::draftsOfSession(journal::recordedFolder()))
            tellDraft(each, true);
        for (const journal::Found& each : journal::draftsElsewhere(journal::recordedFolder()))
            tellDraft(each, false);
        tellForgotten();
    } catch (const std::exception&) {
        // The key cannot be read: the first dialog that is opened tells why.
    }
}

/// Of one from elsewhere a person has to say first that its school is this one, which has moved.
void MainWindow::tellDraft(const journal::Found& found, bool here)
{
    const journal::Opening& opening = found.draft.opening;
    const bool section = opening.section.number != 0;
    const Node* node = nodeOf(section ? opening.opener : opening.dialog);
    const QString where =
        section ? QStringLiteral("«%1» de %2").arg(toQt(opening.title), toQt(opening.section.text))
                : QStringLiteral("«%1»").arg(toQt(opening.title));
    std::vector<Bar::Choice> choices;
    bool there = here && node != nullptr;
    if (there && node->hasList() && opening.action == cConstCol::Modificado)
        tried(this, QStringLiteral("La fila no se ha podido leer."),
              [&] { there = host_->has(*node, opening.row); });
    if (there)
        choices.push_back(
            {QStringLiteral("Abrir"), Qt::Key_B, [this, node, opening] { openDraft(*node, opening); }});
    if (!here)
        choices.push_back({QStringLiteral("Traer aquí"), Qt::Key_T, [this, found] {
                               tried(this, QStringLiteral("No se ha podido traer."),
                                     [&] { journal::bringHere(found); });
                               tellDrafts();
                           }});
    choices.push_back({QStringLiteral("Ver"), Qt::Key_R, [this, found] {
                           showDraft(*this,
                                     u"Lo que se escribió y no se guardó, de " + timeOf(found.draft) +
                                         u", junto a lo que había entonces.",
                                     zv::rowsOf(found.draft));
                       }});
    choices.push_back({QStringLiteral("Descartar"), Qt::Key_D, [this, found] {
                           if (zv::asks(*this, discarding(found.draft))) {
                               journal::discard(found.path);
                               notice_.forget(Notice::Drafts::gone);
                           }
                       }});
    const QString origin =
        QStringLiteral(" del centro que está o estaba en «%1»").arg(toQt(opening.origin()));
    notice_.tell(
        {QStringLiteral("Hay %1 sin guardar de %2 en %3%4: %5%6%7")
             .arg(toQt(kindOf(found.draft)), toQt(timeOf(found.draft)), where, here ? QString() : origin,
                  toQt(countOf(found.draft)),
                  there || !here ? QString() : QStringLiteral(". La fila ya no está"), ageOf(found.draft)),
         std::move(choices),
         {},
         found.path});
}

/// Those that this session never offers, and nobody would think of.
void MainWindow::tellForgotten()
{
    const std::size_t old = journal::forgotten(journal::recordedFolder(), oldDays);
    if (old == 0)
        return;
    notice_.tell(
        {QStringLiteral("Hay %1 de hace más de %2 días sin guardar que no %3 de este centro o usuario, o "
                        "que no se %4 leer. «zvconf diario lista» dice de quién, y «zvconf diario "
                        "borrar» %5 borra.")
             .arg(old == 1 ? QStringLiteral("un borrador") : QStringLiteral("%1 borradores").arg(old))
             .arg(oldDays)
             .arg(old == 1 ? QStringLiteral("es") : QStringLiteral("son"),
                  old == 1 ? QStringLiteral("puede") : QStringLiteral("pueden"),
                  old == 1 ? QStringLiteral("lo") : QStringLiteral("los")),
         {},
         {},
         journal::recordedFolder()});
}

void MainWindow::openDraft(const Node& node, const journal::Opening& opening)
{
    go(node);
    if (opening.section.number != 0)
        openSection(opening.section.number);
    else
        openDialog(opening.action, opening.row);
}

} // namespace zv::host
