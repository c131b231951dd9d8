"""Saving an attachment and exporting the original through the panel, byte for byte."""

import re

import mail
from desktop import expect, wait
from driver import main, scenario

CONTENT = bytes(range(256)) * 41


def show(app):
    app.message = mail.attached("tide.bin", CONTENT, subject="With a file")
    (app.mail / "file.eml").write_bytes(app.message)
    (app.home / "saved").mkdir()
    app.start(app.mail / "file.eml")
    return app.find("push button", re.compile("^" + re.escape(app.text("save_attachment"))))


class FileManager:
    """Stands in for the one of a desktop."""

    NAME = "org.freedesktop.FileManager1"

    def __init__(self, desktop, shown):
        from gi.repository import Gio
        self.gio, self.bus = Gio, Gio.bus_get_sync(Gio.BusType.SESSION)
        interface = Gio.DBusNodeInfo.new_for_xml(
            f'<node><interface name="{self.NAME}"><method name="ShowItems"><arg type="as" direction="in"/>'
            '<arg type="s" direction="in"/></method></interface></node>').interfaces[0]

        def called(bus, sender, path, name, method, arguments, invocation):
            shown(arguments.unpack()[0])
            invocation.return_value(None)

        self.object = self.bus.register_object("/org/freedesktop/FileManager1", interface, called)
        self.name = Gio.bus_own_name_on_connection(self.bus, self.NAME, Gio.BusNameOwnerFlags.NONE)

    def close(self):
        self.gio.bus_unown_name(self.name)
        self.bus.unregister_object(self.object)


def saved(app, path, content):
    wait(lambda: path.exists() and path.read_bytes() == content, f"{path.name} with the same bytes")
    expect(sorted(path.parent.iterdir()) == [path], f"more than one file in {path.parent.name}")
    recent = app.home / "data" / "recently-used.xbel"
    expect(not recent.exists() or "bookmark href" not in recent.read_text(), "names went to the desktop's recent files")


@scenario(start=False)
def attachment(app):
    app.click(show(app))
    app.choose_in_panel(app.home / "saved" / "copy.bin")
    saved(app, app.home / "saved" / "copy.bin", CONTENT)
    app.step("saved")


@scenario(start=False)
def shown_in_folder(app):
    """The file manager of the desktop is asked by its name on the bus for what was saved."""
    asked = []
    manager = FileManager(app.desktop, asked.append)
    try:
        app.click(show(app))
        path = app.home / "saved" / "copy.bin"
        app.choose_in_panel(path)
        app.sees(app.text("saved"))
        app.step("saved")
        app.click(app.find("push button", app.text("show_in_folder")))
        wait(lambda: app.desktop.main.iteration(False) or asked, "the file manager to be asked")
        expect(asked == [[path.as_uri()]], f"it was asked for {asked}")
    finally:
        manager.close()


@scenario(start=False)
def original(app):
    show(app)
    app.keys("ctrl+shift+s")
    app.choose_in_panel(app.home / "saved" / "copy.eml")
    saved(app, app.home / "saved" / "copy.eml", app.message)
    app.step("exported")


@scenario(start=False)
def over_the_source(app):
    """The open file itself is no place to save to."""
    show(app)
    app.keys("ctrl+shift+s")
    app.wait_for_panel()
    app.keys("ctrl+a")
    app.type(str(app.mail / "file.eml"))
    app.keys("Return", "Return")
    wait(lambda: (app.mail / "file.eml").read_bytes() == app.message, "the source as it was")
    app.picture("over the source")
    for _ in range(3):
        app.keys("Escape")
    wait(lambda: not app.panel(), "the panel to close")
    expect((app.mail / "file.eml").read_bytes() == app.message, "the source was changed")
    app.step("source unchanged")


@scenario(start=False)
def cancelled(app):
    app.click(show(app))
    app.wait_for_panel()
    app.keys("Escape")
    wait(lambda: not app.panel(), "the panel to close")
    expect(not list((app.home / "saved").iterdir()), "a file was written")
    app.step("nothing saved")


main()
