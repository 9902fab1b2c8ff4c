// What a report's dialog will do to the rows of a section, told before it opens.
#include "care/rules/Rules.h"
#include "qt/QtText.h"
#include "session/cNombreNodo.h"
#include "zvhost/ListDialog.h"
#include "zvhost/MainWindow.h"

#include <algorithm>

namespace zv::host {
namespace {

using care::Finding;

constexpr ListColumn columns[] = {{u"Qué pasará"}, {u"Qué hacer"}};

void showFindings(QWidget* parent, const std::vector<Finding>& findings, bool offered)
{
    ListDialog dialog(parent, QStringLiteral("Antes de abrir la sección"), columns, [&] {
        std::vector<Row> rows;
        rows.reserve(findings.size());
        for (const Finding& each : findings)
            rows.push_back(
                {static_cast<Long>(rows.size()),
                 {Value(each.text),
                  Value(each.remedy + (each.repair && offered ? u" (Lo hace «Reparar».)" : u""))}});
        return rows;
    });
    dialog.setObjectName(QStringLiteral("reglas"));
    dialog.run(QStringLiteral("No hay nada que avisar."));
}

} // namespace

/// An extra over the dialog: where the rows cannot be read, nothing is told. Each finding once, until another
/// school is opened.
void MainWindow::tellRules(const Node& node, Long section)
{
    std::vector<Finding> findings;
    try {
        const bool guidance = node.number == cNombreNodo::NotaConsejoOrientador;
        findings =
            care::survey(host_->school(),
                         {.area = guidance ? care::Area::guidance : care::Area::reports, .section = section})
                .findings;
    } catch (const RuntimeError&) {
        return;
    }
    std::erase_if(findings, [&](const Finding& each) { return !toldRules_.insert(each.text).second; });
    if (findings.empty())
        return;
    QString text = toQt(findings.front().text) + u' ' + toQt(findings.front().remedy);
    if (const std::size_t more = findings.size() - 1; more > 0)
        text += more == 1 ? QStringLiteral(" Y otro aviso de esta sección.")
                          : QStringLiteral(" Y otros %1 avisos de esta sección.").arg(more);
    const bool repairs = !host_->choices().readOnly && std::ranges::any_of(findings, [](const Finding& each) {
        return each.repair != nullptr;
    });
    std::vector<Bar::Choice> choices{{QStringLiteral("Ver"), Qt::Key_R,
                                      [this, findings, repairs] { showFindings(this, findings, repairs); }}};
    if (repairs)
        choices.push_back(
            {QStringLiteral("Reparar"), Qt::Key_P, [this, findings] { repairRules(findings); }});
    notice_.tell({.text = text, .choices = choices, .foretells = true});
}

void MainWindow::repairRules(const std::vector<Finding>& findings)
{
    std::size_t done = 0;
    Long act = 0;
    if (!changes(QStringLiteral("No se ha podido reparar."),
                 [&] { act = host_->act([&] { done = care::repair(host_->school(), findings).size(); }); }))
        return;
    notice_.next();
    tellAct(done == 0   ? QStringLiteral("Ya no había nada que reparar")
            : done == 1 ? QStringLiteral("Se ha reparado 1 fallo")
                        : QStringLiteral("Se han reparado %1 fallos").arg(done),
            act);
}

} // namespace zv::host
