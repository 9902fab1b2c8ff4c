#pragma once

#include "runtime/String.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <string>

namespace zv {

/// Numbers of the failures that the language itself knows.
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

/// A failing statement. The description is Spanish, for a person; `what()` is the same in UTF-8.
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

/// Fails with one of the numbers above and its ordinary description; `detail` (a member's name, say) is put
/// behind it.
[[noreturn]] void fail(std::int32_t number, StringView detail = {});

/// The one global error state.
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

/// The resume-next mode of a routine: each statement runs guarded, and a failure is abandoned and left in
/// Err. Entering the mode (constructing) clears Err, and so does leave(); a statement that succeeds does not,
/// and neither does the return from the routine (destruction).
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
    /// The condition of an `If`: one that fails runs the branch behind it, so it counts as true.
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
