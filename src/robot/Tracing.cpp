#include "robot/Tracing.h"

#include "forms/Form.h"
#include "robot/ValueText.h"
#include "runtime/Letters.h"

#include <algorithm>

namespace zv {

namespace {

String onOneLine(StringView text) { return Replace(Replace(text, u"\r", u"\\r"), u"\n", u"\\n"); }

/// Formats an argument; "" for one that is omitted from the trace.
String shown(const Value& value)
{
    if (const auto* text = value.as<String>())
        return onOneLine(*text);
    const auto* object = value.as<ObjectPtr>();
    if (!object || !*object)
        return valueText(value);
    if (const auto* control = dynamic_cast<const Control*>(object->get()))
        return control->fullName();
    if (const auto* form = dynamic_cast<const Form*>(object->get()))
        return form->Name();
    const bool leftOut = dynamic_cast<const Connection*>(object->get()) != nullptr ||
                         dynamic_cast<const ControlList*>(object->get()) != nullptr;
    return leftOut ? String() : valueText(value);
}

/// Spends one of the pending failures: the oldest that matches, if any.
template <class Match>
void failIfPending(Tracing::Failures& failures, StringView statement, Match&& matches)
{
    const auto pending = std::ranges::find_if(failures, matches, &Tracing::Failure::pattern);
    if (pending == failures.end())
        return;
    const std::int32_t number = pending->number;
    if (--pending->times == 0)
        failures.erase(pending);
    throw DataError(number, {}, u"provocado por el guion", statement);
}

void failIfBroken(Tracing& tracing, StringView operation)
{
    failIfPending(tracing.apiFailures, operation,
                  [&](const String& pattern) { return sameName(pattern, operation); });
}

class TracedRecordset final : public Recordset {
public:
    TracedRecordset(RecordsetPtr inner, const Tracing& tracing) : inner_(std::move(inner)), tracing_(tracing)
    {}
    bool Eof() override { return inner_->Eof(); }
    void MoveNext() override { inner_->MoveNext(); }
    void MoveFirst() override { inner_->MoveFirst(); }
    Value Fields(StringView name) override { return inner_->Fields(name); }
    std::vector<Value> row() override { return inner_->row(); }
    Long State() const override { return inner_->State(); }
    void Close() override
    {
        inner_->Close();
        tracing_.step(u"cierre");
    }

private:
    RecordsetPtr inner_;
    const Tracing& tracing_;
};

class TracedApi final : public Object {
public:
    TracedApi(ObjectPtr inner, Tracing& tracing) : inner_(std::move(inner)), tracing_(tracing) {}

    StringView TypeName() const override { return inner_->TypeName(); }
    Value invoke(StringView member, Access access, Arguments& arguments) override
    {
        String line = u"api " + String(member);
        for (const Value& each : arguments)
            if (const String text = shown(each); !text.empty())
                line += u" " + text;
        Value result;
        try {
            failIfBroken(tracing_, member);
            result = forward(member, access, arguments);
        } catch (const RuntimeError&) {
            observe(line);
            throw;
        }
        if (!result.isEmpty())
            line += u" = " + valueText(result);
        observe(line);
        return result;
    }

private:
    /// Copies by-reference arguments back, except those in which a traced connection was unwrapped.
    Value forward(StringView member, Access access, Arguments& arguments)
    {
        Arguments passed = arguments;
        std::vector<bool> replaced(arguments.size());
        for (std::size_t i = 0; i < passed.size(); ++i)
            if (const auto* object = passed[i].as<ObjectPtr>())
                if (const auto* traced = dynamic_cast<const TracedConnection*>(object->get())) {
                    passed[i] = Value(traced->inner());
                    replaced[i] = true;
                }
        Value result = inner_->invoke(member, access, passed);
        for (std::size_t i = 0; i < std::min(passed.size(), arguments.size()); ++i)
            if (!replaced[i])
                arguments[i] = passed[i];
        return result;
    }

    void observe(StringView line)
    {
        if (tracing_.api)
            tracing_.observe(line);
    }

    ObjectPtr inner_;
    Tracing& tracing_;
};

} // namespace

RecordsetPtr TracedConnection::Execute(StringView statement)
{
    if (tracing_.sql)
        tracing_.observe(u"sql " + onOneLine(statement));
    if (!tracing_.failures.empty()) {
        const String lower = lowerLetters(statement);
        failIfPending(tracing_.failures, statement, [&](const String& pattern) {
            return lower.find(lowerLetters(pattern)) != String::npos;
        });
    }
    return std::make_shared<TracedRecordset>(inner()->Execute(statement), tracing_);
}

ObjectFactory tracedApi(ObjectFactory inner, Tracing& tracing)
{
    return [inner = std::move(inner), &tracing]() -> ObjectPtr {
        tracing.step(u"objeto");
        failIfBroken(tracing, Tracing::creation);
        ObjectPtr object = inner();
        return object ? std::make_shared<TracedApi>(std::move(object), tracing) : nullptr;
    };
}

} // namespace zv
