"""The Debian package on a bare Debian 12: installed, used as the desktop uses it, removed. The display and the eyes are
outside; the session bus, the program and the desktop's own commands run inside, in a system that is thrown away.

    /usr/bin/python3 tests/EndToEnd/package.py --bare build/bare --package build/package/tessel-mail_….deb

scripts/walk-package.sh makes the bare system. The exit status is 1 when a check failed, else 0; a line says what could not
be run here.
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
from pathlib import Path
from types import SimpleNamespace

import mail
from desktop import Desktop, Failed, descendants, expect, wait
from driver import BUS_NAME, KNOWN_LINES, ROOT, App, NotRun

ENTRY = BUS_NAME + ".desktop"
INSTALLED = ["bin/tessel-mail", f"share/applications/{ENTRY}", f"share/dbus-1/services/{BUS_NAME}.service",
             f"share/mime/packages/{BUS_NAME}.xml", f"share/metainfo/{BUS_NAME}.metainfo.xml",
             f"share/icons/hicolor/scalable/apps/{BUS_NAME}.svg",
             f"share/icons/hicolor/symbolic/apps/{BUS_NAME}-symbolic.svg"]
TYPES = {"eml": "message/rfc822", "mime": "message/rfc822", "msg": "application/vnd.ms-outlook",
         "oft": "application/x-outlook-template", "emlx": "application/x-emlx", "mbox": "application/mbox",
         "mbx": "application/mbox", "mbo": "application/mbox"}
# What other packages, and those who install them, keep of their own when they go: none of it is this program's.
KEPT_BY_OTHERS = re.compile(r"/(var/(lib/(apt|dpkg|ucf|systemd)|cache|log)|etc/(ssl|fonts|ld\.so\.cache|mailcap)|tmp|run)"
                            r"(/|$)|/usr/share/(mime|icons|applications|glib-2\.0)/.*(cache|compiled)$|.*\.pyc$|"
                            r".*/__pycache__$|/etc/(passwd|group|shadow|gshadow|subuid|subgid)-?$")
HOME = "/root"
# The bus inside has the same stderr as what it starts.
KNOWN_LINES += [r"^dbus-daemon\[", r"^SpiRegistry daemon"]


class Bare:
    """A bare system for once: the clean one below, what is written above it, thrown away at the end."""

    def __init__(self, bare, shared):
        self.shared, self.archives = shared, bare / "archives"
        self.layer = Path(tempfile.mkdtemp(prefix="run-", dir=bare))
        self.root = self.layer / "root"
        for part in ("root", "upper", "work"):
            (self.layer / part).mkdir()
        mounted = subprocess.run(["mount", "-t", "overlay", "overlay", "-o", f"lowerdir={bare / 'clean'},"
                                  f"upperdir={self.layer / 'upper'},workdir={self.layer / 'work'}", self.root])
        if mounted.returncode != 0:
            shutil.rmtree(self.layer)
            raise NotRun("no layer can be laid over the bare system")

    def close(self):
        subprocess.run(["umount", "-l", self.root])
        shutil.rmtree(self.layer, ignore_errors=True)

    def enter(self, *command):
        return [str(ROOT / "tests/EndToEnd/enter-root.sh"), str(self.root), str(self.shared), *map(str, command)]

    def environment(self, **more):
        return {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "HOME": HOME, "LANG": "C.UTF-8", "LANGUAGE": "en",
                "XDG_CURRENT_DESKTOP": "GNOME", "DEBIAN_FRONTEND": "noninteractive"} | more | {
                    name: os.environ[name] for name in ("DISPLAY", "XDG_RUNTIME_DIR", "DBUS_SESSION_BUS_ADDRESS",
                                                        "GDK_BACKEND", "GTK_USE_PORTAL") if name in os.environ}

    def run(self, *command, fails=False, patience=300):
        """What a command says inside."""
        answer = subprocess.run(self.enter(*command), env=self.environment(), capture_output=True, text=True,
                                timeout=patience)
        expect(fails or answer.returncode == 0,
               f"{' '.join(map(str, command))}: status {answer.returncode}: {(answer.stdout + answer.stderr)[-1500:]}")
        return answer.stdout.strip()

    def files(self):
        """Everything in the system, but what its kernel and the test put there."""
        found = set()
        for folder, folders, names in os.walk(self.root):
            inside = "/" + os.path.relpath(folder, self.root) if folder != str(self.root) else ""
            if not inside:
                folders[:] = [name for name in folders if name not in ("proc", "dev", "sys", "tmp")]
            found |= {f"{inside}/{name}" for name in folders + names}
        return found


class InnerDesktop(Desktop):
    """A display outside, and a session bus inside, which starts there what is activated."""

    def __init__(self, folder, bare):
        self.bare, self.folder = bare, folder
        super().__init__(folder)

    def run(self, *command, **options):
        if command[0] == "dbus-daemon":
            options |= {"env": self.bare.environment(G_DEBUG="fatal-criticals"),
                        "stderr": open(self.folder / "stderr", "ab")}
            command = self.bare.enter(*command, f"--address=unix:path={self.folder}/bus")
        process = super().run(*command, **options)
        if command[0].endswith("enter-root.sh"):
            self.bus = process
        return process

    def close(self):
        # What the bus has started is no child of it, but sees the same mounts.
        mounts = self.mounts(self.bus.pid)
        started = [int(pid) for pid in filter(str.isdigit, os.listdir("/proc")) if mounts and self.mounts(pid) == mounts]
        super().close()
        for pid in started:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass

    @staticmethod
    def mounts(pid):
        try:
            mounts = os.readlink(f"/proc/{pid}/ns/mnt")
        except OSError:
            return None
        return mounts if mounts != os.readlink("/proc/self/ns/mnt") else None


class Activated:
    """A process that somebody else started, with the part of Popen's face that the driver uses."""

    def __init__(self, pid):
        self.pid = pid
        self.returncode = None

    def poll(self):
        return None if os.path.exists(f"/proc/{self.pid}") else 0


