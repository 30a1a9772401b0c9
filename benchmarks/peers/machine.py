# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""What the figures were taken on."""

import os
import platform
import re
from pathlib import Path


def machine():
    processor = re.search(r"^model name\s*:\s*(.+)$", Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES")
    return {
        "processor": processor.group(1) if processor else platform.machine(),
        "cores": os.cpu_count(),
        "memory_gib": round(memory / 2**30, 1),
        "kernel": platform.release(),
        "system": platform.freedesktop_os_release().get("PRETTY_NAME", platform.system()),
    }
