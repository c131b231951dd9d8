"""Reading by the keyboard alone: from the list to the text and back, through all panes, every part named."""

import re
import time

import mail
from desktop import expect, wait
from driver import main, scenario


def three(app):
    app.start(mail.mbox(app.mail / "Three.mbox", 3, body="To be read.\n"))
    app.sees("3" + app.text("message_count"))
    wait(lambda: len(app.rows()) == 3, "three rows")
    return app


def on_show(app, subject):
    """The reading pane's heading: it stands right of the list."""
    right = app.place(app.find("list", app.text("messages")))
    wait(lambda: any(app.place(label)[0] >= right[0] + right[2] for label in app.everything("label", subject)),
         f"the message “{subject}”")


def in_list(app):
    return any(part.startswith("list ") and app.text("messages") in part for part in app.focus_path())


def focus_list(app):
    app.keys("ctrl+f", "Return")
    wait(lambda: in_list(app), "the focus in the list")


@scenario(start=False)
def names(app):
    three(app)
    names = [app.name(row) for row in app.rows()]
    expect(all(re.match(r"Ada Linden.*, Message \d, .*2024", name) for name in names), f"rows are read as {names}")
    order = app.find(["push button", "toggle button", "check box"], app.text("message_order"))
    expect(app.is_(order, "PRESSED") or app.is_(order, "CHECKED"), "the order control does not say its state")
    for key in ("open_files", "details", "export", "settings"):
        app.find(["push button", "toggle button"], app.text(key), patience=5)
    app.step("names")


@scenario(start=False)
def arrows_and_enter(app):
    three(app)
    focus_list(app)
    app.keys("Home")
    on_show(app, "Message 2")
    app.keys("Down")
    on_show(app, "Message 1")
    app.step("second row")
    app.keys("Return")
    wait(lambda: app.focused() and not in_list(app), "the focus in the text")
    app.step("in the text")
    expect(not any("push button" in part for part in app.focus_path()[:1]), f"Enter leads to {app.focus_path()[:2]}")
    app.keys("alt+Down")
    on_show(app, "Message 0")
    app.keys("alt+Up", "alt+Up")
    on_show(app, "Message 2")
    app.step("back to the first")


@scenario(start=False)
def click_and_arrows(app):
    """A click on a message leaves the keys with the list."""
    three(app)
    app.click(app.rows()[1])
    on_show(app, "Message 1")
    app.keys("Down")
    on_show(app, "Message 0")
    expect(in_list(app), f"the focus is on {app.focus_path()[:2]}")
    app.step("clicked")


@scenario(start=False)
def tab_leaves_the_list(app):
    three(app)
    focus_list(app)
    app.keys("Tab")
    time.sleep(0.3)
    expect(not in_list(app), "Tab stays in the list")
    app.step("out of the list")
    app.keys("shift+Tab")
    wait(lambda: in_list(app), "Shift+Tab to go back to the list")


@scenario(start=False)
def tab_never_vanishes(app):
    """Through the whole window: everywhere a focus, and every pane's part reached again."""
    three(app)
    seen = []
    for _ in range(40):
        app.keys("Tab")
        path = wait(app.focus_path, "a focus that is somewhere", 5)
        seen.append(" < ".join(path[:6]))
    app.step("after forty tabs")
    for part in ("messages", "search", "opened_files", "details"):
        expect(any(app.text(part) in path for path in seen), f"Tab never reaches “{app.text(part)}”")


@scenario(start=False)
def tab_opens_nothing(app):
    """Walking through the sidebar must not open each source that is passed."""
    for name in ("A", "B", "C"):
        mail.mbox(app.mail / f"{name}.mbox", 2, subject=f"From {name}")
    app.start(*(app.mail / f"{name}.mbox" for name in "ABC"))
    app.find("list item", re.compile("^C.mbox"))
    time.sleep(0.5)
    def chosen():
        return [app.name(row) for row in
                app.everything("list item", within=app.find("list", app.text("opened_files")), SELECTED=True)]
    before = chosen()
    for _ in range(30):
        app.keys("Tab")
    expect(chosen() == before, f"Tab went from {before} to {chosen()}")
    app.step("nothing opened")


@scenario(start=False)
def panes_by_f6(app):
    three(app)
    focus_list(app)
    places = []
    for key in ("F6", "F6", "F6", "shift+F6"):
        app.keys(key)
        places.append(tuple(app.place(wait(app.focused, "a focus after " + key, 5))))
        app.step(key, controls=False)
    expect(len(set(places[:3])) == 3, "F6 does not go through three panes")
    expect(places[3] == places[1], "Shift+F6 does not go back")


def focused_row(app, name):
    wait(lambda: any(part.startswith("list item " + name) for part in app.focus_path()[:1]), f"the focus on {name}")


