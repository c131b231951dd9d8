"""When something fails: the process of the page dies or hangs, F7, no safe view."""

import os
import signal
import time

import mail
from desktop import Picture, descendants, expect, wait
from driver import main, scenario


def page_process(app):
    """The process that draws the page."""
    return next((pid for pid, name in descendants(app.process.pid).items() if name.startswith("WebKitWebProces")), None)


def two(app):
    (app.mail / "blue.eml").write_bytes(mail.link("https://mail.example/1", mail.BLUE, subject="Blue"))
    (app.mail / "green.eml").write_bytes(mail.link("https://mail.example/2", mail.GREEN, subject="Green"))
    app.start(app.mail / "blue.eml")
    wait(lambda: Picture().middle_of(mail.BLUE), "the page")


@scenario(start=False, sandbox=True)
def page_process_killed(app):
    two(app)
    os.kill(wait(lambda: page_process(app), "the page's process"), signal.SIGKILL)
    app.sees(app.text("view_stopped"))
    app.step("stopped")
    app.command(app.mail / "green.eml")
    wait(lambda: Picture().middle_of(mail.GREEN), "the next message")
    app.step("next message")


@scenario(start=False, sandbox=True)
def page_process_hangs(app):
    two(app)
    pid = wait(lambda: page_process(app), "the page's process")
    os.kill(pid, signal.SIGSTOP)
    try:
        app.command(app.mail / "green.eml")
        app.sees("Green")
        expect(not Picture().middle_of(mail.BLUE), "the header stands above another message's body")
        wait(lambda: any("link" in app.content(thing) for thing in app.everything("text")), "the plain text")
        app.step("plain text")
    finally:
        os.kill(pid, signal.SIGCONT)


@scenario(start=False, sandbox=True)
def caret_key(app):
    two(app)
    app.click_at(*Picture().middle_of(mail.BLUE))
    time.sleep(0.5)
    app.keys("Escape", "F7", "F7")
    time.sleep(0.5)
    app.step("still there")


@scenario(start=False)
def no_safe_view(app):
    """Where no safe view can start, people read the text."""
    tools = app.home / "tools"
    tools.mkdir()
    (tools / "bwrap").write_text("#!/bin/sh\nexit 1\n")
    (tools / "bwrap").chmod(0o755)
    app.environment["PATH"] = f"{tools}:{os.environ['PATH']}"
    (app.mail / "page.eml").write_bytes(mail.html("<p>Readable in any case.</p>", subject="Page"))
    app.start(app.mail / "page.eml")
    wait(lambda: any("Readable in any case." in app.content(thing) for thing in app.everything("text")), "the text of the page")
    app.step("as text")


@scenario(start=False, sandbox=True)
def read_only_cache(app):
    if os.geteuid() == 0:
        (app.home / "cache").rmdir()
        (app.home / "cache").write_text("not a folder")
    else:
        (app.home / "cache").chmod(0o500)
    (app.mail / "page.eml").write_bytes(mail.html("<p>Readable in any case.</p>", subject="Page"))
    app.start(app.mail / "page.eml")
    wait(lambda: any("Readable in any case." in app.content(thing) for thing in app.everything("text")), "the text of the page")
    app.step("as text")


main()
