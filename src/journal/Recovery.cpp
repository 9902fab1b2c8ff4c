#include "journal/Recovery.h"

#include "forms/Form.h"
#include "journal/Typist.h"
#include "journal/Watch.h"

namespace zv::journal {

Recovery::Recovery(Form& form, Person& person, const Draft& draft)
    : form_(form), person_(person), draft_(draft)
{}

std::vector<Item> Recovery::go(bool typing)
{
    const View was = Watch(form_).view();
    // A dialog that no step has foreseen is left at once.
    Quiet quiet([this](Form& inner) { person_.close(inner); });
    Typist typist(form_, person_, quiet, draft_, typing);
    typist.follow(draft_.steps);
    if (typing)
        typist.settle();
    typist.show(typing ? draft_.view : was);
    return std::move(typist.items);
}

std::vector<Item> Recovery::preview() { return go(false); }

std::vector<Item> Recovery::run() { return go(true); }

std::vector<Item> Recovery::left(std::vector<Item> items)
{
    std::erase_if(items,
                  [](const Item& item) { return item.fate == Fate::stored || item.fate == Fate::typed; });
    return items;
}

} // namespace zv::journal
