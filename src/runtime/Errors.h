#pragma once

#include "runtime/String.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <string>

namespace zv {

/// Error numbers of the language itself.
namespace failure {
inline constexpr std::int32_t invalidCall = 5;
inline constexpr std::int32_t overflow = 6;
inline constexpr std::int32_t indexOutside = 9;
inline constexpr std::int32_t divisionByZero = 11;
inline constexpr std::int32_t typeMismatch = 13;
inline constexpr std::int32_t fileMissing = 53;
inline constexpr std::int32_t noObject = 91;
inline constexpr std::int32_t invalidNull = 94;
inline constexpr std::int32_t resourceMissing = 326;
inline constexpr std::int32_t noArrayElement = 340;
inline constexpr std::int32_t invalidProperty = 380;
inline constexpr std::int32_t listIndexOutside = 381;
inline constexpr std::int32_t readOnlyProperty = 383;
inline constexpr std::int32_t classMissing = 429;
inline constexpr std::int32_t memberMissing = 438;
inline constexpr std::int32_t argumentCount = 450;
inline constexpr std::int32_t keyTaken = 457;
inline constexpr std::int32_t noPicture = 481;
} // namespace failure

/// Exception of a failing statement. The description is Spanish, for a person; `what()` is the same in UTF-8.
class RuntimeError : public std::exception {
public:
    RuntimeError(std::int32_t number, String description);
    std::int32_t number() const { return number_; }
    const String& description() const { return description_; }
    const char* what() const noexcept override { return what_.c_str(); }

private:
    std::int32_t number_;
    String description_;
    std::string what_;
};

/// Throws a RuntimeError with one of the numbers above and its standard description; `detail` (a member's
/// name, say) is appended.
[[noreturn]] void fail(std::int32_t number, StringView detail = {});

/// Global error state: number and description of the last abandoned failure.
class ErrState {
public:
    std::int32_t Number = 0;
    String Description;
    void Clear();
    void set(const RuntimeError& error);
    /// Observer callback, for a trace: a failure was left here (its number), or one was cleared (0).
    std::function<void(std::int32_t)> changed;
};
ErrState& Err();

/// Resume-next mode of a routine: each statement runs in a try block of its own, and a failure is abandoned
/// and left in Err. Entering the mode (constructing) clears Err, and so does leave(); a statement that
/// succeeds does not, and neither does the return from the routine (destruction).
class ResumeNext {
public:
    ResumeNext();
    /// Runs one statement. True if it succeeded.
    template <class Statement>
    bool operator()(Statement&& statement)
    {
        try {
            statement();
            return true;
        } catch (const RuntimeError& error) {
            Err().set(error);
            return false;
        }
    }
    /// Condition of an `If`. A failing one counts as true: execution resumes at the next statement, which is
    /// the first of the branch.
    template <class Condition>
    bool condition(Condition&& test)
    {
        bool result = true;
        (*this)([&] { result = test(); });
        return result;
    }
    /// Ends the mode before the routine ends.
    static void leave();
};

} // namespace zv
