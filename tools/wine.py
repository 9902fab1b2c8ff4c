"""What is built for Windows, run under Wine, and the trials of it: for tools/windows, windows-hosts, windows-person and
windows-zip-check. Each tries in a folder of its own, which begins empty; Wine's own stands in build/wine."""
import contextlib
import os
import re
import shutil
import sqlite3
import subprocess
import threading
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BIN = ROOT / "build/windows64/bin"
LINUX = ROOT / "build/default/bin/zvconf"
EXAMPLES = ROOT / "examples"
# Debian keeps the loader out of the way of whoever has another.
WINE = shutil.which("wine64", path="/usr/lib/wine:" + os.environ.get("PATH", "")) or ""
SERVER = Path(WINE or "wine64").with_name("wineserver64")
WINDOWS = [WINE, BIN / "zvconf.exe"]
ENVIRONMENT = {name: value for name, value in os.environ.items()
               if not re.match(r"LC_|LANG|XDG_|ZV_|DISPLAY|WAYLAND_DISPLAY", name)} | {
    # Wine turns names of files and arguments into Unicode by it.
    "LC_CTYPE": "C.UTF-8",
    "WINEARCH": "win64", "WINEPREFIX": str(ROOT / "build/wine"), "WINEDEBUG": "-all",
    # Neither is asked for, and either would want to be fetched.
    "WINEDLLOVERRIDES": "mscoree,mshtml="}

passed = failed = 0
counting = threading.Lock()
room = None


def there(path):
    """The path as Windows has it."""
    return "Z:" + str(path).replace("/", "\\")


def run(*command, check=True, **env):
    """Its output, as bytes."""
    done = subprocess.run([*map(str, command)], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=300,
                          cwd=room, env=ENVIRONMENT | env, check=False)
    if check and done.returncode:
        raise AssertionError(f"{' '.join(map(str, command))[-300:]}\nended with {done.returncode}\n"
                             + done.stdout.decode(errors="replace")[-4000:])
    return done.stdout


def script(file, *arguments, last="Fin", **env):
    """What a script says. One that breaks off ends like one that is done: it has to say its last line."""
    seen = run(WINE, "cscript", "//nologo", there(file), *arguments, **{"ZV_ESCRITORIO": "ninguno"} | env)
    lines = seen.decode("cp850").replace("\r\n", "\n").splitlines()
    assert lines and lines[-1] == last, f"{file.name} broke off:\n" + "\n".join(lines[-30:])
    return lines


def same(seen, wanted):
    """Bytes of a text, or its lines; tells the first line that differs."""
    if seen != wanted:
        lines = [text.decode(errors="replace").splitlines() if isinstance(text, bytes) else text for text in (seen, wanted)]
        for number, (one, other) in enumerate(zip(*lines), 1):
            assert one == other, f"line {number}: {one!r} seen, {other!r} expected"
        raise AssertionError(f"{len(seen)} seen, {len(wanted)} expected")


def played(output):
    """How many guiones were as they expect."""
    counts = re.search(rb"^(\d+) passed, 0 failed$", output, re.MULTILINE)
    assert counts, output.decode(errors="replace")[-4000:]
    return int(counts[1])


def tests(program):
    """How many tests of the program passed. What broke off has not said so."""
    seen = run(WINE, BIN / program).decode(errors="replace").replace("\r", "")
    counts = re.search(r"^\[  PASSED  \] (\d+) tests?\.$", seen, re.MULTILINE)
    assert counts, seen[-4000:]
    return int(counts[1])


def rows(file):
    with sqlite3.connect(file) as school:
        tables = [name for name, in school.execute("SELECT name FROM sqlite_schema WHERE type='table'")]
        return {table: sorted(map(repr, school.execute(f'SELECT * FROM "{table}"'))) for table in tables}


def dump(hive):
    """A branch of the registry. Times of other keys move on as Wine works; of what is asked here nobody else writes."""
    file = room / "volcado.reg"
    run(WINE, "regedit", "/E", there(file), hive)
    return file.read_bytes().decode("utf-16").splitlines()


def first_script():
    """The first one of a prefix makes Wine register what is its own."""
    idle = room / "nada.vbs"
    idle.write_text('WScript.Echo "Fin"\n')
    script(idle)


