"""A node exporter for each host, which tells the host's text file, and a Prometheus that scrapes them all by the rules of
the fleet. All of them listen on free ports of 127.0.0.1."""

import contextlib
import gzip
import json
import os
import socket
import subprocess
import threading
import time
import urllib.parse
import urllib.request

from hosts import PATIENCE, TREE, on_all

RULES = TREE / "fleet/prometheus/tarvolin.rules.yml"
INTERVAL = 15  # seconds, as of the timer and of the scrapes


def free_ports(count):
    with contextlib.ExitStack() as stack:
        sockets = [stack.enter_context(socket.socket()) for _ in range(count)]
        for each in sockets:
            each.bind(("127.0.0.1", 0))
        return [each.getsockname()[1] for each in sockets]


def fetch(port, path, packed=False):
    request = urllib.request.Request(f"http://127.0.0.1:{port}{path}",
                                     headers={"Accept-Encoding": "gzip"} if packed else {})  # fmt: skip
    with urllib.request.urlopen(request, timeout=PATIENCE) as answer:
        return answer.read()


class Collector(threading.Thread):
    """What the timer of each host does, for all of them: every INTERVAL each host's text file is written."""

    def __init__(self, hosts):
        super().__init__(daemon=True)
        self.hosts = hosts
        self.rounds = []  # seconds
        self.over = threading.Event()

    @staticmethod
    def write(host):
        host.ask(f"metrics --timeout 5 --output {host.root}/metrics/tarvolin.prom", check=False)

    def run(self):
        while not self.over.is_set():
            began = time.monotonic()
            on_all(self.hosts, self.write)
            self.rounds.append(time.monotonic() - began)
            self.over.wait(max(0, INTERVAL - self.rounds[-1]))


class Watch:
    """Used with "with"."""

    def __init__(self, folder, hosts):
        self.folder, self.hosts = folder / "prometheus", hosts
        self.port, *self.ports = free_ports(1 + len(hosts))
        self.collector = Collector(hosts)
        self.exporters, self.server = [], None

    def __enter__(self):
        self.folder.mkdir()
        for host in self.hosts:
            (host.root / "metrics").mkdir()
        try:
            self.collector.start()
            for host, port in zip(self.hosts, self.ports):
                self.exporters.append(self._start("prometheus-node-exporter", "--collector.disable-defaults",
                                                  "--collector.textfile", "--web.disable-exporter-metrics",
                                                  f"--collector.textfile.directory={host.root}/metrics",
                                                  f"--web.listen-address=127.0.0.1:{port}"))  # fmt: skip
            (self.folder / "prometheus.yml").write_text(json.dumps(self._configuration()), encoding="utf-8")
            self.server = self._start("prometheus", f"--config.file={self.folder}/prometheus.yml",
                                      f"--storage.tsdb.path={self.folder}/data",
                                      f"--web.listen-address=127.0.0.1:{self.port}")  # fmt: skip
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.collector.over.set()
        processes = [each for each in [self.server, *self.exporters] if each]
        for each in processes:
            each.terminate()
        for each in processes:
            each.wait(PATIENCE)
        if self.collector.ident:
            self.collector.join()

    def _start(self, *words):
        with open(self.folder / "log", "ab") as log:
            return subprocess.Popen(words, env=os.environ | {"GOMAXPROCS": "1"}, stdout=log, stderr=log)

    def _configuration(self):
        """JSON is YAML."""
        targets = [{"targets": [f"127.0.0.1:{port}"], "labels": {"instance": host.name}}
                   for host, port in zip(self.hosts, self.ports)]  # fmt: skip
        return {"global": {"scrape_interval": f"{INTERVAL}s", "evaluation_interval": f"{INTERVAL}s"},
                "rule_files": [str(RULES)],
                "scrape_configs": [{"job_name": "atm", "static_configs": targets}]}  # fmt: skip

    def ask(self, query):
        """The samples of an instant query: labels and value."""
        document = json.loads(fetch(self.port, "/api/v1/query?" + urllib.parse.urlencode({"query": query})))
        return [(each["metric"], float(each["value"][1])) for each in document["data"]["result"]]

    def number(self, query):
        """Of a query with one sample."""
        found = self.ask(query)
        return found[0][1] if found else float("nan")

    def alerts(self):
        """Those that fire: name and host."""
        document = json.loads(fetch(self.port, "/api/v1/alerts"))
        return {(each["labels"]["alertname"], each["labels"]["instance"]) for each in document["data"]["alerts"]
                if each["state"] == "firing"}  # fmt: skip

    def scrape_bytes(self):
        """Of the first host: as they are, and packed as Prometheus asks for them."""
        plain = fetch(self.ports[0], "/metrics")
        packed = fetch(self.ports[0], "/metrics", packed=True)
        assert gzip.decompress(packed)
        return len(plain), len(packed)

    def until(self, call, seconds):
        """The last result of a call that is asked again until it is true."""
        deadline = time.monotonic() + seconds
        while True:
            with contextlib.suppress(OSError):
                result = call()
                if result:
                    return result
            if time.monotonic() > deadline:
                return None
            time.sleep(1)
