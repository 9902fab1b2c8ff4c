#pragma once

#include "runtime/Json.h"
#include "zvconf/Command.h"

namespace zv::zvconf {

/// An array, an element a line, as they come.
class JsonLines {
public:
    void add(const JsonObject& element)
    {
        printLine((begun_ ? u"," : u"[") + element.str());
        begun_ = true;
    }
    void end() const { printLine(begun_ ? u"]" : u"[]"); }

private:
    bool begun_ = false;
};

} // namespace zv::zvconf
