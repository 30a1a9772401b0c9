# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Links between a client and a server: the loopback, or a slow line between two network namespaces."""

import contextlib
import ctypes
import fcntl
import itertools
import json
import os
import shutil
import signal
import socket
import statistics
import struct
import subprocess
import sys
import time
from pathlib import Path

CLIENT_ADDRESS = "10.77.0.1"
SERVER_ADDRESS = "10.77.0.2"

# Bytes that pass at once after a pause; small, since a real line has no such credit.
BURST = 8 * 1024

TUNSETIFF = 0x400454CA
IFF_TUN = 0x0001
IFF_NO_PI = 0x1000
CLONE_NEWNET = 0x40000000

_numbers = itertools.count()


class LinkUnavailable(Exception):
    """This system cannot make the link; the text says what it lacks."""


class Loopback:
    """Client and server side by side on 127.0.0.1."""

    name = "loopback"
    address = "127.0.0.1"

    def __enter__(self):
        return self

    def __exit__(self, *_):
        pass

    def client_side(self):
        return contextlib.nullcontext()

    server_side = client_side

    def bytes_sent(self):
        return None

    def measured_round_trip(self):
        return 0.0


class SlowLink:
    """
    Two network namespaces joined by one line, the client in one and the server in the other.

    Each end sends at most `rate` Mbit/s, shaped by tc's token bucket (tbf). Without a round trip the
    line is a veth pair. With one it is a pair of TUN devices and a relay process between them that
    holds every packet for half of the round trip; this needs no kernel module for delays (netem).
    """

    address = SERVER_ADDRESS

    def __init__(self, rate, round_trip=0.0):
        self.name = f"{rate:g} Mbit/s"
        self.rate = rate
        self.round_trip = round_trip
        unique = f"{os.getpid()}-{next(_numbers)}"
        self._namespaces = [f"zybench-{unique}-{end}" for end in ("client", "server")]
        self._devices = [f"zyb{unique}{end}" for end in ("c", "s")]
        self._relay = None

    def __enter__(self):
        if os.geteuid() != 0:
            raise LinkUnavailable("network namespaces need root")
        for tool in ("ip", "tc"):
            if not shutil.which(tool):
                raise LinkUnavailable(f"not installed: iproute2 (no {tool})")
        try:
            self._build()
        except BaseException:
            self._tear_down()
            raise
        return self

    def __exit__(self, *_):
        self._tear_down()

    def client_side(self):
        """Sockets made and processes started in this context are at the client's end."""
        return _inside(self._namespaces[0])

    def server_side(self):
        return _inside(self._namespaces[1])

    def bytes_sent(self):
        """What the client's and the server's end have sent so far, with the headers of every packet."""
        # The bucket's own count: the devices' counts know only one header per offloaded segment.
        return tuple(
            json.loads(_run("tc", "-n", namespace, "-s", "-j", "qdisc", "show", "dev", device))[0]["bytes"]
            for namespace, device in zip(self._namespaces, self._devices))

    def measured_round_trip(self):
        """The median round trip of small datagrams in seconds; nobody else may use the line."""
        with self.server_side():
            server = _datagram_socket(SERVER_ADDRESS)
        with self.client_side():
            client = _datagram_socket(CLIENT_ADDRESS)
        with server, client:
            trips = []
            for _ in range(21):
                started = time.perf_counter()
                client.sendto(b"there", server.getsockname())
                server.recv(16)
                server.sendto(b"back", client.getsockname())
                client.recv(16)
                trips.append(time.perf_counter() - started)
            return statistics.median(trips)

    def _build(self):
        for namespace in self._namespaces:
            _run("ip", "netns", "add", namespace)
        if not self.round_trip:
            _run("ip", "link", "add", self._devices[0], "netns", self._namespaces[0], "type", "veth",
                 "peer", "name", self._devices[1], "netns", self._namespaces[1])
            self._set_up_ends()
            return
        with contextlib.ExitStack() as opened:
            tuns = [opened.enter_context(_open_tun(device)) for device in self._devices]
            for namespace, device in zip(self._namespaces, self._devices):
                _run("ip", "link", "set", device, "netns", namespace)
            self._set_up_ends()  # before the relay: a device that is down takes no packets
            self._start_relay([tun.fileno() for tun in tuns])

    def _set_up_ends(self):
        ends = zip(self._namespaces, self._devices,
                   (CLIENT_ADDRESS, SERVER_ADDRESS), (SERVER_ADDRESS, CLIENT_ADDRESS))
        for namespace, device, address, other in ends:
            _run("ip", "-n", namespace, "address", "add", address, "peer", other, "dev", device)
            _run("ip", "-n", namespace, "link", "set", device, "up")
            _run("ip", "-n", namespace, "link", "set", "lo", "up")
            _run("tc", "-n", namespace, "qdisc", "add", "dev", device, "root", "tbf",
                 "rate", f"{self.rate:g}mbit", "burst", str(BURST), "latency", "100ms")

    def _start_relay(self, devices):
        relay = Path(__file__).with_name("peers") / "delay_relay.py"
        # In a session of its own, so that Ctrl-C leaves it to the clean-up.
        self._relay = subprocess.Popen(
            [sys.executable, relay, *map(str, devices), str(self.round_trip / 2)],
            pass_fds=devices, start_new_session=True)

    def _tear_down(self):
        # A second Ctrl-C must not leave namespaces behind.
        before = {end: signal.signal(end, signal.SIG_IGN) for end in (signal.SIGINT, signal.SIGTERM)}
        try:
            if self._relay:
                self._relay.kill()
                self._relay.wait()
                self._relay = None
            for namespace in self._namespaces:
                subprocess.run(["ip", "netns", "delete", namespace], stderr=subprocess.DEVNULL)
        finally:
            for end, handler in before.items():
                signal.signal(end, handler)


@contextlib.contextmanager
def _inside(namespace):
    libc = ctypes.CDLL(None, use_errno=True)
    with open("/proc/self/ns/net") as home, open(f"/run/netns/{namespace}") as other:
        if libc.setns(other.fileno(), CLONE_NEWNET) != 0:
            raise LinkUnavailable(os.strerror(ctypes.get_errno()))
        try:
            yield
        finally:
            libc.setns(home.fileno(), CLONE_NEWNET)


def _datagram_socket(address):
    made = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    made.settimeout(5)
    made.bind((address, 0))
    return made


def _open_tun(name):
    try:
        tun = open("/dev/net/tun", "r+b", buffering=0)
        fcntl.ioctl(tun, TUNSETIFF, struct.pack("16sH22x", name.encode(), IFF_TUN | IFF_NO_PI))
    except OSError as error:
        raise LinkUnavailable(f"/dev/net/tun: {error.strerror}") from error
    return tun


def _run(*command):
    done = subprocess.run(command, capture_output=True, text=True)
    if done.returncode != 0:
        said = (done.stderr or done.stdout).strip().splitlines()
        raise LinkUnavailable(f"{' '.join(command)}: {said[-1] if said else done.returncode}")
    return done.stdout
