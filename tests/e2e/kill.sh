#!/usr/bin/env bash
# Kills the built program's window with kill -9 again and again, during a save and while a book is keyed, and looks what
# is left: the book must be whole every time, and no row may be missing that was keyed before the interval in which the
# copy of the unsaved book is promised. Prints its figures; takes a quarter of an hour, so scripts/test leaves it out.
# kill.sh FOLDER-OF-THE-PROGRAMS [TIMES]
#
# A row is "lost" when it was keyed (its last key was sent) and stands neither in the book nor in the copy that the next
# start offers. The copy is promised when the keys have rested for a second, ten seconds after the last one at the
# latest; so a lost row is a failure when it was keyed more than ten seconds, a rest and a burst of keys before the end.
source "$(dirname "${BASH_SOURCE[0]}")/screen.sh"
times=${2:-50}
if ! command -v mdb-export >/dev/null; then
    echo "skipped: mdb-export is not installed (scripts/deps --test installs it)"
    exit 77
fi

cli=$bin/zavrogrl-cli
book=$world/site.grl
caption="ZavroGrl-$book"
now() { echo $((${EPOCHREALTIME/[.,]/} / 1000)); } # milliseconds
between() { echo $(($1 + RANDOM * ($2 - $1) / 32767)); }
pause() { sleep "$(printf '%d.%03d' $(($1 / 1000)) $(($1 % 1000)))"; }

kill_it() {
    kill -9 "$running"
    wait "$running" "${sender:-$running}" 2>/dev/null || true
}
begun() { compgen -G "$world/.zavrogrl-*.tmp" || test "$book" -nt "$world/before"; }
# Without a rest, so that a moment is not missed.
wait_until() {
    local end=$((SECONDS + patience))
    until "$@" >/dev/null; do [ $SECONDS -lt $end ] || fail "waited in vain for $*"; done
}
clear_away() { rm -f "$app"/recovery-* "$book.bak" "$world"/.zavrogrl-*.tmp; }
is_whole() {
    "$cli" jet check "$book" --password MoraKin >"$world/check" 2>&1 || fail "the book is damaged: $(cat "$world/check")"
}
rows_of() { mdb-export -H "$book" Grl; }
copies() { compgen -G "$app/recovery-*" || true; }
in_copy() { cat "$app"/recovery-* 2>/dev/null | grep -q -- "$1"; }

# start: leads the program on the book to its main window.
start() {
    to_login "$book"
    type_text ''
    keys Return
    until_true "the login's end" count Login 0
    until_true "the main window" count "$caption" 1
}
take_the_copy() { # what the start offers
    wait_for ZavroGrl
    local box=$window
    keys Return
    until_true "the end of the question" is_gone "$box"
}

open_screen

during_saves() {
    local rows=160000 new=0 kept=0 round old amid=0 mark length=0 began delay
    begin "$times times during a save of $rows rows"
    {
        echo 'Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark'
        echo ',,0,,1.500,,,,100.000,'
        awk -v n=$((rows - 1)) 'BEGIN { for (i = 1; i <= n; i++) printf "%02d-%03d,,0,,,%.3f,,,,\n", i / 100, i % 100 * 10, 1 + i % 997 / 1000 }'
    } >"$world/rows.csv"
    "$cli" new "$world/seed.grl" --from "$world/rows.csv" 2>/dev/null
    for ((round = 1; round <= times; round++)); do
        cp "$world/seed.grl" "$book"
        clear_away
        old=$(rows_of | md5sum)
        start
        wait_for "$caption"
        mark=$((700000 + round))
        keys ctrl+End # the last row's remark
        type_text $mark
        until_true "the copy of the unsaved book" in_copy "$mark"
        # The first save shows how long one takes; the others are killed somewhere between the moment at which a file is
        # seen being made beside the book (first its backup) and the end.
        touch "$world/before"
        delay=$(between 0 $((length * 9 / 10)))
        keys ctrl+s &
        sender=$!
        wait_until begun
        began=$(now)
        if [ $round = 1 ]; then
            wait_until test "$book" -nt "$world/before"
            length=$(($(now) - began))
        elif [ "$delay" -gt 3 ]; then # the time that it takes to sleep
            pause "$((delay - 3))"
        fi
        kill_it
        [ -z "$(compgen -G "$world/.zavrogrl-*.tmp")" ] || amid=$((amid + 1))
        is_whole
        if rows_of | grep -q "$mark"; then
            [ "$(rows_of | grep -c .)" = $rows ] || fail "round $round: the new book has not $rows rows"
            new=$((new + 1))
        else
            [ "$(rows_of | md5sum)" = "$old" ] || fail "round $round: the book is neither the old nor the new one"
            in_copy "$mark" || fail "round $round: the keyed remark is neither in the book nor in the copy"
            kept=$((kept + 1))
        fi
    done
    echo "   $times kills during a save, which took $length ms: the book whole $times times; $kept times as it was, with the keyed"
    echo "   remark in the copy, $new times as saved; $amid times with a half-made file beside it"
}

