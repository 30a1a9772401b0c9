# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Carries packets between two open TUN devices and holds each for a while: delay_relay.py FD FD SECONDS."""

import collections
import os
import select
import sys
import time

BATCH = 64  # packets read at once, before those that are due go out
PACKET = 65536


def read_batch(device, due_after, waiting):
    try:
        for _ in range(BATCH):
            packet = os.read(device, PACKET)
            waiting.append((time.monotonic() + due_after, packet))
    except BlockingIOError:
        pass


def write_due(device, waiting):
    while waiting and waiting[0][0] <= time.monotonic():
        os.write(device, waiting.popleft()[1])


def relay(one, other, delay):
    lines = {one: (other, collections.deque()), other: (one, collections.deque())}
    for device in lines:
        os.set_blocking(device, False)
    while True:
        for target, waiting in lines.values():
            write_due(target, waiting)
        due = [waiting[0][0] for _, waiting in lines.values() if waiting]
        pause = max(0.0, min(due) - time.monotonic()) if due else None
        ready, _, _ = select.select(list(lines), [], [], pause)
        for device in ready:
            read_batch(device, delay, lines[device][1])


if __name__ == "__main__":
    relay(int(sys.argv[1]), int(sys.argv[2]), float(sys.argv[3]))
