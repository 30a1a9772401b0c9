# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Seeds of the target inflate: sound payloads, and streams on which inflaters disagree."""

import ctypes
import ctypes.util
import struct
import zlib

END = 256
COMPLETE_16 = [4] * 16 + [0] * 3  # a code-length code with 4 bits for each length 0 to 15
CODE_ORDER = [16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15]


class Bits:
    """Writes a deflate stream bit by bit."""

    def __init__(self):
        self.bits = []

    def put(self, value, count):
        self.bits += [value >> i & 1 for i in range(count)]
        return self

    def code(self, value, count):
        self.bits += [value >> i & 1 for i in reversed(range(count))]
        return self

    def bytes(self):
        padded = self.bits + [0] * (-len(self.bits) % 8)
        return bytes(sum(bit << i for i, bit in enumerate(padded[at:at + 8]))
                     for at in range(0, len(padded), 8))


def fixed(bits, symbols):
    """A last block of the fixed code: literals and END, or (length symbol, distance symbol)."""
    bits.put(1, 1).put(1, 2)

    def put(symbol):
        if symbol < 144:
            bits.code(0x30 + symbol, 8)
        elif symbol < 256:
            bits.code(0x190 + symbol - 144, 9)
        elif symbol < 280:
            bits.code(symbol - 256, 7)
        else:
            bits.code(0xC0 + symbol - 280, 8)

    for symbol in symbols:
        if isinstance(symbol, tuple):
            put(symbol[0])
            bits.code(symbol[1], 5).put(0, 13 if symbol[1] >= 30 else 0)
        else:
            put(symbol)
    return bits


def dynamic(bits, literals, distances, body, own=None, raw_lengths=None):
    """A last block with codes of its own. @p body is (value, bits) pairs, codes first bit first."""
    bits.put(1, 1).put(2, 2)
    bits.put(len(literals) - 257, 5).put(len(distances) - 1, 5).put(15, 4)
    own = own or COMPLETE_16
    for symbol in CODE_ORDER:
        bits.put(own[symbol], 3)
    if raw_lengths is None:
        for length in literals + distances:
            bits.code(length, 4)
    else:
        for value, count in raw_lengths:
            bits.code(value, count)
    for value, count in body:
        bits.code(value, count)
    return bits


def stored(data):
    """A block that is not the last."""
    return b"\0" + struct.pack("<HH", len(data), 0xFFFF ^ len(data)) + data


def lenient(deflated):
    """What libdeflate reads in @p deflated, and how many bytes of it; nothing if it refuses."""
    library = ctypes.CDLL(ctypes.util.find_library("deflate"))
    library.libdeflate_alloc_decompressor.restype = ctypes.c_void_p
    decompressor = ctypes.c_void_p(library.libdeflate_alloc_decompressor())
    output = ctypes.create_string_buffer(1 << 20)
    used, made = ctypes.c_size_t(), ctypes.c_size_t()
    result = library.libdeflate_deflate_decompress_ex(
        decompressor, deflated, ctypes.c_size_t(len(deflated)), output,
        ctypes.c_size_t(len(output)), ctypes.byref(used), ctypes.byref(made))
    library.libdeflate_free_decompressor(decompressor)
    return output.raw[:made.value] if result == 0 else b""


def payload(deflated, header=b"\x78\x9c"):
    """A payload around raw deflate data, right in all but what the data themselves have wrong."""
    if isinstance(deflated, Bits):
        deflated = deflated.bytes()
    output = lenient(deflated)
    return (struct.pack(">I", len(output)) + header + deflated
            + struct.pack(">I", zlib.adler32(output)))


def packed(data, level=-1):
    return struct.pack(">I", len(data)) + zlib.compress(data, level)


def literal_lengths(**lengths):
    """Code lengths of 257 or more literal/length symbols: s65=1 for the symbol 65."""
    symbols = {int(name[1:]): length for name, length in lengths.items()}
    return [symbols.get(i, 0) for i in range(max(257, 1 + max(symbols)))]


def canonical(lengths):
    """The codes of the symbols as (value, bits), by symbol."""
    codes, code, last = {}, 0, 0
    for length, symbol in sorted((length, symbol) for symbol, length in enumerate(lengths) if length):
        code <<= length - last
        codes[symbol] = (code, length)
        code, last = code + 1, length
    return codes


def long_codes():
    """Codes of all lengths, and matches that take 46 bits in three steps."""
    literal_symbols = [65, 285, 256, *range(66, 72), 284, *range(72, 78)]
    distance_symbols = [0, *range(1, 9), 28, *range(9, 13), 29, 13]
    lengths = [*range(1, 16), 15]
    literals = literal_lengths(**{f"s{symbol}": length
                                  for symbol, length in zip(literal_symbols, lengths)})
    distances = [dict(zip(distance_symbols, lengths)).get(symbol, 0) for symbol in range(30)]
    literal, distance = canonical(literals), canonical(distances)
    near = [literal[285], distance[0]]
    far = [literal[285], distance[29], (0, 13), literal[284], (0, 5), distance[28], (0, 13)]
    return payload(dynamic(Bits(), literals, distances,
                           [literal[65]] + near * 100 + far * 20 + [literal[END]]))


