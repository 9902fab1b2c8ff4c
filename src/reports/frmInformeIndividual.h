#pragma once

#include "reports/SelectionDialog.h"

namespace zv {

/// The section whose individual reports are written: kind of teaching 2 leads to the primary report, 3 and 4
/// to the secondary one.
class frmInformeIndividual final : public SelectionDialog {
public:
    frmInformeIndividual();

private:
    StringView kindsOfAll() const override;
    StringView kindsOfUser() const override;
    String coursesOfAll(Long kind) const override;
    String coursesOfUser(Long kind) const override;
    void showStepTwo() override;
};

} // namespace zv
