"""Searching, clearing and sorting by keys."""

import time

import mail
from desktop import expect, wait
from driver import main, scenario


def five(app):
    app.start(mail.mbox(app.mail / "Five.mbox", 5))
    wait(lambda: len(app.rows()) == 5, "five rows")


@scenario(start=False)
def search_and_clear(app):
    five(app)
    app.keys("ctrl+f")
    app.type("Message 3")
    wait(lambda: len(app.rows()) == 1, "one hit")
    app.step("one hit")
    app.keys("Escape")
    wait(lambda: len(app.rows()) == 5, "all rows again")
    app.step("cleared")


@scenario(start=False)
def hits_from_the_top(app):
    """The newest hit is in view, however far down the message on show is among them, and their number is told."""
    app.start(mail.mbox(app.mail / "Many.mbox", 60))
    wait(lambda: any("Message 0" in app.name(row) for row in app.rows()), "the message on show, the oldest")
    app.keys("ctrl+f")
    app.type("Message")
    wait(lambda: any("Message 59" in app.name(row) for row in app.rows()), "the newest hit")
    app.sees("60" + app.text("message_count"))
    app.step("hits")
    app.keys("Escape")
    wait(lambda: any("Message 0" in app.name(row) for row in app.rows()), "the message on show again")
    app.keys("ctrl+f")
    app.type("nowhere")
    app.sees(app.text("no_messages"))
    app.keys("Return")
    app.step("Return without hits")
    expect("entry" in app.focus_path()[0], f"Return leaves the field for {app.focus_path()[:1]}")


@scenario(start=False)
def no_hit(app):
    five(app)
    app.keys("ctrl+f")
    app.type("nowhere")
    app.sees(app.text("no_messages"))
    wait(lambda: any("nowhere" in app.name(label) for label in app.everything("label")), "the query under “No messages”")
    app.step("no hit")
    app.keys("ctrl+a", "BackSpace")
    for _ in range(20):  # a list in the making is no empty answer
        expect(not app.everything("label", app.text("no_messages")), "clearing a search says that there are no messages")
        if len(app.rows()) == 5:
            break
    wait(lambda: len(app.rows()) == 5, "all rows again")


@scenario(start=False)
def order(app):
    five(app)
    first = app.name(app.rows()[0]) or app.shows("Message 4")
    button = app.find(["push button", "toggle button", "check box"], app.text("message_order"))
    app.click(button)
    wait(lambda: app.name(app.rows()[0]) != first, "another first row")
    app.step("oldest first")
    app.click(button)
    wait(lambda: app.name(app.rows()[0]) == first, "the first order again")


@scenario(start=False)
def search_while_switching(app):
    mail.mbox(app.mail / "Other.mbox", 4, subject="Other")
    app.start(mail.mbox(app.mail / "Five.mbox", 5), app.mail / "Other.mbox")
    app.keys("ctrl+f")
    app.type("Message")
    time.sleep(1)
    rows = app.everything("list item", within=app.find("list", app.text("opened_files")))
    for row in rows + rows:
        app.click(row)
        app.check_stderr()
    app.step("switched")


main()
