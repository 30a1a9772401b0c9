# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Files that fill the disk: on a small one that is mounted for the test alone."""

import asyncio
import os
import pathlib
import random
import subprocess
import sys
import tempfile

import wire
from arena import MIB, Arena, expect, refused, start_file

SMALL = ["unshare", "--map-root-user", "--mount", "sh", "-c",
         'mount -t tmpfs -o size=12m none "$1" && shift && exec "$@"', "sh"]


def small_disk(directory):
    """A program that runs zyprinter on a disk of 12 MiB at `directory`."""
    script = pathlib.Path(directory).parent / "on-a-small-disk"
    script.write_text("#!/bin/sh\nexec " + " ".join(f"'{word}'" for word in SMALL)
                      + f" '{directory}' '{sys.argv[1]}' \"$@\"\n")
    script.chmod(0o755)
    return str(script)


def seen(printer):
    """The printer's directory, in its own view of the file system."""
    return pathlib.Path(f"/proc/{printer._process.pid}/root{printer.directory}")


async def on_a_small_disk(attack, *options):
    with tempfile.TemporaryDirectory() as place:
        directory = pathlib.Path(place, "printer")
        directory.mkdir()
        print(attack.__name__, flush=True)
        arena = Arena(small_disk(directory), *options, directory=directory)
        try:
            await attack(arena, seen(arena.printer))
        except BaseException:
            arena.kill()
            raise
        arena.close()


async def attack_with_more_than_fits(arena, directory):
    data = random.Random(1).randbytes(4 * MIB)
    async with arena.peer() as peer:
        for size in (9 * MIB, 12 * MIB, 100 * MIB, 4000 * MIB):
            expect(await peer.ask(**{**start_file("big.bin", data), "size": str(size)}), refused())
            expect(os.listdir(directory / ".incoming"), [])
        reply = await peer.ask(**{**start_file("fits.bin", data), "size": str(7 * MIB)})
        expect(reply["errorcode"], 0)
        disk = os.statvfs(directory)
        free = disk.f_bavail * disk.f_frsize
        assert 4 * MIB <= free < 5 * MIB + 65536, free  # the space is taken before any data
        await peer.ask(cmd="CANCEL_FILE")
    async with arena.peer() as peer:
        expect(await arena.transfer("fits.bin", data, peer), 2)
    expect((directory / "fits.bin").read_bytes(), data)


async def attack_that_is_resumed_on_a_full_disk(arena, directory):
    """What an interrupted transfer has reserved counts when it goes on."""
    data = random.Random(2).randbytes(7 * MIB)
    async with arena.peer() as peer:
        await peer.ask(**start_file("long.bin", data))
        await peer.chunk(data[:MIB])
        await peer.receive()
    (directory / "ballast").write_bytes(bytes(MIB // 2))
    expect(await arena.transfer("long.bin", data, offset=MIB), 2)
    expect((directory / "long.bin").read_bytes(), data)


async def attack_without_protection(arena, directory):
    """The disk fills up in mid-transfer: the printer says so, and frees what is of no use."""
    data = random.Random(3).randbytes(16 * MIB)
    async with arena.peer() as peer:
        await peer.ask(**start_file("big.bin", data))
        for chunk in wire.chunks(data):
            await peer.chunk(chunk)
            await peer.receive()
    async with arena.peer() as peer:
        small = random.Random(4).randbytes(MIB)
        while (await peer.ask(**start_file("small.bin", small))).get("wifistate") == 3:
            pass
        await peer.chunk(small)
        expect([(await peer.receive())["cmd"] for _ in range(2)], ["START_DATA", "CHECK_DATA"])
    expect((directory / "small.bin").read_bytes(), small)
    log = arena.printer.log()
    assert "cannot write what is received: big.bin: " in log, log
    assert "interrupted transfer cannot be resumed, removed: big.bin" in log, log


async def main():
    with tempfile.TemporaryDirectory() as place:
        if subprocess.run([*SMALL, place, "true"], stderr=subprocess.DEVNULL).returncode:
            sys.exit(77)  # this system lets nobody mount a small disk
    await on_a_small_disk(attack_with_more_than_fits, "--keep-free", "4")
    await on_a_small_disk(attack_that_is_resumed_on_a_full_disk, "--keep-free", "4")
    await on_a_small_disk(attack_without_protection, "--unprotected")


asyncio.run(main())
