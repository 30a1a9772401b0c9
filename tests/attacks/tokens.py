# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Commands without the token, or with guesses at it."""

from arena import MIB, expect, refused, run, start_file

TOKEN = "s3cret ä"
DATA = bytes(2 * MIB)
GUESSES = [None, "", "s3cret", "S3CRET ä", TOKEN + " ", TOKEN[:-1], "x" * 60000, 5, True]


def with_token(request, token):
    return request if token is None else {**request, "token": token}


async def attack_each_command(arena):
    for guess in GUESSES:
        async with arena.peer() as peer:
            async def ask(request):
                return await peer.ask(**with_token(request, guess))
            expect(await ask(start_file("a.bin", DATA)), refused(6, 4))
            expect(await ask({"cmd": "START_PRINT", "filename": "a.bin"}),
                   {"cmd": "START_PRINT", "filename": "a.bin", "status": "PRINT_TOKEN_ERROR"})
            expect((await ask({"cmd": "PRINT_PAUSE"}))["status"], "TOKEN_ERROR")
            expect((await ask({"cmd": "PRINT_STOP"}))["status"], "TOKEN_ERROR")
            status = await ask({"cmd": "GET_PRINT_STATUS"})
            expect(status.pop("printStatus"), "TOKEN_ERROR")
            expect((status.pop("cmd"), set(status.values()), len(status)),
                   ("GET_PRINT_STATUS", {""}, 12))
            await ask({"cmd": "PRINT_PARA_SET", "printExposure": "99"})
            assert await peer.is_silent()  # a version check needs none
            status = await peer.ask(cmd="GET_PRINT_STATUS", token=TOKEN)
            assert status["printStatus"] == "PRINT_GENERAL", status
            assert status["printExposure"] != "99", status
    expect(arena.incoming(), [])


async def attack_by_guessing(arena):
    async with arena.peer() as peer:
        for count in range(10):
            expect(await peer.ask(**start_file("a.bin", DATA, token=f"guess {count}")),
                   refused(6, 4))
        await peer.close_code()
    async with arena.peer() as peer:
        for _ in range(5):
            for count in range(9):
                expect(await peer.ask(cmd="PRINT_STOP", token=str(count)),
                       {"cmd": "PRINT_STOP", "status": "TOKEN_ERROR"})
            status = await peer.ask(cmd="GET_PRINT_STATUS", token=TOKEN)
            expect(status["printStatus"], "PRINT_GENERAL")


run(globals(), "--token", TOKEN, token=TOKEN)
