"""Uses the built program as a person does: real keys and clicks on a display of its own, seen through the
accessibility interface.

By hand, one file of scenarios or one scenario of it (any built program can be named):

    /usr/bin/python3 tests/EndToEnd/reading.py --program build/release/TesselMail/tessel-mail \
        [--language zh] [--perturb] [--pictures FOLDER] [scenario …]

A file of scenarios holds functions with the mark @scenario; each gets a program just started (or not yet, with
start=False) in a fresh home. After each step and at its end it is checked that nothing unknown stands on stderr, that
every control that can be used has a name, that the focus is somewhere, and that the program ended with status 0.
The exit status is 1 when one failed, 77 when something could not be run here, else 0.
"""

import argparse
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import traceback
from pathlib import Path

from desktop import PATIENCE, Desktop, Failed, end, expect, wait, xdotool
from texts import TEXTS

ROOT = Path(__file__).resolve().parents[2]
BUS_NAME = "org.tesselmail.TesselMail"

# What others print and what it means. Everything else on stderr is a fault.
KNOWN_LINES = [
    # No direct rendering under a virtual display.
    r"libEGL warning", r"MESA", r"dri3", r"Failed to (get|create) (GBM|EGL|DRM)", r"Vulkan",
    r"for shader cache",
    # Neither settings daemon nor portal run here.
    r"(dconf|GVFS|portal)", r"Settings portal", r"Unable to acquire session bus",
    r"Failed to connect to bus", r"connect to a11y bus",
    # The page's process about a locale that the system lacks.
    r"Locale not supported by C library", r"Using the fallback 'C' locale",
    # The toolkit says that it takes its defaults where no desktop stores settings.
    r"Using the 'memory' GSettings backend",
]
# What can be used must be named. The toolkit's own windows (the file panel, "About") are not ours to name.
CONTROLS = {"push button", "toggle button", "check box", "radio button", "menu item", "check menu item", "entry", "text",
            "combo box", "list item", "list box", "list", "table", "link", "password text", "spin button", "slider",
            "switch", "button", "search box"}
SCENARIOS = []


class NotRun(Exception):
    """What a scenario needs is not there."""


def scenario(function=None, **options):
    """Marks a scenario. `sandbox`: it needs the safe view; `start=False`: it starts the program itself."""
    if function is None:
        return lambda marked: scenario(marked, **options)
    SCENARIOS.append((function, options))
    return function


