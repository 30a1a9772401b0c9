# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Announced sizes, messages, frames and streams that are too large, or none."""

import asyncio
import os
import pathlib
import struct
import time
import zlib

import websockets

import wire
from arena import MIB, PATIENCE, RawPeer, expect, refused, run, start_file

DATA = bytes(range(256)) * 4096 * 3  # three chunks
LIMIT = MIB + 64 * 1024


async def attack_by_announced_sizes(arena):
    async with arena.peer() as peer:
        for size in ("0", "-1", "+5", " 5", "5 ", "5.0", "0x10", "1e3", "", "٥", "five",
                     str(8 * MIB + 1), str(2**63 - 1), str(2**63), "9" * 100, 5, None):
            expect(await peer.ask(**{**start_file("a.bin", DATA), "size": size}), refused())
        for size in ("1", str(8 * MIB), "0005"):
            reply = await peer.ask(**{**start_file("a.bin", DATA), "size": size})
            expect((reply["errorcode"], reply["size"]), (0, size))
            await peer.ask(cmd="CANCEL_FILE")
    expect(arena.incoming(), [])


async def attack_by_large_messages(arena):
    for message in (bytes(LIMIT + 1), "x" * (64 * 1024 + 1), "x" * (LIMIT + 1)):
        async with arena.peer() as peer:
            await peer.socket.send(message)
            expect(await peer.close_code(), 1009)
    async with arena.peer() as peer:
        await peer.socket.send(bytes(LIMIT))
        await peer.socket.send("x" * 64 * 1024)
        assert await peer.is_silent()


async def attack_by_large_messages_in_fragments(arena):
    async def pieces(piece):
        while True:
            yield piece
            await asyncio.sleep(0.001)  # so that this end reads the close frame

    for piece in (bytes(65536), "x" * 65536):
        async with arena.peer() as peer:
            try:
                await asyncio.wait_for(peer.socket.send(pieces(piece)), PATIENCE)
            except (websockets.ConnectionClosed, websockets.InvalidState):
                pass
            expect(await peer.close_code(), 1009)


async def attack_by_frames_that_announce_much(arena):
    peers = []
    for announced in (LIMIT + 1, 2**31, 2**40, 2**62):
        peer = RawPeer(arena.port)
        peer.socket.sendall(RawPeer.frame(2, b"x" * 100, announced))
        peer.ends()
    for _ in range(40):  # and by many that never come
        peer = RawPeer(arena.port)
        peer.socket.sendall(RawPeer.frame(2, b"x" * 100, MIB))
        peers.append(peer)
    await arena.survives()


async def attack_by_streams_that_inflate_to_much(arena):
    async with arena.peer() as peer:
        await peer.ask(**start_file("bomb.bin", DATA))
        bomb = zlib.compress(bytes(1024 * MIB), 9)
        stream = zlib.compress(DATA[:MIB])
        for payload in (struct.pack(">I", 2**30) + bomb, struct.pack(">I", MIB) + bomb,
                        struct.pack(">I", 5) + bomb, struct.pack(">I", 2**32 - 1) + stream[:-9],
                        wire.pack(bytes(MIB + 1)), b"", b"x", b"\0\0\0\0", bytes(5), bytes(LIMIT),
                        struct.pack(">I", MIB) + stream[:-1], struct.pack(">I", MIB) + stream[1:]):
            await peer.socket.send(payload)
            expect(await peer.receive(), {
                "cmd": "START_DATA", "key": wire.file_key(DATA), "errorcode": 2,
                "size": str(len(DATA)), "received": "0"})
        for chunk in wire.chunks(DATA):
            await peer.chunk(chunk)
            expect((await peer.receive())["errorcode"], 0)
        expect((await peer.receive())["cmd"], "CHECK_DATA")
    assert arena.printer.stored("bomb.bin") == DATA


async def attack_by_nested_and_broken_json(arena):
    twice = '{"cmd":"START_FILE","a":' + "[" + "0," * 15000 + "0]" + ',"a":[0]}'
    async with arena.peer() as peer:
        for _ in range(1000):
            await peer.socket.send(twice)
        for text in ("[" * 60000, '{"a":' * 10000, "{", "null", "[]", '"', "{}{}", "\0", ""):
            await peer.socket.send(text)
        assert await peer.is_silent()


async def attack_by_tiny_messages(arena):
    peer = RawPeer(arena.port)
    flood = RawPeer.frame(2, b"") * 100000
    try:
        for _ in range(20):
            peer.socket.sendall(flood)
    except ConnectionError:
        pass
    peer.ends()


async def attack_by_replies_that_are_not_read(arena):
    peer = RawPeer(arena.port)
    flood = RawPeer.frame(1, b'{"cmd":"GET_PRINT_STATUS"}') * 100
    try:
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end:
            peer.socket.sendall(flood)
            await asyncio.sleep(0.001)  # few enough at a time to be handled
        raise AssertionError("the printer still answers")
    except ConnectionError:
        pass


def seconds_of_work(arena):
    fields = pathlib.Path(f"/proc/{arena.pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


async def attack_by_an_upload_that_never_goes_on(arena):
    """Data that bring a transfer no further, and frames that end in their middle, cost no work."""
    whole = wire.pack(DATA[:MIB])
    half = RawPeer(arena.port)
    half.socket.sendall(RawPeer.frame(2, whole)[:1000])
    async with arena.peer() as peer:
        await peer.ask(**start_file("stuck.bin", DATA))
        for payload in (b"", b"\0\0\0\0", whole[:4], whole[:-5], whole[:100], bytes(MIB),
                        whole[:4] + b"x" * 1000):
            await peer.socket.send(payload)
            expect((await peer.receive())["received"], "0")
        before = seconds_of_work(arena)
        await asyncio.sleep(2)
        spent = seconds_of_work(arena) - before
        assert spent < 0.5, f"{spent} s of work in 2 s of nothing"
        await peer.ask(cmd="CANCEL_FILE")
    half.socket.close()


run(globals(), "--max-size", "8")
