#!/usr/bin/env bash
# Reads every window and frame out of the accessibility tree: each control that takes the focus can be told from the
# others by its name and is reached by Tab, and what was keyed, computed and chosen is found as a value. accessibility.sh
# FOLDER-OF-THE-PROGRAMS prints what was read.
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
read_out() { /usr/bin/python3 "$reader" "$1" >"$world/reading" 2>"$world/complaint"; }
reads() { # WINDOW LINE...
    read_out "$1" || return
    shift
    local line
    for line in "$@"; do
        echo "$line" >"$world/missing"
        sed 's/^ *//' "$world/reading" | grep -qxF -- "$line" || return
    done
}
# find_in WINDOW LINE...: waits until the lines are read out of the window, and prints the reading: the whole of it, or
# what stands from the line after FROM on.
find_in() {
    (until_true "the reading of $1" reads "$@") || {
        [ -s "$world/complaint" ] && cat "$world/complaint" >&2 || echo "not read out: $(cat "$world/missing")" >&2
        exit 1
    }
    sed -n "\\:${FROM:-.}:,\$p" "$world/reading"
}
# Tab comes to every control of the window.
by_tab() {
    until_true "the focus on $1" has_focus "$(windows "$1")"
    /usr/bin/python3 "$reader" --tab "$1" || fail "$1: not every control is reached by Tab"
}
hides() { ! grep -qF -- "$1" "$world/reading"; }
shut() { # WINDOW
    local box
    box=$(windows "$1")
    keys Escape
    until_true "the end of $1" is_gone "$box"
    until_true "the focus on the book" has_focus "$(windows "$caption")"
}

begin "Start"
"$program" 2>"$world/errors" &
running=$!
started+=("$running")
find_in "About this program" "push button | OK, go on to the login"
pass_the_screens "$running"
wait_for Login
login=$window
type_text nonsense
find_in Login "text | User Name" "password text | Password" "push button | OK" "push button | Cancel"
hides nonsense || fail "the password is read out"
keys ctrl+a BackSpace
log_in ''

begin "A keyed book"
caption="ZavroGrl-$world/site.grl"
keys alt+n
wait_for 'Save As'
find_in 'Save As' "text | File name:" "push button | Cancel"
type_text "$world/site.grl"
keys Return
wait_for "$caption"
for number in 100 1.525 1.105 2.5; do
    type_text $number
    keys Return
done
type_text 91.31
find_in "$caption" \
    "table | Field book" \
    "table cell | row 2, I.S., 1.105" \
    "table cell | row 3, I.S., 91.31 | selected" \
    "table cell | row 3, F.S., empty" \
    "push button | Calculate" "push button | Insert rows" "menu item | Append File" \
    "label | Side L" "label | H.I. 101.525" "label | Reading 1.105" "label | Row 3 of 3"
hides 'frame | Settings' || fail "the closed settings are read out"
keys Return Home # the reading turns pink
find_in "$caption" "table cell | row 3, I.S., 91.31 | suspicious reading" >/dev/null

begin "The bars"
keys ctrl+f
FROM='tool bar | Find' find_in "$caption" "text | Find:" "combo box | In: | All columns" "check box | Whole cell" \
    "push button | Next" "push button | Previous" "push button | Close"
by_tab "$caption"
keys ctrl+g
FROM='tool bar | Go to chainage' find_in "$caption" "text | Go to chainage:" "push button | Go" "push button | Close"
by_tab "$caption"
keys ctrl+g Escape # closes the bar

begin "The panes"
keys F6 F7 F8
menu alt+l m
FROM='tool bar' find_in "$caption" "image | Long section" "image | Cross-section" "tree | Findings" \
    "push button | Set aside" "check box | Show what is set aside" "spin button | Length of the staff | 5.00 m" \
    "label | Not closed: no known level at the end" "text | Tolerance | Accurate 12 mm √K" \
    "combo box | Adjustment | By set-ups" "table | Sections of the run" "table | Levels of the rows in sight"
by_tab "$caption"
keys F6 F7 F8
menu alt+l m

begin "The job heading"
menu alt+l h
wait_for 'Job heading'
find_in 'Job heading' "text | Work" "text | Start mark" "push button | OK" "push button | Cancel"
by_tab 'Job heading'
shut 'Job heading'

begin "Print"
keys ctrl+p
wait_for Print
find_in Print "check box | Field book | checked" "combo box | Paper | A4 upright" \
    "combo box | Long section | 1:1000 by 1:100 | (disabled)" "image | Page as it is printed" "spin button | Page | 1" \
    "push button | Print..." "push button | Save as PDF..." "push button | Close"
by_tab Print
shut Print

