"""Hosts below root directories of their own: files, a simulated driver each, and what can be asked of them."""

import concurrent.futures
import contextlib
import os
import re
import shutil
import signal
import subprocess
import time
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
# Only root may change a configuration; fakeroot is enough for that.
AS_ROOT = [] if os.getuid() == 0 else ["fakeroot", "--"]
PATIENCE = 60  # seconds
CONTROL = ("17", "18", "19", "65")  # primitives of the requests that change a service


def text_of(words, environment, check=True):
    done = subprocess.run([str(word) for word in words], env=environment, capture_output=True, text=True, check=False,
                          timeout=PATIENCE)  # fmt: skip
    if check and done.returncode:
        raise RuntimeError(f"{words}: {done.returncode}: {done.stdout}{done.stderr}")
    return done.stdout


class Host:
    """`build` has the programs. The path of the driver's socket below `root` must be shorter than 108 bytes."""

    def __init__(self, number, folder, build):
        self.name = f"atm{number:04}"
        self.number = number
        self.root = folder / self.name
        self.tvctl, self.tvsim = build / "ctl/tvctl", build / "sim/tvsim"
        self.environment = os.environ | {"TARVOLIN_ROOT": str(self.root)}
        self.driver = None
        (self.root / "dev").mkdir(parents=True)
        shutil.copytree(TREE / "resources/sample/etc", self.root / "etc")
        # A host has one adapter: what the others would have been set to goes.
        parameters = self.root / "etc/atm/tvconf"
        parameters.write_bytes(parameters.read_bytes().partition(b"[Adapter1")[0])

    def start(self):
        """Two calls: all drivers read their files at the same time."""
        self.driver = subprocess.Popen([self.tvsim, "--seed", str(self.number), "--adapters", "1"],
                                       env=self.environment, stdout=subprocess.PIPE, text=True)  # fmt: skip

    def started(self):
        if not self.driver.stdout.readline().startswith("ready"):
            raise RuntimeError(f"{self.name}: the simulator did not start")

    def end(self):
        if self.driver:
            self.driver.send_signal(signal.SIGTERM)
            self.driver.wait(PATIENCE)
            self.driver.stdout.close()
        self.driver = None

    def simulator(self, words):
        return text_of([self.tvsim, "ctl", *words.split()], self.environment)

    def ask(self, words, check=True):
        return text_of([*AS_ROOT, self.tvctl, *words.split()], self.environment, check)

    def requests(self):
        """The requests since the last call: all, and of them those that change the driver."""
        kinds = re.findall(r" Prim (\d+) ", self.simulator("log all"))
        self.simulator("log clear")
        return len(kinds), sum(kind in CONTROL for kind in kinds)

    def configuration(self):
        return (self.root / "etc/atm/tvconf").read_bytes()

    def waits(self):
        """Whether a change waits for its confirmation."""
        return (self.root / "var/lib/tarvolin/pending.json").exists()


def memory_of(processes):
    """Kilobytes of several processes: shared pages once, and their own pages."""
    shared, own = 0, 0
    for process in processes:
        for line in Path(f"/proc/{process}/smaps_rollup").read_text(encoding="ascii").splitlines():
            name, *rest = line.split()
            shared += int(rest[0]) if name == "Pss:" else 0
            own += int(rest[0]) if name.startswith("Private_") else 0
    return shared, own


def processor_seconds(processes):
    ticks = 0
    for process in processes:
        fields = Path(f"/proc/{process}/stat").read_text(encoding="ascii").rpartition(")")[2].split()
        ticks += int(fields[11]) + int(fields[12])
    return ticks / os.sysconf("SC_CLK_TCK")


def on_all(hosts, call):
    """The results of a call for each host, two at a time."""
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        return list(pool.map(call, hosts))


@contextlib.contextmanager
def started_hosts(number, folder, build):
    hosts = [Host(each + 1, folder, build) for each in range(number)]
    try:
        for host in hosts:
            host.start()
        for host in hosts:
            host.started()
        yield hosts
    finally:
        for host in hosts:
            host.end()
        # What waits for a confirmation must not outlive its root directory.
        for host in hosts:
            if host.waits():
                host.ask("confirm", check=False)
        time.sleep(1)