class Walk:
    def __init__(self, bare, desktop, options, folder):
        self.bare, self.desktop, self.package = bare, desktop, options.package
        self.app = App(desktop, SimpleNamespace(language="en", perturb=False, pictures=options.pictures, program=None),
                       folder, "package")
        self.app.stderr_path = folder / "stderr"
        self.letters = folder / "letters"
        self.sandbox = False

    def owner(self):
        """The process that has the program's name on the bus, or 0."""
        answer = subprocess.run(["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
                                 "--method", "org.freedesktop.DBus.GetConnectionUnixProcessID", BUS_NAME],
                                capture_output=True, text=True)
        found = re.search(r"uint32 (\d+)", answer.stdout)
        return int(found[1]) if found else 0

    def started(self):
        self.app.process = Activated(wait(self.owner, "the program to be started"))
        wait(lambda: self.app.alive() and self.app.windows(), "the window")

    def quit(self):
        self.app.keys("ctrl+q")
        wait(lambda: self.app.process.poll() is not None, "the program to end after Ctrl+Q")
        self.app.check_stderr()

    # The walk, in its order

    def install(self):
        self.before = self.bare.files()
        package = self.desktop.folder / self.package.name
        shutil.copy(self.package, package)
        archives = self.bare.root / "var/cache/apt/archives"
        for archive in self.bare.archives.glob("*.deb"):
            shutil.copy(archive, archives)
        self.bare.run("apt-get", "-q", "update", fails=True)
        self.bare.run("apt-get", "-qy", "install", "--no-install-recommends", "--simulate", package)
        fetched = subprocess.run(self.bare.enter("apt-get", "-qy", "install", "--no-install-recommends", "--download-only",
                                                 package), env=self.bare.environment(), capture_output=True, timeout=900)
        if fetched.returncode != 0:
            raise NotRun("the mirror does not give what the package depends on")
        self.bare.run("apt-get", "-qy", "install", "--no-install-recommends", package)
        for archive in archives.glob("*.deb"):
            if not (self.bare.archives / archive.name).exists():
                shutil.copy(archive, self.bare.archives)
        self.bare.run("apt-get", "clean")

    def installed(self):
        listed = self.bare.run("dpkg", "-L", "tessel-mail").splitlines()
        for file in INSTALLED:
            expect(f"/usr/{file}" in listed and (self.bare.root / "usr" / file).is_file(), f"/usr/{file} is not there")
        program = self.bare.run("ldd", "/usr/bin/tessel-mail")
        expect("not found" not in program, f"libraries are missing: {program}")
        service = (self.bare.root / "usr/share/dbus-1/services" / f"{BUS_NAME}.service").read_text()
        expect("Exec=/usr/bin/tessel-mail" in service, f"the service starts something else: {service}")
        # By the triggers of the databases' own packages.
        cache = (self.bare.root / "usr/share/applications/mimeinfo.cache").read_text()
        expect(f"x-scheme-handler/mailto={ENTRY}" in cache, "the database of entries was not updated")
        expect("application/x-emlx:*.emlx" in (self.bare.root / "usr/share/mime/globs").read_text(),
               "the database of types was not updated")

    def handler(self):
        self.letters.mkdir()
        letter = mail.letter()
        outlook = (ROOT / "samples/Evening.msg").read_bytes()
        contents = {"eml": letter, "mime": letter, "msg": outlook, "oft": outlook,
                    "emlx": b"%d\n" % len(letter) + letter}
        box = mail.mbox(self.letters / "box", 2).read_bytes()
        for suffix, type in TYPES.items():
            file = self.letters / f"letter.{suffix}"
            file.write_bytes(contents.get(suffix, box))
            known = self.bare.run("xdg-mime", "query", "filetype", file)
            expect(known == type, f".{suffix} is {known}, not {type}")
            default = self.bare.run("xdg-mime", "query", "default", type)
            expect(default == ENTRY, f"{type} is opened by {default or 'nothing'}")
            expect(ENTRY in self.bare.run("gio", "mime", type), f"gio does not know the program for {type}")

    def double_click(self):
        self.sandbox = subprocess.run(self.bare.enter("bwrap", "--unshare-user", "--ro-bind", "/", "/", "true"),
                                      env=self.bare.environment(), capture_output=True).returncode == 0
        if not self.sandbox:
            print("NOT RUN  the safe view: no user namespaces inside; the program shows plain text", flush=True)
        self.bare.run("gio", "open", self.letters / "letter.eml")
        self.started()
        self.app.sees("Tide tables")
        first = self.app.process.pid
        (self.letters / "second.eml").write_bytes(mail.letter(subject="Low water"))
        self.bare.run("gio", "open", self.letters / "second.eml")
        self.app.sees("Low water")
        expect(self.owner() == first, "the second letter went to another process")
        self.app.step("two letters")

    def locked(self):
        names = {}

        def complete():
            names.clear()
            for pid in descendants(self.app.process.pid):
                try:
                    status = Path(f"/proc/{pid}/status").read_text()
                except OSError:
                    continue
                fields = dict(line.split(":\t", 1) for line in status.splitlines() if ":\t" in line)
                names[f"{pid} {fields['Name']}"] = fields["Seccomp"]
            return not self.sandbox or (any("WebKitWebProces" in name for name in names) and
                                        any("WebKitNetworkPr" in name for name in names))

        wait(complete, "the processes of the safe view")
        print("        ", names, flush=True)
        expect(set(names.values()) == {"2"}, f"not every process is kept off the network: {names}")

    def becomes_handler(self):
        stored = self.bare.root / HOME[1:] / ".config/mimeapps.list"
        expect(not stored.exists(), "there is a mimeapps.list before anybody asked for it")
        self.app.keys("ctrl+comma")
        self.app.find("push button", "Use Tessel Mail for email links…")
        for _ in range(12):
            if self.app.focused() and self.app.name(self.app.focused()) == "Use Tessel Mail for email links…":
                break
            self.app.keys("Tab")
        self.app.keys("Return")
        answer = self.app.find("push button", "Use Tessel Mail")
        expect(not stored.exists(), "it was set before it was confirmed")
        self.app.click(answer)
        wait(stored.exists, "mimeapps.list")
        self.app.sees("Tessel Mail now opens email links.")
        expect(re.search(rf"^x-scheme-handler/mailto={re.escape(ENTRY)};?$", stored.read_text(), re.M),
               f"mimeapps.list says {stored.read_text()!r}")
        expect(self.bare.run("xdg-mime", "query", "default", "x-scheme-handler/mailto") == ENTRY,
               "another program opens mail links")
        self.app.step("is the handler")
        self.app.keys("Escape")
        wait(lambda: len(self.app.windows()) == 1, "the settings to close")

    def link_while_running(self):
        first = self.app.process.pid
        self.bare.run("xdg-open", "mailto:a@b.example?subject=Hi")
        self.captured()
        expect(self.owner() == first, "the link went to another process")
        self.quit()

    def captured(self):
        self.app.find("push button", self.app.text("copy_details"))
        for text in ("a@b.example", "Hi"):
            self.app.sees(text)
        self.app.step("captured link")

    def link_while_not_running(self):
        expect(not self.owner(), "it still runs")
        self.bare.run("xdg-open", "mailto:a@b.example?subject=Hi")
        self.started()
        self.captured()
        environment = Path(f"/proc/{self.app.process.pid}/environ").read_bytes()
        expect(b"DBUS_STARTER_ADDRESS=" in environment, "it was not the bus that started it")
        self.quit()

    def remove(self):
        home = {file for file in self.bare.files() if file.startswith(HOME + "/")} - self.before
        self.bare.run("apt", "-qy", "remove", "--purge", "tessel-mail")
        known = self.bare.run("dpkg", "-l", "tessel-mail", fails=True)
        expect("tessel-mail" not in known, f"dpkg still knows it: {known}")
        after = self.bare.files()
        ours = {file for file in after - self.before if re.search("tessel", file, re.I)}
        expect(not ours - home, f"left in the system: {sorted(ours - home)}")
        for file in ("usr/share/applications/mimeinfo.cache", "usr/share/mime/globs2", "usr/share/mime/packages"):
            path = self.bare.root / file
            expect(path.is_dir() or not re.search("tessel|x-emlx", path.read_text(), re.I),
                   f"/{file} still names it or its types")
        expect(home <= after, f"removing took of the home: {sorted(home - after)}")
        # A package that stays merely suggests, or recommends, some that came along.
        self.bare.run("apt-get", "-qy", "autoremove", "--purge", "-o", "APT::AutoRemove::SuggestsImportant=false",
                      "-o", "APT::AutoRemove::RecommendsImportant=false")
        after = self.bare.files()
        left = {file for file in after - self.before if not KEPT_BY_OTHERS.match(file)} - home
        expect(not left, f"left in the system: {sorted(left)[:40]}")
        files = sorted(file for file in home if (self.bare.root / file[1:]).is_file())
        # Shaders that the display's driver has compiled, in a cache that all programs share: no mail is in them.
        drivers = [file for file in files if file.startswith(f"{HOME}/.cache/mesa_shader_cache/")]
        files = [file for file in files if file not in drivers]
        print("         left in the home:", *files, f"and {len(drivers)} files of the display's driver", flush=True)
        allowed = re.compile(rf"{HOME}/(\.config/mimeapps\.list|\.config/{BUS_NAME}/[^/]+|\.local/state/{BUS_NAME}/[^/]+)$")
        strange = [file for file in files if not allowed.match(file)]
        expect(not strange, f"left in the home by the program: {strange}")

    STEPS = [install, installed, handler, double_click, locked, becomes_handler, link_while_running,
             link_while_not_running, remove]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--bare", required=True, type=lambda path: Path(path).resolve())
    parser.add_argument("--package", required=True, type=lambda path: Path(path).resolve())
    parser.add_argument("--pictures", default=ROOT / "build/package/end-to-end", type=Path)
    options = parser.parse_args()
    options.pictures.mkdir(parents=True, exist_ok=True)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    folder = Path(tempfile.mkdtemp(prefix="tessel-"))
    bare, desktop, failed = None, None, False
    began = time.monotonic()
    try:
        bare = Bare(options.bare, folder)
        desktop = InnerDesktop(folder, bare)
        walk = Walk(bare, desktop, options, folder)
        for step in Walk.STEPS:
            begin = time.monotonic()
            try:
                step(walk)
                print(f"passed   package-{step.__name__} ({time.monotonic() - begin:.1f} s)", flush=True)
            except NotRun as reason:
                print(f"NOT RUN  package-{step.__name__} and what follows: {reason}", flush=True)
                break
            except Exception as error:  # what follows would stand on this
                failed = True
                print(f"FAILED   package-{step.__name__}: {error if isinstance(error, Failed) else repr(error)}", flush=True)
                if walk.app.stderr_path.exists():
                    print("         stderr:", walk.app.stderr_path.read_text(errors="replace").strip()[-1500:], flush=True)
                walk.app.picture("FAILED")
                break
        for step, fault in ((step, fault) for fault, step in walk.app.faults.items()):
            failed = True
            print(f"FAILED   package at “{step}”: {fault}", flush=True)
    except NotRun as reason:
        print(f"NOT RUN  the package: {reason}", flush=True)
    finally:
        if desktop:
            desktop.close()
        if bare:
            bare.close()
        shutil.rmtree(folder, ignore_errors=True)
    print(f"the whole took {time.monotonic() - began:.1f} s", flush=True)
    sys.exit(1 if failed else 0)


main()
