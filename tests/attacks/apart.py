# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""One connection at the transfer, the files and the records of another."""

import random
import struct

import wire
from arena import MIB, expect, refused, run, start_file

DATA = random.Random(1).randbytes(3 * MIB)


def record(size, received, name, key):
    def text(value):
        return struct.pack(">I", 2 * len(value)) + value.encode("utf-16-be")
    return struct.pack(">qq", size, received) + text(name) + text(key)


async def attack_a_transfer_from_another_connection(arena):
    async with arena.peer() as peer, arena.peer() as other:
        await peer.ask(**start_file("victim.bin", DATA))
        for index, chunk in enumerate(wire.chunks(DATA)):
            await other.chunk(bytes(MIB))
            assert await other.is_silent()
            expect(await other.ask(cmd="CANCEL_FILE"), {"cmd": "CANCEL_FILE", "errorcode": 0})
            expect(await other.ask(**start_file("other.bin", b"12345")), refused(3))
            await peer.chunk(chunk)
            expect((await peer.receive())["received"], str((index + 1) * MIB))
        expect((await peer.receive())["cmd"], "CHECK_DATA")
        expect(await other.ask(cmd="CANCEL_FILE"), {"cmd": "CANCEL_FILE", "errorcode": 0})
    assert arena.printer.stored("victim.bin") == DATA


async def attack_with_a_second_start_file(arena):
    async with arena.peer() as peer:
        await peer.ask(**start_file("victim.bin", DATA))
        for chunk in wire.chunks(DATA):
            for size in ("1", "5", str(2**31)):
                request = {**start_file("other.bin", b"x"), "size": size, "key": "0"}
                expect(await peer.ask(**request), refused(3))
            await peer.chunk(chunk)
            expect((await peer.receive())["size"], str(len(DATA)))
        expect((await peer.receive())["cmd"], "CHECK_DATA")
    assert arena.printer.stored("victim.bin") == DATA


async def attack_by_cancelling_what_is_finished_or_printed(arena):
    async with arena.peer() as peer:
        await arena.transfer("kept.bin", DATA, peer)
        await peer.ask(cmd="CANCEL_FILE")
        await peer.ask(cmd="CANCEL_FILE")
        expect((await peer.ask(cmd="START_PRINT", filename="kept.bin"))["status"], "CHECKING")
        expect((await peer.receive())["status"], "CHECK_FALSE")
        await peer.ask(cmd="CANCEL_FILE")
        (arena.directory / ".incoming" / "kept.bin").write_bytes(b"in place of a finished one")
        await peer.ask(cmd="CANCEL_FILE")
        (arena.directory / ".incoming" / "kept.bin").unlink()
    assert arena.printer.stored("kept.bin") == DATA


async def attack_again_by_the_connection_that_cancelled(arena):
    async with arena.peer() as peer, arena.peer() as other:
        await other.ask(**start_file("gone.bin", DATA))
        await other.ask(cmd="CANCEL_FILE")
        await peer.ask(**start_file("victim.bin", DATA))
        await other.ask(cmd="CANCEL_FILE")
        for chunk in wire.chunks(DATA):
            await peer.chunk(chunk)
            expect((await peer.receive())["errorcode"], 0)
            await other.ask(cmd="CANCEL_FILE")
        expect((await peer.receive())["cmd"], "CHECK_DATA")
    assert arena.printer.stored("victim.bin") == DATA


async def attack_with_contents_that_pose_as_a_record(arena):
    """Announces less than before, so that the record is looked for inside the data."""
    key = wire.file_key(DATA)
    fakes = [record(100, 50, "../decoy.zydlp", key), record(100, 50, "fake.bin", key),
             record(100, -5, "fake.bin", key), record(100, 2**62, "fake.bin", key),
             record(2**62, 50, "fake.bin", key), record(100, 50, "", "")]
    for fake in fakes:
        async with arena.peer() as peer:
            contents = (bytes(100) + fake).ljust(MIB, b"\0") + bytes(MIB)
            await peer.ask(**start_file("carrier.bin", contents))
            await peer.chunk(contents[:MIB])
            await peer.receive()
        async with arena.peer() as peer:
            for wanted in (key, ""):
                request = {**start_file("new.bin", bytes(100)), "key": wanted}
                reply = await peer.ask(**request)
                while reply.get("wifistate") == 3:  # the first connection has not ended yet
                    reply = await peer.ask(**request)
                expect(reply, {**request, "errorcode": 0, "compress": True})
                await peer.ask(cmd="CANCEL_FILE")


async def attack_with_records_left_on_the_disk(arena):
    """A record counts for the announced size and key, at the very end, within the size."""
    key = wire.file_key(DATA)
    size = len(DATA)
    good = record(size, MIB, "left.bin", key)
    temporary = arena.directory / ".incoming" / "wifi_tranfer.tmp"
    bad = [good + b"\0", good[:-1], good + good, record(size, -1, "left.bin", key),
           record(size, size + 1, "left.bin", key), record(size + 1, MIB, "left.bin", key),
           record(size, MIB, "../left.bin", key), record(size, MIB, "", key),
           record(size, MIB, "left.bin", "0"), b"\0", bytes(5000), b"\xff" * 5000,
           struct.pack(">qqI", size, MIB, 2**31), struct.pack(">qqI", size, MIB, 2**30)]
    async with arena.peer() as peer:
        for tail in bad:
            temporary.write_bytes(DATA + tail)
            reply = await peer.ask(**start_file("left.bin", DATA))
            expect((reply["errorcode"], reply["offset"], reply["filename"]), (0, "0", "left.bin"))
            await peer.ask(cmd="CANCEL_FILE")
    temporary.write_bytes(DATA[:MIB] + bytes(2 * MIB) + good)
    expect(await arena.transfer("left.bin", DATA, offset=MIB), 2)
    assert arena.printer.stored("left.bin") == DATA


run(globals())
