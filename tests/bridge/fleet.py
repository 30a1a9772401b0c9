# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A broker, bridges, printers and a client of the broker, for the tests of zybridge."""

import functools
import json
import os
import pathlib
import queue
import re
import signal
import socket
import subprocess
import tempfile
import threading
import time
import unittest
import uuid

import jsonschema
import paho.mqtt.client as mqtt
from paho.mqtt.packettypes import PacketTypes
from paho.mqtt.properties import Properties

PATIENCE = 20  # seconds; only a failing test waits so long
TLS = pathlib.Path(__file__).parent.parent / "kit" / "tls"


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def wait_for(condition, what, patience=PATIENCE):
    """The first true value of `condition`."""
    end = time.monotonic() + patience
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise AssertionError(f"waited in vain for {what}")


class Process:
    """A program whose output is read all the time."""

    def __init__(self, *command, **options):
        self.process = subprocess.Popen([str(part) for part in command], text=True,
                                        stdout=subprocess.PIPE, **options)
        self.lines = []
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        with self.process.stdout:
            for line in self.process.stdout:
                self.lines.append(line.rstrip("\n"))

    def wait_for_line(self, pattern):
        def find():
            return next((m for m in (re.search(pattern, l) for l in list(self.lines)) if m), None)
        return wait_for(find, f"a line with {pattern} in {self.lines[-5:]}")

    def kill(self):
        self.process.kill()
        self.process.wait()

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(30)


class Broker:
    """Mosquitto on a port of its own. What it holds survives kill() and start()."""

    def __init__(self, directory, *settings):
        self.directory = pathlib.Path(directory)
        self.port = free_port()
        self._settings = settings
        self.process = None
        self.start()

    def start(self):
        conf = self.directory / "mosquitto.conf"
        conf.write_text("\n".join([
            "user root", f"listener {self.port} 127.0.0.1", "persistence true",
            f"persistence_location {self.directory}/", "autosave_interval 1",
            "max_queued_messages 10000",
            *(self._settings or ["allow_anonymous true"])]))
        # As root it would become another user, which cannot write into this directory.
        self.process = Process(os.environ["MOSQUITTO"], "-c", conf, stderr=subprocess.STDOUT,
                               start_new_session=True)
        wait_for(self._answers, "the broker")

    def _answers(self):
        with socket.socket() as probe:
            return probe.connect_ex(("127.0.0.1", self.port)) == 0

    def kill(self):
        self.process.kill()


class Schemas:
    """The schemas of the topics."""

    NAMES = {r"zy/jobs/[^/]+": "job", r"zy/jobs/[^/]+/[^/]+": "job-record",
             r"zy/bridge/[^/]+/metrics": "bridge-metrics", r"zy/[^/]+/state": "state",
             r"zy/[^/]+/event": "event"}

    def __init__(self):
        self._directory = pathlib.Path(os.environ["ZYSCHEMAS"])

    @functools.lru_cache(None)
    def of(self, name):
        schema = json.loads((self._directory / f"{name}.json").read_text())
        resolver = jsonschema.RefResolver(f"{self._directory.as_uri()}/", schema)
        return jsonschema.Draft202012Validator(schema, resolver=resolver)

    def name_for(self, topic):
        return next((name for pattern, name in self.NAMES.items() if re.fullmatch(pattern, topic)),
                    None)

    def complaint(self, name, value):
        fault = jsonschema.exceptions.best_match(self.of(name).iter_errors(value))
        return fault and f"{name}: {fault.message} in {value}"


