# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""File names that lead out of the printer's directory, or into its own files."""

import os

from arena import MIB, expect, refused, run, start_file

DATA = bytes(MIB)
BAD = ["", ".", "..", "../decoy.zydlp", "../../decoy.zydlp", "/etc/passwd", "a/b", "a\\b",
       "..\\decoy.zydlp", "line\nbreak", "bell\a", "nul\0", "del\x7f", "c1\x85",
       "wifi_tranfer.tmp", "WIFI_TRANFER.TMP", "Wifi_Tranfer.Tmp", "x" * 256, "ä" * 128]
GOOD = ["a.zydlp", "...", "..a", "a b", "wifi_tranfer.tmp2", "x" * 255, "ä" * 127, "c:d", "%2e%2e"]


async def attack_by_start_file(arena):
    names = BAD + [str(arena.decoy), "directory", "link", "dangling"]
    (arena.directory / "directory").mkdir()
    os.symlink(arena.decoy, arena.directory / "link")
    os.symlink(arena.place / "new", arena.directory / "dangling")
    async with arena.peer() as peer:
        for name in names:
            expect(await peer.ask(**start_file(name, DATA)), refused())
        for name in (None, 5, ["a"], {"a": "b"}):
            request = {**start_file("", DATA), "filename": name}
            if isinstance(name, (list, dict)):
                await peer.send(**request)  # no request has such values: not answered at all
                assert await peer.is_silent()
            else:
                expect(await peer.ask(**request), refused())
    assert arena.incoming() == [], arena.incoming()


async def attack_by_start_print(arena):
    async with arena.peer() as peer:
        for name in BAD + [str(arena.decoy), "directory", "link", "dangling"]:
            expect(await peer.ask(cmd="START_PRINT", filename=name),
                   {"cmd": "START_PRINT", "filename": name, "status": "CHECK_FALSE"})
            assert await peer.is_silent()
            expect(await peer.ask(cmd="CANCEL_FILE"), {"cmd": "CANCEL_FILE", "errorcode": 0})
    assert arena.decoy.exists()


async def attack_by_a_directory_in_the_receive_directory(arena):
    (arena.directory / ".incoming" / "trap").mkdir()
    async with arena.peer() as peer:
        expect(await peer.ask(**start_file("trap", DATA)), refused())
    (arena.directory / ".incoming" / "trap").rmdir()


async def attack_by_odd_but_plain_names(arena):
    async with arena.peer() as peer:
        for name in GOOD:
            reply = await peer.ask(**start_file(name, DATA))
            expect((reply["errorcode"], reply["filename"]), (0, name))
            expect(await peer.ask(cmd="CANCEL_FILE"), {"cmd": "CANCEL_FILE", "errorcode": 0})
    assert arena.incoming() == [], arena.incoming()


async def attack_a_directory_whose_name_begins_alike(arena):
    beside = arena.place / (arena.directory.name + "-beside")
    beside.mkdir()
    (beside / "x.bin").write_bytes(b"not yours")
    async with arena.peer() as peer:
        for name in (f"../{beside.name}/x.bin", str(beside / "x.bin"), f"{beside}/y.bin",
                     f"{arena.directory}-beside/x.bin", f"../../{beside.name}/x.bin"):
            expect(await peer.ask(**start_file(name, DATA)), refused())
            expect((await peer.ask(cmd="START_PRINT", filename=name))["status"], "CHECK_FALSE")
            await peer.ask(cmd="CANCEL_FILE")
    expect(os.listdir(beside), ["x.bin"])
    expect((beside / "x.bin").read_bytes(), b"not yours")
    (beside / "x.bin").unlink()
    beside.rmdir()


async def attack_by_fields_that_name_no_file(arena):
    """Only "filename" is a name: nothing else that a peer says becomes part of a path."""
    paths = ["../decoy.zydlp", "../../decoy.zydlp", str(arena.decoy), "wifi_tranfer.tmp", "a/b", ".."]
    async with arena.peer() as peer:
        for field in ("key", "offset", "token", "compress", "unknown"):
            for path in paths:
                request = {**start_file("plain.bin", DATA), field: path}
                expect((await peer.ask(**request))["errorcode"], 0)
                expect(arena.incoming(), ["wifi_tranfer.tmp"])
                await peer.chunk(DATA[:MIB // 2])
                await peer.receive()
                await peer.ask(cmd="CANCEL_FILE")
                expect(arena.incoming(), [])
        for path in paths:
            expect((await peer.ask(cmd="GET_PRINT_STATUS", filename=path, token=path))["cmd"],
                   "GET_PRINT_STATUS")
    # A dropped connection writes its record with the same fields.
    async with arena.peer() as peer:
        await peer.ask(**{**start_file("plain.bin", DATA), "key": "../decoy.zydlp"})
    expect(arena.incoming(), ["wifi_tranfer.tmp"])
    async with arena.peer() as peer:
        request = {**start_file("plain.bin", DATA), "key": "../decoy.zydlp"}
        while (await peer.ask(**request)).get("wifistate") == 3:
            pass
        await peer.ask(cmd="CANCEL_FILE")


run(globals())
