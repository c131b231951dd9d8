"""Archives of 2 to 150,000 messages: the list shows rows at once, and stays in step with what is asked of it."""

import time

import mail
from desktop import Picture, expect, wait
from driver import main, scenario


def list_holds(app, count):
    wait(lambda: app.alive() and app.shows(f"{count}{app.text('message_count')}"), f"{count} messages", 120)
    time.sleep(0.7)


def list_shows_rows(app, step):
    """Rows for a screen reader, and rows for the eye, without a key or click since."""
    listing = app.find("list", app.text("messages"))
    x, y, width, height = app.place(listing)
    rows = app.everything("list item", within=listing)
    expect(rows, "no row shows in the list")
    colours = Picture((x, y, width, min(height, 75 * len(rows)))).colours()
    app.step(step)
    expect(colours > 20, f"the list is blank: {colours} colours")


@scenario(start=False)
def each_length(app):
    for count in (2, 2_000, 2_043, 4_504):
        app.start(mail.mbox(app.mail / f"{count}.mbox", count))
        list_holds(app, count)
        list_shows_rows(app, f"{count} messages")
        app.quit()


def long_archive(app, count):
    app.start(mail.mbox(app.mail / "long.mbox", count))
    list_holds(app, count)
    list_shows_rows(app, "opened")
    wait(lambda: app.everything("list item", within=app.find("list", app.text("messages")), SELECTED=True),
         "the selected row in view")
    app.click(app.find(["push button", "toggle button"], app.text("message_order")))
    time.sleep(1)
    list_shows_rows(app, "other order")
    app.keys("ctrl+f")
    app.type(f"Message {count - 1}")
    wait(lambda: len(app.rows()) == 1, "the one hit", 60)
    app.step("one hit")
    app.keys("Escape")
    wait(lambda: len(app.rows()) > 3, "all rows again", 60)
    list_shows_rows(app, "search cleared")


@scenario(start=False)
def seventy_thousand(app):
    long_archive(app, 70_000)


@scenario(start=False)
def hundred_and_fifty_thousand(app):
    long_archive(app, 150_000)


@scenario(start=False)
def folder_of_letters(app):
    app.start(mail.maildir(app.mail / "Kept", 2_000))
    list_holds(app, 2_000)
    list_shows_rows(app, "a folder of letters")


main()