# import FILE: has the file shown in the panel of its kind.
import_file() {
    menu alt+t f
    wait_for 'Import from file'
    type_text "$1"
    keys Return
}
begin "Import from file"
import_file "$data/books/gsi-pv16.csv"
FROM='frame | Import' find_in "$caption" "table | The first rows of the sheet; above each column what it is" \
    "combo box | Column A | Chainage" "combo box | Column J | Remark" "spin button | Heading in row: | 1" \
    "radio button | Replace the book | checked" "list | What cannot be taken as it stands" \
    "check box | Remember for this heading" "push button | Import"
by_tab "$caption"
keys Escape
import_file "$data/digital-levels/dna03-bffb-cc0.gsi"
FROM='frame | Import' find_in "$caption" "table | Lines of the file" \
    "text | Point names tell chainage and offset as:" "push button | Import"
by_tab "$caption"
keys Escape

begin "Questions"
keys F2
wait_for Check
find_in Check "text | Enter New Value | 00-000"
shut Check
keys alt+x
wait_for ZavroGrl
find_in ZavroGrl "push button | Yes" "push button | No" "push button | Cancel" \
    "label | Do you want to Save the changes you made to this file"
shut ZavroGrl

begin "Settings"
menu alt+t s
keys Tab Tab Tab Tab Tab Tab space # the fixed offsets
FROM='frame | Settings' find_in "$caption" \
    "combo box | Chainage Increment: | 10" "text | Chainage Increment, m | 10" "check box | Auto Left to Right" \
    "check box | Fixed Offsets | checked" "text | Offset, m" "radio button | Offset on side: Both | checked" \
    "list | Fixed offsets" "push button | OK"
keys Tab 2 Return Tab Tab Tab
find_in "$caption" "list item | L02.00" "list item | R02.00" >/dev/null
keys Tab space # OK
until_true "the end of the settings" sh -c "! '$reader' '$caption' | grep 'frame | Settings'"

begin "The transfer"
menu alt+t e
FROM='frame | Exporting Data' find_in "$caption" \
    "radio button | Improvements to Road From" "text | Name of Work" "text | Survey done By: Shri." \
    "radio button | Total formation width | checked" "text | Total formation width, m | 7.5" \
    "text | Left formation width, m | (disabled)" \
    "text | Carriage Way Width, m | 3.75" "text | Slope in filling, X of X : 1 | 2.0" \
    "combo box | Outter Side: | 0.5" "text | Gutter top width, m | 1.5 | (disabled)" "text | Gutter depth, m" \
    "check box | Left Gutter" "check box | Send as a FRL" "push button | Select Project" \
    "label | No road database selected" "push button | Transfer" "push button | Cancel"
by_tab "$caption"
keys Escape
until_true "the end of the frame" sh -c "! '$reader' '$caption' | grep 'frame | Exporting Data'"

begin "Import from a file"
printf 'Peg,Staff,F.S.\n00-010,1.5,x\n' >"$world/table.csv"
menu alt+t f
wait_for 'Import from file'
type_text "$world/table.csv"
keys Return
FROM='frame | Import from file' find_in "$caption" \
    "spin button | Heading in row: | 1" "table | The first rows of the sheet; above each column what it is" \
    "combo box | Column A | Chainage" "combo box | Column B | -" "combo box | Column C | F.S." \
    "list | What cannot be taken as it stands" 'list item | Column C: 1 cell is no reading (row 2 "x")' \
    "radio button | Replace the book | checked" "radio button | Add below" "check box | Remember for this heading" \
    "label | 1 row; Cal reduces the levels afterwards" "push button | Import" "push button | Cancel"
keys Escape
until_true "the end of the panel" sh -c "! '$reader' '$caption' | grep 'frame | Import from file'"

begin "The change points"
click "$caption" 950 97
wait_for 'All Change Points.'
find_in 'All Change Points.' "table | Change points and remarked rows" "table cell | row 1, B.S., 1.525" \
    "push button | Close"
shut 'All Change Points.'

begin "The small windows"
menu alt+t Down Down Down Down Down Return
wait_for 'Select Default Drive & Directory'
find_in 'Select Default Drive & Directory' "tree | Folders" "text | Path of the folder | $world" \
    'label | C:\Road' >/dev/null # the folders of this machine are nobody's business
shut 'Select Default Drive & Directory'
menu alt+t Down Down Down Down Down Down Return
wait_for 'Password...'
find_in 'Password...' "password text | Enter old Passward:" "push button | OK"
keys Return
find_in 'Password...' "password text | Enter New Passward:" "password text | ReEnter New Passward:"
shut 'Password...'
menu alt+h h
wait_for Help
find_in Help "push button | OK" >/dev/null
grep 'Help text' "$world/reading"
shut Help
menu alt+h a
wait_for 'About ZavroGrl'
find_in 'About ZavroGrl' "push button | System Info..." "push button | OK"
shut 'About ZavroGrl'

echo "== All done"
