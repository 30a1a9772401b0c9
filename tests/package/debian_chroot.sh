#!/bin/sh
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Makes a minimal Debian system, from the mirrors that apt has here, and runs debian_life.sh in it.
# Usage: debian_chroot.sh DIRECTORY_WITH_PACKAGES
set -eu

here=$(dirname "$0")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

skip() {
    echo "skipped: $1"
    exit 77
}

[ "$(id -u)" -eq 0 ] || skip "only root may make a system in a directory"
command -v mmdebstrap >/dev/null || skip "mmdebstrap is missing"

mirrors() {
    # shellcheck disable=SC2016 # apt's own variables
    apt-get indextargets --format "$1" 'Created-By: Packages' 'Origin: Debian'
}
mirrors 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' >"$work/mirrors.list"
[ -s "$work/mirrors.list" ] || skip "apt knows no mirror of Debian; has apt-get update run?"
index=$(mirrors '$(REPO_URI)dists/$(RELEASE)/InRelease' | head -n 1)
/usr/lib/apt/apt-helper download-file "$index" "$work/InRelease" || skip "apt's mirror does not answer"

mkdir "$work/packages"
cp "$1"/*.deb "$work/packages"
rm -f "$work/packages"/*-dbgsym_*
apt-config dump Acquire >"$work/acquire.conf" # the proxy

# The system is given to the hooks, and removed after them.
codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
mmdebstrap --mode=root --variant=apt --format=null --aptopt="$work/acquire.conf" \
    --dpkgopt=force-unsafe-io \
    --customize-hook="copy-in $work/packages $here/debian_life.sh /" \
    --customize-hook='chroot "$1" /debian_life.sh /packages' \
    "$codename" - "$work/mirrors.list"
