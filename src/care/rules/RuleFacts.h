#pragma once

#include "care/rules/Findings.h"
#include "data/Cells.h"
#include "data/Engine.h"
#include "progress/Panel.h"

#include <map>
#include <memory>
#include <span>
#include <unordered_map>

namespace zv::care {

using Rows = std::vector<std::vector<Value>>;

using progress::Kind;
using progress::Section;

struct Pupil {
    Long id = 0;
    Long section = 0;
    bool left = false;
    bool blank = false; ///< A part of the name is Null, and so the joined name.
    String name;
};

/// Note of the guidance advice.
struct Note {
    Long key = 0;
    Long pupil = 0;
    Long section = 0;
    Long answer = 0;
    Long question = 0;
    bool broken = false; ///< A number is missing that the dialog needs.
};

/// Possible answer, of a question of the guidance or of a type of rating.
struct Answer {
    Long question = 0;
    String text;
    bool missing = false; ///< The text is Null.
};
using Answers = std::unordered_map<Long, Answer>;

/// Cache of what the rules read: a query runs once, however many ask.
class Facts {
public:
    Facts(School school, Long onlySection, Decipher decipher)
        : school_(std::move(school)), only_(onlySection), decipher_(std::move(decipher))
    {}

    const Rows& rows(StringView query, Database which = Database::centro);
    Connection& centro() { return *school_.centro; }
    const Decipher& decipher() const { return decipher_; }
    Long onlySection() const { return only_; }
    /// Whether a section is to be looked at.
    bool looksAt(Long section) const { return only_ == 0 || only_ == section; }
    /// Condition that a pupil's column belongs to the section that is looked at; "" for the whole school.
    String ofSection(StringView pupilColumn) const;

    /// All pupils, ordered as the dialogs list them.
    const std::vector<Pupil>& pupils();
    const Pupil* pupil(Long id);
    /// Named with their course, "2º A (2º de ESO)". What ends a cycle is not read: offers() answers for
    /// guidance alone.
    const std::map<Long, Section>& sections();
    /// An unknown section is one of no kind.
    const Section& section(Long id);
    const std::vector<Note>& notes();
    const Answers& answers();       ///< Of the guidance.
    const Answers& ratingAnswers(); ///< Of the primary report.
    /// Texts of a table by its key, for names; `column` the second of them.
    const std::map<Long, String>& names(StringView table, StringView key, StringView column,
                                        Database which = Database::centro);

private:
    template <class Kept, class Make>
    const Kept& once(std::unique_ptr<Kept>& kept, Make make)
    {
        if (!kept)
            kept = std::make_unique<Kept>(make());
        return *kept;
    }

    School school_;
    Long only_;
    Decipher decipher_;
    std::map<std::pair<Database, String>, Rows> rows_;
    std::map<std::pair<Database, String>, std::map<Long, String>> names_;
    std::unique_ptr<std::vector<Pupil>> pupils_;
    std::unique_ptr<std::unordered_map<Long, std::size_t>> places_;
    std::unique_ptr<std::map<Long, Section>> sections_;
    std::unique_ptr<std::vector<Note>> notes_;
    std::unique_ptr<Answers> answers_, ratingAnswers_;
};

/// Collector of one rule's findings.
class Found {
public:
    Found(StringView rule, bool advice, std::vector<Finding>& all) : rule_(rule), advice_(advice), all_(all)
    {}
    Finding& add(StringView table, Long row, String text, String remedy);

private:
    StringView rule_;
    bool advice_;
    std::vector<Finding>& all_;
};

/// A rule: what it is called, whose dialogs it speaks of, and how it looks.
struct Rule {
    StringView name;
    Area area;
    bool advice;
    void (*look)(Facts& facts, Found& found);
};

std::span<const Rule> guidanceRules();
std::span<const Rule> reportRules();
std::span<const Rule> bankRules();
std::span<const Rule> listRules();

/// Between «».
String inQuotes(StringView text);
/// "a, b y c"
String listed(const std::vector<String>& words);
/// Its text between «», or "número 7" for an answer that is not there.
String named(const Answers& answers, Long key);

} // namespace zv::care
