# Shared by the tests of this folder: a screen of their own, a home of their own, and the program worked by keys.
# shellcheck shell=bash
# shellcheck disable=SC2034 # the names are read by the tests that source this file
# Nothing waits for a fixed time: every step waits for what it needs to see, up to $patience seconds.
set -euo pipefail

for tool in Xvfb xdotool openbox xprop; do
    command -v "$tool" >/dev/null && continue
    echo "skipped: $tool is not installed (scripts/deps --test installs it)"
    exit 77
done

bin=$(cd "$1" && pwd)
data=$(cd "$(dirname "${BASH_SOURCE[0]}")/../data" && pwd)
program=$bin/zavrogrl
patience=${PATIENCE:-60}
world=$(mktemp -d)
app=$world/data/zavrogrl
started=()
step=start

finish() {
    local status=$?
    for process in "${started[@]}"; do kill "$process" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$world"
    [ $status = 0 ] || echo "failed in: $step" >&2
}
trap finish EXIT

fail() {
    echo "$step: $*" >&2
    xdotool search --onlyvisible --name '.' getwindowname %@ >&2 2>/dev/null || true
    exit 1
}

begin() {
    step=$*
    echo "== $step"
}

# until_true WHAT COMMAND...: polls until the command succeeds, for $within or $patience seconds.
until_true() {
    local what=$1 end=$((SECONDS + ${within:-patience}))
    shift
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -lt $end ] || fail "waited in vain for $what"
        sleep 0.05
    done
}

open_screen() {
    export HOME=$world XDG_DATA_HOME=$world/data XDG_RUNTIME_DIR=$world/run
    unset WAYLAND_DISPLAY QT_QPA_PLATFORM DBUS_SESSION_BUS_ADDRESS
    mkdir -m 700 "$world/run"
    # A server that takes the number of one that is just ending may lose its socket to it: then another one is started.
    local attempt
    for attempt in 1 2 3; do
        start_screen && return
        echo "no screen that answers, attempt $attempt" >&2
    done
    fail "no screen"
}

start_screen() {
    # -displayfd finds a free display, so that several tests may run at once; -r keeps a key that a busy machine holds
    # for long from being repeated.
    : >"$world/display"
    Xvfb -r -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$world/display" 2>/dev/null &
    started+=($!)
    (until_true "a screen" test -s "$world/display") || return
    DISPLAY=:$(cat "$world/display")
    export DISPLAY
    openbox >/dev/null 2>&1 &
    started+=($!)
    (within=$((patience / 4)) until_true "a window manager" managed)
}

managed() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"; }

# The windows in sight that match, one id a line; fails when a window vanished while they were being counted.
seen() {
    local found problem=$world/run/search.$BASHPID
    found=$(xdotool search --onlyvisible --all "$@" 2>"$problem") || true
    [ ! -s "$problem" ] || return 1
    echo "$found"
}
# Windows by their whole title, and how many there are.
windows() { seen --name "^$1\$"; }
count() {
    local found
    found=$(windows "$1") && [ "$(grep -c . <<<"$found")" = "$2" ]
}
is_active() { [ "$(xdotool getactivewindow)" = "$1" ]; }
# A window that the window manager left without the focus is clicked upon, as a person would do.
has_focus() {
    is_active "$1" && return
    sleep 0.5
    is_active "$1" || xdotool windowactivate "$1"
    is_active "$1"
}
is_gone() { ! xdotool getwindowname "$1"; }
has_ended() { ! kill -0 "$1"; }

# wait_for TITLE: waits for the window and for the focus; its id is in $window.
wait_for() {
    until_true "the window $1" count "$1" 1
    window=$(windows "$1")
    until_true "the focus on $1" has_focus "$window"
}

keys() { xdotool key --clearmodifiers --delay 15 "$@"; }
type_text() { xdotool type --clearmodifiers --delay 15 -- "$1"; }

# pass_the_screens PROCESS: ends the splash screen and presses the button of the product screen, which comes after a
# moment. Neither has a title of its own; on a slow machine the splash screen may end by itself before it is seen.
pass_the_screens() {
    local end=$((SECONDS + patience)) screen screens titled passed=
    until titled=$(seen --pid "$1" --name '^Login$') && [ -n "$titled" ]; do
        screens=$(seen --pid "$1") || screens=
        for screen in $screens; do
            [ "$(xdotool getwindowname "$screen" 2>/dev/null)" != Login ] || continue
            passed+=" $screen"
            xdotool key --window "$screen" Escape 2>/dev/null || true
            # A sent key and a real one are kept apart: the window system may take the second for a repeated one.
            xdotool key --window "$screen" KP_Enter 2>/dev/null || true
        done
        [ $SECONDS -lt $end ] || fail "waited in vain for the login"
        sleep 0.05
    done
    [ -n "$passed" ] || fail "no product screen came before the login"
}

untitled='ZavroGRL-NoName.grl'

# Starts the program and leads it to the login; its process is in $running.
to_login() {
    "$program" "$@" 2>"$world/errors" &
    running=$!
    started+=("$running")
    pass_the_screens "$running"
    wait_for Login
    login=$window
}

# log_in PASSWORD [CAPTION OF THE MAIN WINDOW]
log_in() {
    type_text "$1"
    keys Return
    wait_for "${2:-$untitled}"
    until_true "the login's end" is_gone "$login"
}
in_sight() { test "$(seen --pid "$running" | grep -c .)" "$@"; }
# menu KEY ITEM-KEY...: opens a menu of the main window and chooses in it.
menu() {
    until_true "the windows" in_sight -ge 1
    local before
    before=$(seen --pid "$running" | grep -c .)
    keys "$1"
    until_true "the menu" in_sight -gt "$before"
    shift
    keys "$@"
}
# click TITLE X Y: in the window as it opens.
click() {
    xdotool mousemove --window "$(windows "$1")" "$2" "$3" click 1
}
leave() { # closes the main window; nothing was changed, so nothing is asked
    keys alt+F4
    until_true "the program's end" has_ended "$running"
    wait "$running" || fail "the program ended with $?"
}
first_line() { head -n 1 "$1" | tr -d '\r'; }
expect() { [ "$1" = "$2" ] || fail "expected '$2', found '$1'"; }
