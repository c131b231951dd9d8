"""The desktop that scenarios run on, and what they ask of the machine: a display of its own with a window manager and
its buses, keys and clicks, processes, pictures.
"""

import os
import re
import signal
import subprocess
import time

PATIENCE = 20  # seconds until something that must come is missing; generous, for slow machines


class Failed(Exception):
    """Something a person would have seen differently."""


def expect(holds, what):
    if not holds:
        raise Failed(what)


def wait(answer, what, patience=PATIENCE):
    """What `answer` returns once it is true."""
    end = time.monotonic() + patience
    while True:
        value = answer()
        if value:
            return value
        if time.monotonic() > end:
            raise Failed(f"waited in vain for {what}")
        time.sleep(0.1)


class Desktop:
    """A display with a window manager, a session bus and the accessibility bus, all of its own."""

    def __init__(self, folder):
        self.processes = []
        read, write = os.pipe()
        self.run("Xvfb", "-displayfd", str(write), "-screen", "0", "1400x1000x24", "-nolisten", "tcp", pass_fds=[write])
        os.close(write)
        os.environ["DISPLAY"] = ":" + os.fdopen(read).readline().strip()
        for name in ("WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "AT_SPI_BUS_ADDRESS", "XAUTHORITY", "GTK_A11Y",
                     "LC_ALL", "LC_MESSAGES", "GTK_THEME", "G_MESSAGES_DEBUG", "NO_AT_BRIDGE"):
            os.environ.pop(name, None)
        os.environ |= {"GDK_BACKEND": "x11", "XDG_RUNTIME_DIR": str(folder), "GSETTINGS_BACKEND": "memory",
                       "GTK_USE_PORTAL": "0", "LANG": "C.UTF-8", "HOME": str(folder)}
        bus = self.run("dbus-daemon", "--session", "--print-address", "--nofork", stdout=subprocess.PIPE, text=True)
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        self.run("openbox")
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, GLib
        self.atspi, self.errors, self.main = Atspi, GLib.Error, GLib.MainContext.default()
        # The accessibility library misses a cache that this toolkit does not offer.
        GLib.log_set_handler("dbind", GLib.LogLevelFlags.LEVEL_WARNING, lambda *_: None, None)
        Atspi.init()

    def run(self, *command, **options):
        options = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL} | options
        process = subprocess.Popen(command, start_new_session=True, **options)
        self.processes.append(process)
        return process

    def close(self):
        for process in reversed(self.processes):
            end(process)


def end(process):
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


def xdotool(*words):
    answer = subprocess.run(["xdotool", *map(str, words)], capture_output=True, text=True, timeout=60)
    return answer.stdout.strip()


def descendants(ancestor):
    """A process and all that it and they have started: their numbers and names."""
    parents, names = {}, {}
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{pid}/stat") as file:
                stat = file.read()
        except OSError:
            continue
        names[int(pid)] = stat[stat.index("(") + 1:stat.rindex(")")]
        parents[int(pid)] = int(stat[stat.rindex(")") + 2:].split()[1])

    def descends(pid):
        while pid > 1 and pid != ancestor:
            pid = parents.get(pid, 0)
        return pid == ancestor

    return {pid: name for pid, name in names.items() if descends(pid)}


class Picture:
    """What the display shows, or a part of it."""

    def __init__(self, area=None):
        crop = ["-crop", "{}x{}+{}+{}".format(area[2], area[3], area[0], area[1]), "+repage"] if area else []
        data = subprocess.run(["import", "-window", "root", *crop, "-depth", "8", "ppm:-"], capture_output=True,
                              timeout=60).stdout
        header = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", data)
        self.width, self.height, self.bytes = int(header[1]), int(header[2]), data[header.end():]

    def colours(self):
        return len(set(re.findall(rb"...", self.bytes, re.S)))

    def middle_of(self, colour):
        """The middle of everything that has exactly this colour, if there are more than a few dots of it."""
        dots = [at // 3 for at in (m.start() for m in re.finditer(re.escape(bytes(colour)), self.bytes)) if at % 3 == 0]
        if len(dots) < 50:
            return None
        rows, columns = sorted({d // self.width for d in dots}), sorted({d % self.width for d in dots})
        return columns[len(columns) // 2], rows[len(rows) // 2]

    def share_of(self, colour):
        return sum(self.bytes[at:at + 3] == bytes(colour) for at in range(0, len(self.bytes), 3)) * 3 / len(self.bytes)
