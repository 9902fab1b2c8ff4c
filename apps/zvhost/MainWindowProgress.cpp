// What the reports lack, by section and pupil, and the way from there into each.
#include "qt/QtText.h"
#include "runtime/Convert.h"
#include "session/cNombreNodo.h"
#include "zvhost/MainWindow.h"

#include <algorithm>

namespace zv::host {
namespace {

using progress::Kind;
using progress::Report;

const Node& nodeOfKind(Kind kind)
{
    return *nodeOf(kind == Kind::guidance ? cNombreNodo::NotaConsejoOrientador : cNombreNodo::InfIndiv);
}

std::vector<Value> cellsOf(const Report& report, const Section& section)
{
    String strangers;
    for (const progress::Stranger& each : report.strangers)
        strangers += (strangers.empty() ? u"" : u" ") + strangerText(each);
    return {Value(section.name + u" (" + section.courseName + u")"),
            Value(report.name),
            Value(nameOf(report.kind)),
            Value(decimalText(report.given) + u" de " + decimalText(report.expected)),
            Value(report.isWhole() ? String() : missingText(report)),
            Value(strangers)};
}

} // namespace

std::vector<Row> MainWindow::readProgress()
{
    sections_.clear();
    for (const Kind kind : {Kind::guidance, Kind::secondary})
        for (Section& each : offeredSections(*host_, nodeOfKind(kind)))
            sections_.push_back(std::move(each));
    reports_ = progress::panel(*host_->school().centro).reports;
    std::vector<Row> rows;
    std::size_t lacking = 0;
    for (const Report& each : reports_)
        if (const auto section = std::ranges::find(sections_, each.section, &Section::id);
            section != sections_.end()) {
            // Stable while the list is read again.
            const auto next = static_cast<Long>(reportKeys_.size());
            rows.push_back({reportKeys_.try_emplace({each.kind, each.pupil}, next).first->second,
                            cellsOf(each, *section)});
            lacking += each.isWhole() ? 0U : 1U;
        }
    tree_.note(progressNode(), lacking == 0 ? QString() : QString::number(lacking));
    return rows;
}

void MainWindow::openReport(Long row)
{
    const auto report = std::ranges::find_if(reports_, [&](const Report& each) {
        const auto key = reportKeys_.find({each.kind, each.pupil});
        return key != reportKeys_.end() && key->second == row;
    });
    if (report == reports_.end())
        return;
    const Node& node = nodeOfKind(report->kind);
    const auto section = std::ranges::find(sections_, report->section, &Section::id);
    if (!mayWrite(toQt(node.name)))
        return;
    tellRules(node, report->section);
    // Runs in the window's own loop, which begins once it is shown.
    QTimer::singleShot(0, this, [chosen = *section, pupil = report->pupil] { chooseSection(chosen, pupil); });
    openDialog(node, cConstCol::NUEVO, 0);
}

} // namespace zv::host
