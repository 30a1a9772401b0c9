# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""SIGKILL of the printer, or loss of power, at every step of a transfer, in seeded rounds.

Usage: kill.py ZYPRINTER [ROUNDS [FIRST_SEED [POWERLOSS]]]

With POWERLOSS, the library that is preloaded into the printer, each kill takes away what had not
reached the disk.
"""

import asyncio
import hashlib
import os
import pathlib
import random
import shutil
import sys
import tempfile

import websockets

import wire
from arena import MIB, Arena, expect, start_file

DATA = random.Random(9).randbytes(25 * MIB + 4321)
DIGEST = hashlib.sha256(DATA).hexdigest()
CHUNKS = wire.chunks(DATA)
PAYLOADS = [wire.pack(chunk) for chunk in CHUNKS]
FURTHEST_BEHIND = 16 * MIB


async def kill_during(arena, chance):
    """Sends until the kill; the bytes that were acknowledged before."""
    acknowledged = 0
    step = chance.randrange(len(CHUNKS) + 1)
    delay = chance.uniform(0, 0.01)
    try:
        async with arena.peer() as peer:
            reply = await peer.ask(**start_file("killed.bin", DATA))
            expect(reply["offset"], "0")
            for index, payload in enumerate(PAYLOADS):
                await peer.socket.send(payload)
                if index == step:
                    await asyncio.sleep(delay)
                    arena.kill()
                acknowledged = int((await peer.receive())["received"])
            await asyncio.sleep(delay)
            arena.kill()
    except websockets.ConnectionClosed:
        pass
    return acknowledged


async def finish(arena, acknowledged):
    """A file that is there already was stored before the kill, and only its verdict was lost."""
    async with arena.peer() as peer:
        reply = await peer.ask(**start_file("killed.bin", DATA, sha256=DIGEST))
        offset = int(reply["offset"])
        if (arena.directory / "killed.bin").exists():
            expect(offset, 0)
            assert arena.printer.stored("killed.bin") == DATA
        else:
            assert acknowledged - FURTHEST_BEHIND <= offset, (acknowledged, offset)
        for payload in map(wire.pack, wire.chunks(DATA, offset)) if offset % MIB else \
                PAYLOADS[offset // MIB:]:
            await peer.socket.send(payload)
            expect((await peer.receive())["errorcode"], 0)
        expect((await peer.receive())["checkstate"], 2)
    assert arena.printer.stored("killed.bin") == DATA
    (arena.directory / "killed.bin").unlink()


def lose_power(arena, disk):
    """Leaves of the receive directory what was on the disk."""
    incoming = arena.directory / ".incoming"
    names = disk / f"names-{incoming.stat().st_ino}"
    left = {}
    for line in names.read_text().splitlines() if names.exists() else []:
        inode, name = line.split(" ", 1)
        synced = disk / f"file-{inode}"
        left[name] = synced.read_bytes() if synced.exists() else b""
    for path in incoming.iterdir():
        path.unlink()
    for name, contents in left.items():
        (incoming / name).write_bytes(contents)
    for path in disk.iterdir():
        path.unlink()


async def main(program, rounds="100", first="0", powerloss=None):
    disk = pathlib.Path(tempfile.mkdtemp())
    if powerloss:
        os.environ.update(LD_PRELOAD=powerloss, ZYTEST_DISK=str(disk))
    arena = Arena(program)
    try:
        for seed in range(int(first), int(first) + int(rounds)):
            acknowledged = await kill_during(arena, random.Random(seed))
            print(f"seed {seed}: killed after {acknowledged} bytes", flush=True)
            if powerloss and not (arena.directory / "killed.bin").exists():
                lose_power(arena, disk)
            arena.start()
            await finish(arena, acknowledged)
    except BaseException:
        arena.kill()
        raise
    await arena.survives()
    arena.close()
    shutil.rmtree(disk)


asyncio.run(main(*sys.argv[1:]))
