#include "progress/Panel.h"

#include "data/Cells.h"
#include "data/Statement.h"
#include "progress/Classmates.h"
#include "runtime/Convert.h"

#include <algorithm>
#include <tuple>

namespace zv::progress {
namespace {

constexpr Long primaryEducation = 2;
constexpr Long secondaryEducation = 3;
constexpr Long lastTwoYears = 4;

/// Collector of what one report has and lacks.
class Account {
public:
    explicit Account(Report& report) : report_(report) {}

    void part(bool given, StringView name)
    {
        ++report_.expected;
        if (given)
            ++report_.given;
        else
            report_.missing.emplace_back(name);
    }
    /// Parts of one name: those that lack something are named behind it, unless all do.
    void parts(StringView name, const std::vector<String>& lacking, std::size_t all)
    {
        report_.expected += static_cast<Long>(all);
        report_.given += static_cast<Long>(all - lacking.size());
        if (lacking.empty())
            return;
        String text(name);
        if (lacking.size() < all)
            for (const String& each : lacking)
                text += (each == lacking.front() ? u": " : u", ") + each;
        report_.missing.push_back(std::move(text));
    }

private:
    Report& report_;
};

void accountGuidance(const Reading& reading, const Pupil& pupil, Report& report)
{
    Account account(report);
    for (std::size_t question = 0; question < questions; ++question) {
        const bool given = pupil.answers[question] != 0;
        report.begun = report.begun || given;
        if (reading.asked[question])
            account.part(given, reading.questionNames[question]);
    }
}

/// Measures go with difficulties: a family that reads of these wants to know what is done.
void accountCommon(const Pupil& pupil, Report& report)
{
    Account account(report);
    const auto isGiven = [&](StringView name) {
        const auto part = std::ranges::find(textParts, name, &TextPart::name);
        return !isBlank(pupil.texts[static_cast<std::size_t>(part - textParts.begin())]);
    };
    account.part(isGiven(assessment), assessment);
    if (isGiven(difficulties))
        account.part(isGiven(measures), measures);
    report.begun = report.begun || isGiven(difficulties) || isGiven(assessment) || isGiven(measures);
}

/// Of texts without names of their own one is enough.
void accountSecondary(const Pupil& pupil, Report& report)
{
    Account account(report);
    for (std::size_t part = 0; part < firstCommon;) {
        const StringView name = textParts[part].name;
        bool given = false;
        for (; part < firstCommon && textParts[part].name == name; ++part)
            given = given || !isBlank(pupil.texts[part]);
        account.part(given, name);
        report.begun = report.begun || given;
    }
    accountCommon(pupil, report);
}

void accountPrimary(const Reading& reading, const Pupil& pupil, Report& report)
{
    Account account(report);
    for (std::size_t type = 0; type < ratingTabs.size(); ++type) {
        std::vector<String> lacking;
        for (const Subject& subject : pupil.subjects) {
            const bool given = subject.answers[type] != 0;
            report.begun = report.begun || given;
            if (!given)
                lacking.push_back(reading.subjects.at(subject.id));
        }
        if (reading.rated[type])
            account.parts(ratingTabs[type], lacking, pupil.subjects.size());
    }
    accountCommon(pupil, report);
}

/// "Nuevas Actitudes (2)" of texts without names of their own.
String nameOfText(std::size_t part)
{
    const StringView name = textParts[part].name;
    std::size_t first = part;
    while (first > 0 && textParts[first - 1].name == name)
        --first;
    const bool alone = first == part && (part + 1 == textParts.size() || textParts[part + 1].name != name);
    return String(name) +
           (alone ? String() : u" (" + decimalText(static_cast<Long>(part - first + 1)) + u")");
}

/// Pupils of one section, and their names to be sought in one another's texts.
class Classroom {
public:
    explicit Classroom(std::vector<const Pupil*> pupils)
        : pupils_(std::move(pupils)), names_(namesOf(pupils_))
    {}

    const std::vector<const Pupil*>& pupils() const { return pupils_; }

