#pragma once

#include "data/sqlite/Handle.h"
#include "data/sqlite/Parameters.h"

namespace zv::sqlite {

/// Prepares a statement. One that is empty, or more than one, fails as badStatement.
StatementPtr prepare(sqlite3* handle, StringView statement);
/// Binds the values, which must stay where they are until the statement has run.
void bind(sqlite3_stmt* statement, const Parameters& parameters);

/// Cursor of a prepared statement that runs on a handle.
class StatementRows final : public Cursor {
public:
    /// With `parameters` the prepared statement goes back to the cache.
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
