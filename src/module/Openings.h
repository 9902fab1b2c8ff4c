#pragma once

#include "data/Connection.h"
#include "forms/FormObserver.h"

namespace zv {

/// Observer of the dialogs: tells the school's connection which dialog a person has before him, so that a
/// history can say who wrote what from where. A single instance, so that a reset forgets what was open.
class Openings final : public FormObserver {
public:
    void loading(Form& form) override;
    void unloaded(Form& form) override;
    void atRest(Form& form) override;

private:
    struct Open {
        const Form* form;
        ConnectionPtr centro; ///< The session's when it opened; a host may hand over another meanwhile.
    };
    std::vector<Open> stack_;
};

} // namespace zv
