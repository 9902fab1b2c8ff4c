#include "care/rules/Rules.h"

#include "care/rules/RuleFacts.h"
#include "data/DataError.h"
#include "data/Transaction.h"

#include <algorithm>
#include <array>

namespace zv::care {
namespace {

std::array<std::span<const Rule>, 4> allRules()
{
    return {guidanceRules(), reportRules(), bankRules(), listRules()};
}

Survey lookBy(const School& school, const Look& how, const std::function<bool(const Rule&)>& wanted)
{
    Facts facts(school, how.section, how.decipher);
    Survey result;
    for (const std::span<const Rule> rules : allRules())
        for (const Rule& rule : rules) {
            if (!wanted(rule))
                continue;
            const std::size_t before = result.findings.size();
            try {
                Found found(rule.name, rule.advice, result.findings);
                rule.look(facts, found);
            } catch (const DataError& error) {
                if (!isLacking(error))
                    throw;
                result.findings.resize(before);
                result.skipped.push_back(rule.name);
            }
        }
    return result;
}

} // namespace

std::vector<StringView> ruleNames()
{
    std::vector<StringView> names;
    for (const std::span<const Rule> rules : allRules())
        for (const Rule& rule : rules)
            names.push_back(rule.name);
    return names;
}

Survey survey(const School& school, const Look& look)
{
    return lookBy(school, look, [&](const Rule& rule) { return !look.area || rule.area == *look.area; });
}

std::vector<Finding> repair(const School& school, const std::vector<Finding>& named)
{
    const auto isNamed = [&](const Finding& one) {
        return std::ranges::any_of(named, [&](const Finding& each) {
            return each.repair && each.rule == one.rule && each.text == one.text;
        });
    };
    Transaction transaction(*school.centro);
    std::vector<Finding> done;
    const Survey now = lookBy(school, {}, [&](const Rule& rule) {
        return std::ranges::any_of(
            named, [&](const Finding& each) { return each.repair && each.rule == rule.name; });
    });
    for (const Finding& each : now.findings)
        if (each.repair && isNamed(each)) {
            each.repair(*school.centro);
            done.push_back(each);
        }
    transaction.commit();
    return done;
}

} // namespace zv::care
