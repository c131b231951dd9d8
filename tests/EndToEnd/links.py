"""Links in a message: clicked, copied, closed, clicked again. The page is looked at, its content has no names."""

import time

import mail
from desktop import Picture, expect, wait
from driver import main, scenario


def show(app, message):
    (app.mail / "link.eml").write_bytes(message)
    app.start(app.mail / "link.eml")
    return wait(lambda: Picture().middle_of(mail.BLUE), "the link in the page")


def panel_shows(app):
    return bool(app.everything("push button", app.text("copy_link")))


@scenario(start=False, sandbox=True)
def copy_and_again(app):
    address = "https://mail.example/tide?when=noon"
    place = show(app, mail.link(address))
    app.click_at(*place)
    app.find("push button", app.text("copy_link"))
    app.sees(address)
    app.step("panel")
    app.keys("Return")
    wait(lambda: app.clipboard() == address, "the address in the clipboard")
    app.step("copied")
    app.keys("Escape")
    wait(lambda: not panel_shows(app), "the panel to close")
    app.step("closed")
    for _ in range(2):
        app.click_at(*place)
        wait(lambda: panel_shows(app), "the panel after another click")
        app.keys("Escape")
        wait(lambda: not panel_shows(app), "the panel to close")


@scenario(start=False, sandbox=True)
def by_keyboard(app):
    show(app, mail.link("https://mail.example/keys"))
    app.keys("ctrl+f", "Return", "Return")
    time.sleep(0.5)
    app.keys("Tab")
    app.step("on the link")
    app.keys("Return")
    wait(lambda: panel_shows(app), "the panel after Enter")
    app.keys("Escape")
    wait(lambda: not panel_shows(app), "the panel to close")
    app.step("back on the link")
    app.keys("Return")
    wait(lambda: panel_shows(app), "the panel after Enter again")
    app.keys("Escape", "Tab", "Tab")
    app.step("past the last link")


@scenario(start=False, sandbox=True)
def longest_mail_link(app):
    """A message's link has at most 8 KiB; longer ones are none. "Close" alone is what the window's own button is called,
    too."""
    address = "mailto:ada@mail.example?subject=Long&body=" + "word%20" * 1_150
    place = show(app, mail.link(address))
    app.click_at(*place)
    app.find("label", app.text("email_link"))
    app.find("push button", app.text("close"))
    began = time.monotonic()
    app.keys("Tab", "Tab", "Escape")
    wait(app.focused, "a window that answers")
    wait(lambda: Picture().middle_of(mail.BLUE), "the page again")
    app.step(f"answered in {time.monotonic() - began:.0f} s")


@scenario(start=False, sandbox=True)
def refused_link(app):
    """A link that the rules refuse opens nothing."""
    (app.mail / "refused.eml").write_bytes(mail.html(
        '<a href="javascript:alert(1)" style="display:block;background-color:#1234e6;color:#1234e6;padding:99px 0">x</a>'))
    app.start(app.mail / "refused.eml")
    app.click_at(*wait(lambda: Picture().middle_of(mail.BLUE), "the page"))
    time.sleep(1)
    expect(not panel_shows(app), "a refused link has a panel")
    app.step("refused")


@scenario(start=False, sandbox=True)
def nothing_left_after_close_all(app):
    """Pages of two letters follow each other, and nothing of the first is left when it was closed."""
    show(app, mail.link("https://mail.example/a"))
    app.keys("ctrl+shift+w")
    app.sees(app.text("welcome"))
    app.step("closed")
    (app.mail / "second.eml").write_bytes(mail.link("https://mail.example/b", mail.GREEN))
    expect(app.command(app.mail / "second.eml") == 0, "the second start did not end with status 0")
    wait(lambda: Picture().middle_of(mail.GREEN), "the second page")
    expect(not Picture().middle_of(mail.BLUE), "the first page still shows")


main()
