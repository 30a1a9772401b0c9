#!/bin/sh
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Builds the library without tests, installs it into another prefix than it was configured for, and
# builds and runs a program against it, once through CMake and once through pkg-config.
# Usage: install_and_use.sh SOURCE_DIRECTORY CXX_COMPILER
set -eu

source=$1
compiler=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/elsewhere
libdir=lib/some-machine # as deep as Debian's

# A build that looked for a test dependency would fail here.
cmake -S "$source" -B "$work/build" -G Ninja \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_INSTALL_PREFIX="$work/configured" -DCMAKE_INSTALL_LIBDIR="$libdir" \
    -DBUILD_TESTING=OFF -DZYWEBSOCKET_BUILD_APPS=OFF -DZYWEBSOCKET_BUILD_EXAMPLES=OFF \
    -DCMAKE_DISABLE_FIND_PACKAGE_Qt5Test=ON -DZYWEBSOCKET_WARNINGS_AS_ERRORS=ON
cmake --build "$work/build"
cmake --install "$work/build" --prefix "$prefix"
test ! -e "$work/configured"

for header in zysslechoserver.h zysslechoclient.h zyfiletranshandle.h zywebhandle.h printstatuspara.h \
    zyfilesender.h zysendoptions.h zysendresult.h zyserveroptions.h \
    zytlstrust.h; do
    test -f "$prefix/include/zyWebsocket/$header"
done

test -f "$prefix/share/zyWebsocket/protocol/asyncapi.yaml"
test -f "$prefix/share/zyWebsocket/protocol/schemas/start-file-reply.json"

export LD_LIBRARY_PATH="$prefix/$libdir"

echo "== through CMake"
cmake -S "$source/tests/package/consumer" -B "$work/consumer" -G Ninja \
    -DCMAKE_CXX_COMPILER="$compiler" -DzyWebsocket_DIR="$prefix/$libdir/cmake/zyWebsocket"
cmake --build "$work/consumer"
"$work/consumer/application"

echo "== through pkg-config"
export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
flags=$(pkg-config --cflags --libs zyWebsocket)
# shellcheck disable=SC2086 # the flags are words
"$compiler" -std=c++17 -fPIC "$source/tests/package/consumer/main.cpp" -o "$work/plain" $flags
"$work/plain"

echo "== soname"
test "$(readlink "$prefix/$libdir/libzyWebsocket.so")" = libzyWebsocket.so.1
