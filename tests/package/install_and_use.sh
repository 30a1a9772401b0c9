#!/bin/sh
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Builds the library without tests for each Qt that is there, installs all into one temporary prefix,
# and then builds and runs a program against each, once through CMake and once through pkg-config.
# Usage: install_and_use.sh SOURCE_DIRECTORY CXX_COMPILER
set -eu

source=$1
compiler=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/elsewhere
libdir=lib/some-machine # as deep as Debian's

# install_library QT NAME
install_library() {
    # A build that looked for a test dependency would fail here.
    cmake -S "$source" -B "$work/build$1" -G Ninja -DZYWEBSOCKET_QT="$1" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_INSTALL_PREFIX="$work/configured" -DCMAKE_INSTALL_LIBDIR="$libdir" \
        -DBUILD_TESTING=OFF -DZYWEBSOCKET_BUILD_APPS=OFF -DZYWEBSOCKET_BUILD_EXAMPLES=OFF \
        -DCMAKE_DISABLE_FIND_PACKAGE_Qt"$1"Test=ON -DZYWEBSOCKET_WARNINGS_AS_ERRORS=ON
    cmake --build "$work/build$1"
    cmake --install "$work/build$1" --prefix "$prefix"
    test ! -e "$work/configured"
    for header in zysslechoserver.h zysslechoclient.h zyfiletranshandle.h zywebhandle.h \
        printstatuspara.h zyfilesender.h zysendoptions.h zysendresult.h zyserveroptions.h zytlstrust.h; do
        test -f "$prefix/include/$2/$header"
    done
    test -f "$prefix/share/$2/protocol/asyncapi.yaml"
    test -f "$prefix/share/$2/protocol/schemas/start-file-reply.json"
}

# use_library QT NAME
use_library() {
    echo "== $2 through CMake"
    mkdir "$work/consumer$1"
    cp "$source/tests/package/consumer/main.cpp" "$work/consumer$1"
    sed "s/find_package(zyWebsocket /find_package($2 /" \
        "$source/tests/package/consumer/CMakeLists.txt" >"$work/consumer$1/CMakeLists.txt"
    cmake -S "$work/consumer$1" -B "$work/consumer$1/build" -G Ninja \
        -DCMAKE_CXX_COMPILER="$compiler" -D"$2_DIR=$prefix/$libdir/cmake/$2"
    cmake --build "$work/consumer$1/build"
    "$work/consumer$1/build/application"
    uses_one_qt "$1" "$work/consumer$1/build/application"

    echo "== $2 through pkg-config"
    flags=$(pkg-config --cflags --libs "$2")
    # shellcheck disable=SC2086 # the flags are words
    "$compiler" -std=c++17 -fPIC "$source/tests/package/consumer/main.cpp" -o "$work/plain$1" $flags
    "$work/plain$1"
    uses_one_qt "$1" "$work/plain$1"

    echo "== soname"
    test "$(readlink "$prefix/$libdir/lib$2.so")" = "lib$2.so.1"
}

# uses_one_qt QT PROGRAM
uses_one_qt() {
    loaded=$(ldd "$2" | grep -o 'libQt[56]Core' | sort -u)
    test "$loaded" = "libQt$1Core"
}

export LD_LIBRARY_PATH="$prefix/$libdir"
export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
found=
for action in install_library use_library; do
    if pkg-config --exists Qt5WebSockets; then
        found=yes
        $action 5 zyWebsocket
    fi
    if pkg-config --exists Qt6WebSockets; then
        found=yes
        $action 6 zyWebsocket-qt6
    fi
done
test "$found"
