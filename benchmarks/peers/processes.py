# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Starting servers and timing clients: wall clock, processor time, what they print."""

import os
import socket
import subprocess
import tempfile
import threading
import time
from pathlib import Path
from typing import NamedTuple

CLIENT_TIMEOUT = 180  # seconds; a client that hangs is killed and counts as failed
START_TIMEOUT = 20
TICKS = os.sysconf("SC_CLK_TCK")


class PeerFailed(Exception):
    """A server or client did not do its work; the text says which and what it printed."""


def free_port():
    """For servers that cannot be told to take any port and say which."""
    with socket.create_server(("", 0)) as probe:
        return probe.getsockname()[1]


class ServerProcess:
    """A server in the background, with its children; its output goes to a file."""

    def __init__(self, command, directory):
        self._output = Path(directory) / "server.log"
        self.command = command
        with open(self._output, "wb") as output:
            self._process = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT)

    def stop(self):
        self._process.terminate()
        try:
            self._process.wait(5)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait()

    def printed(self):
        return self._output.read_text(errors="replace")

    def await_that(self, ready):
        """The first true value of ready(), asked again and again while the server comes up."""
        deadline = time.monotonic() + START_TIMEOUT
        while time.monotonic() < deadline and self._process.poll() is None:
            if value := ready():
                return value
            time.sleep(0.02)
        raise PeerFailed(f"{' '.join(self.command)} did not start: {self.printed().strip()}")

    def announced_port(self):
        """The port of a server that prints "listening PORT" first."""
        return int(self.await_that(
            lambda: [line.split()[1] for line in self.printed().splitlines(keepends=True)
                     if line.startswith("listening ") and line.endswith("\n")])[0])

    def await_port(self, port):
        """Until something listens on the port in the server's own network namespace."""
        wanted = f":{port:04X}"
        tables = [Path(f"/proc/{self._process.pid}/net/{table}") for table in ("tcp", "tcp6")]

        def listens():
            rows = [row.split() for table in tables if table.exists()
                    for row in table.read_text().splitlines()[1:]]
            return any(row[1].endswith(wanted) and row[3] == "0A" for row in rows)

        self.await_that(listens)

    def processor_time(self):
        """User and system seconds of the server and all its children so far, to a clock tick."""
        return _processor_time(self._await_no_children())

    def _await_no_children(self):
        """A child's time is its parent's once the child has ended."""
        deadline = time.monotonic() + 5
        while time.monotonic() < deadline and len(_tree(self._process.pid)) > 1:
            time.sleep(0.005)
        return _tree(self._process.pid)


class ClientRun(NamedTuple):
    wall: float  # seconds from the start of the process to its exit
    cpu: float  # user and system seconds
    printed: str


def run_client(link, command):
    """One run of a client at its end of the link."""
    with tempfile.TemporaryFile() as output:
        started = time.perf_counter()
        with link.client_side():
            process = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT)
        guard = threading.Timer(CLIENT_TIMEOUT, process.kill)
        guard.start()
        try:
            _, status, usage = os.wait4(process.pid, 0)
        except BaseException:
            process.kill()
            raise
        finally:
            guard.cancel()
        wall = time.perf_counter() - started
        process.returncode = os.waitstatus_to_exitcode(status)
        output.seek(0)
        printed = output.read().decode(errors="replace")
    if process.returncode != 0:
        raise PeerFailed(f"{' '.join(command)} ended with {process.returncode}: {printed.strip()}")
    return ClientRun(wall, usage.ru_utime + usage.ru_stime, printed)


def _tree(root):
    """The process and all its descendants: {pid: the fields of its stat file from the state on}."""
    stats = {}
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                stats[int(entry.name)] = (entry / "stat").read_text().rpartition(")")[2].split()
            except OSError:
                continue  # it has ended meanwhile
    family = {root}
    while grown := {pid for pid, fields in stats.items() if int(fields[1]) in family} - family:
        family |= grown
    return {pid: stats[pid] for pid in family if pid in stats}


def _processor_time(tree):
    utime, children_stime = 11, 14
    return sum(int(ticks) for fields in tree.values()
               for ticks in fields[utime:children_stime + 1]) / TICKS