    void addStrangers(const Pupil& pupil, Report& report) const
    {
        const std::size_t first = report.kind == Kind::secondary ? 0 : firstCommon;
        for (std::size_t part = first; part < textParts.size(); ++part)
            for (Mention& each : names_.in(pupil.texts[part], pupil.id)) {
                const auto who = std::ranges::find(pupils_, each.pupil, &Pupil::id);
                report.strangers.push_back(
                    {nameOfText(part), part >= firstCommon, std::move(each.said), each.pupil, nameOf(**who)});
            }
    }

private:
    static std::vector<PupilName> namesOf(const std::vector<const Pupil*>& pupils)
    {
        std::vector<PupilName> result;
        result.reserve(pupils.size());
        for (const Pupil* each : pupils)
            result.push_back({each->id, each->given, each->surname1, each->surname2});
        return result;
    }

    std::vector<const Pupil*> pupils_; ///< Those who have left among them: their texts were copied too.
    Classmates names_;
};

} // namespace

String missingText(const Report& report)
{
    if (!report.begun && !report.isWhole())
        return u"Nada escrito";
    String text;
    for (const String& each : report.missing)
        text += (text.empty() ? u"" : u"; ") + each;
    return text;
}

String strangerText(const Stranger& stranger)
{
    return statement(u"En «{}» dice «{}», y en su sección está {}.",
                     {Value(stranger.part), Value(stranger.said), Value(stranger.name)});
}

bool has(const Section& section, Kind kind)
{
    return kind == Kind::primary    ? section.kind == primaryEducation
           : kind == Kind::guidance ? section.kind == secondaryEducation
                                    : section.kind == secondaryEducation || section.kind == lastTwoYears;
}

bool offers(Kind kind, const Section& section)
{
    if (!has(section, kind))
        return false;
    switch (kind) {
    case Kind::guidance:
        return section.year == 2 || section.year == 4;
    case Kind::secondary:
        return true;
    case Kind::primary:
        return section.endsCycle;
    }
    return false;
}

std::vector<Listed> listed(Kind kind, const std::vector<const Pupil*>& section)
{
    std::vector<Listed> result;
    std::vector<String> numbers;
    for (const Pupil* pupil : section) {
        if (kind != Kind::guidance) {
            if (pupil->paired)
                result.push_back({pupil});
            continue;
        }
        if (pupil->left)
            continue;
        String number = decimalText(pupil->id);
        const bool hidden =
            std::ranges::any_of(numbers, [&](const String& each) { return each.ends_with(number); });
        result.push_back({pupil, hidden});
        if (!hidden)
            numbers.push_back(std::move(number));
    }
    return result;
}

Report reportOf(Kind kind, const Reading& reading, const Pupil& pupil)
{
    Report report{.kind = kind, .section = pupil.section, .pupil = pupil.id, .name = nameOf(pupil)};
    if (kind == Kind::guidance)
        accountGuidance(reading, pupil, report);
    else if (kind == Kind::secondary)
        accountSecondary(pupil, report);
    else
        accountPrimary(reading, pupil, report);
    return report;
}

Panel panel(Connection& centro, const Look& look)
{
    const auto isWanted = [&](Kind kind) { return !look.kind || *look.kind == kind; };
    const Reading reading = read(centro, {.section = look.section,
                                          .guidance = isWanted(Kind::guidance),
                                          .secondary = isWanted(Kind::secondary),
                                          .primary = isWanted(Kind::primary)});
    std::map<Long, std::vector<const Pupil*>> bySection;
    for (const Pupil& pupil : reading.pupils)
        bySection[pupil.section].push_back(&pupil);
    Panel result;
    for (const auto& each : reading.sections)
        if (std::ranges::any_of(kinds,
                                [&](Kind kind) { return isWanted(kind) && offers(kind, each.second); }))
            result.sections.push_back(each.second);
    std::ranges::sort(result.sections, {}, [](const Section& each) {
        return std::tuple(each.kind, each.year, StringView(each.name), each.id);
    });
    for (const Section& section : result.sections) {
        const Classroom classroom(std::move(bySection[section.id]));
        for (const Kind kind : kinds) {
            if (!isWanted(kind) || !offers(kind, section))
                continue;
            for (const auto& [pupil, hidden] : listed(kind, classroom.pupils())) {
                if (pupil->left || hidden)
                    continue;
                result.reports.push_back(reportOf(kind, reading, *pupil));
                if (kind != Kind::guidance)
                    classroom.addStrangers(*pupil, result.reports.back());
            }
        }
    }
    return result;
}

} // namespace zv::progress