# The readings of the rows in a copy, from the third row on, one a line.
readings() { awk -F '\t' 'NF == 10' "$1" | tail -n +3 | cut -f 6 | grep . || true; }
reading() { printf '%d.%03d' $((1 + $1 / 1000)) $(($1 % 1000)); }

# key_row NUMBER: an offset and a reading; letter by letter, so that it is one call for all.
key_row() {
    local figures
    figures=$(reading "$1" | sed 's/\./p/; s/./& /g; s/p/period/')
    # shellcheck disable=SC2086 # a word a key
    keys 2 period 5 Return $figures Return
}

# look_for_losses: compares what was keyed with the copy that is left; the rows in it are in $kept.
look_for_losses() {
    local copy row from
    copy=$(copies)
    kept=0
    [ -z "$copy" ] || kept=$(readings "$copy" | grep -c .) || true
    [ "$kept" -le "$keyed" ] || fail "round $round: $kept rows in the copy, $keyed were keyed"
    [ "$kept" = 0 ] || expect "$(readings "$copy")" "$(for ((row = 1; row <= kept; row++)); do reading $row; echo; done)"
    for ((row = kept + 1; row <= keyed; row++)); do
        lost=$((lost + 1))
        [ $((died - at[row])) -le $oldest ] || oldest=$((died - at[row]))
        # The keys rested for a second when the last copy was ten seconds old: this row had to be in the next one.
        for from in "${!rest[@]}"; do
            if [ "$from" -ge "${at[row]}" ] && [ $((rest[$from] - from)) -ge $((1000 + slack)) ] &&
                [ $((rest[$from] - at[row])) -ge $((10000 + slack)) ]; then
                fail "round $round: row $row is lost, keyed $((died - at[row])) ms before the end"
            fi
        done
    done
}

while_keying() {
    local keyed=0 all=0 kept lost=0 oldest=0 round n died end quiet
    local -a at      # milliseconds at which the keying of a row began
    local -A rest    # from when until when no key was pressed
    local slack=1000 # of a busy machine
    begin "$times times while keying"
    printf '%s\n' 'Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark' ',,0,,1.500,,,,100.000,' \
        '00-000,,0,,,1.100,,,,' | "$cli" new "$book" --from - 2>/dev/null
    clear_away
    local on_disk
    on_disk=$(rows_of)
    start
    wait_for "$caption"
    keys ctrl+End Left Left Left Left Return # the third row
    for ((round = 1; round <= times; round++)); do
        end=$(($(now) + $(between 500 20000)))
        rest=()
        while [ "$(now)" -lt $end ]; do
            for ((n = $(between 1 4); n > 0; n--)); do
                keyed=$((keyed + 1))
                all=$((all + 1))
                at[keyed]=$(now)
                key_row $keyed
                [ "$(now)" -lt $end ] || break 2
            done
            quiet=$(now)
            pause "$(between 200 2500)"
            rest[$quiet]=$(now)
        done
        died=$(now)
        kill_it
        is_whole
        expect "$(rows_of)" "$on_disk"
        look_for_losses
        keyed=$kept
        start
        if [ "$kept" -gt 0 ]; then
            take_the_copy
            wait_for "$caption"
            keys Right # from the chainage of the last row
        else
            wait_for "$caption"
            keys ctrl+End Left Left Left Left Return
        fi
    done
    keys ctrl+s
    until_true "the saved rows" sh -c "[ \$(mdb-export -H '$book' Grl | grep -c .) -ge $((kept + 2)) ]"
    expect "$(rows_of | cut -d, -f 4 | tr -d '"' | tail -n +3 | grep .)" "$(for ((n = 1; n <= kept; n++)); do reading $n; echo; done)"
    is_whole
    echo "   $times kills: $all rows keyed, $kept in the book that was saved at the end, $lost lost within the interval and keyed"
    echo "   again; the oldest of them was keyed $oldest ms before the kill; the book on the disk whole and unchanged $times times"
}

during_saves
while_keying
echo "== All done"
