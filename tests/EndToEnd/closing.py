"""Closing files and windows at every moment, and starting again."""

import re

import mail
from desktop import expect, wait
from driver import main, scenario


def with_archive(app, count=3):
    app.start(mail.mbox(app.mail / "Some.mbox", count))
    wait(app.rows, "rows")


@scenario(start=False)
def files(app):
    (app.mail / "One.eml").write_bytes(mail.letter("One"))
    app.start(mail.mbox(app.mail / "Some.mbox", 3), app.mail / "One.eml")
    button = app.find("push button", re.compile("^" + re.escape(app.text("close_file")) + " Some.mbox"))
    row = app.find("list item", re.compile("^Some.mbox"))
    app.click(row)
    app.click(button)
    wait(lambda: not app.everything("list item", re.compile("^Some.mbox")), "the file to close")
    app.step("one closed")
    app.keys("ctrl+shift+w")
    app.sees(app.text("welcome"))
    app.step("all closed")


@scenario(start=False)
def files_by_key(app):
    """The menu of a row, and Delete."""
    for name in "ABC":
        (app.mail / f"{name}.eml").write_bytes(mail.letter(name))
    app.start(*(app.mail / f"{name}.eml" for name in "ABC"))
    app.find("list item", re.compile("^C.eml"))
    app.keys("F6", "F6")
    wait(lambda: any(part.startswith("list item A.eml") for part in app.focus_path()[:1]), "the focus on the first file")
    app.keys("Menu")
    app.choose(app.text("close_file"))
    wait(lambda: not app.everything("list item", re.compile("^A.eml")), "the file to close by its menu")
    wait(lambda: any(part.startswith("list item B.eml") for part in app.focus_path()[:1]), "the focus on the next file")
    app.step("closed by menu")
    app.keys("Delete")
    wait(lambda: not app.everything("list item", re.compile("^B.eml")), "the file to close by Delete")
    app.step("closed by Delete")


@scenario(start=False)
def by_key_and_again(app):
    for _ in range(2):
        with_archive(app)
        app.step("open")
        app.keys("ctrl+w")
        app.ended()
        app.check_stderr()


@scenario(start=False)
def by_button_and_again(app):
    for _ in range(2):
        with_archive(app)
        app.click(app.everything("push button", re.compile("^(Close|关闭)$"))[-1])
        app.ended()
        app.check_stderr()


@scenario(start=False)
def by_window_manager(app):
    with_archive(app)
    app.keys("alt+F4")
    app.ended()


@scenario(start=False)
def while_indexing(app):
    app.start(mail.mbox(app.mail / "long.mbox", 70_000, body="A line of text.\n" * 40))
    app.keys("ctrl+w")
    app.ended()


@scenario(start=False)
def while_settings_are_open(app):
    with_archive(app)
    app.keys("ctrl+comma")
    wait(lambda: len(app.windows()) == 2, "the settings")
    app.ask_to("quit")
    app.ended()


@scenario(start=False)
def while_a_panel_is_open(app):
    with_archive(app)
    app.keys("ctrl+o")
    app.wait_for_panel()
    app.picture("panel")
    app.command(app.mail / "Some.mbox")
    app.keys("Escape")
    wait(lambda: not app.panel(), "the panel to close")
    app.keys("ctrl+o")
    app.wait_for_panel()
    app.ask_to("quit")
    app.ended()


@scenario(start=False)
def while_an_error_shows(app):
    (app.mail / "bad.xyz").write_text("no mail")
    app.start(app.mail / "bad.xyz")
    app.sees(app.text("could_not_complete"))
    app.keys("ctrl+q")
    app.ended("Ctrl+Q in the error to end the program")


main()
