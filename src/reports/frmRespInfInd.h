#pragma once

#include "reports/ResponseDialog.h"

namespace zv {

/// Possible answers of the types of rating of the primary report.
class frmRespInfInd final : public ResponseDialog {
public:
    frmRespInfInd();
};

} // namespace zv
