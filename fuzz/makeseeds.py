#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Writes the seeds of the fuzz targets into corpus/<target>/.

Findings are kept there as well, under their own names; this leaves them alone.
"""

import pathlib

import seeds_inflate
import seeds_messages

CORPUS = pathlib.Path(__file__).parent / "corpus"


def main():
    targets = {"inflate": seeds_inflate.seeds(), **seeds_messages.seeds()}
    for target, seeds in targets.items():
        directory = CORPUS / target
        directory.mkdir(parents=True, exist_ok=True)
        for name, content in seeds.items():
            (directory / name).write_bytes(content)
        print(f"{target}: {len(seeds)} seeds")


if __name__ == "__main__":
    main()
