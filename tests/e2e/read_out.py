#!/usr/bin/python3
"""Reads a window of the running program out of the accessibility tree as a screen reader does: role, name and value of
each control and of each grid cell, one a line. Fails when a control that takes the focus cannot be told from the others:
it has no name, its name has no letter in it, or another of its kind has the same one.
read_out.py CAPTION"""

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
    # A box of choices has its choice for a name; what it is about stands in the label that belongs to it.
    if control.getRole() == pyatspi.ROLE_COMBO_BOX:
        for relation in control.getRelationSet():
            if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY:
                return relation.getTarget(0).name
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


found = []
read_out(window(sys.argv[1]), 0, found)
complaints = [f"{role} '{spoken}' has no name" for role, spoken in found if not any(map(str.isalpha, spoken))]
complaints += [f"{role} '{spoken}' is there {times} times" for (role, spoken), times in Counter(found).items() if times > 1]
if complaints:
    sys.exit("\n".join(complaints))
