# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""SIGKILL of the printer, or loss of power, at every step of a transfer, in seeded rounds.

Usage: kill.py ZYPRINTER [ROUNDS [FIRST_SEED [POWERLOSS]]]

With POWERLOSS, the library that is preloaded into the printer, the printer dies at each step in turn,
and any part of what was not synced is lost.
"""

import asyncio
import hashlib
import os
import pathlib
import random
import shutil
import struct
import sys
import tempfile

import websockets

import wire
from arena import MIB, PATIENCE, Arena, expect, start_file

DATA = random.Random(9).randbytes(25 * MIB + 4321)
DIGEST = hashlib.sha256(DATA).hexdigest()
CHUNKS = wire.chunks(DATA)
PAYLOADS = [wire.pack(chunk) for chunk in CHUNKS]
FURTHEST_BEHIND = 16 * MIB
TEMPORARY = "wifi_tranfer.tmp"
# Writes, syncs and renames of one transfer; those before write the lock file.
FIRST_STEP = 3
STEPS = 48


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


async def send_until_the_end(arena):
    """Sends until the printer dies by itself, or has the whole file; the bytes acknowledged."""
    acknowledged = 0
    try:
        async with arena.peer() as peer:
            await peer.ask(**start_file("killed.bin", DATA))
            for payload in PAYLOADS:
                await peer.socket.send(payload)
                acknowledged = int((await peer.receive())["received"])
            await peer.receive()
            arena.kill()
    except (websockets.ConnectionClosed, OSError):
        arena.printer._process.wait(PATIENCE)
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


def left_of(disk, inode, chance):
    """What is left of a file: all that was synced, and of what came later any part."""
    synced = disk / f"file-{inode}"
    journal = disk / f"journal-{inode}"
    contents = bytearray(synced.read_bytes() if synced.exists() else b"")
    entries = journal.read_bytes() if journal.exists() else b""
    # Nothing, any part, or what tempts most: the last without what it relies on.
    share, last_survives = chance.choice([(0, False), (0.5, False), (0, True), (0, True)])
    while entries:
        size, offset, length = struct.unpack(">qqI", entries[:20])
        written = b"" if length == 2**32 - 1 else entries[20:20 + length]
        entries = entries[20 + len(written):]
        survives = chance.random() < share or (last_survives and not entries)
        if not survives:
            continue
        if size >= 0:
            contents = contents[:size].ljust(size, b"\0")
        else:
            contents = contents.ljust(offset, b"\0")
            contents[offset:offset + len(written)] = written
    return bytes(contents)


def lose_power(arena, disk, chance):
    """Leaves of both directories what may be on the disk."""
    has_new_names = chance.random() < 0.5
    left = {}
    for directory in (arena.directory / ".incoming", arena.directory):
        now = {path.name: path.stat().st_ino for path in directory.iterdir() if path.is_file()}
        names = disk / f"names-{directory.stat().st_ino}"
        synced = {}
        for line in names.read_text().splitlines() if names.exists() else []:
            inode, name = line.split(" ", 1)
            synced[name] = int(inode)
        for name, inode in (now if has_new_names else synced).items():
            if name in (TEMPORARY, "killed.bin"):
                left[directory / name] = left_of(disk, inode, chance)
        for name in (TEMPORARY, "killed.bin"):
            (directory / name).unlink(missing_ok=True)
    for path, contents in left.items():
        path.write_bytes(contents)


async def kill_and_finish(arena, seed):
    acknowledged = await kill_during(arena, random.Random(seed))
    print(f"seed {seed}: killed after {acknowledged} bytes", flush=True)
    arena.start()
    await finish(arena, acknowledged)


async def lose_power_and_finish(arena, seed, disk):
    chance = random.Random(seed)
    arena.printer.stop()  # not killed: removing a stale lock file takes steps, too
    for path in disk.iterdir():
        path.unlink()
    os.environ["ZYTEST_POWER_OFF"] = str(FIRST_STEP + seed % STEPS)
    arena.start()
    acknowledged = await send_until_the_end(arena)
    del os.environ["ZYTEST_POWER_OFF"]
    print(f"seed {seed}: no power after {acknowledged} bytes", flush=True)
    lose_power(arena, disk, chance)
    arena.start()
    await finish(arena, acknowledged)


async def main(program, rounds="100", first="0", powerloss=None):
    disk = pathlib.Path(tempfile.mkdtemp())
    if powerloss:
        os.environ.update(LD_PRELOAD=powerloss, ZYTEST_DISK=str(disk))
    arena = Arena(program)
    try:
        for seed in range(int(first), int(first) + int(rounds)):
            if powerloss:
                await lose_power_and_finish(arena, seed, disk)
            else:
                await kill_and_finish(arena, seed)
    except BaseException:
        arena.kill()
        raise
    await arena.survives()
    arena.close()
    shutil.rmtree(disk)


asyncio.run(main(*sys.argv[1:]))
