"""The step tables of the catalogue dialogs, read from their sources: for tools/docs and tools/mutants."""
import re
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
FOLDER = ROOT / "src/catalogues"
ROUTINES = ("load", "accept", "guard", "unload")
TABLE = re.compile(r"(?:constexpr|static const) Step (\w+)\[\] = \{(.*?)\};", re.S)
ENTRY = re.compile(r"step::(\w+)|own\(&\w+::(\w+)\)")


def tables(text):
    """Of each table its steps, in order; one that no other dialog has bears its function's name."""
    return {name: [a or b for a, b in ENTRY.findall(body)] for name, body in TABLE.findall(text)}


def recipes():
    return tables((FOLDER / "TextCatalogue.h").read_text())


def dialogs():
    """Of each dialog and routine: the recipe's name, or None for a table of its own, and the steps."""
    shared = recipes()
    found = {}
    for source in sorted(FOLDER.glob("frm*.cpp")):
        text = source.read_text()
        own = tables(text)
        routines = {}
        for routine in ROUTINES:
            used = re.search(r"\.%s = (recipe::)?(\w+)," % routine, text)
            if not used:
                routines[routine] = (None, [])
            elif used[1]:
                routines[routine] = (used[2], shared[used[2]])
            else:
                routines[routine] = (None, own[used[2]])
        found[source.stem] = routines
    return found


def differing(routines):
    """The routines of a dialog that are not the plain recipe, which bears the routine's own name. A caption without a
    number, in the place of the number, is plain too."""
    plain = recipes()
    same = [["title" if step == "caption" else step for step in routines[routine][1]] == plain[routine] for routine in ROUTINES]
    return [routine for routine, is_plain in zip(ROUTINES, same) if not is_plain]


def has_own_words(name):
    """Whether something beside the step tables tells the dialog's source from the plain one."""
    text = (FOLDER / f"{name}.cpp").read_text()
    return bool(re.search(r"\.joint|\.readFailed|::fill|::values|::Form_|\.bind\(|\bon\(|\baccepts\b|//", text))
