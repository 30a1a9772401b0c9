# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A slicer that is not Qt: drives zyprinter through a transfer, a resume, a cancel and a print.

Usage: python_slicer.py ZYPRINTER ZYMODEL [TRANSCRIPT]
"""

import asyncio
import json
import pathlib
import random
import subprocess
import sys
import tempfile

import websockets

import processes
import wire

TOKEN = "sesame"
TIMEOUT = 60


class Slicer:
    """One connection; keeps a transcript of what went over it."""

    def __init__(self, socket, transcript):
        self._socket = socket
        self._transcript = transcript

    @classmethod
    async def connect(cls, url, transcript):
        return cls(await websockets.connect(url, max_size=None), transcript)

    async def send(self, **message):
        self._transcript.append(("slicer", json.dumps(message, separators=(",", ":"))))
        await self._socket.send(wire.text(message))

    async def send_chunk(self, chunk):
        payload = wire.pack(chunk)
        self._transcript.append(
            ("slicer", f"(binary message, {len(payload)} bytes: {len(chunk)} bytes compressed)"))
        await self._socket.send(payload)

    async def receive(self):
        text = await asyncio.wait_for(self._socket.recv(), TIMEOUT)
        self._transcript.append(("printer", text))
        return json.loads(text)

    async def ask(self, **message):
        await self.send(**message)
        return await self.receive()

    def vanish(self):
        self._socket.transport.abort()

    async def close(self):
        await self._socket.close()


def start_file(name, data):
    return {"cmd": "START_FILE", "filename": name, "size": str(len(data)), "offset": "0",
            "key": wire.file_key(data)}


async def send_chunks(slicer, data, offset, limit=None):
    received = offset
    for chunk in wire.chunks(data, offset)[:limit]:
        await slicer.send_chunk(chunk)
        received += len(chunk)
        expect(await slicer.receive(), {
            "cmd": "START_DATA", "key": wire.file_key(data), "errorcode": 0,
            "size": str(len(data)), "received": str(received)})


def expect(actual, wanted):
    assert actual == wanted, f"\n  got    {actual}\n  wanted {wanted}"


async def transfers_a_model(printer, model, transcript):
    slicer = await Slicer.connect(printer.url, transcript)
    request = start_file("ball.zydlp", model)
    expect(await slicer.ask(**request, token=TOKEN), {**request, "errorcode": 0, "compress": True})
    await send_chunks(slicer, model, 0)
    expect(await slicer.receive(),
           {"cmd": "CHECK_DATA", "key": wire.file_key(model), "checkstate": 1})
    await slicer.close()
    assert processes.sha256(printer.stored("ball.zydlp")) == processes.sha256(model)


async def resumes_after_a_killed_connection(printer, transcript):
    data = random.Random(7).randbytes(3 * wire.CHUNK + wire.CHUNK // 2)
    request = start_file("noise.bin", data)
    slicer = await Slicer.connect(printer.url, transcript)
    await slicer.ask(**request, token=TOKEN)
    await send_chunks(slicer, data, 0, limit=2)
    slicer.vanish()

    slicer = await Slicer.connect(printer.url, [])
    # Until the printer has noticed that the first connection is gone, it is receiving.
    while (reply := await slicer.ask(**request, token=TOKEN)).get("wifistate") == 3:
        await slicer.close()
        slicer = await Slicer.connect(printer.url, [])
    transcript += [("slicer", json.dumps(request, separators=(",", ":"))),
                   ("printer", json.dumps(reply, separators=(",", ":")))]
    # A resumed transfer is told without "errorcode".
    expect(reply, {**request, "offset": str(2 * wire.CHUNK), "compress": True})
    await send_chunks(slicer, data, 2 * wire.CHUNK)
    check = await slicer.receive()
    expect(check, {"cmd": "CHECK_DATA", "key": wire.file_key(data), "checkstate": 2})
    await slicer.close()
    assert printer.stored("noise.bin") == data


async def is_refused_while_another_sends(printer, transcript):
    slicer = await Slicer.connect(printer.url, transcript)
    expect(await slicer.ask(**start_file("late.bin", b"late"), token=TOKEN),
           {"cmd": "START_FILE", "errorcode": 1, "compress": True, "wifistate": 3})
    expect(await slicer.ask(cmd="START_PRINT", filename="ball.zydlp", token=TOKEN),
           {"cmd": "START_PRINT", "filename": "ball.zydlp", "status": "BUSY"})
    await slicer.close()


async def cancels(printer, transcript, refusal):
    slicer = await Slicer.connect(printer.url, transcript)
    data = bytes(2 * wire.CHUNK)
    await slicer.ask(**start_file("zeros.bin", data), token=TOKEN)
    await send_chunks(slicer, data, 0, limit=1)
    await is_refused_while_another_sends(printer, refusal)
    expect(await slicer.ask(cmd="CANCEL_FILE", why="changed my mind"),
           {"cmd": "CANCEL_FILE", "errorcode": 0, "why": "changed my mind"})
    await slicer.close()
    assert not list(printer.directory.rglob("wifi_tranfer.tmp"))
    assert not list(printer.directory.rglob("zeros.bin"))


async def runs_a_print(printer, transcript):
    slicer = await Slicer.connect(printer.url, transcript)
    start = {"cmd": "START_PRINT", "filename": "ball.zydlp"}
    expect(await slicer.ask(**start, token="wrong"), {**start, "status": "PRINT_TOKEN_ERROR"})
    expect(await slicer.ask(cmd="PRINT_PAUSE", token="wrong"),
           {"cmd": "PRINT_PAUSE", "status": "TOKEN_ERROR"})
    expect(await slicer.ask(cmd="PRINT_PARA_SET", token=TOKEN, printExposure="2.5"),
           {"cmd": "PRINT_PARA_SET", "status": ""})
    expect(await slicer.ask(**start, token=TOKEN), {**start, "status": "CHECKING"})
    expect(await slicer.receive(), {**start, "status": "STARTED"})
    status = await slicer.ask(cmd="GET_PRINT_STATUS", token=TOKEN)
    assert status["printStatus"] == "PRINT_PROCESSING", status
    assert status["filename"] == "ball.zydlp" and status["printExposure"] == "2.5", status
    assert all(isinstance(value, str) for value in status.values()) and len(status) == 14, status
    expect(await slicer.ask(cmd="PRINT_PAUSE", token=TOKEN, filename="ball.zydlp"),
           {"cmd": "PRINT_PAUSE", "status": "CMD_SUCCES"})
    expect(await slicer.ask(cmd="PRINT_STOP", token=TOKEN),
           {"cmd": "PRINT_STOP", "status": "CMD_SUCCES"})
    await slicer.send(cmd="PRINT_WORKING_LIFE", token=TOKEN)
    # Nothing answers PRINT_WORKING_LIFE, so the next reply is the next command's.
    expect(await slicer.ask(cmd="VERSION_CHECK"), {"version": "1"})
    await slicer.close()


async def main():
    program, generator = sys.argv[1:3]
    transcripts = {}
    with tempfile.TemporaryDirectory() as directory:
        model_file = pathlib.Path(directory, "ball.zydlp")
        subprocess.run([generator, "--out", model_file, "--layers", "40"], check=True,
                       stdout=subprocess.DEVNULL)
        # Slow enough that the print is still running when it is paused.
        with processes.printer(program, pathlib.Path(directory, "printer"), "--token", TOKEN,
                               "--speed", "1") as printer:
            await transfers_a_model(printer, model_file.read_bytes(),
                                    transcripts.setdefault("transfer", []))
            await runs_a_print(printer, transcripts.setdefault("print", []))
            await resumes_after_a_killed_connection(printer, transcripts.setdefault("resume", []))
            await cancels(printer, transcripts.setdefault("cancel", []),
                          transcripts.setdefault("refused", []))
    if len(sys.argv) > 3:
        lines = []
        for name, exchange in transcripts.items():
            lines += [f"# {name}"] + [f"{who:7} {what}" for who, what in exchange]
        pathlib.Path(sys.argv[3]).write_text("\n".join(lines) + "\n")


asyncio.run(main())
