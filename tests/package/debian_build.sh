#!/bin/sh
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Builds the Debian packages, and then sees that such a build ends where the library exports other
# symbols than are listed.
# Usage: debian_build.sh SOURCE_DIRECTORY DIRECTORY
set -eu

"$1/tools/debian_packages.sh" "$2"
cd "$2/zywebsocket"
listed=debian/libzywebsocket1.symbols
cp "$listed" "$2/symbols"

# ends_at SYMBOL
ends_at() {
    if debian/rules override_dh_makeshlibs >"$2" 2>&1 || ! grep "^[+-].*$1" "$2"; then
        cat "$2"
        echo "the build does not end at $1" >&2
        exit 1
    fi
}

echo "== with a symbol that is lost"
sed '$ { p; s/_Z/_Zlost/ }' "$2/symbols" >"$listed"
ends_at _Zlost "$2/log"

echo "== with a symbol that is new"
sed '$ d' "$2/symbols" >"$listed"
ends_at "$(sed -n '$ s/^ \(_Z[^@]*\).*/\1/p' "$2/symbols")" "$2/log"
