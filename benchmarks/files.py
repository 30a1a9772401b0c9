# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""The three files that are sent: a sliced model, noise and a mesh. Made once for each size."""

import math
import os
import random
import struct
import subprocess
import sys

import measure

NAMES = {"layer model": "layer.zydlp", "random bytes": "random.bin", "mesh": "mesh.stl"}
MIB = 1024 * 1024
DEFAULT_MIB = 64


def provide(mib):
    """The directory that holds the three files of about mib MiB each."""
    directory = os.path.join(measure.BUILD, "files" if mib == DEFAULT_MIB else f"files-{mib}")
    marker = os.path.join(directory, "complete")
    if os.path.exists(marker):
        return directory
    os.makedirs(directory, exist_ok=True)
    for name, make in zip(NAMES.values(), (make_layers, make_noise, make_mesh)):
        print(f"making {name}, {mib} MiB", file=sys.stderr)
        make(os.path.join(directory, name), mib * MIB)
    with open(marker, "w", encoding="ascii"):
        pass
    return directory


def make_layers(path, size):
    """A whole model; its size is within a few per cent."""
    def model(layers):
        subprocess.run([os.path.join(measure.BUILD, "apps", "model", "zymodel"), "--out", path,
                        "--layers", str(layers)], check=True, stdout=subprocess.DEVNULL)
        return os.path.getsize(path)

    few = 20
    model(max(1, round(few * size / model(few))))


def make_noise(path, size):
    with open(path, "wb") as file:
        file.write(random.Random(1).randbytes(size))


def make_mesh(path, size):
    """A sphere with bumps as binary STL: two triangles for each cell of a grid of angles."""
    header, triangle = 84, 50
    cells = (size - header) // triangle // 2
    rows = int(math.sqrt(cells / 2))
    columns = cells // rows
    points = [[bumpy_point(math.pi * row / rows, 2 * math.pi * column / columns)
               for column in range(columns + 1)] for row in range(rows + 1)]
    with open(path, "wb") as file:
        file.write(struct.pack("<80sI", b"sphere with bumps", 2 * rows * columns))
        for upper, lower in zip(points, points[1:]):
            strip = bytearray()
            for a, b, c, d in zip(upper, upper[1:], lower, lower[1:]):
                strip += facet(a, c, b) + facet(b, c, d)
            file.write(strip)


def bumpy_point(polar, azimuth):
    radius = 40 + math.sin(9 * polar) * math.cos(7 * azimuth) + 0.2 * math.sin(61 * azimuth * polar)
    ring = radius * math.sin(polar)
    return ring * math.cos(azimuth), ring * math.sin(azimuth), radius * math.cos(polar)


FACET = struct.Struct("<12fH")


def facet(a, b, c):
    ux, uy, uz = b[0] - a[0], b[1] - a[1], b[2] - a[2]
    vx, vy, vz = c[0] - a[0], c[1] - a[1], c[2] - a[2]
    nx, ny, nz = uy * vz - uz * vy, uz * vx - ux * vz, ux * vy - uy * vx
    length = math.sqrt(nx * nx + ny * ny + nz * nz) or 1.0
    return FACET.pack(nx / length, ny / length, nz / length, *a, *b, *c, 0)
