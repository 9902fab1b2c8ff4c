#include "zvconf/Command.h"

#include "data/Engine.h"

#include <algorithm>

namespace zv::zvconf {

Options::Options(Arguments arguments, std::span<const Option> known, std::size_t mostOperands)
{
    while (!arguments.empty()) {
        const String& name = arguments.front();
        if (!name.starts_with(u"--") && operands_.size() < mostOperands) {
            operands_.push_back(name);
            arguments = arguments.subspan(1);
            continue;
        }
        const auto option = std::ranges::find(known, StringView(name), &Option::name);
        if (option == known.end())
            throw UsageError(u"«" + withoutPassword(name) + u"» no es una opción de esta orden.");
        arguments = arguments.subspan(1);
        if (arguments.size() < option->values)
            throw UsageError(u"A " + name + u" le falta su valor.");
        const Arguments values = arguments.first(option->values);
        if (std::ranges::find(values, u"") != values.end())
            throw UsageError(u"A " + name + u" le falta su valor: está vacío.");
        if (!given_.try_emplace(name, values.begin(), values.end()).second)
            throw UsageError(name + u" está dos veces.");
        arguments = arguments.subspan(option->values);
    }
}

const std::vector<String>& Options::values(StringView name) const
{
    const auto option = given_.find(name);
    if (option == given_.end())
        throw UsageError(u"Falta " + String(name) + u".");
    return option->second;
}

const String& Options::operand(std::size_t place, StringView what) const
{
    if (place >= operands_.size() || operands_[place].empty())
        throw UsageError(u"Falta " + String(what) + u".");
    return operands_[place];
}

} // namespace zv::zvconf
