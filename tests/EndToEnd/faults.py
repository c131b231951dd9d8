"""When the system fails the program: nothing is lost, and people are told what happened in a sentence they know."""

import contextlib
import os
import re
import signal
import subprocess
import time

import mail
from dragging import drag, let_go
from desktop import Picture, descendants, expect, wait, xdotool
from driver import NotRun, main, scenario


def told(app, *sentences):
    """The notice at the window says these; then it is put away."""
    app.sees(app.text("could_not_complete"))
    for sentence in sentences:
        app.sees(sentence, 5)
    app.step("told", focus=False)
    app.keys("Escape")
    app.gone("label", app.text("could_not_complete"))


def good(app):
    (app.mail / "good.eml").write_bytes(mail.letter("Still here", body="All of it.\n"))
    return app.mail / "good.eml"


def reads(app, text):
    wait(lambda: app.alive() and any(text in app.content(thing) for thing in app.everything("text")), f"the text “{text}”")


@scenario(start=False)
def unreadable(app):
    os.mkfifo(app.mail / "pipe.eml")
    (app.mail / "folder.eml").mkdir()
    (app.mail / "gone.eml").symlink_to(app.mail / "nowhere.eml")
    secret, refused = app.mail / "secret.eml", []
    if os.geteuid() != 0:  # for root nothing is secret
        secret.write_bytes(mail.letter())
        secret.chmod(0)
        refused = [secret]
    app.start(app.mail / "pipe.eml", app.mail / "folder.eml", app.mail / "gone.eml", *refused, good(app))
    told(app, "pipe.eml: ", "folder.eml: ", "gone.eml: " + app.text("file_missing"),
         *[file.name + ": " + app.text("may_not_read") for file in refused])
    app.sees("Still here")
    app.step("the good one")


@scenario(start=False)
def ten_thousand_files(app):
    letter = mail.letter("One of many")
    files = [app.mail / f"{number:04}.eml" for number in range(10_000)]
    for file in files:
        file.write_bytes(letter)
    left = app.text("files_left").format(9_980, 20)
    app.start(*files)
    told(app, left)
    app.sees("0012.eml")
    drag(app, "files", *files)
    let_go(app)
    told(app, left)
    app.sees("One of many")


@scenario(start=False, sandbox=True)
def read_only_home(app):
    """Nothing can be stored: no setting, no place of the window, no rules for the page."""
    for part in ("config", "data", "cache", "state"):
        if os.geteuid() == 0:
            (app.home / part).rmdir()
            (app.home / part).write_text("not a folder")
        else:
            (app.home / part).chmod(0o500)
    app.start(good(app))
    reads(app, "All of it.")
    app.keys("ctrl+comma")
    app.sees(app.text("text_size"))
    app.keys("Escape")
    wait(lambda: len(app.windows()) == 1, "the settings to close")
    app.step("settings closed")
    expect(app.command(good(app)) == 0, "the second start did not end with status 0")


@scenario(start=False)
def no_session_bus(app):
    """Nor accessibility then: what is on the screen must do."""
    page = app.mail / "page.eml"
    page.write_bytes(mail.link("https://mail.example/", mail.BLUE, subject="Page"))
    # The toolkit still finds the accessibility bus by the display, and then asserts.
    app.environment |= {"DBUS_SESSION_BUS_ADDRESS": f"unix:path={app.home}/no-bus", "GTK_A11Y": "none"}
    app.stderr = open(app.stderr_path, "ab")
    app.process = subprocess.Popen([app.options.program, page], env=app.environment, cwd=app.home, stdout=app.stderr,
                                   stderr=app.stderr, start_new_session=True)
    wait(lambda: app.alive() and xdotool("search", "--onlyvisible", "--pid", app.process.pid), "the window")
    wait(lambda: app.alive() and Picture().colours() > 60, "a window with something in it")
    time.sleep(2)
    app.picture("without a bus")
    app.quit()


@scenario(start=False)
def unknown_locale(app):
    app.environment |= {"LANG": "xx_YY.UTF-8", "LC_ALL": "xx_YY.UTF-8"}
    app.start(mail.mbox(app.mail / "Some.mbox", 5), good(app))
    wait(lambda: len(app.rows()) == 5, "five rows")
    app.step("five rows")


