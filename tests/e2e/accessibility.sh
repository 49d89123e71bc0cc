#!/usr/bin/env bash
# Reads the main window out of the accessibility tree: every control that takes the focus has a name, and what was keyed
# is found in the cells. accessibility.sh FOLDER-OF-THE-PROGRAMS prints the whole reading.
# shellcheck disable=SC2119 # words for the program are given only sometimes
source "$(dirname "${BASH_SOURCE[0]}")/screen.sh"
reader=$(dirname "${BASH_SOURCE[0]}")/read_out.py
if ! command -v dbus-daemon >/dev/null || ! /usr/bin/python3 -c 'import pyatspi' 2>/dev/null; then
    echo "skipped: dbus or python3-pyatspi is not installed (scripts/deps --test installs them)"
    exit 77
fi

open_screen
dbus-daemon --session --nofork --print-address=3 3>"$world/bus" 2>/dev/null &
started+=($!)
until_true "a message bus" test -s "$world/bus"
DBUS_SESSION_BUS_ADDRESS=$(cat "$world/bus")
export DBUS_SESSION_BUS_ADDRESS QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1

# Reads the window into $world/reading.
read_out() { /usr/bin/python3 "$reader" "$untitled" >"$world/reading" 2>"$world/complaint"; }
reads() { read_out && grep -q -- "$1" "$world/reading"; }
# find_in_tree WHAT TEXT: waits until the text is read out, and prints the whole reading.
find_in_tree() {
    (until_true "$1" reads "$2") || { # a control without a name stands in the reader's complaint
        cat "$world/complaint" >&2
        exit 1
    }
    cat "$world/reading"
}

begin "A keyed row"
to_login
log_in ''
click "$untitled" 320 57 # the cell under I.S.
type_text 4.321
find_in_tree "the keyed text" '4[.]321'
grep -q 'push button | Calculate$' "$world/reading" || fail "the button Cal is not read out"

grep -q 'menu item | Settings$' "$world/reading" || fail "the menus are not read out"
! grep -q 'frame | Settings$' "$world/reading" || fail "the closed settings are read out"

begin "Settings"
menu alt+t s
find_in_tree "the settings" 'frame | Settings'

echo "== All done"
