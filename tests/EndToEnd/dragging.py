"""Dragging from another program."""

import subprocess
import time

from desktop import end, wait

SOURCE = """
import sys, gi
gi.require_version("Gtk", "4.0")
from gi.repository import Gdk, Gio, Gtk
def show(application):
    window = Gtk.ApplicationWindow(application=application, title="Source", default_width=90, default_height=60)
    label = Gtk.Label(label="drag")
    drag = Gtk.DragSource()
    value = (sys.argv[2] if sys.argv[1] == "text" else
             Gdk.FileList.new_from_list([Gio.File.new_for_path(path) for path in sys.argv[2:]]))
    drag.connect("prepare", lambda *_: Gdk.ContentProvider.new_for_value(value))
    label.add_controller(drag)
    window.set_child(label)
    window.present()
application = Gtk.Application(application_id="org.tesselmail.Source")
application.connect("activate", show)
application.run([])
"""


def drag(app, kind, *words):
    """Drags files (or a text) from another program over the window; the pointer's button stays down."""
    source = subprocess.Popen(["/usr/bin/python3", "-c", SOURCE, kind, *map(str, words)], env=app.environment | {"G_DEBUG": ""},
                              start_new_session=True, stderr=subprocess.DEVNULL)
    app.unfinished.append(source)
    window = wait(lambda: app.xdotool("search", "--onlyvisible", "--name", "^Source$"), "the source of the drag").split()[0]
    app.xdotool("windowmove", window, 5, 20)
    app.xdotool("windowactivate", window)
    time.sleep(0.5)
    app.xdotool("mousemove", "--window", window, 45, 40)
    app.xdotool("mousedown", 1)
    for step in range(1, 15):
        app.xdotool("mousemove", 60 + step * 45, 60 + step * 30)
        time.sleep(0.05)
    time.sleep(0.5)


def let_go(app):
    app.xdotool("mouseup", 1)
    time.sleep(0.5)
    end(app.unfinished.pop())
