#pragma once

#include "data/Connection.h"

#include <functional>

namespace zv {

/// RAII guard of a transaction of our own work (making a school, filling it, changing its key); the dialogs
/// use none. The destructor rolls back what was not committed.
class Transaction {
public:
    explicit Transaction(Connection& connection);
    /// Over a callback that runs a statement in the engine's own SQL.
    explicit Transaction(std::function<void(StringView)> run);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    void commit();

private:
    std::function<void(StringView)> run_;
    bool open_ = true;
};

} // namespace zv
