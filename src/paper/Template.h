#pragma once

#include "runtime/String.h"

#include <map>
#include <span>
#include <vector>

namespace zv::paper {

/// What a template is filled with: texts, and lists of what is filled in again and again.
struct Fields {
    std::map<String, String, std::less<>> texts = {};
    std::map<String, std::vector<Fields>, std::less<>> lists = {};
};

/// Name of a field that a template may use; with inner ones it is a list.
struct FieldName {
    StringView name;
    std::span<const FieldName> inner = {};
};

/// Characters that no paper shows: controls, lone surrogates, codes that are no characters.
bool isPrintable(char32_t character);
/// Code points of a text; a lone surrogate as itself.
std::u32string codePoints(StringView text);

/// Page in HTML with fields: {{name}} is a text, escaped, its line breaks and blanks kept;
/// {{#name}}…{{/name}} stands once if the text is not empty, or once for each element of the list;
/// {{^name}}…{{/name}} stands if it is empty. Inside of a list the fields around it are there too.
class Template {
public:
    /// Parses the page; `file` is what messages call it. A field that is not among the names, a part that is
    /// not closed: fails with a RuntimeError (otherData) that says file, line and field.
    Template(const String& file, StringView page, std::span<const FieldName> names);

    String fill(const Fields& fields) const;

private:
    struct Node {
        enum class Is { words, text, part, unless } is = Is::words;
        String text; ///< The words, or the name.
        bool inTag = false;
        std::vector<Node> inner = {};
    };
    struct Parser;
    struct Filler;

    std::vector<Node> nodes_;
};

} // namespace zv::paper
