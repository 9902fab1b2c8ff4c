#pragma once

#include "reports/SelectionDialog.h"

namespace zv {

/// The section whose guidance advice is entered: kind of teaching 3, years 2 and 4.
class frmConsejoOrientador1 final : public SelectionDialog {
public:
    frmConsejoOrientador1();

private:
    StringView kindsOfAll() const override;
    StringView kindsOfUser() const override;
    String coursesOfAll(Long kind) const override;
    String coursesOfUser(Long kind) const override;
    void showStepTwo() override;
};

} // namespace zv
