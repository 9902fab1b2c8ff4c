#pragma once

#include "data/sqlite/Handle.h"
#include "data/sqlite/Parameters.h"

namespace zv::sqlite {

/// A statement made ready to run. One that is empty, or more than one, fails as badStatement.
StatementPtr prepare(sqlite3* handle, StringView statement);
/// Gives a prepared statement its values, which stay where they are until it has run.
void bind(sqlite3_stmt* statement, const Parameters& parameters);

/// The rows of a statement that runs on a handle.
class StatementRows final : public Cursor {
public:
    /// `parameters` belong to the statement where it may run again with others.
    StatementRows(std::shared_ptr<Handle> handle, StatementPtr prepared, StringView statement,
                  std::optional<Parameters> parameters);
    ~StatementRows() override;
    bool onlyReads() const override { return onlyReads_; }

private:
    bool read(Row& row) override;
    void finish() override;
    void readNames();

    std::shared_ptr<Handle> handle_;
    StatementPtr prepared_;
    String statement_;
    std::optional<Parameters> parameters_;
    bool onlyReads_ = true;
};

} // namespace zv::sqlite
