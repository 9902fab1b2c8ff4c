#pragma once

#include "reports/ResponseDialog.h"

namespace zv {

/// Possible answers to the questions of the guidance advice.
class frmRespConsejo final : public ResponseDialog {
public:
    frmRespConsejo();
};

} // namespace zv
