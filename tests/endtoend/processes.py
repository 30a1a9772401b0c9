# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""The project's programs as processes, for the tests written in Python."""

import contextlib
import hashlib
import pathlib
import re
import signal
import subprocess
import threading


class Printer:
    """A running zyprinter, its address and its directory."""

    def __init__(self, program, directory, *options):
        self.directory = pathlib.Path(directory)
        self.directory.mkdir(parents=True, exist_ok=True)
        self._process = subprocess.Popen(
            [program, "--dir", str(self.directory), "--port", "0", *options],
            stdout=subprocess.PIPE, text=True)
        first = self._process.stdout.readline()
        match = re.search(r"wss?://\S+", first)
        if not match:
            raise AssertionError(f"zyprinter did not say where it listens: {first!r}")
        self.url = match.group(0)
        # Somebody has to read its log, or the pipe fills up and the printer stops.
        self._log = []
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self._process.stdout:
            self._log.append(line)

    def log(self):
        """The events so far."""
        return "".join(self._log)

    def stored(self, name):
        """The bytes of the received file `name`, wherever the printer keeps it."""
        found = [path for path in self.directory.rglob(name) if path.is_file()]
        assert len(found) == 1, f"{name} is stored {len(found)} times"
        return found[0].read_bytes()

    def stop(self):
        self._process.send_signal(signal.SIGTERM)
        assert self._process.wait(30) == 0, "zyprinter did not stop cleanly"


@contextlib.contextmanager
def printer(program, directory, *options):
    running = Printer(program, directory, *options)
    try:
        yield running
    except BaseException:
        running._process.kill()
        raise
    running.stop()


def sha256(data):
    return hashlib.sha256(data).hexdigest()
