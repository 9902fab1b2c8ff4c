#include "robot/Tracing.h"

#include "forms/Form.h"
#include "robot/ValueText.h"

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
    const String lower = lowerName(statement);
    const auto pending = std::ranges::find_if(tracing_.failures, [&](const Tracing::Failure& each) {
        return lower.find(lowerName(each.pattern)) != String::npos;
    });
    if (pending != tracing_.failures.end()) {
        const std::int32_t number = pending->number;
        if (--pending->times == 0)
            tracing_.failures.erase(pending);
        throw DataError(number, {}, u"provocado por el guion", statement);
    }
    return inner_->Execute(statement);
}

ObjectFactory tracedApi(ObjectFactory inner, Tracing& tracing)
{
    return [inner = std::move(inner), &tracing]() -> ObjectPtr {
        ObjectPtr object = inner();
        return object ? std::make_shared<TracedApi>(std::move(object), tracing) : nullptr;
    };
}

} // namespace zv
