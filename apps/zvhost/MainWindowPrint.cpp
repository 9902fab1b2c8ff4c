// The window's reports on paper.
#include "session/cNombreNodo.h"
#include "zvhost/MainWindow.h"
#include "zvhost/PrintDialog.h"

#include <algorithm>

namespace zv::host {
namespace {

constexpr Long primary = 2;

} // namespace

void MainWindow::print()
{
    const std::optional<Long> id = page_.selected();
    const auto section = std::ranges::find(sections_, id.value_or(0), &Section::id);
    if (section == sections_.end())
        return;
    const paper::Kind kind = node_->number == cNombreNodo::NotaConsejoOrientador ? paper::Kind::guidance
                             : section->kind == primary                          ? paper::Kind::primary
                                                                                 : paper::Kind::secondary;
    PrintDialog(this, *host_, memory_, kind, section->id).exec();
    page_.enter();
}

} // namespace zv::host
