# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Seeds of the targets that take messages and records: servertext, serverbinary, resumerecord and
clientreplies. The targets' own files describe the formats.

Only sequences and odd ones: messageseeds.cpp writes a seed for each message of the vocabulary."""

import json
import struct
import zlib

KEY = "78563412"


def text(**keys):
    return json.dumps(keys, separators=(",", ":")).encode()


def start_file(size="12", **more):
    return text(cmd="START_FILE", filename="model.zydlp", size=size, offset="0", key=KEY, **more)


def lines(*parts):
    return b"\n".join(parts)


def servertext():
    cancel = text(cmd="CANCEL_FILE", extra=[1, {"a": None}])
    status = text(cmd="GET_PRINT_STATUS", token="t")
    start_print = text(cmd="START_PRINT", filename="model.zydlp", token="t")
    stop = text(cmd="PRINT_STOP", token="t")
    return {
        "print_life": b"y" + lines(start_print, text(cmd="PRINT_PAUSE", token="t"), stop),
        "print_refused": b"n" + lines(start_print, stop),
        "transfer": b"y" + lines(start_file(), b"#hello ", b"#world!", status),
        "transfer_resumed_in_place": b"y" + lines(start_file(), b"#hello ", start_file()),
        "transfer_cancelled": b"y" + lines(start_file(), b"#hello ", cancel, b"#world!"),
        "transfer_busy_print": b"y" + lines(start_file(), start_print),
        "token_rejected": b"t" + start_file(token="bad"),
        "size_number": b"y" + lines(text(cmd="START_FILE", filename="m", size=12, key=KEY), b"#x"),
        "size_negative": b"y" + lines(start_file("-5"), b"#x"),
        "size_huge": b"y" + lines(start_file("9223372036854775807"), b"#x", cancel),
        "empty_key": b"y" + lines(start_file(), text(cmd="CANCEL_FILE"),
                                  text(cmd="START_FILE", filename="", size="0", key=""), b"#x"),
        "named_as_temporary": b"y" + lines(
            text(cmd="START_FILE", filename="wifi_tranfer.tmp", size="1", key=KEY), b"#x"),
        "unknown_words": b"w" + lines(text(cmd="PRINT_WORKING_LIFE"), text(cmd="start_print"),
                                      text(cmd=3), text(cmd=None)),
        "not_an_object": b"y" + lines(b"[1,2]", b'"x"', b"{", b"", b"nul\0"),
        "deep": b"y" + b"[" * 600,
        "odd_text": b"y" + b'{"cmd":"GET_PRINT_STATUS","token":"\\ud800\\u0000\xff\xed\xa0\x80"}',
        "duplicate_keys": b"y" + b'{"cmd":"PRINT_STOP","cmd":"GET_PRINT_STATUS"}',
    }


def packed(data):
    return struct.pack(">I", len(data)) + zlib.compress(data)


def data_message(kind, data):
    return kind + struct.pack(">H", len(data)) + data


def serverbinary():
    good = packed(b"some bytes of a file")
    return {
        "one_chunk": b"5\n" + data_message(b"c", b"hello"),
        "three_chunks": b"12\n" + b"".join(data_message(b"c", part)
                                           for part in (b"hell", b"o wo", b"rld!")),
        "more_than_announced": b"5\n" + data_message(b"c", b"hello world"),
        "one_mebibyte": b"1048576\n" + data_message(b"r", packed(b"\0" * (1 << 20))),
        "ready_made": b"20\n" + data_message(b"r", good),
        "empty_message": b"5\n" + data_message(b"r", b"") + data_message(b"c", b"hello"),
        "prefix_only": b"5\n" + data_message(b"r", b"\0\0\0\0"),
        "not_zlib": b"5\n" + data_message(b"r", b"hello world"),
        "truncated": b"20\n" + data_message(b"r", good[:-6]) + data_message(b"r", good),
        "prefix_wrong": b"20\n" + data_message(b"r", b"\0\0\0\1" + good[4:]),
        "prefix_large": b"20\n" + data_message(b"r", b"\1\0\0\0" + good[4:]),
    }


def string(value):
    if value is None:
        return b"\xff\xff\xff\xff"
    data = value.encode("utf-16-be")
    return struct.pack(">I", len(data)) + data


def record(size, received, filename="model.zydlp", key=KEY):
    return struct.pack(">qq", size, received) + string(filename) + string(key)


def resumerecord():
    data = b"0123456789"
    largest = (1 << 63) - 1
    good = data + record(10, 4)
    return {
        "matching": b"10 =\n" + good,
        "other_key": b"10 1234\n" + good,
        "other_size": b"9 =\n" + good,
        "no_record": b"10 =\n" + data,
        "truncated": b"10 =\n" + good[:-3],
        "null_strings": b"10 =\n" + data + record(10, 4, None, None),
        "odd_length": b"10 =\n" + data + struct.pack(">qq", 10, 4) + b"\0\0\0\3abc",
        "length_2_31": b"10 =\n" + data + struct.pack(">qq", 10, 4) + b"\x80\0\0\0ab",
        "length_2_30": b"10 =\n" + data + struct.pack(">qq", 10, 4) + b"\x40\0\0\0ab",
        "received_largest": b"10 =\n" + data + record(10, largest),
        "received_negative": b"10 =\n" + data + record(10, -20),
        "size_largest": b"10 =\n" + data + record(largest, 4),
        "size_negative": b"10 =\n" + data + record(-1, 4),
        "received_beyond_size": b"10 =\n" + data + record(10, 11),
        "announced_negative": b"-1 =\n" + good,
        "announced_beyond_file": b"9999999999999999 =\n" + good,
        "announced_no_number": b"ten =\n" + record(0, 0),
        "named_as_temporary": b"10 =\n" + data + record(10, 4, "wifi_tranfer.tmp"),
    }


def clientreplies():
    def start(**more):
        keys = {"cmd": "START_FILE", "errorcode": 0, "compress": True, "filename": "model",
                "size": "1048676", "offset": "0", "key": KEY}
        return text(**{**keys, **more})

    def ack(received="1048576", **more):
        return text(cmd="START_DATA", key=KEY, errorcode=0, size="1048676", received=received,
                    **more)

    check = text(cmd="CHECK_DATA", key=KEY, checkstate=1)
    cancelled = text(cmd="CANCEL_FILE", errorcode=0)
    largest = str((1 << 63) - 1)
    return {
        "transfer": lines(start(), ack(), ack("1048676"), check),
        "transfer_plain": lines(start(compress=False), ack(), ack("1048676"), check),
        "resumed": lines(text(cmd="START_FILE", compress=True, key=KEY, offset="1048576"),
                         ack("1048676"), check),
        "refused": start(errorcode=1, wifistate=3),
        "unknown_key": lines(start(key="0"), start()),
        "offset_largest": lines(start(offset=largest), ack(largest)),
        "offset_negative": lines(start(offset="-1"), ack("-1")),
        "offset_beyond_file": lines(start(offset="2000000"), ack()),
        "cancelled": lines(start(), b"!cancel", cancelled),
        "cancelled_early": lines(b"!cancel", start(), cancelled, cancelled),
        "closed": lines(start(), b"!close", ack()),
        "second_file": lines(start(), b"!send", start(), ack(), start(errorcode=1), ack(), check),
        "print": lines(*(text(cmd="START_PRINT", status=word, filename="model")
                         for word in ("STARTED", "BUSY", "CHECKING", "CHECK_FALSE",
                                      "PRINT_TOKEN_ERROR", "nonsense"))),
        "print_results": lines(text(cmd="PRINT_PAUSE", status="CMD_SUCCES"),
                               text(cmd="PRINT_STOP", status=7), text(cmd="PRINT_PARA_SET")),
        "version": lines(text(version="1"), text(version=1), text(version="1", cmd="START_DATA")),
        "working_life": text(cmd="PRINT_WORKING_LIFE", hours="3"),
        "numbers_for_strings": lines(start(offset=0, size=5), ack(5), text(cmd="START_DATA")),
        "not_an_object": lines(b"[1,2]", b'"x"', b"{", b"", b"nul\0"),
    }


def seeds():
    return {
        "servertext": servertext(),
        "serverbinary": serverbinary(),
        "resumerecord": resumerecord(),
        "clientreplies": clientreplies(),
    }
