# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Too many connections, from web pages, that never finish their handshake."""

import asyncio
import contextlib
import time

import websockets

from arena import PATIENCE, RawPeer, expect, run


async def attack_by_many_connections(arena):
    async with contextlib.AsyncExitStack() as stack:
        standing = [await stack.enter_async_context(arena.peer()) for _ in range(8)]
        for _ in range(20):
            with contextlib.suppress(websockets.WebSocketException, ConnectionError):
                async with arena.peer() as further:
                    await asyncio.wait_for(further.socket.wait_closed(), PATIENCE)
        for peer in standing:
            assert await peer.is_silent()
        await standing.pop().socket.close()
        await until_admitted(arena)


async def until_admitted(arena):
    """A slot that has been left is free again, as soon as the printer has noticed."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        with contextlib.suppress(websockets.WebSocketException, ConnectionError):
            async with arena.peer() as peer:
                if await peer.is_silent():
                    return
    raise AssertionError("nobody is admitted any more")


async def attack_from_web_pages(arena):
    await until_admitted(arena)
    for origin in ("http://evil.example", "null", "https://bench.local", "http://bench.local.evil",
                   "http://bench.local:8080", "HTTP://BENCH.LOCAL"):
        try:
            async with arena.peer(origin=origin):
                raise AssertionError(f"{origin} was let in")
        except websockets.InvalidStatusCode as error:
            expect(error.status_code, 403)
    for origin in ("http://bench.local", "http://second.local", None):
        async with arena.peer(origin=origin) as peer:
            assert await peer.is_silent()


async def attack_by_endless_handshakes(arena):
    began = time.monotonic()
    for start in (b"", b"GET / HTTP/1.1\r\n", b"\x16\x03\x01"):
        peer = RawPeer(arena.port, handshake=False)
        peer.socket.sendall(start)
        if not start:
            slow = peer
    slow.ends()
    assert 9 < time.monotonic() - began < 20, time.monotonic() - began


async def attack_by_a_trickling_handshake(arena):
    """A byte now and then does not prolong it."""
    peer = RawPeer(arena.port, handshake=False)
    began = time.monotonic()
    with contextlib.suppress(ConnectionError):
        while time.monotonic() - began < PATIENCE:
            peer.socket.sendall(b"G")
            await asyncio.sleep(0.2)
    assert time.monotonic() - began < 20


async def attack_by_a_crowd_that_shakes_hands(arena):
    """They are there while slicers come and go."""
    crowd = []
    for _ in range(1500):
        peer = RawPeer(arena.port, handshake=False)
        with contextlib.suppress(ConnectionError):
            peer.socket.sendall(b"GET / HTTP/1.1\r\nX: " + b"x" * 100000)
        crowd.append(peer)
        if len(crowd) > 200:
            crowd.pop(0).socket.close()
    await arena.survives()


async def attack_by_no_websocket(arena):
    for request in (b"GET / HTTP/1.0\r\n\r\n", b"POST /upload HTTP/1.1\r\nHost: x\r\n\r\n", b"\r\n\r\n",
                    b"GET / HTTP/1.1\r\nUpgrade: websocket\r\n\r\n", bytes(70000)):
        peer = RawPeer(arena.port, handshake=False)
        with contextlib.suppress(ConnectionError):
            peer.socket.sendall(request)
        peer.ends()


run(globals(), "--max-connections", "8", "--allow-origin", "http://bench.local",
    "--allow-origin", "http://second.local")
