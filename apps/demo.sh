#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# The main job, for real: a slicer process sends a model to a printer process, which checks and
# prints it; then a transfer is broken off and resumed.
# Usage: demo.sh BUILD_DIRECTORY
set -euo pipefail

programs=$(cd "$1/apps" && pwd)
work=$(mktemp -d)
printer_pid=

clean_up() {
    [ -z "$printer_pid" ] || kill "$printer_pid" 2>/dev/null || true
    rm -rf "$work"
}
trap clean_up EXIT

say() { printf '\n== %s\n' "$*"; }
fail() {
    printf '\ndemo: %s\n' "$*" >&2
    exit 1
}
zyslicer() { "$programs/slicer/zyslicer" "$@"; }

# compare NAME: the file sent and the file the printer stores
compare() {
    local sent received
    sent=$(sha256sum <"$work/demo.zydlp")
    received=$(sha256sum <"$work/printer/$1") || fail "the printer does not have $1"
    echo "sent      ${sent%% *}"
    echo "received  ${received%% *}"
    [ "$sent" = "$received" ] || fail "$1 differs from what was sent"
}

say "A real model: a gyroid lattice inside a sphere, sliced into masks of 1440x2560"
"$programs/model/zymodel" --out "$work/demo.zydlp"
ls -l "$work/demo.zydlp" | awk '{ printf "%.1f MiB\n", $5 / 1048576 }'

say "The printer"
mkdir "$work/printer"
"$programs/printer/zyprinter" --dir "$work/printer" --name demo --speed 1500 --no-announce >"$work/printer.log" &
printer_pid=$!
for _ in $(seq 100); do
    url=$(sed -n '1s/.*listening on //p' "$work/printer.log")
    [ -n "$url" ] && break
    kill -0 "$printer_pid" 2>/dev/null || fail "the printer did not start"
    sleep 0.1
done
[ -n "$url" ] || fail "the printer did not say where it listens"
head -n 1 "$work/printer.log"

say "Sending"
zyslicer send "$work/demo.zydlp" --to "$url" || fail "sending failed (exit code $?)"
compare demo.zydlp

say "Printing, in accelerated time"
zyslicer print demo.zydlp --to "$url" --watch || fail "printing failed (exit code $?)"

say "A sender that is killed at about half"
# Slowed down, or it would have sent everything before it is killed.
exec 3< <("$programs/slicer/zyslicer" send "$work/demo.zydlp" --as again.zydlp --to "$url" \
    --limit-rate 20M --json)
sender_pid=$!
progress='"received":([0-9]+).*"total":([0-9]+)'
while read -r -u 3 line; do
    [[ $line =~ $progress ]] || continue
    received=${BASH_REMATCH[1]} total=${BASH_REMATCH[2]}
    ((received * 2 < total)) || break
done
kill -KILL "$sender_pid" || fail "the sender had ended already"
exec 3<&-
echo "killed when the printer held $received of $total bytes"

say "Sending again: the printer goes on where it stopped"
zyslicer send "$work/demo.zydlp" --as again.zydlp --to "$url" --json >"$work/resumed.json" ||
    fail "sending again failed (exit code $?)"
offset=$(sed -n 's/.*"event":"resumed".*"offset":\([0-9]*\).*/\1/p' "$work/resumed.json")
[ -n "$offset" ] || fail "the transfer was not resumed"
echo "resumed from byte $offset"
((offset > 0 && offset >= received)) || fail "that is less than the printer held"
compare again.zydlp

say "The printer's log"
cat "$work/printer.log"

say "Stopping the printer"
kill -TERM "$printer_pid"
wait "$printer_pid" || fail "the printer did not stop cleanly"
printer_pid=
say "Done: sent, checked, printed, interrupted, resumed"
