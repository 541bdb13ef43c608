#!/usr/bin/python3
# What a screen reader hears: listens on the accessibility bus for
# announcements and description changes, and prints one line for each:
#   announcement <text>
#   description <accessible name>|<text>
# Ends after the given number of seconds.
import sys

import pyatspi
from gi.repository import GLib


def heard(event):
    if event.type.startswith("object:announcement"):
        print("announcement", event.any_data, flush=True)
    elif event.type.startswith("object:property-change:accessible-description"):
        # Qt sends the object, not the text: the text is asked of it.
        print("description", f"{event.source.name}|{event.source.description}", flush=True)


pyatspi.Registry.registerEventListener(
    heard, "object:announcement", "object:property-change:accessible-description")
GLib.timeout_add_seconds(int(sys.argv[1]), pyatspi.Registry.stop)
print("listening", flush=True)
pyatspi.Registry.start()
