#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Builds the Debian packages from what a source archive of this tree holds, and checks them with lintian.
# Usage: debian_packages.sh DIRECTORY
set -euo pipefail

directory=$(realpath --canonicalize-missing "$1")
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# The files that Git tracks; in an unpacked archive, which has no .git, all files.
archived() {
    if [ -e .git ]; then
        git ls-files -z
    else
        find . -path ./build -prune -o -type f -print0
    fi
}

source=$directory/zywebsocket
rm -rf "$directory"
mkdir -p "$source"
archived | tar --create --null --files-from=- | tar --extract --directory="$source"
command -v ccache >/dev/null && export CMAKE_CXX_COMPILER_LAUNCHER=ccache
(cd "$source" && dpkg-buildpackage --build=binary --no-sign)
echo "== lintian"
lintian --fail-on error,warning --allow-root "$directory"/*.changes
