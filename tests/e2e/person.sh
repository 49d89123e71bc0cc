#!/usr/bin/env bash
# Works the built program as a person, by keys alone but for one double click: keys a book with a change point, reduces, saves, lists, exports and transfers it,
# leaves with the question answered, and opens the book again by its name. What was written is read back by mdbtools.
# person.sh FOLDER-OF-THE-PROGRAMS
source "$(dirname "${BASH_SOURCE[0]}")/screen.sh"
if ! command -v mdb-export >/dev/null; then
    echo "skipped: mdb-export is not installed (scripts/deps --test installs it)"
    exit 77
fi

book=$world/site.grl
caption="ZavroGrl-$book"

rows=',0,"1.525",,,"101.525","100",
"00-000",0,,"1.105",,,"100.420",
"00-000",-2.5,,"1.310",,,"100.215",
"00-000",2.5,,"1.4",,,"100.125",
"CP",0,"1.6",,"1.2","101.925","100.325",
"00-010",0,,"1.15",,,"100.775",'
sections='"00-000","C",0,100.42,100.42,"GG",0
"00-000","L",2.5,100.215,,"GG",0
"00-000","R",2.5,100.125,,"GG",0
"00-010","C",0,100.775,100.775,"GG",0'

saved() { [ "$(mdb-export -H "$1" Grl)" = "$2" ]; }
confirm() { # the box that the command ends or asks with
    wait_for ZavroGrl
    local box=$window
    keys Return
    until_true "the end of the box" is_gone "$box"
}

open_screen
begin "Login"
to_login
log_in ''

begin "A new book by its name"
keys alt+n
until_true "the file dialog" count 'Save As' 1
wait_for 'Save As'
type_text "$book"
keys Return
wait_for "$caption"

begin "Keying"
type_text 100
keys Return
type_text 1.525
keys Return
type_text 1.105
keys Return
type_text 2.5
keys Return
type_text 1.310
keys Return
type_text r
type_text 2.5
keys Return
type_text 1.4
keys Return
type_text p
type_text 1.2
keys Return
type_text 1.6
keys Return
type_text '*'
type_text 1.15
keys Return
keys alt+d # the spare row

begin "Cal and Save"
keys alt+c
menu alt+f s
until_true "the saved rows" saved "$book" "$rows"

begin "CSV"
menu alt+t p Return # two items of the menu share the letter
confirm
[ "$(grep -c . "$world/site.csv")" = 7 ] || fail "the CSV file has not seven lines"
grep -q '^CP,.*1.6,,1.2,101.925,100.325' "$world/site.csv" || fail "the change point is not in the CSV file"

begin "The change points"
keys Tab Tab Tab Tab Tab Return # New, Open, Save, Cal, CP
wait_for 'All Change Points.'
list=$window
keys Return
confirm
until_true "the focus on the list" has_focus "$list"
rm "$world/sitecp.csv"
xdotool mousemove --window "$list" 120 60 click --repeat 2 --delay 60 1
confirm
grep -q '^00-000,,,,1.6,,1.2,101.925,100.325,,5,' "$world/sitecp.csv" || fail "the change point is not in its CSV file"
until_true "the focus on the list" has_focus "$list"
keys Escape
until_true "the end of the list" is_gone "$list"

begin "Transfer"
until_true "the focus on the book" has_focus "$(windows "$caption")"
menu alt+t e
keys Right Right space Tab End # "Improvements to Road From"
type_text ' the quarry'
keys Tab Tab Tab
type_text 'A. Surveyor'
keys Tab Tab Tab Tab Tab Tab Tab Tab Tab # the total, its box, carriage way, two slopes, the gutter's option and two slopes
type_text 0.5
keys alt+t Return # shared with the menu
confirm
road=$world/Road/site/Road.mdb
expect "$(mdb-export -H "$road" CSect | sort)" "$sections"
expect "$(mdb-export -H "$road" LSect | grep -c .)" 2
expect "$(mdb-export -H "$road" LSect | head -n 1 | cut -d, -f 12)" 0.5 # DrnDep
mdb-export -H "$road" dddd | grep -q 'Improvements to Road From the quarry' || fail "the name of the work is not in the road database"
cmp "$book" "$world/Road/site/site.grl"

begin "Exit asks, and Yes saves"
until_true "the focus on the book" has_focus "$(windows "$caption")"
keys alt+x
confirm
until_true "the program's end" has_ended "$running"
wait "$running" || fail "the program ended with $?"
saved "$book" "$rows" || fail "the rows changed on the way out"

begin "A book that is named on the command line"
to_login "$book"
log_in '' "$caption"
leave
expect "$(mdb-export -H "$book" Grl)" "$rows"

echo "== All done"
