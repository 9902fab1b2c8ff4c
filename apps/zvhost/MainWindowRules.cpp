// What a report's dialog will do to the rows of a section, told before it opens.
#include "care/Rules.h"
#include "qt/QtText.h"
#include "session/cNombreNodo.h"
#include "zvhost/ListDialog.h"
#include "zvhost/MainWindow.h"

namespace zv::host {
namespace {

using care::Finding;

constexpr ListColumn columns[] = {{u"Qué pasará"}, {u"Qué hacer"}};

void showFindings(QWidget* parent, const std::vector<Finding>& findings)
{
    ListDialog dialog(parent, QStringLiteral("Antes de abrir la sección"), columns, [&] {
        std::vector<Row> rows;
        for (const Finding& each : findings)
            rows.push_back({static_cast<Long>(rows.size()), {Value(each.text), Value(each.remedy)}});
        return rows;
    });
    dialog.setObjectName(QStringLiteral("reglas"));
    dialog.run(QStringLiteral("No hay nada que avisar."));
}

} // namespace

/// An extra over the dialog: where the rows cannot be read, nothing is told. Each finding once, until another
/// school is opened.
void MainWindow::tellRules(Long section)
{
    std::vector<Finding> findings;
    try {
        const bool guidance = node_->number == cNombreNodo::NotaConsejoOrientador;
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
    notice_.tell(
        {.text = text,
         .choices = {{QStringLiteral("Ver"), Qt::Key_R, [this, findings] { showFindings(this, findings); }}},
         .foretells = true});
}

} // namespace zv::host
