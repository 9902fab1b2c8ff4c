#pragma once

#include "robot/Guion.h"

namespace zv {

/// Recorder of what was observed, command by command, and its comparison with the guion's file.
class Transcript {
public:
    explicit Transcript(const Guion& guion) : guion_(guion) {}

    /// The next command was read.
    void begin()
    {
        observed_.emplace_back();
        inSteps_ = false;
    }
    /// Takes down a line, without "> ", under the command that was read last.
    void observe(StringView line);
    /// Takes down a step: steps in a row share a line.
    void observeStep(StringView step);
    std::size_t commandsRead() const { return observed_.size(); }
    /// The lines recorded under the current command.
    std::vector<String> lastObserved() const
    {
        return observed_.empty() ? std::vector<String>() : observed_.back();
    }

    /// The file rewritten: its lines up to the last command that was read, with the expectations replaced by
    /// what was observed. An expectation with "{*}" that matches stays.
    String text() const;

    struct Difference {
        std::size_t line = 0;
        String expected; ///< A whole line; "" where none was expected.
        String seen;     ///< A whole line; "" where none was seen.
    };
    /// The first difference under each command.
    std::vector<Difference> differences() const;

private:
    struct Block;
    std::vector<Block> blocks() const;
    const Guion& guion_;
    std::vector<std::vector<String>> observed_;
    bool inSteps_ = false; ///< The last line observed is one of steps.
};

/// Pattern match, where "{*}" in `expected` is the wildcard for any run of characters.
bool fits(StringView expected, StringView seen);

} // namespace zv
