#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Programs that may open few files, whose output cannot be written, or whose user has no home: each
# says so and exits with its code, and none is ended by a signal.
# Usage: scarcity.sh ZYSLICER ZYPRINTER ZYMODEL
set -u

slicer=$1 printer=$2 model=$3
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null; rm -rf "$work"' EXIT
failed=0

# expect CODE TEXT COMMAND...: its exit code, and its one line on standard error.
expect() {
    local code=$1 text=$2
    shift 2
    "$@" 2>"$work/errors"
    local got=$?
    if [ "$got" -ne "$code" ] || ! grep -qF -- "$text" "$work/errors" ||
        [ "$(wc -l <"$work/errors")" -ne 1 ]; then
        echo "$*: exit code $got, not $code, or no line with '$text':"
        cat "$work/errors"
        failed=1
    fi
}

# within LIMIT COMMAND...: with so many open files at most.
within() {
    (
        ulimit -n "$1" && shift && exec "$@"
    )
}

"$model" --out "$work/part.zydlp" --layers 20 --resolution 144x256 || exit 1
mkdir "$work/models" "$work/other"
"$printer" --dir "$work/models" >"$work/log" &
until grep -q listening "$work/log"; do
    kill -0 $! || exit 1
    sleep 0.05
done
url=$(grep -o 'ws://[0-9.:]*' "$work/log")
send=("$slicer" send "$work/part.zydlp" --to "$url")

for limit in 8 10 12 16; do
    expect 7 "too few files may be open" within $limit "${send[@]}"
    expect 7 "too few files may be open" within $limit "$printer" --dir "$work/other"
done
all=()
for port in {1..40}; do
    all+=(--to "ws://127.0.0.1:$port")
done
expect 7 "too few files may be open" within 64 "$slicer" version "${all[@]}"
within 64 "${send[@]}" --quiet || failed=1
# The soft limit is raised where that is enough.
(ulimit -Sn 10 && exec "${send[@]}" --quiet) || failed=1

expect 7 "standard output not writable" "$slicer" version --to "$url" >/dev/full
expect 7 "standard output not writable" "$slicer" --help >/dev/full
expect 3 "standard output not writable" "$model" --check "$work/part.zydlp" >/dev/full
expect 3 "standard output not writable" "$model" --help >/dev/full
expect 6 "standard output not writable" "$printer" --dir "$work/other" >/dev/full
expect 6 "standard output not writable" "$printer" --help >/dev/full

expect 7 "HOME is not set" env -i "$slicer" printers
expect 7 "HOME is not set" env -i "$slicer" printers add bench ws://10.0.0.1:80
expect 7 "settings not writable" env -i HOME=/dev/null "$slicer" printers add bench ws://10.0.0.1:80
env -i "${send[@]}" --quiet || failed=1
env -i "$model" --check "$work/part.zydlp" >/dev/null || failed=1
exit $failed
