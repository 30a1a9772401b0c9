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


run(globals())
