# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Hosts on a cable, each with a D-Bus and an Avahi daemon of its own, for tests of discovery.

Usage: network.py COMMAND...   runs COMMAND on such a host
"""

import contextlib
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

PATIENCE = 20  # seconds; only a failing test waits so long
SKIPPED = 77
INSIDE = "ZYTEST_APART"

BUS = """<busconfig>
  <type>system</type>
  <listen>unix:path={bus}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow own="*"/> <allow send_destination="*"/> <allow receive_sender="*"/>
    {denials}
  </policy>
</busconfig>
"""

DAEMON = """[server]
host-name={name}
use-ipv6=no
allow-interfaces={interface}
[publish]
publish-hinfo=no
publish-workstation=no
"""


def wait_for(condition, what):
    """The first true value of `condition`."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise AssertionError(f"waited in vain for {what}")


def apart():
    """Runs this program again in namespaces of its own, in which its processes end with it."""
    if INSIDE in os.environ:
        return
    command = ["unshare", "--map-root-user", "--net", "--mount", "--pid", "--fork", "--kill-child",
               "--mount-proc"]
    missing = [each for each in ("unshare", "ip", "nsenter", "dbus-daemon", "dbus-send",
                                   "avahi-daemon")
               if not shutil.which(each, path=PATH)]
    if missing:
        print(f"skipped: not installed: {', '.join(missing)}")
        sys.exit(SKIPPED)
    probe = "ip link add zyprobe0 type veth peer name zyprobe1 && mount -t tmpfs none /run"
    if subprocess.run([*command, "sh", "-c", probe], capture_output=True).returncode:
        print("skipped: this system does not let us make namespaces (unshare, veth, tmpfs)")
        sys.exit(SKIPPED)
    os.environ[INSIDE] = "1"
    os.environ["PATH"] = PATH
    os.execvp("unshare", [*command, sys.executable, *sys.argv])


PATH = os.environ["PATH"] + ":/usr/sbin:/sbin"


class Process:
    """A program whose output goes to a file."""

    def __init__(self, command, environment=None):
        self._file = tempfile.NamedTemporaryFile("w")
        self.process = subprocess.Popen([str(part) for part in command], stdout=self._file,
                                        stderr=subprocess.STDOUT, env=environment)

    def output(self):
        return pathlib.Path(self._file.name).read_text()

    def wait_for(self, pattern, count=1):
        return wait_for(lambda: len(re.findall(pattern, self.output())) >= count
                        and re.findall(pattern, self.output())[-1],
                        f"{pattern} in {self.output()}")

    def stop(self, with_signal=signal.SIGTERM):
        self.process.send_signal(with_signal)
        return self.process.wait(PATIENCE)


class Host:
    """A network namespace. The first one is the one that this program is in."""

    def __init__(self, directory, name, number, pid=None):
        self.directory = pathlib.Path(directory) / name
        self.directory.mkdir()
        self.name = name
        self.address = f"10.77.0.{number}"
        self.interface = f"zy{name}"
        self._enter = [] if pid is None else ["nsenter", f"--target={pid}", "--net", "--mount"]
        self._bus = self.directory / "bus"
        self.environment = {**os.environ, "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self._bus}",
                            "ZYSLICER_SETTINGS": str(self.directory / "settings.ini")}
        self.daemon = None

    def bring_up(self):
        # The daemon gives its directory to a user whom this namespace does not know.
        users = self.directory / "users"
        users.write_text("root:x:0:0::/:/bin/sh\navahi:x:0:0::/:/bin/sh\n")
        for command in (f"ip addr add {self.address}/24 dev {self.interface}",
                        f"ip link set {self.interface} up", "ip link set lo up",
                        "mount -t tmpfs none /run",
                        f"mount --bind {users} /etc/passwd", f"mount --bind {users} /etc/group"):
            subprocess.run([*self._enter, *command.split()], check=True)
        self.start("dbus-daemon", f"--config-file={self.configure_bus()}", "--nofork")
        wait_for(self._bus.exists, "the bus")
        self.start_daemon()

    def configure_bus(self, *denied):
        conf = self.directory / "bus.conf"
        denials = [f'<deny send_path="/" send_member="{each}"/>'
                   for each in denied]
        conf.write_text(BUS.format(bus=self._bus, denials="".join(denials)))
        return conf

    def deny(self, *methods):
        """From now on the daemon is there, and these methods of it fail."""
        self.configure_bus(*methods)
        subprocess.run([*self._enter, "dbus-send", f"--bus=unix:path={self._bus}", "--print-reply",
                        "--dest=org.freedesktop.DBus", "/", "org.freedesktop.DBus.ReloadConfig"],
                       check=True, stdout=subprocess.DEVNULL)

    def start(self, *command):
        return Process([*self._enter, *command], self.environment)

    def start_daemon(self):
        conf = self.directory / "avahi.conf"
        conf.write_text(DAEMON.format(name=self.name, interface=self.interface))
        self.daemon = self.start("avahi-daemon", f"--file={conf}", "--no-drop-root", "--no-chroot",
                                 "--no-rlimits")
        self.daemon.wait_for("Server startup complete")

    def stop_daemon(self):
        self.daemon.stop()

    def run(self, *command):
        return subprocess.run([*self._enter, *(str(part) for part in command)], text=True,
                              capture_output=True, env=self.environment, timeout=3 * PATIENCE)


@contextlib.contextmanager
def two_hosts():
    """"desk" and "hall", on a cable."""
    with tempfile.TemporaryDirectory() as directory:
        holder = subprocess.Popen(["unshare", "--net", "--mount", "sleep", "infinity"])
        try:
            own = os.readlink("/proc/self/ns/net")
            there = f"/proc/{holder.pid}/ns/net"
            wait_for(lambda: os.readlink(there) != own, "the other namespace")
            subprocess.run(["ip", "link", "add", "zydesk", "type", "veth", "peer", "name", "zyhall",
                            "netns", str(holder.pid)], check=True)
            hosts = Host(directory, "desk", 1), Host(directory, "hall", 2, holder.pid)
            for host in hosts:
                host.bring_up()
            yield hosts
        finally:
            holder.kill()


def main():
    apart()
    with two_hosts() as (desk, _):
        sys.exit(subprocess.run(sys.argv[1:], env=desk.environment).returncode)


if __name__ == "__main__":
    main()
