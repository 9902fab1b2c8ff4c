#include "data/history/Rows.h"

namespace zv::history {

String keyOf(const schema::Table& table, const Fields& fields)
{
    Fields key;
    for (const schema::Column& each : keyColumns(table))
        if (const Value* value = valueOf(fields, each.name))
            key.push_back({String(each.name), *value});
    return key.size() == table.keyColumns ? conditionOf(key) : String();
}

std::vector<Fields> rowsOf(Connection& centro, StringView table, const std::vector<String>& columns,
                           StringView condition)
{
    String query = u"SELECT ";
    for (const String& each : columns)
        query += (&each == &columns.front() ? u"" : u", ") + each;
    query += u" FROM " + String(table);
    if (!condition.empty())
        query += u" WHERE " + String(condition);
    std::vector<Fields> result;
    for (const RecordsetPtr rows = centro.Execute(query); !rows->Eof(); rows->MoveNext()) {
        const std::vector<Value> values = rows->row();
        Fields& fields = result.emplace_back();
        fields.reserve(values.size());
        for (std::size_t i = 0; i < values.size(); ++i)
            fields.push_back({columns[i], values[i]});
    }
    return result;
}

} // namespace zv::history
