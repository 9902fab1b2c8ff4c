"""The page of the long runs, docs/pruebas.md: a section for each part, which a run of that part writes and no other touches.
A section is written from its first result on, as one that was broken off, and as whole at its end: whatever ends a run, the page
tells what was reached and no more."""
import fcntl
import os
import re
import sys
from datetime import datetime
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "bench"))
from medidas import memory, number, state, system, table

PAGE = ROOT / "docs/pruebas.md"
ROOM = ROOT / "build/long-runs"  # What repeats a finding, and what was said.
UNTRIED = "No se ha hecho todavía."
HEAD = """# Cómo se ha probado

`./check` prueba en minutos lo que se puede probar en minutos. Aquí está lo que tarda horas: mucho azar, muchas muertes, muchos
textos inventados, y faltas puestas adrede para ver si alguna prueba las ve. Esta página la escribe `tools/long-runs`, que
repite cada parte por separado; cada una dice cuándo se hizo, con qué estado de las fuentes y hasta dónde llegó. Lo que se
interrumpió está contado hasta donde llegó, y lo que no se pudo hacer, dicho. La máquina hacía además otras cosas: las horas
dicen cuánto duró, no cuánto cuesta.

{summary}
"""


def date(moment):
    return f"{moment:%Y-%m-%d}"


def parts_of(text):
    """Title -> section, from its heading on."""
    found = re.split(r"^(?=## )", text, flags=re.M)[1:]
    return {each.splitlines()[0].removeprefix("## "): each.strip() for each in found}


def summary(titles, sections):
    rows = []
    for title in titles:
        said = re.search(r"^\*\*(.+?)\*\* (\d{4}-\d\d-\d\d)", sections[title], re.M)
        rows.append([title, said[2] if said else "", said[1] if said else UNTRIED])
    return table(["parte", "día", "resultado"], rows).replace("---:", "---")


class Page:
    def __init__(self, file, titles):
        self.file, self.titles = Path(file), titles

    def put(self, title, section):
        """Parts may run at the same time: each reads what the others wrote."""
        ROOM.mkdir(parents=True, exist_ok=True)
        with open(ROOM / "lock", "w") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            there = parts_of(self.file.read_text()) if self.file.exists() else {}
            sections = {each: there.get(each, f"## {each}\n\n{UNTRIED}") for each in self.titles} | {title: section}
            text = "\n\n".join([HEAD.format(summary=summary(self.titles, sections)).strip(), *sections.values()])
            new = self.file.with_suffix(".new")
            new.write_text(text + "\n")
            new.replace(self.file)


class Section:
    """What a part found so far."""

    def __init__(self, page, title, about, heads):
        self.page, self.title, self.about, self.heads = page, title, about, heads
        self.begun, self.state, self.load = datetime.now(), state(), os.getloadavg()[0]
        self.rows, self.findings, self.notes = [], [], []

    def kept(self):
        """What a run that goes on with it wants to know."""
        return {"begun": self.begun.isoformat(), "state": self.state, "load": self.load, "findings": self.findings}

    def go_on(self, kept):
        self.begun, self.load, self.findings = datetime.fromisoformat(kept["begun"]), kept["load"], kept["findings"]
        if self.state != kept["state"]:
            self.state = f"{kept['state']} y después {self.state}"
        self.notes.append("Se hizo en varias veces.")

    def tell(self, rows=None, result=None):
        self.rows = self.rows if rows is None else rows
        count = len(self.findings)
        found = "sin fallos" if not count else "1 fallo" if count == 1 else f"{count} fallos"
        result = (result or "Interrumpida, {} hasta ahí.").format(found)
        now = datetime.now()
        until = f"{now:%H:%M}" if date(now) == date(self.begun) else f"las {now:%H:%M} del {date(now)}"
        text = [f"## {self.title}", f"**{result}** {date(self.begun)}, de {self.begun:%H:%M} a {until}; estado {self.state}; "
                f"{os.cpu_count()} núcleos, {memory()}, {system()}; al empezar, {number(self.load, 1)} procesos querían procesador.",
                self.about]
        text += [table(self.heads, self.rows)] if self.rows else []
        text += ["\n".join(self.notes)] if self.notes else []
        text += ["Lo que se encontró:\n\n" + "\n".join(f"- {each}" for each in self.findings)] if count else []
        self.page.put(self.title, "\n\n".join(text))

    def end(self, rows=None):
        self.tell(rows, "Completa, {}.")

    def lack(self, what):
        self.tell([], f"No se pudo: falta {what}.")
