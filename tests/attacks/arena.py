# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A zyprinter to be attacked, and what has to hold after each attack."""

import asyncio
import contextlib
import inspect
import json
import os
import pathlib
import random
import re
import socket
import sys
import tempfile

import websockets

import processes
import wire

PATIENCE = 60  # seconds; only a failing test ever waits so long
MIB = 1024 * 1024
# A sanitizer's own memory says nothing about the printer's.
MEMORY_LIMIT = float("inf") if "ZYTEST_SANITIZED" in os.environ else 150 * MIB


class Peer:
    """One WebSocket connection. Sends what it is told."""

    def __init__(self, socket):
        self.socket = socket

    async def send(self, **message):
        await self.socket.send(wire.text(message))

    async def receive(self):
        return json.loads(await asyncio.wait_for(self.socket.recv(), PATIENCE))

    async def ask(self, **message):
        await self.send(**message)
        return await self.receive()

    async def chunk(self, data):
        await self.socket.send(wire.pack(data))

    async def is_silent(self):
        """Nothing has come before the answer to a version check sent now."""
        return await self.ask(cmd="VERSION_CHECK") == {"version": "1"}

    async def close_code(self):
        """Waits until the printer has closed the connection."""
        await asyncio.wait_for(self.socket.wait_closed(), PATIENCE)
        return self.socket.close_code


class RawPeer:
    """One TCP connection with a WebSocket handshake, and nothing else done by itself."""

    def __init__(self, port, handshake=True):
        self.socket = socket.create_connection(("127.0.0.1", port), timeout=PATIENCE)
        if handshake:
            self.socket.sendall(
                b"GET / HTTP/1.1\r\nHost: printer\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                b"Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\nSec-WebSocket-Version: 13\r\n\r\n")
            answer = b""
            while b"\r\n\r\n" not in answer:
                answer += self.socket.recv(4096)

    @staticmethod
    def frame(opcode, payload, announced=None):
        size = len(payload) if announced is None else announced
        head = bytes([0x80 | opcode])
        head += (bytes([0x80 | size]) if size < 126 else
                 bytes([0x80 | 127]) + size.to_bytes(8, "big"))
        return head + bytes(4) + payload

    def send(self, **message):
        self.socket.sendall(self.frame(1, wire.text(message).encode()))

    def ends(self):
        """Reads until the printer ends the connection."""
        with contextlib.suppress(ConnectionError):
            while self.socket.recv(65536):
                pass


def start_file(name, data, **more):
    return {"cmd": "START_FILE", "filename": name, "size": str(len(data)), "offset": "0",
            "key": wire.file_key(data), **more}


def expect(actual, wanted):
    assert actual == wanted, f"\n  got    {actual}\n  wanted {wanted}"


def refused(reason=5, error=1):
    return {"cmd": "START_FILE", "errorcode": error, "compress": True, "wifistate": reason}


class Arena:
    """A running printer whose directory lies among files that nobody may touch."""

    def __init__(self, program, *options, directory=None):
        self.program = program
        self.options = options
        self._place = tempfile.TemporaryDirectory()
        self.place = pathlib.Path(self._place.name)
        self.directory = directory or self.place / "printer"
        self.decoy = self.place / "decoy.zydlp"
        self.decoy.write_bytes(b"not yours")
        self._count = 0
        self.start()

    def start(self):
        self.printer = processes.Printer(self.program, self.directory, *self.options)
        self.url = self.printer.url
        self.port = int(re.search(r":(\d+)$", self.url).group(1))
        self.pid = self.printer._process.pid

    def kill(self):
        self.printer._process.kill()
        self.printer._process.wait(PATIENCE)

    def close(self):
        self.printer.stop()
        self._place.cleanup()

    @contextlib.asynccontextmanager
    async def peer(self, **more):
        async with websockets.connect(self.url, max_size=None, close_timeout=1, **more) as socket:
            yield Peer(socket)

    def bytes_of_memory(self, which="VmHWM"):
        status = pathlib.Path(f"/proc/{self.pid}/status").read_text()
        return int(re.search(which + r":\s+(\d+) kB", status).group(1)) * 1024

    def incoming(self):
        return sorted(os.listdir(self.directory / ".incoming"))

    async def transfer(self, name, data, peer=None, offset=0, **more):
        """Sends a file as a slicer does; the check state."""
        if peer is None:
            async with self.peer() as peer:
                return await self.transfer(name, data, peer, offset, **more)
        request = start_file(name, data, **more)
        reply = await peer.ask(**request)
        assert reply.get("errorcode", 0) == 0, reply
        expect(reply["offset"], str(offset))
        for chunk in wire.chunks(data, offset):
            await peer.chunk(chunk)
            reply = await peer.receive()
            offset += len(chunk)
            expect((reply["cmd"], reply["errorcode"], reply["received"]),
                   ("START_DATA", 0, str(offset)))
        reply = await peer.receive()
        expect((reply["cmd"], reply["key"]), ("CHECK_DATA", wire.file_key(data)))
        return reply["checkstate"]

    async def survives(self, **more):
        """A legitimate transfer succeeds, memory is flat, and nothing outside was touched."""
        self._count += 1
        name = f"legitimate{self._count}.bin"
        data = random.Random(self._count).randbytes(2 * MIB + 12345)
        expect(await self.transfer(name, data, **more), 2)  # whole, and no model
        assert self.printer.stored(name) == data
        (self.directory / name).unlink()
        expect(sorted(path.name for path in self.place.iterdir()), ["decoy.zydlp", "printer"])
        expect(self.decoy.read_bytes(), b"not yours")
        memory = self.bytes_of_memory()
        assert memory < MEMORY_LIMIT, f"{memory / MIB:.0f} MiB of memory"


def run(scope, *options, **more):
    """Runs each attack_… of `scope` against one printer, the program's first argument."""
    async def attack_all():
        arena = Arena(sys.argv[1], *options)
        try:
            for name, attack in list(scope.items()):
                if name.startswith("attack_") and inspect.iscoroutinefunction(attack):
                    print(name, flush=True)
                    await asyncio.wait_for(attack(arena), 2 * PATIENCE)
                    await arena.survives(**more)
        except BaseException:
            arena.kill()
            raise
        arena.close()
    asyncio.run(attack_all())
