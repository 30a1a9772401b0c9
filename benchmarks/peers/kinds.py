# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""The ways to send a file that are compared: what each needs, its server, its client's command."""

import os
import shutil
import subprocess
from pathlib import Path

from processes import ServerProcess, free_port

HERE = Path(__file__).parent


class Peer:
    """One way to send a file. The server runs from serve() to stop(), in a directory of its own."""

    name = ""
    needs = ()  # programs and the Debian packages that bring them

    def __init__(self, programs):
        self.programs = Path(programs)
        self.server = None

    def lacks(self):
        """What is missing for this peer to run, or nothing."""
        absent = [package for program, package in self.needs if not shutil.which(program)]
        return f"not installed: {', '.join(absent)}" if absent else ""

    def serve(self, link, directory):
        self.directory = Path(directory)
        self.inbox = self.directory / "inbox"
        self.inbox.mkdir()
        self.port = self.start(link)

    def start(self, link):
        """Starts the server, returns its port once it listens."""
        raise NotImplementedError

    def client_command(self, address, file):
        raise NotImplementedError

    def launch(self, link, *command):
        with link.server_side():
            self.server = ServerProcess([str(part) for part in command], self.directory)
        return self.server

    def stop(self):
        if self.server:
            self.server.stop()
            self.server = None


class Library(Peer):
    """A ZySslEchoClient at the default level, which starts no thread."""

    name = "libzyWebsocket"
    server_program, client_program = "zy_bench_libserver", "zy_bench_libclient"

    def lacks(self):
        absent = [name for name in (self.server_program, self.client_program)
                  if not (self.programs / name).exists()]
        return f"not built: {', '.join(absent)} (in {self.programs})" if absent else ""

    def start(self, link):
        return self.launch(link, (self.programs / self.server_program).resolve(),
                           "--dir", self.inbox, "--port", "0").announced_port()

    def url(self, address):
        return f"ws://{address}:{self.port}"

    def client_command(self, address, file):
        return [(self.programs / self.client_program).resolve(), "--url", self.url(address),
                "--file", file]


class Stored(Library):
    """Nothing is compressed, so that no work hides the line, and none is hidden by it."""

    def client_command(self, address, file):
        return [*super().client_command(address, file), "--level", "0"]


class Floor(Library):
    name = "bare Qt"
    server_program, client_program = "zy_bench_floorserver", "zy_bench_floorclient"


class Slicer(Library):
    """A ZyFileSender with its own defaults, as users meet it."""

    name = "zyslicer"
    client_program = "../apps/slicer/zyslicer"

    def client_command(self, address, file):
        return [(self.programs / self.client_program).resolve(), "send", file,
                "--to", self.url(address), "--quiet"]


class CurlToNginx(Peer):
    name = "curl, nginx"
    needs = (("curl", "curl"), ("nginx", "nginx-light"))

    def start(self, link):
        port = free_port()
        configuration = self.directory / "nginx.conf"
        configuration.write_text(NGINX.format(directory=self.directory, inbox=self.inbox, port=port))
        self.launch(link, "nginx", "-p", self.directory, "-e", self.directory / "error.log",
                    "-c", configuration).await_port(port)
        return port

    def client_command(self, address, file):
        return ["curl", "--silent", "--show-error", "--fail", "--noproxy", "*", "-T", file,
                f"http://{address}:{self.port}/{Path(file).name}"]


class Rsync(Peer):
    name = "rsync"
    options = ()
    needs = (("rsync", "rsync"),)

    def start(self, link):
        port = free_port()
        configuration = self.directory / "rsyncd.conf"
        configuration.write_text(RSYNCD.format(inbox=self.inbox) + (AS_ROOT if os.geteuid() == 0 else ""))
        self.launch(link, "rsync", "--daemon", "--no-detach", f"--config={configuration}",
                    f"--port={port}").await_port(port)
        return port

    def client_command(self, address, file):
        return ["rsync", *self.options, "--whole-file", file,
                f"rsync://{address}:{self.port}/inbox/"]


class RsyncCompressing(Rsync):
    name = "rsync -z"
    options = ("-z",)


class Tus(Peer):
    name = "tus"
    needs = (("node", "nodejs"), ("npm", "npm"))

    def __init__(self, programs):
        super().__init__(programs)
        self.installation = self.programs.parent / "tus"

    def lacks(self):
        return super().lacks() or self._install()

    def _install(self):
        """Fetches the pinned packages once, outside of the source tree; returns what went wrong."""
        self.installation.mkdir(parents=True, exist_ok=True)
        stamp = self.installation / "installed.json"
        lock = (HERE / "package-lock.json").read_bytes()
        for source in ("tus_server.mjs", "tus_client.mjs", "package.json", "package-lock.json"):
            shutil.copy(HERE / source, self.installation)
        if stamp.exists() and stamp.read_bytes() == lock:
            return ""
        done = subprocess.run(["npm", "ci", "--no-audit", "--no-fund", "--ignore-scripts"],
                              cwd=self.installation, capture_output=True, text=True)
        if done.returncode != 0:
            return f"not installed: tus, npm ci failed: {done.stderr.strip().splitlines()[-1:]}"
        stamp.write_bytes(lock)
        return ""

    def start(self, link):
        return self.launch(link, "node", self.installation.resolve() / "tus_server.mjs",
                           self.inbox).announced_port()

    def client_command(self, address, file):
        return ["node", self.installation.resolve() / "tus_client.mjs",
                f"http://{address}:{self.port}/files", file]


KINDS = (Slicer, Library, Floor, CurlToNginx, Rsync, RsyncCompressing, Tus)

# One process in the foreground, everything in the peer's own directory.
NGINX = """
daemon off;
master_process off;
pid {directory}/nginx.pid;
events {{ }}
http {{
    access_log off;
    client_body_temp_path {directory}/body;
    fastcgi_temp_path {directory}/unused;
    proxy_temp_path {directory}/unused;
    scgi_temp_path {directory}/unused;
    uwsgi_temp_path {directory}/unused;
    client_max_body_size 0;
    server {{
        listen {port};
        root {inbox};
        dav_methods PUT;
    }}
}}
"""

RSYNCD = """
use chroot = no
[inbox]
path = {inbox}
read only = no
"""

# Otherwise a daemon of root's writes as nobody, who may not write here.
AS_ROOT = """
uid = root
gid = root
"""
