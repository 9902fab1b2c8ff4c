"""What the programs of bench measure: they run in rounds, and each measure is a sample."""
import contextlib
import json
import os
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
# Programs with one thread: they stay on one processor, whose caches they fill.
PINNED = {"fila", "sucursales", "informes", "historial", "datos", "papel", "rejilla"}
# Rounds of all programs: what a machine does for minutes on end falls upon one of them only.
ROUNDS = 3
# Filters for programs of which not every benchmark is run.
FEWER = {"escala": ["--benchmark_filter=^(conexiones|puestos/(1|4|16|64)/)"]}


def number(value, digits=None):
    """With a decimal comma; three digits that count, unless told how many decimals."""
    if digits is None:
        digits = 0 if value >= 100 else 1 if value >= 10 else 2
    return f"{value:,.{digits}f}".replace(",", " ").replace(".", ",")


def table(heads, rows):
    lines = ["| " + " | ".join(heads) + " |", "|---|" + "---:|" * (len(heads) - 1)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows])


def out(*command):
    try:
        return subprocess.run(command, check=True, capture_output=True, text=True, cwd=ROOT).stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return "(no se sabe)"


def told_by(path, word, mark=":"):
    """What a file of the system says behind that word."""
    return next((line.split(mark)[1].strip().strip('"') for line in open(path) if line.startswith(word)), "(no se sabe)")


def memory():
    return f"{number(int(told_by('/proc/meminfo', 'MemTotal').split()[0]) / 2**20, 1)} GB"


def system():
    return told_by("/etc/os-release", "PRETTY_NAME", "=")


def state():
    """Of the sources."""
    changed = " con cambios sin confirmar" if out("git", "status", "--porcelain", "-uno") else ""
    return out("git", "rev-parse", "--short", "HEAD") + changed


@contextlib.contextmanager
def server(kind="postgres"):
    """A server of our own: the file of its data source, and the folder of its socket."""
    with tempfile.TemporaryDirectory() as room:
        place = Path(room) / "servidor"
        script = ROOT / "tests/servidor" / kind
        subprocess.run([script, "arrancar", place], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            yield place / "odbc.ini", Path((place / "place").read_text().strip())
        finally:
            subprocess.run([script, "parar", place], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


class Measures:
    """Every repetition of every benchmark: times in µs, the processor's or, where they wait, the clock's."""

    def __init__(self, programs):
        self.runs, self.context = {}, {}
        for self.round in range(ROUNDS):
            for name in ("fila", "sucursales", "informes", "historial", "datos", "papel", "rejilla", "lista", "arranque",
                         "biblioteca", "escala"):
                self.take(programs, name, FEWER.get(name, []))
            with server() as (data_sources, folder):
                self.take(programs, "red", ["zv_prueba", folder / ".s.PGSQL.5432"], ODBCINI=str(data_sources))
                self.take(programs, "lista", ["odbc:DSN=zv_prueba"], "lista_servidor", ODBCINI=str(data_sources))

    def take(self, programs, name, arguments, known=None, **env):
        """Runs one of the programs; its measures are known under another name, if there is one."""
        print(f"{self.round + 1}/{ROUNDS} bench_{name}...", file=sys.stderr)
        with tempfile.NamedTemporaryFile(suffix=".json") as file:
            result = subprocess.run([programs / f"bench_{name}", f"--benchmark_out={file.name}",
                                     "--benchmark_out_format=json", *arguments],
                                    stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True,
                                    preexec_fn=(lambda: os.sched_setaffinity(0, {max(os.sched_getaffinity(0))}))
                                    if name in PINNED else None,
                                    env=os.environ | {"QT_QPA_PLATFORM": "offscreen"} | env)
            if result.returncode:
                sys.exit(f"bench_{name} falló:\n{result.stderr}")
            told = json.load(open(file.name))
        self.context |= told["context"]
        for run in told["benchmarks"]:
            if run.get("error_occurred"):
                sys.exit(f"bench_{name}, {run['name']}: {run['error_message']}")
            if run["run_type"] == "iteration":
                run["round"] = self.round
                self.runs.setdefault((known or name) + "." + run["run_name"], []).append(run)

    def of(self, program, name, counter=None):
        """The repetitions of the one benchmark whose name begins so."""
        found = [key for key in self.runs if f"{key}/".startswith(f"{program}.{name}/")]
        if len(found) != 1:
            sys.exit(f"bench_{program}: {len(found)} medidas se llaman {name}")
        runs = self.runs[found[0]]
        rounds = [run["round"] for run in runs]
        if counter:
            return Sample([run[counter] for run in runs], rounds)
        waits = found[0].endswith(("/real_time", "/manual_time"))
        scale = {"ns": 1e-3, "us": 1, "ms": 1e3}[runs[0]["time_unit"]]
        return Sample([run["real_time" if waits else "cpu_time"] * scale for run in runs], rounds)


class Sample:
    """Repetitions of a measure, each of a round; their median, and the lowest and the highest of the rounds' own."""

    def __init__(self, values, rounds):
        self.values, self.rounds = values, rounds
        self.median = statistics.median(values)
        self.medians = [statistics.median(value for value, its in zip(values, rounds) if its == each)
                        for each in sorted(set(rounds))]
        self.low, self.high = min(self.medians), max(self.medians)

    def over(self, other):
        """The quotient by another: of the medians, and of each round by its own."""
        quotient = Sample([mine / theirs for mine, theirs in zip(self.medians, other.medians)], sorted(set(self.rounds)))
        quotient.median = self.median / other.median
        return quotient

    def shared(self, share):
        return Sample([value / share for value in self.values], self.rounds)

    def text(self, scale=1.0, digits=None):
        spread = f"{number(self.low * scale, digits)}–{number(self.high * scale, digits)}"
        return f"{number(self.median * scale, digits)} <sub>{spread}</sub>"
