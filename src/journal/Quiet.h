#pragma once

#include "forms/Desktop.h"

#include <functional>

namespace zv::journal {

/// Decorator of the desktop while a draft is typed in: windows follow, but nothing is said and nobody is
/// waited for. A dialog that an act opens is handed to a callback instead of to a person.
class Quiet final : public Desktop {
public:
    using Inner = std::function<void(Form&)>;
    /// Takes the current desktop's place until destroyed.
    explicit Quiet(Inner opened);
    ~Quiet() override;
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

    /// What becomes of a dialog that opens.
    Inner inner;
    /// Lets the person go on in a dialog, who sees and hears all again meanwhile.
    void handOver(Form& form);

    void opened(Form& form) override { behind_.opened(form); }
    void runModal(Form& form) override { inner(form); }
    void closed(Form& form) override { behind_.closed(form); }
    void messageBox(StringView /*prompt*/, Integer /*flags*/, StringView /*title*/) override {}
    void beep() override {}
    void doEvents() override { behind_.doEvents(); }
    void working() override { behind_.working(); }
    void handlerFailed(const RuntimeError& /*error*/) override {}
    Long textWidth(StringView text) override { return behind_.textWidth(text); }
    void changed(PropertyOwner& owner, const PropertyBase* property) override
    {
        behind_.changed(owner, property);
    }

private:
    Desktop& behind_;
};

} // namespace zv::journal
