#!/bin/sh
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# The library exports what Debian's symbols file lists, and the file guards each of its symbols.
# Usage: exported_symbols.sh SOURCE_DIRECTORY LIBRARY
set -eu

cd "$1"
library=$2
listed=debian/libzywebsocket1.symbols
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# compare SYMBOLS_FILE, as the package build does
compare() {
    dpkg-gensymbols -c4 -plibzywebsocket1 -I"$1" -e"$library" -O"$work/updated"
}

if ! compare "$listed"; then
    echo "CONTRIBUTING.md says under \"Exported symbols\" what to do" >&2
    exit 1
fi

echo "== as if all were lost"
sed 's/^ _Z/ _Zlost/' "$listed" >"$work/renamed"
if compare "$work/renamed" >"$work/difference" 2>&1; then
    echo "not noticed" >&2
    exit 1
fi
grep -c '^+#MISSING' "$work/difference"
# One that came with the very version which is built may go again.
if grep '^ _Zlost' "$work/updated" >&2; then
    echo "not noticed before the next version: write a ~ after theirs" >&2
    exit 1
fi
