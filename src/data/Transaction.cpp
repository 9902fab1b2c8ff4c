#include "data/Transaction.h"

namespace zv {

Transaction::Transaction(Connection& connection)
    : Transaction([&connection](StringView statement) { connection.executeNative(statement); })
{}

Transaction::Transaction(std::function<void(StringView)> run) : run_(std::move(run)) { run_(u"BEGIN"); }

Transaction::~Transaction()
{
    if (!open_)
        return;
    try {
        run_(u"ROLLBACK");
    } catch (const RuntimeError&) {
        // Best effort: a lost connection has rolled back by itself.
    }
}

void Transaction::commit()
{
    run_(u"COMMIT");
    open_ = false;
}

} // namespace zv
