#pragma once

#include "data/Engine.h"

#include "data/NumberOf.h"

namespace zv {

/// An engine and a fresh, empty database of it.
class OneDatabase : public testing::Test {
protected:
    OneDatabase(std::unique_ptr<Engine> ofKind, StringView location)
        : engine(std::move(ofKind)), base(engine->temporary(location, Database::centro))
    {}
    /// The first column of the rows, a blank behind each.
    String all(StringView statement) const
    {
        String result;
        for (const RecordsetPtr rows = base->Execute(statement); !rows->Eof(); rows->MoveNext())
            result += CStr(rows->row().front()) + u" ";
        return result;
    }
    struct Case {
        StringView statement;
        std::int32_t number;
    };
    void expectNumbers(std::initializer_list<Case> cases) const
    {
        for (const Case& each : cases)
            EXPECT_EQ(numberOf([&] { base->Execute(each.statement); }), each.number)
                << toUtf8(each.statement);
    }

    std::unique_ptr<Engine> engine;
    ConnectionPtr base;
};

} // namespace zv
