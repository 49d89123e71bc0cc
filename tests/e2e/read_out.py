#!/usr/bin/python3
"""Reads a running window out of the accessibility tree as a screen reader does: role, name and value of each control and
of each grid cell, one a line. Fails when a control that takes the focus has no name.
read_out.py CAPTION"""

import sys
import time

import pyatspi

CELLS = {pyatspi.ROLE_TABLE_CELL, pyatspi.ROLE_TABLE_COLUMN_HEADER, pyatspi.ROLE_TABLE_ROW_HEADER}

# Read out although they are not in sight: cells that are scrolled away, menus that are closed.
ALWAYS = CELLS | {pyatspi.ROLE_MENU_BAR, pyatspi.ROLE_MENU, pyatspi.ROLE_POPUP_MENU, pyatspi.ROLE_MENU_ITEM}


def window(caption, patience=30):
    end = time.monotonic() + patience
    while time.monotonic() < end:
        for application in pyatspi.Registry.getDesktop(0):
            for child in application or ():
                if child is not None and child.name == caption:
                    return child
        time.sleep(0.1)
    sys.exit(f"no window '{caption}' in the accessibility tree")


def value(control):
    for query, read in (
        (control.queryEditableText, lambda found: control.queryText().getText(0, -1)),
        (control.queryValue, lambda found: f"{found.currentValue:g}"),
    ):
        try:
            return read(query())
        except NotImplementedError:
            continue
    if control.getState().contains(pyatspi.STATE_CHECKED):
        return "checked"
    return ""


def read_out(control, depth, nameless):
    states = control.getState()
    role = control.getRole()
    showing = states.contains(pyatspi.STATE_SHOWING)
    if not showing and role not in ALWAYS:
        return
    print("  " * depth + " | ".join((control.getRoleName(), control.name, value(control))).rstrip(" |"))
    takes_focus = showing and states.contains(pyatspi.STATE_FOCUSABLE)
    if takes_focus and role not in CELLS and not control.name:
        nameless.append(control.getRoleName())
    for child in control:
        if child is not None:
            read_out(child, depth + 1, nameless)


nameless = []
read_out(window(sys.argv[1]), 0, nameless)
if nameless:
    sys.exit(f"controls that take the focus and have no name: {', '.join(nameless)}")
