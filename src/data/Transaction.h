#pragma once

#include "data/Connection.h"

#include <functional>

namespace zv {

/// A transaction of our own work (making a school, filling it, changing its key); the dialogs know none. What
/// was not committed when the object goes is rolled back, however that happens.
class Transaction {
public:
    explicit Transaction(Connection& connection);
    /// Of whatever runs a statement in the engine's own SQL.
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
