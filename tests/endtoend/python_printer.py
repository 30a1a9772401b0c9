# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A printer that is not Qt: answers zyslicer, in a new and in a resumed transfer, and prints.

Usage: python_printer.py ZYSLICER
"""

import asyncio
import hashlib
import json
import pathlib
import random
import subprocess
import sys
import tempfile

import websockets

import wire


class Printer:
    def __init__(self):
        self.files = {}
        self.requests = []
        self.offset = 0
        self.compress = True
        self.layer = 0

    async def serve(self, socket):
        receiving = None
        async for message in socket:
            if isinstance(message, bytes):
                receiving["data"] += wire.unpack(message) if self.compress else message
                await self.acknowledge(socket, receiving)
                continue
            request = json.loads(message)
            self.requests.append(request)
            if request["cmd"] == "START_FILE":
                receiving = {**request, "data": self.held(request)}
                await socket.send(wire.text(self.accept(request)))
            elif request["cmd"] == "START_PRINT":
                for status in ("CHECKING", "STARTED"):
                    await socket.send(wire.text({"cmd": "START_PRINT", "status": status,
                                                 "filename": request["filename"]}))
            elif request["cmd"] == "GET_PRINT_STATUS":
                await socket.send(wire.text(self.status()))

    def held(self, request):
        return self.files.get(request["filename"], b"")[:self.offset]

    def accept(self, request):
        reply = {"cmd": "START_FILE", "compress": self.compress, "filename": request["filename"],
                 "size": request["size"], "key": request["key"], "offset": str(self.offset)}
        # Only a new transfer's reply has an "errorcode".
        return reply if self.offset else {**reply, "errorcode": 0}

    async def acknowledge(self, socket, receiving):
        received = len(receiving["data"])
        await socket.send(wire.text({
            "cmd": "START_DATA", "key": receiving["key"], "errorcode": 0,
            "size": receiving["size"], "received": str(received)}))
        if received >= int(receiving["size"]):
            self.files[receiving["filename"]] = receiving["data"]
            await socket.send(wire.text({"cmd": "CHECK_DATA", "key": receiving["key"],
                                         "checkstate": 1}))

    def status(self):
        self.layer += 5
        names = ("filename", "printRemainTime", "initExposure", "delayLight", "printExposure",
                 "printHeight", "eleSpeed", "bottomExposureNum", "layerThickness", "resin")
        done = self.layer >= 10
        return {"cmd": "GET_PRINT_STATUS", **dict.fromkeys(names, ""), "sliceLayerCount": "10",
                "curSliceLayer": str(min(self.layer, 10)),
                "printStatus": "PRINT_COMPLETE" if done else "PRINT_PROCESSING"}


async def run(*command):
    process = await asyncio.create_subprocess_exec(*map(str, command), stdout=subprocess.PIPE,
                                                   stderr=subprocess.PIPE)
    out, err = await asyncio.wait_for(process.communicate(), 60)
    assert process.returncode == 0, f"{command}: {process.returncode}\n{out.decode()}{err.decode()}"
    return out.decode()


async def main():
    slicer = sys.argv[1]
    data = random.Random(11).randbytes(2 * wire.CHUNK + wire.CHUNK // 2 + 1)
    with tempfile.TemporaryDirectory() as directory:
        path = pathlib.Path(directory, "part.zydlp")
        path.write_bytes(data)
        for compress in (True, False):
            printer = Printer()
            printer.compress = compress
            async with websockets.serve(printer.serve, "127.0.0.1", 0, max_size=None) as server:
                url = f"ws://127.0.0.1:{server.sockets[0].getsockname()[1]}"
                await run(slicer, "send", path, "--to", url, "--as", "part.zydlp")
                assert printer.files["part.zydlp"] == data
                offer = next(r for r in printer.requests if r["cmd"] == "START_FILE")
                assert offer == {"cmd": "START_FILE", "filename": "part.zydlp", "offset": "0", "window": 2,
                                 "size": str(len(data)), "key": wire.file_key(data),
                                 "sha256": hashlib.sha256(data).hexdigest()}, offer

                printer.offset = wire.CHUNK
                await run(slicer, "send", path, "--to", url, "--as", "part.zydlp")
                assert printer.files["part.zydlp"] == data

                await run(slicer, "print", "part.zydlp", "--to", url, "--token", "t", "--watch")
                start = next(r for r in printer.requests if r["cmd"] == "START_PRINT")
                assert start == {"cmd": "START_PRINT", "filename": "part.zydlp", "token": "t"}


asyncio.run(main())
