#!/usr/bin/env bash
# Kills the commands that write files at random times and counts what stands there afterwards: each file must be
# the old one or the new one, whole. Anything else is "lost" and makes this fail, as does a next run that fails or
# leaves a sibling of the dead beside the book or in the program folder.
#
#   bench/kills.sh ZAVROGRL-CLI TEMPLATES [KILLS EACH]
# shellcheck disable=SC2317  # what tells the state is called by its name
set -euo pipefail
cli=$1 templates=$2 kills=${3:-200}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work/home XDG_DATA_HOME=$work/home/data
mkdir -p "$work/desk" "$XDG_DATA_HOME/zavrogrl"
cp "$templates"/*.mdb "$templates"/*.dwg "$XDG_DATA_HOME/zavrogrl/"
cd "$work/desk"

header="Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark"
rows() { # a book of 3,000 rows with the remark $1
    echo "$header"
    echo ",,,,1.500,,,,100,$1"
    for ((row = 0; row < 3000; ++row)); do
        printf '%02d-%03d,,0,,,1.%03d,,,,%s\n' $((row / 100)) $((row % 100 * 10)) $((row % 1000)) "$1"
    done
}
rows old >old.csv
rows new >new.csv
"$cli" new plain.grl --from old.csv 2>/dev/null

# What the files hold, in one word each.
book() {
    if [ ! -e "$1" ]; then echo none; return; fi
    if ! "$cli" jet check "$1" --password MoraKin >/dev/null 2>&1; then echo DAMAGED; return; fi
    "$cli" export "$1" - 2>/dev/null | md5sum | cut -c1-8
}
road() {
    if [ ! -e "$1/Road.mdb" ]; then echo none; return; fi
    if ! "$cli" jet check "$1/Road.mdb" --password "$roadPassword" >/dev/null 2>&1; then echo DAMAGED; return; fi
    "$cli" jet dump "$1/Road.mdb" CSect --password "$roadPassword" 2>/dev/null | wc -l
}
roadPassword=TarnVel

reset() {
    rm -rf ./*.grl ./*.bak roads ./*.out .zavrogrl-* "$XDG_DATA_HOME"/zavrogrl/.zavrogrl-*
    mkdir roads
    cp "$work/plain.grl" book.grl
}
mv plain.grl "$work/plain.grl"

# Each file of the state $1 is as in $2 or as in $3; a command of several files may have done a part of them.
judge() {
    if [ "$1" = "$2" ]; then echo before; return; fi
    if [ "$1" = "$3" ]; then echo after; return; fi
    read -ra found <<<"$1"
    read -ra before <<<"$2"
    read -ra after <<<"$3"
    for file in "${!found[@]}"; do
        case "${found[$file]}" in
        "${before[$file]}" | "${after[$file]}") ;;
        *) echo "LOST $1"; return ;;
        esac
    done
    echo "in part"
}

status=0
try() { # name, what tells the state, command...
    local name=$1 state=$2 start end most pause before after
    shift 2
    reset
    before=$("$state")
    most=10000000 # microseconds; the quickest of three
    for _ in 1 2 3; do
        reset
        start=$(date +%s%N)
        "$@" >/dev/null 2>&1
        end=$(date +%s%N)
        most=$(((end - start) / 1000 < most ? (end - start) / 1000 : most))
    done
    after=$("$state")
    declare -A seen=()
    for ((number = 0; number < kills; ++number)); do
        reset
        pause=$(printf '0.%06d' $((RANDOM * (most + most / 10) / 32768)))
        "$@" >/dev/null 2>&1 &
        sleep "$pause"
        kill -9 $! 2>/dev/null || true
        wait $! 2>/dev/null || true
        local found
        found=$("$state")
        found=$(judge "$found" "$before" "$after")
        [[ "$found" != LOST* ]] || status=1
        seen[$found]=$((${seen[$found]:-0} + 1))
        if ! "$@" >/dev/null 2>&1 || find . "$XDG_DATA_HOME/zavrogrl" -maxdepth 1 -name '.zavrogrl-*' | grep -q .; then
            echo "$name: the next run failed or left something behind" >&2
            status=1
        fi
    done
    printf '%-10s %4d ms' "$name" $((most / 1000))
    for found in "${!seen[@]}"; do printf ', %s %d' "$found" "${seen[$found]}"; done
    echo
}

one() { book book.grl; }
both() { echo "$(book book.grl) $(book book.grl.bak)"; }
made() { echo "$(book book.grl) $(road roads/book)"; }
text() { if [ -e book.out ]; then md5sum <book.out | cut -c1-8; else echo none; fi; }

try new one "$cli" new book.grl --from new.csv
try cal both "$cli" cal book.grl
try export text "$cli" export book.grl book.out
try transfer made "$cli" transfer book.grl --folder roads --lw 3 --rw 3 --ddrn 1 --wdrn 1
exit $status
