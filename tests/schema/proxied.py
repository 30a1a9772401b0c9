# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Stands in for zyprinter or zyslicer: runs it with a validating proxy between it and its peers.

Usage: proxied.py ZYPRINTER|ZYSLICER [ARGUMENT...]

The exit code is the program's, or 99 when a message did not follow the schemas.
"""

import asyncio
import pathlib
import re
import signal
import sys

from proxy import Judge, Proxy

ADDRESS = re.compile(r"ws://[^\s/]+")


async def start(program, arguments, **options):
    # If this process is killed, the program ends as well, as if it had been killed itself.
    process = await asyncio.create_subprocess_exec("setpriv", "--pdeathsig", "KILL", program,
                                                   *arguments, **options)
    for number in (signal.SIGTERM, signal.SIGINT):
        asyncio.get_running_loop().add_signal_handler(number, process.send_signal, number)
    return process


async def run_printer(program, arguments, judge):
    """The proxy takes the printer's port, and its address in the first line."""
    port = 0
    if "--port" in arguments:
        at = arguments.index("--port") + 1
        port, arguments[at] = int(arguments[at]), "0"
    printer = await start(program, arguments, stdout=asyncio.subprocess.PIPE)
    first = (await printer.stdout.readline()).decode()
    if address := ADDRESS.search(first):
        url = await Proxy(address.group(), judge).listen(port)
        first = first.replace(address.group(), url)
    print(first, end="", flush=True)
    while line := await printer.stdout.readline():
        sys.stdout.buffer.write(line)
        sys.stdout.buffer.flush()
    return await printer.wait()


async def run_slicer(program, arguments, judge):
    """Each address of a printer becomes that of a proxy."""
    proxied = [await Proxy(argument, judge).listen() if ADDRESS.match(argument) else argument
               for argument in arguments]
    return await (await start(program, proxied)).wait()


async def main():
    program, *arguments = sys.argv[1:]
    name = pathlib.Path(program).name
    judge = Judge(name)
    run = run_printer if name == "zyprinter" else run_slicer
    code = await run(program, arguments, judge)
    return 99 if judge.complaints else code


sys.exit(asyncio.run(main()))
