# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Peers that hold a transfer and say nothing more."""

import asyncio
import random
import time

import wire
from arena import MIB, RawPeer, expect, refused, run, start_file

DATA = random.Random(3).randbytes(3 * MIB)
SILENCE = 2


async def attack_by_a_mute_connection(arena):
    peer = RawPeer(arena.port)  # answers no ping
    began = time.monotonic()
    await asyncio.get_running_loop().run_in_executor(None, peer.ends)
    assert SILENCE * 0.9 < time.monotonic() - began < SILENCE * 5, time.monotonic() - began


async def attack_by_a_mute_receiver(arena):
    """Its record is written, and the transfer goes on later."""
    mute = RawPeer(arena.port)
    mute.send(**start_file("held.bin", DATA))
    mute.socket.sendall(RawPeer.frame(2, wire.pack(DATA[:MIB])))
    await asyncio.get_running_loop().run_in_executor(None, mute.ends)
    expect(await arena.transfer("held.bin", DATA, offset=MIB), 2)
    assert arena.printer.stored("held.bin") == DATA


async def attack_by_a_receiver_that_only_answers_pings(arena):
    """It stays connected, and makes way when another one wants to send."""
    async with arena.peer() as holder, arena.peer() as other:
        await holder.ask(**start_file("held.bin", DATA))
        await holder.chunk(DATA[:MIB])
        await holder.receive()
        expect(await other.ask(**start_file("other.bin", DATA)), refused(3))
        await asyncio.sleep(SILENCE * 1.2)
        assert holder.socket.open
        expect(await arena.transfer("held.bin", DATA, other, offset=MIB), 2)
        await holder.close_code()
    assert arena.printer.stored("held.bin") == DATA


async def attack_by_a_trickle(arena):
    """One byte of a frame now and then keeps the connection, not the transfer."""
    trickle = RawPeer(arena.port)
    trickle.send(**start_file("trickle.bin", DATA))
    trickle.socket.sendall(RawPeer.frame(2, b"", MIB))
    began = time.monotonic()
    while time.monotonic() - began < SILENCE * 1.5:
        trickle.socket.sendall(b"x")
        await asyncio.sleep(0.1)
    expect(await arena.transfer("another.bin", DATA), 2)


async def attack_nothing_by_being_slow(arena):
    """A slicer that sends a chunk more slowly than the time of silence loses nothing."""
    slow = RawPeer(arena.port)
    slow.send(**start_file("slow.bin", DATA[:MIB]))
    frame = RawPeer.frame(2, wire.pack(DATA[:MIB]))
    pieces = 20
    step = len(frame) // pieces + 1
    for at in range(0, len(frame), step):
        slow.socket.sendall(frame[at:at + step])
        await asyncio.sleep(SILENCE * 1.5 / pieces)
    received = b""
    while b"CHECK_DATA" not in received:
        received += slow.socket.recv(65536)
    assert arena.printer.stored("slow.bin") == DATA[:MIB]


run(globals(), "--silence", str(SILENCE))