class Client:
    """A client of the broker that keeps what it hears. What bridges say has to follow the schemas;
    requests of tests need not."""

    def __init__(self, port, *filters, user=None, password=None):
        self.last = {}  # the newest payload by topic
        self.heard = []  # (time, topic, payload)
        self.live = {}  # like last, without what the broker had retained
        self._replies = queue.Queue()
        self._ready = threading.Event()
        self.inbox = f"test/{uuid.uuid4().hex}"
        self._filters = [*filters, self.inbox]
        self.mqtt = mqtt.Client(uuid.uuid4().hex, protocol=mqtt.MQTTv5)
        if user:
            self.mqtt.username_pw_set(user, password)
        self.mqtt.on_connect = self._subscribe
        self.mqtt.on_subscribe = lambda *_: self._ready.set()
        self.mqtt.on_message = self._hear
        self.mqtt.reconnect_delay_set(0.2, 0.5)
        self.mqtt.connect("127.0.0.1", port)
        self.mqtt.loop_start()
        assert self._ready.wait(PATIENCE)

    def _subscribe(self, *_):
        self.mqtt.subscribe([(each, 1) for each in self._filters])

    def _hear(self, _client, _data, message):
        if message.topic == self.inbox:
            self._replies.put((message.properties.CorrelationData, json.loads(message.payload)))
            return
        self.last[message.topic] = message.payload
        if not message.retain:
            self.live[message.topic] = message.payload
        self.heard.append((time.time(), message.topic, message.payload))

    def json(self, topic):
        return json.loads(self.last.get(topic) or b"null")

    def publish(self, topic, payload, correlation=None, retain=False, qos=1):
        properties = Properties(PacketTypes.PUBLISH)
        if correlation:
            properties.ResponseTopic = self.inbox
            properties.CorrelationData = correlation
        if not isinstance(payload, (bytes, str)):
            payload = json.dumps(payload)
        return self.mqtt.publish(topic, payload, qos, retain, properties)

    def ask(self, topic, payload, patience=PATIENCE, qos=1):
        """The answer to a request, which has the request's correlation data."""
        correlation = uuid.uuid4().bytes
        self.publish(topic, payload, correlation, qos=qos)
        end = time.monotonic() + patience
        while True:
            found, answer = self._replies.get(timeout=max(0.01, end - time.monotonic()))
            if found == correlation:
                complaint = Schemas().complaint("answer", answer)
                assert not complaint, complaint
                return answer

    def wait_for(self, topic, condition=lambda value: True):
        def look():
            try:
                value = self.json(topic)
            except json.JSONDecodeError:
                value = self.last[topic].decode()
            return value is not None and condition(value) and [value]
        return wait_for(look, f"{topic}, which is {self.last.get(topic)}")[0]

    def restart(self, broker, printers):
        """Kills the broker and starts it again. It may have forgotten jobs of its last second, and
        drops all until a printer says anew that it is available: its connection takes jobs then."""
        broker.kill()
        self.live.clear()
        broker.start()
        topics = [f"zy/{printer}/availability" for printer in printers]
        wait_for(lambda: all(self.live.get(topic) == b"online" for topic in topics), "printers")

    def events(self, printer):
        return [json.loads(payload) for _, topic, payload in list(self.heard)
                if topic == f"zy/{printer}/event"]

    def close(self):
        self.mqtt.disconnect()
        self.mqtt.loop_stop()
        self.forget()

    def forget(self):
        """What was heard, after it was held against the schemas; of a farm's only the beginning."""
        schemas = Schemas()
        for _, topic, payload in self.heard[:2000]:
            name = schemas.name_for(topic)
            if name and name != "job" and payload:
                complaint = schemas.complaint(name, json.loads(payload))
                assert not complaint, complaint
        self.heard.clear()


class Bridge:
    """A zybridge with a configuration and a state directory, which survive kill() and start()."""

    def __init__(self, directory, name, broker_port, printers, groups=None, **settings):
        self.directory = pathlib.Path(directory) / name
        (self.directory / "state").mkdir(parents=True, exist_ok=True)
        self.config = self.directory / "zybridge.conf"
        broker = {"url": f"mqtt://127.0.0.1:{broker_port}",
                  **{key[7:]: value for key, value in settings.items() if key.startswith("broker_")}}
        bridge = {"name": name, "state": self.directory / "state", "poll": 100, "settle": 500,
                  **{k: v for k, v in settings.items()
                     if not k.startswith("broker_") and not isinstance(v, dict)}}
        sections = {"bridge": bridge, "broker": broker, "printers": printers,
                    "groups": groups or {},
                    **{k: v for k, v in settings.items() if isinstance(v, dict)}}
        self.config.write_text("".join(
            f"[{section}]\n" + "".join(f"{key}={value}\n" for key, value in keys.items())
            for section, keys in sections.items() if keys))
        self.start()

    def start(self):
        self.process = Process(os.environ["ZYBRIDGE"], "--config", self.config)

    def kill(self):
        self.process.kill()


class Farm:
    """Many virtual printers in one process."""

    def __init__(self, directory, count, layer_time):
        self._process = Process(os.environ["ZYFARM"], directory, count, layer_time)
        wait_for(lambda: len(self._process.lines) >= count, "the farm")
        self.printers = {each["printer"]: f"ws://127.0.0.1:{each['port']}"
                         for each in self.says() if each["what"] == "listens"}

    def says(self, *whats):
        found = [json.loads(line) for line in list(self._process.lines)]
        return [each for each in found if each["what"] in whats] if whats else found

    def kill(self):
        self._process.kill()


class WithOwnBroker(unittest.TestCase):
    """A directory and a broker for each test."""

    def setUp(self):
        kept = tempfile.TemporaryDirectory()
        self.addCleanup(kept.cleanup)
        self.directory = pathlib.Path(kept.name)
        self.broker = Broker(self.directory)
        self.addCleanup(lambda: self.broker.kill())
