#!/usr/bin/python3
"""Reads a window of the running program out of the accessibility tree as a screen reader does: role, name and value of
each control and of each grid cell, one a line. Fails when a control that takes the focus cannot be told from the others:
it has no name, its name has no letter in it, or another of its kind has the same one. With --tab, Tab is pressed until
the focus has come round, and it fails when a control was not reached.
read_out.py [--tab] CAPTION"""

import subprocess
import sys
import time
from collections import Counter

import pyatspi

CELLS = {pyatspi.ROLE_TABLE_CELL, pyatspi.ROLE_TABLE_COLUMN_HEADER, pyatspi.ROLE_TABLE_ROW_HEADER}
ITEMS = CELLS | {pyatspi.ROLE_LIST_ITEM, pyatspi.ROLE_TREE_ITEM}  # named after what stands in them

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


def name(control):
    # A box of choices has its choice for a name; what it is about stands in the label that belongs to it, or else in
    # its description.
    if control.getRole() == pyatspi.ROLE_COMBO_BOX:
        for relation in control.getRelationSet():
            if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY:
                return relation.getTarget(0).name
        return control.description or control.name
    return control.name


STATES = ((pyatspi.STATE_CHECKED, "checked"), (pyatspi.STATE_SELECTED, "selected"))


def value(control):
    if control.getRole() == pyatspi.ROLE_COMBO_BOX:
        return control.name
    for query, read in (
        (control.queryEditableText, lambda found: control.queryText().getText(0, -1)),
        (control.queryValue, lambda found: f"{found.currentValue:g}"),
    ):
        try:
            return read(query())
        except NotImplementedError:
            continue
    words = [word for state, word in STATES if control.getState().contains(state)]
    if control.getRole() == pyatspi.ROLE_TABLE_CELL and control.description:
        words.append(control.description)
    return ", ".join(words)


def read_out(control, depth, found):
    states = control.getState()
    role = control.getRole()
    showing = states.contains(pyatspi.STATE_SHOWING)
    if not showing and role not in ALWAYS:
        return
    spoken = name(control)
    words = [control.getRoleName(), spoken.strip(), value(control)]
    if showing and not states.contains(pyatspi.STATE_SENSITIVE):
        words.append("(disabled)")
    print("  " * depth + " | ".join(word for word in words if word))
    if showing and states.contains(pyatspi.STATE_FOCUSABLE) and role not in ITEMS:
        found.append((control.getRoleName(), spoken))
    for child in control:
        if child is not None:
            read_out(child, depth + 1, found)


# What a view holds is reached by its own keys.
VIEWS = {pyatspi.ROLE_TABLE, pyatspi.ROLE_TREE, pyatspi.ROLE_TREE_TABLE, pyatspi.ROLE_LIST, pyatspi.ROLE_MENU_BAR}


def can_have_focus(control, place=()):
    """The controls in sight that may have the focus, by their places in the tree."""
    states = control.getState()
    if not states.contains(pyatspi.STATE_SHOWING):
        return
    if states.contains(pyatspi.STATE_FOCUSABLE) and states.contains(pyatspi.STATE_SENSITIVE):
        yield place, control, states.contains(pyatspi.STATE_FOCUSED)
    if control.getRole() in VIEWS:
        return
    for number, child in enumerate(control):
        if child is not None:
            yield from can_have_focus(child, place + (number,))


def missed_by_tab(root):
    """Goes round with Tab; says which controls the focus did not come to."""
    had = []
    for _ in range(100):
        subprocess.run(["xdotool", "key", "--clearmodifiers", "Tab"], check=True)
        time.sleep(0.1)
        now = [place for place, _, focused in can_have_focus(root) if focused]
        now = max(now, key=len, default=None)
        if now is not None and had.count(now) == 2:
            break  # round for the second time
        had.append(now)
    else:
        yield "Tab does not come round"
    reached = {place for place in had if place is not None}
    options = {place[:-1] for place in reached}
    for place, control, _ in can_have_focus(root):
        within = any(other[: len(place)] == place for other in reached)  # the line of a box of choices
        by_arrows = control.getRole() == pyatspi.ROLE_RADIO_BUTTON and place[:-1] in options
        if place and not within and not by_arrows:
            yield f"{control.getRoleName()} '{name(control)}' is not reached by Tab"


tabs = sys.argv[1] == "--tab"
root = window(sys.argv[-1])
if tabs:
    complaints = list(missed_by_tab(root))
    sys.exit("\n".join(complaints) if complaints else 0)
found = []
read_out(root, 0, found)
complaints = [f"{role} '{spoken}' has no name" for role, spoken in found if not any(map(str.isalpha, spoken))]
complaints += [f"{role} '{spoken}' is there {times} times" for (role, spoken), times in Counter(found).items() if times > 1]
if complaints:
    sys.exit("\n".join(complaints))
