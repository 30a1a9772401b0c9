# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A WebSocket proxy between real peers: passes everything on, holds every text against the schemas."""

import asyncio
import json
import os
import pathlib
import sys

import websockets

import schemas

# What no close frame may carry: there was none, or none with a code.
NO_CODE = (1005, 1006)


class Judge:
    """Complains on standard error; records as the C++ tests do, where ZYWS_MESSAGE_LOG says."""

    def __init__(self, name):
        self.complaints = 0
        self._name = name
        self._schemas = schemas.Schemas()
        directory = os.environ.get("ZYWS_MESSAGE_LOG")
        self._log = directory and pathlib.Path(directory, f"{name}.{os.getpid()}").open(
            "w", buffering=1)

    def hear(self, sender, text):
        if complaint := self._schemas.complaint(sender, text):
            self.complaints += 1
            print(f"{self._name}: the {sender} sent {text}\n  {complaint}", file=sys.stderr)
        if self._log:
            print(json.dumps({"sender": sender, "handmade": False, "test": self._name,
                              "text": text}), file=self._log)


class Proxy:
    """Listens like the printer that it stands before."""

    def __init__(self, printer_url, judge):
        self._printer_url = printer_url
        self._judge = judge
        self._server = None

    async def listen(self, port=0):
        self._server = await websockets.serve(self._serve, "127.0.0.1", port, max_size=None,
                                              compression=None, ping_interval=None)
        return f"ws://127.0.0.1:{self._server.sockets[0].getsockname()[1]}"

    async def _serve(self, slicer, _path):
        try:
            printer = await websockets.connect(self._printer_url, max_size=None, compression=None,
                                               ping_interval=None)
        except (OSError, websockets.InvalidHandshake):
            slicer.transport.abort()
            return
        await asyncio.gather(self._pass_on(slicer, "slicer", printer),
                             self._pass_on(printer, "printer", slicer))

    async def _pass_on(self, source, sender, target):
        try:
            while True:
                message = await source.recv()
                if isinstance(message, str):
                    self._judge.hear(sender, message)
                await target.send(message)
        except websockets.ConnectionClosed:
            pass
        if not source.closed:  # so it was the target that left, and its own end is passed on
            return
        if source.close_code == 1006:
            target.transport.abort()
        elif source.close_code in NO_CODE:
            await target.close()
        else:
            await target.close(source.close_code, source.close_reason)
