#!/bin/sh
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Installs the build into a prefix that it was not configured for: the programs start there, and
# systemd's unit names the one that was installed.
# Usage: installed_programs.sh BUILD_DIRECTORY
set -eu

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/elsewhere

cmake --install "$1" --prefix "$prefix"

# Neither the environment nor the build tree helps them to the library.
unset LD_LIBRARY_PATH
for program in "$prefix"/bin/*; do
    echo "== $program"
    "$program" --version
    if ldd "$program" | grep libzyWebsocket | grep -v "$work"; then
        echo "uses another library than the one that was installed with it" >&2
        exit 1
    fi
done
test -f "$prefix/share/zyWebsocket/zyslicer-json.schema.json"
for unit in "$prefix"/lib/systemd/system/*.service; do
    grep -F "ExecStart=$prefix/bin/$(basename "$unit" .service) " "$unit"
done