def register(way=(), off=False):
    """For the machine, or for the person."""
    for library in ("ZVConfiguracion.dll", "ZVDatos.dll"):
        run(WINE, "regsvr32", "/s", *(["/u"] if off else []), *way, there(BIN / library))


PERSON = ("/n", "/i:user")


@contextlib.contextmanager
def server():
    """Wine's server and services stay between two programs, which else start them anew; half a minute at most. One that
    was there would not stay."""
    run(SERVER, "-k", check=False)
    for command in ([SERVER, "-p30"], [WINE, "cmd", "/c", "exit"]):  # What starts them hands on where it writes.
        subprocess.run(command, env=ENVIRONMENT, check=False, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        yield
    finally:
        run(SERVER, "-k", check=False)


@contextlib.contextmanager
def screen():
    """A screen that nobody sees, for what is run meanwhile. What Wine showed before had none, and what it shows goes before
    its screen does."""
    with subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", "3000x2400x24", "-nolisten", "tcp"],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL) as shown:
        ENVIRONMENT["DISPLAY"] = f":{shown.stdout.readline().decode().strip()}"
        try:
            with server():
                yield
        finally:
            del ENVIRONMENT["DISPLAY"]
            shown.terminate()


def trial(name, act):
    """Runs what is to be tried; it may tell how many trials it was. Whatever breaks it off is its failure."""
    global passed, failed
    start = time.monotonic()
    try:
        count, why = act() or 1, ""
    except Exception as failure:
        count, why = 1, f"\n{type(failure).__name__}: {failure}"
    with counting:
        if why:
            failed += count
            print(f"FAILED  {name}{why}", flush=True)
        else:
            passed += count
            print(f"ok      {name} ({count}, {time.monotonic() - start:.0f} s)", flush=True)
    return not why


def trials(*lanes):
    """Those of a lane in turn, and the lanes at once: none touches what those of another lane have."""
    with ThreadPoolExecutor(len(lanes)) as pool:
        for each in [pool.submit(lambda acts: [trial(*act) for act in acts.items()], lane) for lane in lanes]:
            each.result()


def build(preset, *targets):
    for step in (["cmake", "--preset", preset], ["cmake", "--build", "--preset", preset, *targets]):
        done = subprocess.run(step, cwd=ROOT, capture_output=True, text=True, check=False)
        assert done.returncode == 0, (done.stdout + done.stderr)[-6000:]


def prefix():
    if not (ROOT / "build/wine/system.reg").exists():
        run("xvfb-run", "-a", WINE, "wineboot", "-i")
    # A window manager, which is not there, would be waited for at each window.
    run(WINE, "reg", "add", r"HKCU\Software\Wine\X11 Driver", "/v", "Managed", "/d", "N", "/f")


BUILT = ("build windows64", lambda: build("windows64"))


def missing(programs=()):
    """What is needed, those programs too, and is not there even when it was asked for."""
    subprocess.run([ROOT / "tools/dependencies", "windows"], stdout=subprocess.DEVNULL, check=False)
    return [what for what, is_there in {
        "el compilador x86_64-w64-mingw32-g++-posix": shutil.which("x86_64-w64-mingw32-g++-posix"), "Wine": WINE,
        "build/fuentes": (ROOT / "build/fuentes/node_modules").exists(),
        **{program: shutil.which(program) for program in programs}}.items() if not is_there]


def main(folder, untried, try_all, programs=(), built=BUILT):
    """The whole of a tool, whose exit status it is: looks that there is what is needed, those programs too, begins the
    folder anew, builds, and tries. Where something is missing it is told what goes untried."""
    global room
    if lacking := missing(programs):
        print(f"No hay {' ni '.join(lacking)}: {untried} no se prueba nada.")
        return 3
    room = folder
    shutil.rmtree(room, ignore_errors=True)
    room.mkdir(parents=True)
    ENVIRONMENT["ZV_CLAVE"] = str(room / "clave")
    if trial(*built) and trial("a folder for Wine", prefix):
        run(LINUX, "clave", "crear")
        try_all()
    print(f"{passed} passed, {failed} failed")
    return int(failed > 0)
