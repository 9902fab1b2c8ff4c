#pragma once

#include "runtime/Errors.h"

namespace zv {

/// Error numbers of a database, the same for every engine.
namespace failure {
inline constexpr std::int32_t keyExists = -2147467259;
inline constexpr std::int32_t badStatement = -2147217900;
inline constexpr std::int32_t tableMissing = -2147217865;
inline constexpr std::int32_t columnMissing = -2147217904;
inline constexpr std::int32_t brokenConstraint = -2147217873;
inline constexpr std::int32_t locked = -2147217871;
inline constexpr std::int32_t otherData = -2147217887;
inline constexpr std::int32_t closedRecordset = 3704;
inline constexpr std::int32_t connectionLost = 3709;
inline constexpr std::int32_t noRow = 3021;
inline constexpr std::int32_t unknownField = 3265;
} // namespace failure

/// Whether a statement failed because a table or a column is missing, which a school made elsewhere need not
/// have.
bool isLacking(const RuntimeError& error);

/// No connection, and no waiting helps: this machine lacks what it takes, or the server does not know the
/// person. A server may lock who asks again with a wrong password.
class LastingFailure : public RuntimeError {
public:
    using RuntimeError::RuntimeError;
};

/// A statement that a database refused: our number, and the engine's own code and words.
class DataError : public RuntimeError {
public:
    DataError(std::int32_t number, std::string engineCode, StringView engineText, StringView statement);
    const std::string& engineCode() const { return engineCode_; }
    const String& engineText() const { return engineText_; }
    const String& statement() const { return statement_; }

private:
    std::string engineCode_;
    String engineText_;
    String statement_;
};

} // namespace zv
