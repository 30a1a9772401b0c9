# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""The wire protocol written down a second time, from its description, in another language."""

import json
import struct
import zlib

CHUNK = 1024 * 1024


def file_key(data):
    tail = (data[-8:] if len(data) >= 8 else data).ljust(8, b"\0")
    (key,) = struct.unpack("<i", tail[4:8])
    return format(key & 0xFFFFFFFFFFFFFFFF, "x")


def pack(chunk):
    return struct.pack(">I", len(chunk)) + zlib.compress(chunk)


def unpack(payload):
    data = zlib.decompress(payload[4:])
    assert struct.unpack(">I", payload[:4])[0] == len(data)
    return data


def chunks(data, offset=0):
    return [data[at:at + CHUNK] for at in range(offset, len(data), CHUNK)]


def text(message):
    return json.dumps(message)
