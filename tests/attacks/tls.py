# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A printer that speaks wss:// only.

Usage: tls.py ZYPRINTER DIRECTORY_OF_THE_CERTIFICATE
"""

import asyncio
import contextlib
import pathlib
import socket
import ssl
import sys
import time

import websockets

from arena import MIB, Arena, RawPeer, expect, start_file

TLS = pathlib.Path(sys.argv[2])
TRUST = ssl.create_default_context(cafile=TLS / "localhost.pem")


async def attack_in_plain_text(arena):
    try:
        async with websockets.connect(arena.url.replace("wss:", "ws:"), open_timeout=20):
            raise AssertionError("the printer speaks ws://")
    except (websockets.WebSocketException, OSError, asyncio.TimeoutError):
        pass


async def attack_with_old_versions(arena):
    for version in (ssl.TLSVersion.TLSv1, ssl.TLSVersion.TLSv1_1):
        context = ssl.create_default_context(cafile=TLS / "localhost.pem")
        context.minimum_version = version
        context.maximum_version = version
        context.set_ciphers("DEFAULT:@SECLEVEL=0")
        with socket.create_connection(("127.0.0.1", arena.port)) as plain:
            try:
                context.wrap_socket(plain, server_hostname="localhost")
                raise AssertionError(f"the printer speaks {version}")
            except (ssl.SSLError, ConnectionError):
                pass


async def attack_by_an_endless_tls_handshake(arena):
    began = time.monotonic()
    for start in (b"\x16\x03\x01\x02\x00\x01", b""):
        peer = RawPeer(arena.port, handshake=False)
        peer.socket.sendall(start)
    peer.ends()
    assert time.monotonic() - began < 20


async def attack_after_the_tls_handshake(arena):
    """Encrypted, but no WebSocket handshake."""
    with socket.create_connection(("127.0.0.1", arena.port)) as plain:
        encrypted = TRUST.wrap_socket(plain, server_hostname="localhost")
        encrypted.settimeout(20)
        encrypted.sendall(b"GET / HTTP/1.1\r\n")
        with contextlib.suppress(ConnectionError):
            while encrypted.recv(4096):
                pass


async def attack_with_large_messages(arena):
    async with arena.peer(ssl=TRUST) as peer:
        await peer.socket.send(bytes(4 * MIB))
        expect(await peer.close_code(), 1009)


async def attack_by_a_killed_connection(arena):
    data = bytes(range(256)) * 4096 * 3
    with contextlib.suppress(websockets.ConnectionClosed):
        async with arena.peer(ssl=TRUST) as peer:
            await peer.ask(**start_file("cut.bin", data))
            await peer.chunk(data[:MIB])
            await peer.receive()
            peer.socket.transport.abort()
    async with arena.peer(ssl=TRUST) as peer:
        while (reply := await peer.ask(**start_file("cut.bin", data))).get("wifistate") == 3:
            pass
        expect(reply["offset"], str(MIB))
        await peer.ask(cmd="CANCEL_FILE")


async def main():
    arena = Arena(sys.argv[1], "--cert", TLS / "localhost.pem", "--key", TLS / "localhost.key")
    assert arena.url.startswith("wss://"), arena.url
    try:
        for name, attack in list(globals().items()):
            if name.startswith("attack_"):
                print(name, flush=True)
                await attack(arena)
                async with arena.peer(ssl=TRUST) as peer:
                    await arena.survives(peer=peer)
    except BaseException:
        arena.kill()
        raise
    arena.close()


asyncio.run(main())
