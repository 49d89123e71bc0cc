#!/usr/bin/env bash
# Starts the built program on a screen of its own and works it as a person: splash, product screen, login, main window,
# a new password, both login stores, damaged and locked ones, two instances at once.
# start_up.sh FOLDER-OF-THE-PROGRAMS
# shellcheck disable=SC2119 # words for the program are given only sometimes
source "$(dirname "${BASH_SOURCE[0]}")/screen.sh"

refuse() {
    type_text "$1"
    keys Return
    until_true "the refusal" count Login 2
    local box
    box=$(windows Login | grep -v "^$login\$")
    until_true "the focus on the refusal" has_focus "$box"
    keys Return
    until_true "the refusal's end" count Login 1
    until_true "the focus on the login" has_focus "$login"
}
change_password() { # OLD NEW, from the main window
    menu alt+t Down Down Down Down Down Down Return
    wait_for 'Password...'
    type_text "$1"
    keys Return
    type_text "$2"
    keys Return
    type_text "$2"
    keys Return Return
    wait_for ZavroGrl
    keys Return
    until_true "the end of the change" count 'Password...' 0
    wait_for "$untitled"
}

without_display() { env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM "$program" "$@" 2>&1; }
begin "Without a display: the version, and a sentence instead of a crash"
without_display --version | grep -q '^zavrogrl [0-9]' || fail "no version is told"
if message=$(without_display); then fail "it started"; fi
expect "$message" 'zavrogrl: there is no display to open a window on; zavrogrl-cli works without one'

open_screen

begin "First start: an empty password, nothing else asked"
to_login
expect "$(stat -c %a "$app")" 700
refuse nope
keys BackSpace # the refused text is selected
log_in ''
expect "$(stat -c %a "$app/lgn.lgn")" 600
[ -f "$app/ZavroGrl.rtf" ] || fail "the help is missing"

begin "A new password in the text store"
change_password '' 'Level 7'
expect "$(first_line "$app/lgn.lgn")" 'Level 7'
expect "$(stat -c %a "$app/lgn.lgn")" 600
leave

begin "Only the new password opens the door"
to_login
refuse ''
refuse 'level 7'
log_in 'Level 7'
leave

begin "Cancel ends the program"
to_login
keys Escape
until_true "the program's end" has_ended "$running"
wait "$running" || fail "the program ended with $?"

if [ -x "$bin/zavrogrl-cli" ]; then
    begin "The database store comes first"
    "$bin/zavrogrl-cli" jet create "$app/suprt.dll" "$data/suprt.schema" --password pelqor
    to_login
    refuse 'Level 7'
    keys BackSpace
    log_in ''
    change_password '' survey
    leave
    if command -v mdb-export >/dev/null; then
        expect "$(mdb-export -H "$app/suprt.dll" Pwd)" '"survey"'
    fi
    expect "$(first_line "$app/lgn.lgn")" 'Level 7'
    to_login
    log_in survey
    leave

    begin "A locked store does not stop the program"
    flock "$app/suprt.dll" sleep 600 &
    locker=$!
    started+=("$locker")
    until_true "the lock" sh -c "! flock -n '$app/suprt.dll' true"
    to_login
    keys Escape
    until_true "the program's end" has_ended "$running"
    pkill -P "$locker" sleep || true
    wait "$locker" 2>/dev/null || true
fi

begin "A damaged store lets nobody in and stays as it is"
head -c 5000 /dev/urandom >"$app/suprt.dll"
before=$(sha256sum <"$app/suprt.dll")
to_login
keys Return # neither the empty password
type_text survey
keys Return
expect "$(windows "$untitled")" ''
keys Escape
until_true "the program's end" has_ended "$running"
expect "$(sha256sum <"$app/suprt.dll")" "$before"
rm "$app/suprt.dll"

begin "Two instances on one fresh program folder"
rm -rf "$app"
"$program" 2>/dev/null &
first=$!
"$program" 2>/dev/null &
second=$!
started+=("$first" "$second")
pass_the_screens "$first"
pass_the_screens "$second"
until_true "two logins" count Login 2
for one in $(windows Login); do
    xdotool windowactivate "$one"
    until_true "the focus on a login" has_focus "$one"
    keys Return
    until_true "a login's end" is_gone "$one"
done
until_true "two main windows" count "$untitled" 2
for shipped in "$bin"/../share/zavrogrl/templates/*; do
    cmp "$shipped" "$app/$(basename "$shipped")" || fail "$(basename "$shipped") is damaged"
done
expect "$(first_line "$app/lgn.lgn")" ''
for one in $(windows "$untitled"); do
    xdotool windowactivate "$one"
    until_true "the focus" has_focus "$one"
    keys alt+F4
    until_true "the window's end" is_gone "$one"
done
until_true "the first instance's end" has_ended "$first"
until_true "the second instance's end" has_ended "$second"

echo "== All done"
