# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Files that are not what their sender has."""

import hashlib
import random

import wire
from arena import MIB, expect, refused, run, start_file

DATA = random.Random(5).randbytes(6 * MIB + 77)
OTHER = random.Random(6).randbytes(len(DATA) - 8) + DATA[-8:]  # the same size and key
DIGEST = hashlib.sha256(DATA).hexdigest()


async def attack_with_another_digest(arena):
    wrong = hashlib.sha256(OTHER).hexdigest()
    expect(await arena.transfer("wrong.bin", DATA, sha256=wrong), -1)
    expect(arena.incoming(), [])
    assert not (arena.directory / "wrong.bin").exists()
    for digest in (DIGEST, DIGEST.upper()):
        expect(await arena.transfer("right.bin", DATA, sha256=digest), 2)
        assert arena.printer.stored("right.bin") == DATA


async def attack_with_what_is_no_digest(arena):
    async with arena.peer() as peer:
        for digest in ("", DIGEST[:-1], DIGEST + "0", "g" * 64, 5, None, "٥" * 64):
            expect(await peer.ask(**start_file("a.bin", DATA, sha256=digest)), refused())
    expect(arena.incoming(), [])


async def interrupted(arena, data, chunks):
    async with arena.peer() as peer:
        await peer.ask(**start_file("part.bin", data))
        for chunk in wire.chunks(data)[:chunks]:
            await peer.chunk(chunk)
            await peer.receive()


async def attack_by_resuming_another_file(arena):
    """Same size, same last bytes: the key alone takes it for the same file."""
    for chunks in (1, 5):
        await interrupted(arena, OTHER, chunks)
        expect(await arena.transfer("part.bin", DATA, offset=chunks * MIB, sha256=DIGEST), -1)
        expect(arena.incoming(), [])
        await interrupted(arena, DATA, chunks)
        expect(await arena.transfer("part.bin", DATA, offset=chunks * MIB, sha256=DIGEST), 2)
        assert arena.printer.stored("part.bin") == DATA


run(globals())
