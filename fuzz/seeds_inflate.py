# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Seeds of the target inflate: compressed chunks, sound and unsound."""

import struct
import zlib


def packed(data, level=-1):
    return struct.pack(">I", len(data)) + zlib.compress(data, level)


def payload(data, compressor, flush_after=None):
    step = flush_after or len(data)
    stream = b"".join(compressor.compress(data[at:at + step])
                      + (compressor.flush(zlib.Z_FULL_FLUSH) if flush_after else b"")
                      for at in range(0, len(data), step))
    return struct.pack(">I", len(data)) + stream + compressor.flush()


def sound_seeds():
    text = b"a layer, a layer and another layer; " * 8
    mixed = bytes((i * i >> 3) & 0xFF for i in range(700))
    return {
        "one_byte": packed(b"x"),
        "text": packed(text),
        "run": packed(b"\0" * 5000),
        "stored": packed(mixed, 0),
        "mixed": packed(mixed * 3, 9),
        "fixed_block": payload(text, zlib.compressobj(strategy=zlib.Z_FIXED)),
        "flushed_blocks": payload(text, zlib.compressobj(), flush_after=100),
    }


def unsound_seeds():
    good = packed(b"good bytes, good bytes")
    small_window = b"\x08\x1d"
    dictionary = b"\x78\xbb"
    stored_length_wrong = b"\x01\x05\x00\xfa\xfeabcde"
    return {
        "trailing_byte": good + b"\0",
        "prefix_too_small": b"\0\0\0\1" + good[4:],
        "prefix_too_large": b"\0\0\1\0" + good[4:],
        "prefix_zero": b"\0\0\0\0" + good[4:],
        "prefix_beyond_chunk": b"\0\x20\0\0" + good[4:],
        "small_window": good[:4] + small_window + good[6:],
        "dictionary": good[:4] + dictionary + good[6:],
        "header_check_wrong": good[:4] + b"\x78\x9d" + good[6:],
        "checksum_wrong": good[:-1] + bytes([good[-1] ^ 1]),
        "truncated": good[:-5],
        "stored_length_wrong": b"\0\0\0\5\x78\x9c" + stored_length_wrong
                               + struct.pack(">I", zlib.adler32(b"abcde")),
        "prefix_only": b"\0\0\0\1",
        "empty": b"",
        # A match of the length symbol 286, which RFC 1951 reserves and libdeflate reads as 258.
        "refused_by_zlib_alone": bytes.fromhex("00000103 789c 731c0300 67f841c4"),
    }


def seeds():
    return {**sound_seeds(), **unsound_seeds()}