def change(kind, path, count=3):
    if kind == "deleted":
        path.unlink()
    elif kind == "truncated":
        os.truncate(path, path.stat().st_size // 2 - 37)
    else:
        mail.mbox(path.with_suffix(".new"), count, subject="Instead")
        os.replace(path.with_suffix(".new"), path)


@scenario(start=False)
def changed_while_open(app):
    for kind, sentence in (("deleted", "file_missing"), ("truncated", "source_changed"), ("replaced", "source_changed")):
        archive = mail.mbox(app.mail / f"{kind}.mbox", 6, body=f"A line of the {kind}.\n" * 40)
        app.start(archive)
        wait(lambda: len(app.rows()) == 6, "six rows")
        app.sees("Ada Linden <ada@mail.example>")
        change(kind, archive)
        app.keys("alt+Up")
        told(app, app.text(sentence))
        expect(len(app.rows()) == 6, "the list lost its rows")
        if kind == "replaced":
            app.click(app.find("push button", app.text("reopen")))
            wait(lambda: len(app.rows()) == 3, "the three new rows")
            app.sees("Instead 2")
            app.step("opened again")
        app.quit()


@scenario(start=False)
def changed_while_indexed(app):
    """Whichever moment it hits, there is a list or a sentence, and the program goes on."""
    letters = b"".join(b"From ada@mail.example Mon Jan  1 09:00:00 2024\n" + mail.letter(f"Of many {number}", body="A line.\n" * 9)
                       + b"\n" for number in range(500))
    app.start(good(app))
    for kind in ("deleted", "truncated", "replaced"):
        archive = app.mail / f"{kind}.mbox"
        archive.write_bytes(letters * 150)
        app.command(archive)
        change(kind, archive)
        wait(lambda: app.alive() and (app.everything("label", app.text("could_not_complete")) or app.shows(archive.name)),
             "the archive or a sentence", 60)
        app.gone("label", app.text("opening"), 60)
        app.picture(kind)
        while app.everything("label", app.text("could_not_complete")):
            app.keys("Escape")
        app.step(f"{kind} while indexed", focus=False)
        app.keys("ctrl+shift+w")
        app.sees(app.text("welcome"))
        archive.unlink(missing_ok=True)
    app.command(app.mail / "good.eml")
    app.sees("Still here")


@contextlib.contextmanager
def mounted(folder, options):
    """A file system of its own at `folder`."""
    folder.mkdir(parents=True, exist_ok=True)
    if os.geteuid() != 0 or subprocess.run(["mount", "-t", "tmpfs", "-o", options, "tmpfs", folder],
                                           capture_output=True).returncode:
        raise NotRun("no file system can be mounted here")
    try:
        yield folder
    finally:
        subprocess.run(["umount", "--lazy", folder], capture_output=True)


def not_saved(app, folder, sentence):
    (app.mail / "file.eml").write_bytes(mail.attached("tide.bin", bytes(200_000), subject="With a file"))
    app.start(app.mail / "file.eml")
    app.click(app.find("push button", re.compile("^" + re.escape(app.text("save_attachment")))))
    app.choose_in_panel(folder / "copy.bin")
    told(app, app.text(sentence))
    expect(not list(folder.iterdir()), f"left behind: {list(folder.iterdir())}")
    app.sees("With a file")
    app.step("still shown")


@scenario(start=False)
def saving_where_nothing_may_be_written(app):
    folder = app.home / "locked"
    if os.geteuid() != 0:
        folder.mkdir(mode=0o500)
        return not_saved(app, folder, "may_not_save")
    with mounted(folder, "ro,size=64k"):
        not_saved(app, folder, "may_not_save")


@scenario(start=False)
def saving_on_a_full_disk(app):
    with mounted(app.home / "full", "size=64k") as folder:
        not_saved(app, folder, "disk_full")


@scenario(start=False, sandbox=True)
def page_process_killed_again_and_again(app):
    pages = []
    for number in range(4):
        pages.append(app.mail / f"{number}.eml")
        pages[-1].write_bytes(mail.link(f"https://mail.example/{number}", (mail.BLUE, mail.GREEN)[number % 2], subject=f"Page {number}"))
    app.start(pages[0])
    for number in range(3):
        wait(lambda: Picture().middle_of((mail.BLUE, mail.GREEN)[number % 2]), f"page {number}")
        pid = wait(lambda: next((pid for pid, name in descendants(app.process.pid).items()
                                 if name.startswith("WebKitWebProces")), None), "the page's process")
        os.kill(pid, signal.SIGKILL)
        app.sees(app.text("view_stopped"))
        app.step(f"stopped {number}")
        app.command(pages[number + 1])
    wait(lambda: Picture().middle_of(mail.GREEN), "the last page")
    app.step("the last page")


main()
