#!/bin/sh
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# The life of the Debian packages in a minimal system: they are installed with what they depend on, a
# model is sent between the programs, and after removal and purge nothing is left.
# Usage: debian_life.sh DIRECTORY_WITH_PACKAGES
set -eu
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8

packages=$1
work=$(mktemp -d)
trap 'kill $(cat "$work"/*.pid 2>/dev/null) 2>/dev/null || true; rm -rf "$work"' EXIT

say() { printf '\n== %s\n' "$*"; }
fail() {
    printf 'failed: %s\n' "$*" >&2
    exit 1
}
apt() { apt-get -q --yes --no-install-recommends "$@"; }
all_files() {
    find / \( -path /proc -o -path /sys -o -path /dev -o -path /run -o -path "$work" \) -prune \
        -o \( -path '/var/log/*' -o -path '/var/lib/dpkg/*-old' \) -o -print | sort
}
states() { dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' | sort; }

for file in "$packages"/*.deb; do
    dpkg-deb -f "$file" Package
done | sort >"$work/ours"

say "What they depend on"
apt install --simulate "$packages"/*.deb | awk '/^Inst/ { print $2 }' | sort |
    comm -13 "$work/ours" - >"$work/dependencies"
# shellcheck disable=SC2046 # the names are words
apt install $(cat "$work/dependencies")
all_files >"$work/files"
states >"$work/states"

say "Installing"
apt install "$packages"/*.deb
states | comm -13 "$work/states" - | sed 's/^ii *//' | diff "$work/ours" - ||
    fail "these are not the packages that should have been installed"

say "A model from zymodel, by zyslicer, to zyprinter"
home=$work/home
mkdir --mode=700 "$home" "$home/printer"
chown -R nobody "$home"
chmod 755 "$work"
cd "$home"
export HOME="$home" XDG_RUNTIME_DIR="$home" QT_QPA_PLATFORM=offscreen
as_user='setpriv --reuid=nobody --regid=nogroup --clear-groups --no-new-privs'
version=$(dpkg-query -W -f '${Version}' zywebsocket-tools)
for program in zymodel zyslicer zyprinter zypanel zybridge; do
    $as_user "$program" --version | grep -F "${version%%[-~+]*}" || fail "$program has another version"
done
$as_user zymodel --out model.zydlp --layers 30
mkfifo printer.log
QT_LOGGING_RULES="zywebsocket.server.debug=true" \
    $as_user zyprinter --dir printer --name here --port 0 >printer.log 2>&1 &
echo $! >"$work/printer.pid"
exec 3<printer.log
# printer_says PATTERN: waits for the line
printer_says() {
    while read -r line <&3; do
        case $line in
        *$1*) return ;;
        esac
    done
    fail "zyprinter ended without: $1"
}
printer_says "zyprinter: listening on "
url=${line##*listening on }
$as_user zyslicer send model.zydlp --to "$url"
cmp model.zydlp printer/model.zydlp
printer_says "valid model, 30 layers"

say "zypanel asks the printer for its state"
$as_user zypanel "$url" &
echo $! >"$work/panel.pid"
printer_says GET_PRINT_STATUS
kill "$(cat "$work/panel.pid")" "$(cat "$work/printer.pid")"
wait
rm "$work"/*.pid
cd /

say "Removing"
# shellcheck disable=SC2046 # the names are words
apt remove $(cat "$work/ours")
for program in zymodel zyslicer zyprinter zypanel zybridge; do
    ! command -v "$program" || fail "$program is still there"
done
# shellcheck disable=SC2046 # the names are words
dpkg --purge $(cat "$work/ours")
states | diff "$work/states" - || fail "dpkg still knows packages"
all_files | diff "$work/files" - || fail "files are left"
