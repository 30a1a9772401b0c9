#!/bin/sh
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
# Holds the AsyncAPI document against AsyncAPI's own parser, which npm installs outside the sources.
# The exit code is 77 where npm or node is missing.
# Usage: check.sh PROTOCOL_DIRECTORY WORK_DIRECTORY
set -eu

here=$(dirname "$0")
protocol=$1
work=$2

for tool in node npm; do
    command -v $tool >/dev/null || {
        echo "skipped: $tool is missing"
        exit 77
    }
done

mkdir -p "$work"
cp "$here"/check.mjs "$here"/package.json "$here"/package-lock.json "$work"
cd "$work"
if ! cmp -s package-lock.json installed.json; then
    npm ci --no-audit --no-fund --ignore-scripts
    cp package-lock.json installed.json
fi
node check.mjs "$protocol/asyncapi.yaml"

echo "== and it notices a mistake"
rm -rf broken
cp -R "$protocol" broken
sed 's/"type": "object"/"type": "objekt"/' "$protocol/schemas/start-data-reply.json" \
    >broken/schemas/start-data-reply.json
if node check.mjs broken/asyncapi.yaml 2>/dev/null; then
    echo "a broken schema was accepted" >&2
    exit 1
fi