class App:
    """The program under test, in a home of its own."""

    def __init__(self, desktop, options, folder, name):
        self.desktop, self.options, self.folder, self.scenario = desktop, options, folder, name
        self.home = folder / "home"
        self.process, self.pictures, self.unfinished, self.faults = None, 0, [], {}
        for part in ("", "config", "data", "cache", "state", "mail"):
            (self.home / part).mkdir(parents=True, exist_ok=True)
        self.mail = self.home / "mail"
        self.stderr_path = folder / "stderr"
        self.environment = os.environ | {
            "HOME": str(self.home), "LANGUAGE": "zh_CN:zh" if options.language == "zh" else "en",
            "XDG_CONFIG_HOME": str(self.home / "config"), "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_CACHE_HOME": str(self.home / "cache"), "XDG_STATE_HOME": str(self.home / "state"),
            "G_DEBUG": "fatal-criticals"}
        if options.perturb:
            self.environment |= {"G_SLICE": "always-malloc", "MALLOC_PERTURB_": "165"}

    # Starting and ending

    xdotool = staticmethod(xdotool)

    def start(self, *words):
        self.stderr = open(self.stderr_path, "ab")
        self.process = subprocess.Popen([self.options.program, *map(str, words)], env=self.environment, cwd=self.home,
                                        stdout=self.stderr, stderr=self.stderr, start_new_session=True)
        wait(lambda: self.alive() and self.windows(), "the window")
        self.find("frame")
        time.sleep(0.3)
        return self

    def command(self, *words):
        """A second start, as the desktop or a shell does it; its exit status."""
        return subprocess.run([self.options.program, *map(str, words)], env=self.environment, cwd=self.home,
                              stdout=self.stderr, stderr=self.stderr, timeout=PATIENCE * 3).returncode

    def ask_to(self, action):
        """Activates an action of the program over the bus, as the desktop does."""
        subprocess.run(["gdbus", "call", "--session", "--dest", BUS_NAME, "--object-path", "/" + BUS_NAME.replace(".", "/"),
                        "--method", "org.freedesktop.Application.ActivateAction", action, "[]", "{}"], check=True,
                       capture_output=True, timeout=30)

    def alive(self):
        expect(self.process.poll() is None, f"the program ended with status {self.process.poll()}")
        return True

    def ended(self, what="the program to end"):
        wait(lambda: self.process.poll() is not None, what)
        expect(self.process.returncode == 0, f"the program ended with status {self.process.returncode}")

    def quit(self):
        if self.process and self.process.poll() is None:
            self.keys("ctrl+q")
            self.ended("the program to end after Ctrl+Q")
        self.check_stderr()

    def kill(self):
        if self.process:
            end(self.process)

    # What stands on the screen

    def text(self, key):
        return TEXTS[key][self.options.language == "zh"]

    def name(self, thing):
        """The name as it is read out: without marks of direction, and none when it is a widget's type. What a button
        says twice, by its own name and its label's, counts once."""
        name = re.sub("[\u2066-\u2069]", "", thing.get_name() or "")
        name = re.sub(r"^(.+) \1$", r"\1", name)
        return "" if re.fullmatch(r"(gtkmm__)?(Gtk|Adw|WebKit|Tessel)[A-Z]\w*", name) else name

    def windows(self):
        while self.desktop.main.iteration(False):
            pass
        desk = self.desktop.atspi.get_desktop(0)
        desk.clear_cache()
        for at in range(desk.get_child_count()):
            try:
                application = desk.get_child_at_index(at)
                if application and application.get_process_id() == self.process.pid:
                    application.set_cache_mask(self.desktop.atspi.Cache.NONE)
                    children = [application.get_child_at_index(n) for n in range(application.get_child_count())]
                    return [child for child in children if child]
            except Exception:  # gone while we looked
                continue
        return []

    def is_(self, thing, state):
        return thing.get_state_set().contains(getattr(self.desktop.atspi.StateType, state))

    def walk(self, thing):
        """Everything in `thing` that shows, itself first."""
        pending = [thing]
        while pending:
            current = pending.pop()
            try:
                if not self.is_(current, "VISIBLE"):
                    continue
                # This toolkit says "showing" of windows only. What is not shown has no place; pages of a stack have
                # none either, but what is in them does.
                if current.get_component_iface():
                    box = self.extents(current)
                    if box.width <= 0 or box.height <= 0:
                        continue
                    yield current
                children = [current.get_child_at_index(n) for n in range(current.get_child_count())]
                children = [child for child in children if child]
                if len(children) > 1 and all(child.get_name() == "GtkStackPage" for child in children):
                    for page in self.pages_on_top([list(self.walk(child)) for child in children]):
                        yield from page
                else:
                    pending += reversed(children)
            except self.desktop.errors:
                continue

    def pages_on_top(self, pages):
        """The pages of a stack that may be what it shows: pages keep their places when they are hidden, and nothing
        says which one is on top. One with lists is, as soon as one of them, or the place of a captured link, holds something."""
        pages = [page for page in pages if page]
        roles = [{thing.get_role_name() for thing in page} for page in pages]
        if len({"list" in held for held in roles}) < 2:
            return pages
        link = self.text("captured_link")
        full = any("list item" in held or any(self.name(thing) == link for thing in page if "list" in held)
                   for page, held in zip(pages, roles))
        return [page for page, held in zip(pages, roles) if ("list" in held) == full]

    def everything(self, role=None, name=None, within=None, **states):
        """All that show with this role, and this name (a text, or a compiled pattern)."""
        found = []
        for top in [within] if within else self.windows():
            for thing in self.walk(top):
                try:
                    if role and thing.get_role_name() not in ([role] if isinstance(role, str) else role):
                        continue
                    own = self.name(thing)
                    if name is not None and not (name.search(own) if isinstance(name, re.Pattern) else own == name):
                        continue
                    if all(self.is_(thing, state) == value for state, value in states.items()):
                        found.append(thing)
                except self.desktop.errors:
                    continue
        return found

    def find(self, role=None, name=None, within=None, patience=PATIENCE, **states):
        return wait(lambda: self.alive() and self.everything(role, name, within, **states),
                    f"{role or 'something'} {getattr(name, 'pattern', name) or ''}", patience)[0]

    def gone(self, role, name=None, patience=PATIENCE):
        wait(lambda: self.alive() and not self.everything(role, name), f"{role} {name or ''} to go", patience)

    def shows(self, text):
        """A text stands somewhere: in a name, a label or a text widget."""
        pattern = re.compile(re.escape(text))
        return any(pattern.search(self.name(thing)) or pattern.search(self.content(thing))
                   for window in self.windows() for thing in self.walk(window))

    def sees(self, text, patience=PATIENCE):
        wait(lambda: self.alive() and self.shows(text), f"the text “{text}”", patience)

    def content(self, thing):
        try:
            return self.desktop.atspi.Text.get_text(thing, 0, -1) if thing.get_text_iface() else ""
        except self.desktop.errors:
            return ""

    def rows(self):
        """The rows of the message list that show, from top to bottom."""
        lists = self.everything(["list", "list box"], self.text("messages"))
        return self.everything("list item", within=lists[0]) if lists else []

    def focused(self):
        for window in self.windows():
            for thing in self.walk(window):
                if self.is_(thing, "FOCUSED"):
                    return thing
        return None

    def focus_path(self):
        return self.path(self.focused())

    def path(self, thing):
        """It and what it is in, each as role and name."""
        names = []
        while thing and thing.get_role_name() != "application":
            names.append(f"{thing.get_role_name()} {self.name(thing)}".strip())
            thing = thing.get_parent()
        return names

    def extents(self, thing):
        return self.desktop.atspi.Component.get_extents(thing, self.desktop.atspi.CoordType.WINDOW)

    def place(self, thing):
        """Where it stands on the screen: x, y, width, height (of what is in the main window)."""
        box, (window, x, y) = self.extents(thing), self.surface(thing)
        shell = xdotool("getwindowgeometry", "--shell", window).splitlines()
        origin = dict(line.split("=") for line in shell)
        return int(origin["X"]) + x + box.x, int(origin["Y"]) + y + box.y, box.width, box.height

    def surface(self, thing):
        """The window of the display that `thing` is in, and where its content begins there: without a compositor a
        window draws a frame around itself."""
        while thing.get_parent() and thing.get_parent().get_role_name() != "application":
            thing = thing.get_parent()
        box = self.extents(thing)
        for window in xdotool("search", "--onlyvisible", "--pid", self.process.pid).split():
            if xdotool("getwindowname", window) == (thing.get_name() or ""):
                shell = dict(line.split("=") for line in xdotool("getwindowgeometry", "--shell", window).splitlines())
                return window, (int(shell["WIDTH"]) - box.width) // 2, (int(shell["HEIGHT"]) - box.height) // 2
        raise Failed(f"no window “{thing.get_name()}”")

    # What a person does

    def keys(self, *combinations):
        for combination in combinations:
            xdotool("key", "--clearmodifiers", combination)
            time.sleep(0.15)

    def type(self, text):
        xdotool("type", "--delay", "15", "--", text)
        time.sleep(0.2)

    def point(self, thing):
        box, (window, x, y) = self.extents(thing), self.surface(thing)
        xdotool("mousemove", "--window", window, x + box.x + box.width // 2, y + box.y + box.height // 2)
        time.sleep(0.1)

    def click(self, thing, button=1):
        self.point(thing)
        xdotool("click", button)
        time.sleep(0.2)

    def choose(self, name):
        """Chooses this item of the menu that is open, by keys."""
        for _ in range(12):
            focused = self.focused()
            if focused and self.name(focused) == name:
                return self.keys("Return")
            self.keys("Down")
        raise Failed(f"the keys do not reach “{name}”")

    def drag(self, x, y, by):
        """Presses at a place of the screen and lets go `by` pixels to the right."""
        xdotool("mousemove", x, y)
        time.sleep(0.1)
        xdotool("mousedown", 1)
        for part in (0.25, 0.5, 0.75, 1):
            xdotool("mousemove", x + round(by * part), y)
            time.sleep(0.05)
        xdotool("mouseup", 1)
        time.sleep(0.3)

    def click_at(self, x, y, button=1):
        xdotool("mousemove", x, y)
        time.sleep(0.1)
        xdotool("click", button)
        time.sleep(0.2)

    def clipboard(self):
        return subprocess.run(["xclip", "-selection", "clipboard", "-o"], capture_output=True, timeout=PATIENCE).stdout.decode()

    def choose_in_panel(self, path, accept=None, several=False):
        """Types a path into the file panel that shows; with `several`, everything in that folder."""
        self.wait_for_panel()
        self.keys("ctrl+l")
        self.keys("ctrl+a")
        self.type(str(path) + ("/" if several else ""))
        time.sleep(0.5)
        self.keys("Return")
        if several:
            time.sleep(1)
            self.keys("ctrl+a")
            self.click(self.find("push button", re.compile(f"^{re.escape(accept)}\\b"), within=self.panel()[0]))
        wait(lambda: self.alive() and not self.panel(), "the file panel to close")

    def panel(self):
        return [window for window in self.windows() if self.typed(window, "GtkFileChooserWidget")]

    def typed(self, window, type):
        return any(thing.get_name() == type for thing in self.walk(window))

    def wait_for_panel(self):
        wait(lambda: self.alive() and self.panel(), "the file panel")
        time.sleep(0.8)

    # What must always hold

    def step(self, name, controls=True, focus=True):
        """A picture, and what must hold after each step."""
        time.sleep(0.2)
        self.picture(name)
        self.alive()
        for check in (self.check_stderr, controls and self.check_names, focus and self.check_focus):
            try:
                check and check()
            except Failed as fault:  # said at the end: what follows is worth seeing too
                if str(fault) not in self.faults:
                    self.faults[str(fault)] = name

    def check_focus(self):
        wait(self.focused, "a focus that is somewhere", 5)

    def picture(self, name):
        self.pictures += 1
        file = f"{self.scenario}-{self.pictures:02}-{name}-{self.options.language}{'-perturbed' if self.options.perturb else ''}.png"
        subprocess.run(["import", "-window", "root", str(Path(self.options.pictures) / file.replace(" ", "-"))], timeout=60)

    def check_names(self):
        nameless = []
        for window in self.windows():
            if not (window.get_name() or "") or window in self.panel():
                continue
            for thing in self.walk(window):
                # The list inside a row of choices is the toolkit's.
                if any(role.startswith("combo box") for role in self.path(thing)[1:]):
                    continue
                if thing.get_role_name() in CONTROLS and not self.name(thing).strip() and \
                        self.is_(thing, "SENSITIVE") and self.is_(thing, "FOCUSABLE"):
                    nameless.append(self.where(thing))
        nameless = list(dict.fromkeys(nameless))
        expect(not nameless, "controls without a name: " + "; ".join(nameless))

    def where(self, thing):
        path = []
        while thing and thing.get_role_name() not in ("application", "frame"):
            path.append(f"{thing.get_role_name()}[{self.name(thing)}]")
            thing = thing.get_parent()
        return " < ".join(path[:3])

    def check_stderr(self):
        lines = self.stderr_path.read_text(errors="replace").splitlines() if self.stderr_path.exists() else []
        unknown = [line for line in lines if line.strip() and not any(re.search(k, line) for k in KNOWN_LINES)]
        expect(not unknown, "on stderr: " + " | ".join(unknown[:4]))


def sandbox_works():
    return shutil.which("bwrap") and subprocess.run(["bwrap", "--unshare-user", "--ro-bind", "/", "/", "true"],
                                                    capture_output=True).returncode == 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", default=ROOT / "build/release/TesselMail/tessel-mail", type=Path)
    parser.add_argument("--language", choices=["en", "zh"], default="en")
    parser.add_argument("--perturb", action="store_true", help="freed memory is overwritten")
    parser.add_argument("--pictures", default=ROOT / "build/release/end-to-end", type=Path)
    parser.add_argument("scenarios", nargs="*")
    options = parser.parse_args()
    options.program = options.program.resolve()
    options.pictures.mkdir(parents=True, exist_ok=True)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    missing = [tool for tool in ("Xvfb", "dbus-daemon", "openbox", "xdotool", "import", "xclip") if not shutil.which(tool)]
    if missing:
        print("NOT RUN: missing", ", ".join(missing))
        sys.exit(77)

    subject = Path(sys.argv[0]).stem
    failed, skipped = [], []
    folder = Path(tempfile.mkdtemp(prefix="tessel-"))
    desktop = None
    try:
        desktop = Desktop(folder)
        for function, needs in SCENARIOS:
            name = f"{subject}-{function.__name__}"
            if options.scenarios and function.__name__ not in options.scenarios:
                continue
            if needs.get("sandbox") and not sandbox_works():
                skipped.append(name)
                print(f"NOT RUN  {name}: no user namespaces for the safe view", flush=True)
                continue
            (folder / name).mkdir()
            app = App(desktop, options, folder / name, name)
            begin = time.monotonic()
            try:
                if needs.get("start", True):
                    app.start()
                function(app)
                app.quit()
                expect(not app.faults, "; ".join(f"at “{step}”: {fault}" for fault, step in app.faults.items()))
                print(f"passed   {name} ({time.monotonic() - begin:.1f} s)", flush=True)
            except NotRun as reason:
                skipped.append(name)
                print(f"NOT RUN  {name}: {reason}", flush=True)
            except Exception as error:
                failed.append(name)
                line = next((f.lineno for f in reversed(traceback.extract_tb(error.__traceback__))
                             if f.filename != __file__), 0)
                print(f"FAILED   {name}, line {line}: {error if isinstance(error, Failed) else repr(error)}", flush=True)
                for fault, step in app.faults.items() if line else []:
                    print(f"         at “{step}”: {fault}", flush=True)
                if app.stderr_path.exists():
                    print("         stderr:", app.stderr_path.read_text(errors="replace").strip()[-1500:], flush=True)
                app.picture("FAILED")
            finally:
                app.kill()
                for process in app.unfinished:
                    end(process)
                xdotool("keyup", "ctrl", "keyup", "shift", "keyup", "alt", "mouseup", "1")
    finally:
        if desktop:
            desktop.close()
        shutil.rmtree(folder, ignore_errors=True)
    sys.exit(1 if failed else 77 if skipped else 0)
