"""What a program shows to those who do not see it, through AT-SPI."""
import shutil
import subprocess
import time
from pathlib import Path

try:
    import gi
    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib
except (ImportError, ValueError):
    Atspi = GLib = None

# What keys mean, by the names of a guion, and two by their place on the keyboard.
KEYS = {"ENTER": 0xff0d, "ESC": 0xff1b, "TAB": 0xff09, "BS": 0xff08, "DEL": 0xffff, "IZQ": 0xff51, "ARR": 0xff52,
        "DER": 0xff53, "ABA": 0xff54, "INICIO": 0xff50, "FIN": 0xff57}
ALT, F4 = 64, 70


def missing():
    """Of what is not built here the first package that is not there."""
    needs = {"at-spi2-core": Path("/usr/libexec/at-spi-bus-launcher").exists(), "gir1.2-atspi-2.0 o python3-gi": Atspi,
             "dbus-daemon": shutil.which("dbus-run-session"), "xvfb": shutil.which("Xvfb"), "xauth": shutil.which("xauth"),
             "openbox": shutil.which("openbox")}
    return next((package for package, there in needs.items() if not there), None)


class Desktop:
    """The accessible windows of one program."""

    def __init__(self, command):
        self.program = subprocess.Popen(command, stdout=subprocess.DEVNULL)

    def has(self, what, state):
        try:
            return what.get_state_set().contains(getattr(Atspi.StateType, state))
        except GLib.Error:
            return False

    def below(self, what):
        yield what
        if what.get_role_name() in ("table", "menu bar"):
            return
        for place in range(what.get_child_count()):
            child = what.get_child_at_index(place)
            if child is not None:
                yield from self.below(child)

    def windows(self, roles=("dialog", "alert")):
        """Those that are seen. What goes away while one looks is looked for again."""
        while self.program.poll() is None:
            try:
                return self.look(roles)
            except GLib.Error:
                time.sleep(0.05)
        return []

    def look(self, roles):
        desk = Atspi.get_desktop(0)
        desk.set_cache_mask(Atspi.Cache.NONE)
        for place in range(desk.get_child_count()):
            program = desk.get_child_at_index(place)
            if program is not None and program.get_process_id() == self.program.pid:
                program.set_cache_mask(Atspi.Cache.NONE)
                return [each for each in self.below(program)
                        if each.get_role_name() in roles and self.has(each, "SHOWING")]
        return []

    def label(self, what):
        """What names it: a list is called by its value, and its label stands in a relation."""
        for relation in what.get_relation_set():
            if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY:
                return relation.get_target(0).get_name().removesuffix(" (obligatorio)").removesuffix(":")
        return None

    def find(self, window, role, name):
        """Those that may be meant, the seen ones first."""
        found = [each for each in self.below(window) if each.get_role_name() == role and (
            name == "*" or each.get_name().removesuffix(" (obligatorio)") in name.split("|") or self.label(each) == name)]
        return sorted(found, key=lambda each: not self.has(each, "SHOWING"))

    def press(self, what):
        for number in range(what.get_n_actions()):
            if what.get_action_name(number) in ("Press", "Toggle"):
                return what.do_action(number)
        return False

    def key(self, sign):
        Atspi.generate_keyboard_event(sign, None, Atspi.KeySynthType.SYM)

    def hold(self, *codes):
        for code in codes:
            Atspi.generate_keyboard_event(code, None, Atspi.KeySynthType.PRESS)
        for code in reversed(codes):
            Atspi.generate_keyboard_event(code, None, Atspi.KeySynthType.RELEASE)

    def letter(self, sign):
        code = ord(sign)
        self.key(code if code < 256 else 0x1000000 | code)

    def click(self, what, times=1):
        box = what.get_extents(Atspi.CoordType.SCREEN)
        Atspi.generate_mouse_event(box.x + box.width // 2, box.y + box.height // 2, "b1c" if times == 1 else "b1d")
