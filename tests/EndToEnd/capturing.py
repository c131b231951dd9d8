"""Email links handed over by the system: while running and while not, copied, and put away in each way."""

import mail
from desktop import expect, wait
from driver import main, scenario

LINK = "mailto:ada@mail.example?subject=Tide%20tables&body=High%20water"


def card(app):
    app.sees(app.text("nothing_sent"))
    return app.find("push button", app.text("copy_details"))


def put_away(app):
    wait(lambda: app.alive() and not app.everything("label", app.text("captured_link")), "the card to go")


@scenario(start=False)
def while_not_running(app):
    app.start(LINK)
    details = card(app)
    for text in ("ada@mail.example", "Tide tables", "High water"):
        app.sees(text)
    app.step("card")
    app.click(app.find("push button", app.text("copy_original")))
    wait(lambda: app.clipboard() == LINK, "the link in the clipboard")
    app.click(details)
    wait(lambda: "High water" in app.clipboard(), "the details in the clipboard")
    expect(not any("\u2066" <= letter <= "\u2069" for letter in app.clipboard()), "marks of direction in the clipboard")
    app.step("copied")


@scenario(start=False)
def while_running(app):
    app.start(mail.mbox(app.mail / "Two.mbox", 2))
    wait(lambda: len(app.rows()) == 2, "two rows")
    expect(app.command(LINK) == 0, "the second start did not end with status 0")
    card(app)
    app.step("card")
    expect(app.command("mailto:second@mail.example") == 0, "the second start did not end with status 0")
    app.sees("second@mail.example")
    expect(not app.shows("Tide tables"), "the first link is still there")
    app.keys("Escape")
    put_away(app)
    app.step("closed by Escape")


@scenario(start=False)
def passed_by(app):
    """The card stays while the focus goes round, and has it when its turn comes."""
    app.start(mail.mbox(app.mail / "Two.mbox", 2))
    wait(lambda: len(app.rows()) == 2, "two rows")
    app.command(LINK)
    details = card(app)
    for _ in range(14):
        app.keys("Tab")
    for _ in range(3):
        app.keys("F6")
        if app.focused() and app.name(app.focused()) == app.name(details):
            break
    else:
        expect(False, "F6 never reaches the card")
    app.step("round")
    expect(app.everything("label", app.text("captured_link")), "the card has gone")
    app.keys("Escape")
    put_away(app)


@scenario(start=False)
def closed_by_button(app):
    app.start(LINK)
    left, top, width, height = app.place(card(app))
    own = [button for button in app.everything("push button", app.text("close")) if app.place(button)[1] > top - 500
           and app.place(button)[1] > app.place(app.find("frame"))[1] + 50]
    expect(own, "the card has no button that closes it")
    app.click(own[-1])
    put_away(app)
    app.step("closed by its button")


@scenario(start=False)
def closed_with_all_files(app):
    app.start(LINK)
    card(app)
    app.keys("ctrl+shift+w")
    put_away(app)
    app.step("closed with all files")


@scenario(start=False)
def too_long(app):
    app.start()
    app.command("mailto:a@b.example?body=" + "x" * 120_000)
    card(app)
    app.step("100 KB")
    app.keys("Escape")
    put_away(app)


main()
