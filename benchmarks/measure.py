# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""How everything here is measured: both sides in turn (A B B A), medians, and on what machine."""

import datetime
import json
import os
import platform
import re
import shutil
import statistics
import subprocess
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BUILD = os.path.join(ROOT, "build", "bench")
SIDES = ("library", "floor")
QUIET = {"QT_LOGGING_RULES": "zywebsocket.*=false"}


def program(name):
    return os.path.join(BUILD, "benchmarks", "zy_bench_" + name)


def server_of(side):
    return program({"library": "libserver", "floor": "floorserver"}[side])


def client_of(side):
    return program({"library": "libclient", "floor": "floorclient"}[side])


def run_json(command, **options):
    """The one line of JSON that a program prints; raises when it fails."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True,
                          timeout=600, **options)
    return json.loads(done.stdout)


class Server:
    """A server's process. Its usage is known once the context has ended."""

    def __init__(self, side, directory, environment=None, prefix=(), options=()):
        self.usage = None
        self._process = subprocess.Popen(
            [*prefix, server_of(side), "--dir", directory, *options], stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, env={**os.environ, **(environment or {})})
        words = self._process.stdout.readline().split()
        if len(words) != 2 or words[0] != b"listening":
            self._process.kill()
            raise RuntimeError(f"the {side} server does not listen")
        self.port = int(words[1])

    @property
    def url(self):
        return f"ws://127.0.0.1:{self.port}"

    def private_kib(self):
        """Memory that the process has for itself alone, in KiB."""
        with open(f"/proc/{self._process.pid}/smaps_rollup", encoding="ascii") as file:
            return sum(int(size) for size in re.findall(r"^Private_\w+: +(\d+)", file.read(), re.M))

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        self._process.terminate()
        output = self._process.communicate(timeout=60)[0]
        if failure[0] is None:
            self.usage = json.loads(output)


def interleave(pairs, measure, sides=SIDES):
    """Calls measure(side) for all sides in the order A B B A …; {side: [result, …]}."""
    results = {side: [] for side in sides}
    for pair in range(pairs):
        for side in sides if pair % 2 == 0 else sides[::-1]:
            results[side].append(measure(side))
    return results


def row(case, measure, unit, results, key, target=None, side="library", base="floor"):
    """One line of a result table: medians, their ratio, and the spread of the pairs' ratios."""
    own, bare = ([result[key] for result in results[of]] for of in (side, base))
    pairs = [mine / floor for mine, floor in zip(own, bare)]
    ratio = statistics.median(own) / statistics.median(bare)
    return {"case": case, "measure": measure, "unit": unit,
            "library": statistics.median(own), "floor": statistics.median(bare),
            "ratio": ratio, "spread": [min(pairs), max(pairs)],
            "target": target, "met": is_met(ratio, target)}


def is_met(ratio, target):
    """Whether a ratio meets a target such as "<= 1.05"; None without a target."""
    if target is None:
        return None
    relation, limit = target.split()
    return ratio <= float(limit) if relation == "<=" else ratio >= float(limit)


def qt_version():
    listing = subprocess.run(["ldd", server_of("floor")], stdout=subprocess.PIPE, text=True,
                             check=True).stdout
    core = re.search(r"libQt\dCore\S* => (\S+)", listing)
    return re.sub(r".*\.so\.", "", os.path.realpath(core.group(1))) if core else "unknown"


def machine():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        model = re.search(r"model name\s*: (.*)", file.read())
    return {"cpu": model.group(1) if model else platform.processor(),
            "cores": os.cpu_count(),
            "kernel": platform.release(),
            "qt": qt_version(),
            "load": os.getloadavg()[0],
            "date": datetime.datetime.now(datetime.timezone.utc).isoformat(timespec="minutes")}


def scratch(need_bytes):
    """A temporary directory, in memory when there is room for need_bytes."""
    memory = "/dev/shm"
    has_room = os.path.isdir(memory) and shutil.disk_usage(memory).free > 2 * need_bytes
    return tempfile.TemporaryDirectory(prefix="zybench-", dir=memory if has_room else None)


def scratch_on_disk():
    return tempfile.TemporaryDirectory(prefix="zybench-", dir=BUILD)


def file_system(path):
    kind = subprocess.run(["stat", "--file-system", "--format=%T", path], stdout=subprocess.PIPE,
                          text=True, check=True).stdout.strip()
    return f"{os.path.dirname(path)} ({kind})"
