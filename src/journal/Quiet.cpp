#include "journal/Quiet.h"

#include <utility>

namespace zv::journal {

Quiet::Quiet(Inner opened) : inner(std::move(opened)), behind_(desktop()) { useDesktop(this); }

Quiet::~Quiet() { useDesktop(&behind_); }

void Quiet::handOver(Form& form)
{
    useDesktop(&behind_);
    behind_.runModal(form);
    useDesktop(this);
}

} // namespace zv::journal
