# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Prints REUSE.toml, read from standard input, as the dep5 file that older versions of reuse know."""

import sys
import tomllib

print("Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/")
for annotation in tomllib.load(sys.stdin.buffer)["annotations"]:
    print("\nFiles: " + " ".join(annotation["path"]).replace("**", "*"))
    print("Copyright: " + annotation["SPDX-FileCopyrightText"])
    print("License: " + annotation["SPDX-License-Identifier"])
