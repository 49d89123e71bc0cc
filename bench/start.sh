#!/usr/bin/env bash
# Medians of ten starts under an X server of their own, in milliseconds: from the start of the process to the first
# window in sight, and from Enter in the login to the main window. Looking takes some milliseconds of its own.
# start.sh PROGRAM
set -euo pipefail

program=$1
world=$(mktemp -d)
export HOME=$world XDG_DATA_HOME=$world/data XDG_RUNTIME_DIR=$world/run
unset WAYLAND_DISPLAY QT_QPA_PLATFORM
mkdir -m 700 "$world/run"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$world/display" 2>/dev/null &
server=$!
trap 'kill $server 2>/dev/null; rm -rf "$world"' EXIT
until [ -s "$world/display" ]; do sleep 0.05; done
DISPLAY=:$(cat "$world/display")
export DISPLAY
openbox >/dev/null 2>&1 &

now() { date +%s%3N; }
seen() { xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1; }
wait_for() { # TITLE, at most 30 s
    local end=$((SECONDS + 30))
    until [ -n "$(seen "$1")" ]; do [ $SECONDS -lt $end ] || exit 1; done
}
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

for _ in $(seq 11); do # the first one fills the program folder and warms up
    start=$(now)
    "$program" 2>/dev/null &
    running=$!
    until [ -n "$(xdotool search --onlyvisible --pid $running 2>/dev/null | head -n 1)" ]; do :; done
    echo "$(($(now) - start))" >>"$world/first"
    until [ -n "$(seen '^Login$')" ]; do
        xdotool key Escape Return 2>/dev/null || true
        sleep 0.1
    done
    sleep 0.3
    start=$(now)
    xdotool key Return
    wait_for 'NoName'
    echo "$(($(now) - start))" >>"$world/main"
    kill $running
    wait $running 2>/dev/null || true
done
echo "process start to first window: $(tail -n +2 "$world/first" | median) ms"
echo "login to main window:          $(tail -n +2 "$world/main" | median) ms"
