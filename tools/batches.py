#!/usr/bin/env python3
"""tools/batches.py SOURCE...   sources that can be compiled one behind the other: a batch a line, its sources apart by `;`

Most of the time of compiling goes into the headers, which a batch sees once. Two sources that give the same name to
something of their own go apart, and so does one that may mean another thing by a name that stands before it then."""
import re
import sys
from pathlib import Path

MOST_SOURCES, MOST_LINES = 12, 2000
# What stands at the left margin and belongs to no class: functions, constants, types.
OWN = (re.compile(r"^(?! )[\w:<>,&*\[\] ]*?[\w>&*\]] [&*]?(\w+)\(", re.M),
       re.compile(r"^(?:static |inline )*(?:constexpr|const)\b[^=({;\n]*?(\w+)(?:\[\w*\])?(?: = |\{|\()", re.M),
       re.compile(r"^(?:struct|class|enum class|enum) (\w+)", re.M))
TAKEN = re.compile(r"^using (?!namespace)(?:\w*::)*(\w+)", re.M)
NOBODY_ELSES = re.compile(r"^namespace \{$(.*?)^\} // namespace$", re.M | re.S)
# A call that is no member's, and a type.
MEANT = re.compile(r"(?<![\w.>:])(?:(\w+)(?=\()|([A-Z]\w*))")


def own(text):
    return {name for form in OWN for name in form.findall(text)}


def batches(sources):
    """Lists of paths, in the order in which they are given."""
    made = []
    for source in sources:
        text = Path(source).read_text()
        lines = text.count("\n")
        taken = set(TAKEN.findall(text))
        names = own(text) | taken
        hidden = own("\n".join(NOBODY_ELSES.findall(text))) | taken
        meant = {call or kind for call, kind in MEANT.findall(text)}
        for batch in made:
            if (not batch["names"] & names and not batch["hidden"] & meant
                    and len(batch["sources"]) < MOST_SOURCES and batch["lines"] + lines <= MOST_LINES):
                break
        else:
            batch = {"sources": [], "lines": 0, "names": set(), "hidden": set()}
            made.append(batch)
        batch["sources"].append(source)
        batch["lines"] += lines
        batch["names"] |= names
        batch["hidden"] |= hidden
    return [batch["sources"] for batch in made]


if __name__ == "__main__":
    for each in batches(sys.argv[1:]):
        print(";".join(each))