@scenario(start=False)
def opened_by_keyboard(app):
    """What opens has the focus in its messages; the files are walked by arrows, and only Enter leaves them."""
    for name in "AB":
        mail.mbox(app.mail / f"{name}.mbox", 3, subject=f"From {name}")
    (app.mail / "C.eml").write_bytes(mail.letter("From C"))
    app.start(app.mail / "A.mbox", app.mail / "C.eml", app.mail / "B.mbox")
    wait(lambda: in_list(app), "the focus in the list")
    app.find("list item", re.compile("^B.mbox"))
    for _ in range(2):
        app.keys("F6")
    focused_row(app, "A.mbox")
    for key, name, subject in (("Down", "C.eml", "From C"), ("Down", "B.mbox", "From B 0"), ("Up", "C.eml", "From C"),
                               ("Up", "A.mbox", "From A 0")):
        app.keys(key)
        on_show(app, subject)
        focused_row(app, name)
    app.step("files walked")
    app.keys("Return")
    wait(lambda: in_list(app), "the focus in the list after Enter")
    app.keys("Up")
    on_show(app, "From A 1")
    app.step("list walked")


@scenario(start=False)
def narrow(app):
    """One pane at a time: the files are walked, Enter and Alt+Left go there and back."""
    state = app.home / "state" / "org.tesselmail.TesselMail"
    state.mkdir(parents=True)
    (state / "window.ini").write_text("[Window]\nwidth=360\nheight=640\n")
    mail.mbox(app.mail / "A.mbox", 3, subject="From A")
    (app.mail / "B.eml").write_bytes(mail.letter("From B"))
    app.start(app.mail / "A.mbox", app.mail / "B.eml")
    wait(lambda: in_list(app), "the list of the first file")
    app.keys("alt+Left")
    focused_row(app, "A.mbox")
    app.step("files")
    app.keys("Down")
    focused_row(app, "B.eml")
    app.keys("Return")
    app.sees("From B")
    app.step("letter")
    app.keys("alt+Left", "alt+Left", "Up", "Return")
    wait(lambda: in_list(app), "the list")
    app.keys("Return")
    wait(lambda: not in_list(app), "the message")
    app.step("message")
    app.keys("alt+Left")
    wait(lambda: in_list(app), "the list again")


def widths(app):
    found = {app.name(thing): app.extents(thing).width for thing in app.everything("list")}
    return [found.get(app.text(key)) for key in ("opened_files", "messages")]


@scenario(start=False)
def panes_by_pointer(app):
    """The lines between the panes are dragged; what is shown moves none of them, and a new start finds them there."""
    (app.mail / "A.eml").write_bytes(mail.letter("From A"))
    (app.mail / ("long " * 40 + ".eml")).write_bytes(mail.letter("Long " * 60))
    app.start(app.mail / "A.eml")
    on_show(app, "From A")
    wanted = widths(app)
    for pane, key, by in ((0, "opened_files", 60), (1, "messages", -35)):
        x, y, width, _ = app.place(app.find("list", app.text(key)))
        app.drag(x + width + (6 if pane else 0), y + 200, by)  # the list of messages has a margin
        wanted[pane] += by
    wait(lambda: all(abs(has - want) <= 2 for has, want in zip(widths(app), wanted)), f"the widths {wanted}", 5)
    wanted = widths(app)
    app.step("dragged")
    app.command(app.mail / ("long " * 40 + ".eml"))
    on_show(app, re.compile("^(Long )+"))
    expect(widths(app) == wanted, f"a long name changes the widths from {wanted} to {widths(app)}")
    app.command("mailto:ada@mail.example?subject=" + "subject" * 60)
    app.sees(app.text("nothing_sent"))
    expect(widths(app) == wanted, f"a long subject changes the widths from {wanted} to {widths(app)}")
    app.step("long texts")
    app.quit()
    app.start(app.mail / "A.eml")
    on_show(app, "From A")
    wait(lambda: widths(app) == wanted, f"the widths {wanted} after a new start", 5)
    app.step("started anew")


@scenario(start=False)
def details(app):
    three(app)
    app.keys("ctrl+i")
    button = app.find(["push button", "toggle button"], app.text("details"))
    wait(lambda: app.is_(button, "PRESSED") or app.is_(button, "CHECKED"), "the details")
    app.step("details")
    app.click(button)
    wait(lambda: not (app.is_(button, "PRESSED") or app.is_(button, "CHECKED")), "the details to go")


@scenario(start=False)
def plain_text(app):
    (app.mail / "page.eml").write_bytes(mail.html("<p>First paragraph.</p><p>Second paragraph.</p>", subject="Page"))
    app.start(app.mail / "page.eml")
    on_show(app, "Page")
    app.keys("ctrl+shift+t")
    wait(lambda: any("Second paragraph." in app.content(thing) for thing in app.everything("text")), "the text of the page")
    app.step("as plain text")
    app.keys("ctrl+shift+t")
    wait(lambda: not any("Second paragraph." in app.content(thing) for thing in app.everything("text")), "the page again")


@scenario
def shortcuts_window(app):
    before = len(app.windows())
    app.keys("ctrl+question")
    wait(lambda: len(app.windows()) > before, "the shortcuts window")
    app.step("shortcuts", controls=False)
    app.keys("Escape")
    wait(lambda: len(app.windows()) == before, "the shortcuts window to close")


@scenario(start=False)
def attached_message(app):
    inner = mail.letter("Inside", body="Deep text.\n")
    (app.mail / "outer.eml").write_bytes(mail.carrying(inner, subject="Outside"))
    app.start(app.mail / "outer.eml")
    on_show(app, "Outside")
    app.click(app.find("push button", re.compile("^" + re.escape(app.text("read_attached")))))
    on_show(app, "Inside")
    app.step("attached message")


main()
