"""Every setting by mouse and by keyboard, with everything open; the settings window closed in each way."""

import re
import time

import mail
from desktop import expect, wait
from driver import main, scenario

LANGUAGES, APPEARANCES, SIZES = ["auto", "en-US", "zh-CN"], ["auto", "light", "dark"], ["14", "16", "18", "20"]


def settings(app):
    app.keys("ctrl+comma")
    return wait(lambda: [w for w in app.windows() if w.get_name() in ("Settings", "设置")], "the settings")[0]


def stored(app, key):
    file = app.home / "config" / "org.tesselmail.TesselMail" / "preferences.ini"
    found = re.search(rf"^{key}=(.*)$", file.read_text(), re.M) if file.exists() else None
    return found and found[1]


def everything_open(app):
    (app.mail / "link.eml").write_bytes(mail.link("https://mail.example/x"))
    app.start(mail.mbox(app.mail / "Three.mbox", 3), app.mail / "link.eml")
    app.find("list item", re.compile("^link.eml"))
    app.command("mailto:ada@mail.example?subject=Tide")
    app.find("push button", re.compile("^(Copy details|复制内容)$"))


def walk_through(app, choose):
    window = settings(app)
    app.step("settings")
    for row, (key, values) in enumerate((("language", LANGUAGES), ("appearance", APPEARANCES), ("textSize", SIZES))):
        start = values.index({"language": "auto", "appearance": "auto", "textSize": "16"}[key])
        for target in [*range(start + 1, len(values)), *range(start)]:
            choose(window, row, target)
            wait(lambda: app.alive() and stored(app, key) == values[target], f"{key} = {values[target]}")
            app.step(f"{key} {values[target]}", controls=target == 2)
    time.sleep(0.5)
    app.keys("Escape")
    wait(lambda: len(app.windows()) == 1, "the settings to close")


@scenario(start=False)
def by_keyboard(app):
    everything_open(app)
    def choose(window, row, target):
        for _ in range(12):  # to the row
            focused = app.focused()
            boxes = app.everything("combo box", within=window)
            if focused and focused == boxes[row] or app.extents(focused).y == app.extents(boxes[row]).y:
                break
            app.keys("Tab" if app.extents(focused).y < app.extents(boxes[row]).y or
                     app.extents(focused).y > app.extents(boxes[2]).y else "shift+Tab")
        app.keys("space")
        time.sleep(0.4)
        app.keys("Home", *["Down"] * target, "Return")
        time.sleep(0.3)

    walk_through(app, choose)


@scenario(start=False)
def by_mouse(app):
    everything_open(app)

    def choose(window, row, target):
        app.click(app.everything("combo box", within=window)[row])
        time.sleep(0.4)
        app.keys("Home", *["Down"] * target, "Return")
        time.sleep(0.3)

    walk_through(app, choose)


@scenario(start=False)
def stored_language(app):
    """A language that was chosen counts for more than the system's."""
    other = app.options.language == "en"
    folder = app.home / "config" / "org.tesselmail.TesselMail"
    folder.mkdir(parents=True)
    (folder / "preferences.ini").write_text(f"[Preferences]\nlanguage={'zh-CN' if other else 'en-US'}\n")
    app.start()
    app.sees("打开邮件或存档" if other else "Open email or archive")
    app.step("other language")


@scenario
def closed_by_ctrl_w(app):
    settings(app)
    app.sees(app.text("stays"), 5)
    app.keys("ctrl+w")
    wait(lambda: app.alive() and len(app.windows()) == 1, "the settings to close")
    app.step("settings closed")
    settings(app)
    app.keys("ctrl+q")
    app.ended("Ctrl+Q in the settings to end the program")


main()