def sound_seeds():
    text = b"a layer, a layer and another layer; " * 8
    mixed = bytes((i * i >> 3) & 0xFF for i in range(700))
    return {
        "one_byte": packed(b"x"),
        "text": packed(text),
        "run": packed(b"\0" * 5000),
        "stored": packed(mixed, 0),
        "mixed": packed(mixed * 3, 9),
        "fixed_block": payload(fixed(Bits(), [65, 66, (257, 1), END])),
        "flushed_blocks": packed_with_flushes(text),
        "long_codes": long_codes(),
        "one_distance_code": payload(dynamic(
            Bits(), literal_lengths(s65=1, s256=2, s257=2), [1],
            [(0, 1), (3, 2), (0, 1), (2, 2)])),
    }


def packed_with_flushes(data):
    compressor = zlib.compressobj()
    stream = b"".join(compressor.compress(data[at:at + 100]) + compressor.flush(zlib.Z_FULL_FLUSH)
                      for at in range(0, len(data), 100))
    return struct.pack(">I", len(data)) + stream + compressor.flush()


def disputed_seeds():
    """Streams that some inflaters take and zlib refuses."""
    half = literal_lengths(s65=1, s256=1)
    with_match = literal_lengths(s65=1, s256=2, s257=2)
    return {
        "length_symbol_286": payload(fixed(Bits(), [65, (286, 0), END])),
        "length_symbol_287": payload(fixed(Bits(), [65, (287, 0), END])),
        "distance_symbol_30": payload(fixed(Bits(), [65] + [(285, 0)] * 100 + [(257, 30), END])),
        "distance_symbol_31": payload(fixed(Bits(), [65] + [(285, 0)] * 100 + [(257, 31), END])),
        "literal_symbols_288": payload(dynamic(
            Bits(), half + [0] * 31, [0], [(0, 1), (1, 1)])),
        "distance_symbols_32": payload(dynamic(
            Bits(), half, [1, 1] + [0] * 30, [(0, 1), (1, 1)])),
        "incomplete_length_code": payload(dynamic(
            Bits(), [0] * 257, [0], [(0, 1), (0, 1)], own=[0, 1] + [0] * 17,
            raw_lengths=[(0, 1)] * 258)),
        "lone_end_of_block_other_bit": payload(stored(b"A") + dynamic(
            Bits(), literal_lengths(s256=1), [0], [(1, 1)]).bytes()),
        "lone_distance_code_other_bit": payload(dynamic(
            Bits(), with_match, [1], [(0, 1), (3, 2), (1, 1), (2, 2)])),
        "match_without_distance_code": payload(dynamic(
            Bits(), with_match, [0], [(0, 1), (3, 2), (0, 1), (2, 2)])),
        "lengths_run_over": payload(dynamic(
            Bits(), [0] * 257, [0], [(0, 1), (1, 1)],
            own=[2, 2] + [0] * 16 + [1],
            # 65 zeros, 1, 138 and 52 zeros, 1, and 11 zeros where one length is left.
            raw_lengths=[(0, 1), (54, 7), (3, 2), (0, 1), (127, 7), (0, 1), (74, 7), (3, 2),
                         (0, 1), (0, 7)])),
    }


def refused_seeds():
    good = packed(b"good bytes, good bytes")
    deflated = good[6:-4]
    return {
        "trailing_byte": good + b"\0",
        "prefix_too_small": b"\0\0\0\1" + good[4:],
        "prefix_too_large": b"\0\0\1\0" + good[4:],
        "prefix_zero": b"\0\0\0\0" + good[4:],
        "prefix_beyond_chunk": b"\0\x20\0\0" + good[4:],
        "small_window": payload(deflated, b"\x08\x1d"),
        "dictionary": payload(deflated, b"\x78\xbb"),
        "header_check_wrong": payload(deflated, b"\x78\x9d"),
        "checksum_wrong": good[:-1] + bytes([good[-1] ^ 1]),
        "truncated": good[:-5],
        "distance_too_far": payload(fixed(Bits(), [65, (257, 3), END])),
        "reserved_block_type": payload(Bits().put(7, 3)),
        "oversubscribed_code": payload(dynamic(
            Bits(), literal_lengths(s65=1, s66=1, s256=1), [0], [(0, 1)])),
        "no_end_of_block": payload(dynamic(
            Bits(), literal_lengths(s65=1, s66=1) + [], [0], [(0, 1)])),
        "stored_length_wrong": payload(b"\x01\x05\x00\xfa\xfeabcde"),
        "endless_blocks": payload(b"\0\0\0\xff\xff" * 40 + b"\1\0\0\xff\xff"),
        "prefix_only": b"\0\0\0\1",
        "empty": b"",
    }


def seeds():
    return {**sound_seeds(), **disputed_seeds(), **refused_seeds()}
