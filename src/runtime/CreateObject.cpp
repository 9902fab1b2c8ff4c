#include "runtime/CreateObject.h"

#include <map>

namespace zv {

namespace {

using Classes = std::map<String, ObjectFactory, NameLess>;

Classes& hostClasses()
{
    static Classes classes;
    return classes;
}

Classes& builtInClasses()
{
    static Classes classes;
    return classes;
}

} // namespace

ObjectPtr CreateObject(StringView progId)
{
    const ObjectFactory factory = registeredClass(progId);
    ObjectPtr object = factory ? factory() : nullptr;
    if (!object)
        fail(failure::classMissing, progId);
    return object;
}

void registerClass(StringView progId, ObjectFactory factory)
{
    hostClasses()[String(progId)] = std::move(factory);
}

void registerBuiltInClass(StringView progId, ObjectFactory factory)
{
    builtInClasses()[String(progId)] = std::move(factory);
}

ObjectFactory registeredClass(StringView progId)
{
    for (const Classes* classes : {&hostClasses(), &builtInClasses()}) {
        const auto found = classes->find(progId);
        if (found != classes->end() && found->second)
            return found->second;
    }
    return nullptr;
}

} // namespace zv
