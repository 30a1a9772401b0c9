#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Sends a model from each of two builds, with different Qts, to the other one's printer.
# Usage: both_qts.sh BUILD_DIRECTORY BUILD_DIRECTORY
set -euo pipefail

work=$(mktemp -d)
printer=
trap '[ -z "$printer" ] || kill "$printer"; rm -rf "$work"' EXIT

qt_of() { ldd "$1" | grep -o 'libQt[56]Core' | sort -u; }

# send SENDING_BUILD RECEIVING_BUILD
send() {
    [ "$(qt_of "$1/apps/slicer/zyslicer")" != "$(qt_of "$2/apps/printer/zyprinter")" ]
    mkdir "$work/models"
    mkfifo "$work/lines"
    "$2/apps/printer/zyprinter" --dir "$work/models" --port 0 >"$work/lines" &
    printer=$!
    exec 3<"$work/lines"
    local line url=
    while [ -z "$url" ] && read -r line <&3; do
        [[ $line == *"listening on "* ]] && url=${line##*listening on }
    done
    cat <&3 >/dev/null &
    "$1/apps/slicer/zyslicer" send "$work/model.zydlp" --to "$url"
    cmp "$work/model.zydlp" "$work/models/model.zydlp"
    kill "$printer"
    wait "$printer" || true
    printer=
    exec 3<&-
    rm -r "$work/models" "$work/lines"
}

"$1/apps/model/zymodel" --out "$work/model.zydlp" --layers 40
send "$1" "$2"
send "$2" "$1"
