"""The text of a guion: its commands, and values as it writes them."""
import re


class Bare(str):
    """A name, which is written without quotes."""


def unquoted(word):
    return re.sub(r"\\(.)", lambda m: {"n": "\n", "r": "\r", "t": "\t"}.get(m[1], m[1]), word[1:-1])


def quoted(text):
    for sign, written in (("\\", "\\\\"), ('"', '\\"'), ("\n", "\\n"), ("\r", "\\r"), ("\t", "\\t")):
        text = text.replace(sign, written)
    return f'"{text}"'


def shown(value):
    return ("NULL" if value is None else quoted(value) if isinstance(value, str) and not isinstance(value, Bare)
            else str(value))


def words(line):
    return re.findall(r'"(?:\\.|[^"\\])*"|[^\s"]+(?:"(?:\\.|[^"\\])*")?', line)


def commands(path):
    """Each command with what is expected below it."""
    found = []
    for number, line in enumerate(path.read_text().splitlines(), 1):
        if line.startswith("> "):
            found[-1][2].append(line[2:])
        elif line and not line.startswith("#"):
            found.append((number, line, []))
    return found
