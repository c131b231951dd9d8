"""Opening: by the panel, by command, by drop, over the bus; every sample, odd letters, several starts."""

import shutil
import subprocess
import time

import mail
from dragging import drag, let_go
from desktop import Picture, expect, wait
from driver import ROOT, main, scenario


def letters(folder, *subjects):
    folder.mkdir(exist_ok=True)
    for subject in subjects:
        (folder / f"{subject}.eml").write_bytes(mail.letter(subject))
    return folder


def opened(app, count):
    """The sidebar holds this many files."""
    def rows():
        lists = app.everything("list", app.text("opened_files"))
        return lists and len(app.everything("list item", within=lists[0])) == count
    wait(lambda: app.alive() and rows(), f"{count} open files")


@scenario
def welcome(app):
    for key in ("welcome", "welcome_drop"):
        app.sees(app.text(key), 5)
    app.step("welcome")


@scenario
def panel_several_files(app):
    folder = letters(app.mail / "several", "Tide", "Harbour", "Lamp")
    app.keys("ctrl+o")
    app.choose_in_panel(folder, app.text("open"), several=True)
    opened(app, 3)
    app.step("three files")


@scenario
def panel_one_file_by_button(app):
    folder = letters(app.mail, "Lighthouse")
    app.click(app.find("push button", app.text("open_mail")))
    app.choose_in_panel(folder / "Lighthouse.eml")
    app.sees("Lighthouse")
    app.step("one file")


@scenario
def panel_cancelled_then_used(app):
    folder = letters(app.mail, "Second")
    app.keys("ctrl+o")
    app.wait_for_panel()
    app.keys("Escape")
    wait(lambda: not app.panel(), "the file panel to close")
    app.step("nothing chosen")
    app.keys("ctrl+o")
    app.choose_in_panel(folder / "Second.eml")
    opened(app, 1)
    app.step("second time")


@scenario
def panel_folder(app):
    folder = mail.maildir(app.mail / "Kept", 4)
    app.click(app.find("push button", app.text("open_more")))
    app.step("menu", focus=False)
    app.choose(app.text("open_folder"))
    app.choose_in_panel(folder)
    app.sees("4" + app.text("message_count"))
    app.step("folder")


@scenario(start=False)
def by_command(app):
    letters(app.mail, "One", "Two")
    app.start(app.mail / "One.eml", app.mail / "Two.eml", mail.mbox(app.mail / "Some.mbox", 5))
    opened(app, 3)
    app.step("three sources")


@scenario(start=False)
def bad_and_good(app):
    letters(app.mail, "Good")
    (app.mail / "bad.eml").mkdir()
    (app.mail / "bad.eml" / "nothing").write_text("no mail")
    app.start(app.mail / "bad.eml", app.mail / "Good.eml")
    app.sees(app.text("could_not_complete"))
    app.step("error", focus=False)
    app.keys("Escape")
    app.gone("label", app.text("could_not_complete"))
    opened(app, 1)
    app.sees("Ada Linden <ada@mail.example>")
    expect(not app.shows(app.text("select_message")), "the good file is open, but not selected")
    app.step("the good one")


@scenario
def second_start(app):
    letters(app.mail, "Later")
    expect(app.command(app.mail / "Later.eml") == 0, "the second start did not end with status 0")
    opened(app, 1)
    app.step("handed over")
    expect(app.command() == 0, "the second start did not end with status 0")
    opened(app, 1)


@scenario
def over_the_bus(app):
    letters(app.mail, "Bus")
    subprocess.run(["gdbus", "call", "--session", "--dest", "org.tesselmail.TesselMail", "--object-path",
                    "/org/tesselmail/TesselMail", "--method", "org.freedesktop.Application.Open",
                    f"['file://{app.mail}/Bus.eml']", "{}"], check=True, capture_output=True, timeout=30)
    opened(app, 1)
    app.step("over the bus")


@scenario
def by_drop(app):
    folder = letters(app.mail / "dropped", "Left", "Right")
    drag(app, "files", *sorted(folder.iterdir()))
    app.picture("hovering")
    let_go(app)
    opened(app, 2)
    app.step("dropped")


@scenario(start=False, sandbox=True)
def drop_over_the_message(app):
    folder = letters(app.mail / "dropped", "Left")
    app.start(mail.mbox(app.mail / "Some.mbox", 3))
    time.sleep(1)
    drag(app, "files", *sorted(folder.iterdir()))
    app.xdotool("mousemove", 1000, 600)
    time.sleep(0.3)
    let_go(app)
    opened(app, 2)


@scenario
def dragged_text(app):
    """Only files light the frame that says that they can be dropped."""
    before = Picture(app.place(app.find("frame"))).colours()
    drag(app, "text", "no file")
    hovering = Picture(app.place(app.find("frame"))).bytes
    app.picture("hovering")
    app.xdotool("mousemove", 700, 500)
    let_go(app)
    app.gone("list item")
    again = Picture(app.place(app.find("frame"))).bytes
    different = sum(a != b for a, b in zip(hovering, again)) / len(again)
    expect(different < 0.02 and before, f"the window changes while a text is over it ({different:.1%})")


@scenario(start=False)
def every_sample(app):
    samples = sorted((ROOT / "samples").iterdir())
    shutil.copytree(ROOT / "samples", app.mail / "samples")
    app.start()
    expect(len(samples) <= 20, "more samples than are opened at once")
    app.command(*[app.mail / "samples" / sample.name for sample in samples])
    opened(app, len(samples))
    app.step("all samples")
    for row in app.everything("list item", within=app.find("list", app.text("opened_files")))[:20]:
        app.click(row)
        wait(app.rows, "the rows of " + app.name(row))
        app.check_stderr()
    app.step("the last sample")


@scenario
def odd_letters(app):
    for name, content in mail.odd():
        (app.mail / name).write_bytes(content)
    files = sorted(app.mail.iterdir())
    expect(len(files) >= 50, "fewer than fifty letters")
    for first in range(0, len(files), 20):
        app.command(*files[first:first + 20])
        app.gone("label", app.text("opening"))
        time.sleep(0.5)
        while app.everything("label", app.text("could_not_complete")):
            app.keys("Escape")
        app.step(f"from {first}", focus=False)
        for _ in range(20):
            app.keys("alt+Down")
        app.keys("ctrl+shift+w")
        app.sees(app.text("welcome"))


@scenario
def about(app):
    """The program's own icon, also where nothing is installed; the toolkit would show a broken picture."""
    app.ask_to("about")
    window = wait(lambda: [w for w in app.windows() if app.typed(w, "AdwAboutWindow") or len(app.windows()) > 1], "About")
    time.sleep(0.8)
    app.step("about", controls=False)
    for part, colour in (("the letter's flap", (0x2f, 0x6f, 0xa8)), ("the dots", (0xe9, 0xa2, 0x3b))):
        expect(Picture().middle_of(colour), f"About shows no icon: {part} is missing")
    app.keys("Escape")
    wait(lambda: len(app.windows()) == 1, "About to close")


main()
