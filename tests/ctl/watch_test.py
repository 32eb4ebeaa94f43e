#!/usr/bin/python3
"""tvctl watch as scripts read it, with a driver that is faulty, goes and comes back, and with readers and users who
leave. Argument: the folder of the build."""

import csv
import io
import json
import re
import signal
import subprocess
import sys
import time
from datetime import datetime

import jsonschema
from ground import TREE, Ground

schema = json.loads((TREE / "doc/tvctl.schema.json").read_text())
ticks_of = jsonschema.Draft202012Validator({"$ref": "#/$defs/watch", "$defs": schema["$defs"]})
problems = []


def expect(what, got, wanted):
    if got != wanted:
        problems.append(f"{what}: {got!r} and not {wanted!r}")


def fields(line):
    """A line of the text form: its time, and what it says by name."""
    moment, _, rest = line.rstrip("\n").partition(" ")
    datetime.strptime(moment, "%Y-%m-%dT%H:%M:%S.%fZ")
    found = re.findall(r'(\S+?)=("(?:[^"\\]|\\.)*"|[^\s"]*)(?: |$)', rest)
    expect("a line put together again", " ".join("=".join(each) for each in found), rest)
    return {name: value[1:-1].replace('\\"', '"') if value.startswith('"') else value for name, value in found}


class Watch:
    """tvctl watch, as it runs."""

    def __init__(self, ground, words):
        self.words = words
        self.process = subprocess.Popen([ground.tvctl, "watch", *words.split()], env=ground.environment, text=True,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def line(self):
        return self.process.stdout.readline()

    def until(self, wanted, limit=10):
        """The next line for which this holds."""
        end = time.monotonic() + limit
        while time.monotonic() < end:
            line = self.line()
            if not line or wanted(line):
                return line
        problems.append(f"watch {self.words}: what was waited for did not come")
        return ""

    def end(self, number=None):
        """Ends by a signal, or by itself, at once and with status 0."""
        before = time.monotonic()
        if number:
            self.process.send_signal(number)
        rest, errors = self.process.communicate(timeout=20)
        expect(f"watch {self.words}: status, complaints", (self.process.returncode, errors), (0, ""))
        if time.monotonic() - before > 2:
            problems.append(f"watch {self.words}: took {time.monotonic() - before:.1f} s to end")
        return rest


def documents(text):
    for line in text.splitlines():
        document = json.loads(line)
        problems.extend(f"{fault.json_path}: {fault.message[:300]}" for fault in ticks_of.iter_errors(document))
        yield document


def same_values(ground):
    """Every form says what show --state says while the clock stands."""
    ground.simulator("clock step 100")
    ground.simulator('set lec 1.2 elanName a,"b=\\c')
    state = json.loads(ground.tvctl_run("show --state --json adapter1 adapter3/les1").stdout)
    watch = "watch adapter1 adapter3/les1 --interval 0.25 --count 2"
    told = list(documents(ground.tvctl_run(watch + " --json").stdout))
    expect("ticks", len(told), 2)
    for tick in told:
        tick.pop("time")
        expect("values of JSON", tick, state)

    text = ground.tvctl_run("show --state adapter1 adapter3/les1").stdout
    lines = {name: value for name, value in re.findall(r"(\S+) =(?: (.*))?\n", text)}
    for line in ground.tvctl_run(watch).stdout.splitlines():
        expect("values of the text", fields(line), lines)

    records = list(csv.reader(io.StringIO(ground.tvctl_run(watch + " --csv").stdout, newline=""), strict=True))
    expect("records", len(records), 3)
    expect("columns", records[0][:3], ["time", "error", "adapter1.mac"])
    for record in records[1:]:
        values = dict(zip(records[0], record, strict=True))
        expect("a name with all that has to be quoted", values["adapter1/lec2.elanName"], 'a,"b=\\\\c')
        expect("an unknown value", values["adapter1.linkDown"], "")
        for name, value in lines.items():
            if "[" not in name and value != "unknown":
                expect(f"{name} of CSV", values[name], value)
    circuits = ground.tvctl_run("watch adapter1.circuits --csv --count 1").stdout
    rows = list(csv.DictReader(io.StringIO(circuits, newline=""), strict=True))
    expect("rows of a table", [int(row["vci"]) for row in rows], [row["vci"] for row in state["adapter1"]["circuits"]])
    ground.simulator("rows vc 1 0")
    records = ground.tvctl_run("watch adapter1.circuits --csv --count 1").stdout.splitlines()
    expect("a table without rows", [record.split(",")[1:] for record in records],
           [["error", "vci", "rxFrames", "txFrames"], ["", "", "", ""]])
    ground.simulator("unset")
    ground.simulator("rows vc 1 auto")


def rates(ground):
    ground.simulator("set adapter 1 rxCells 4294967000")
    watch = Watch(ground, "adapter1.rxCells adapter1.linkKind --rates --interval 0.5")
    expect("standing still", fields(watch.line()), {"adapter1.rxCells/s": "0", "adapter1.linkKind": "OC3c MM, state 2"})
    ground.simulator("set adapter 1 rxCells 704")  # 1000 more
    rate = fields(watch.until(lambda line: "/s=0 " not in line))["adapter1.rxCells/s"]
    if not 1800 <= float(rate) <= 2200:
        problems.append(f"1000 cells in half a second: {rate}")
    expect("then", fields(watch.line())["adapter1.rxCells/s"], "0")
    ground.simulator("set adapter 1 rxCells 100")
    expect("set back", fields(watch.until(lambda line: "/s=0 " not in line))["adapter1.rxCells/s"], "unknown")
    expect("then", fields(watch.line())["adapter1.rxCells/s"], "0")
    watch.end(signal.SIGINT)
    ground.simulator("unset")


def rows_by_their_keys(ground):
    """A row that is watched by itself is followed to wherever it stands."""
    ground.simulator("rows vc 1 3")
    for row, vci, frames in (1, 40, 1000), (2, 50, 2000), (3, 60, 3000):
        ground.simulator(f"set vc 1 row {row} vci {vci}")
        ground.simulator(f"set vc 1 row {row} rxPackets {frames}")
        ground.simulator(f"set vc 1 row {row} txPackets {row}")
    paths = "adapter1.circuits.60.rxFrames adapter1.circuits.40 adapter1.circuits.99.vci"
    names = ["circuits.60.rxFrames", "circuits.40.vci", "circuits.40.rxFrames", "circuits.40.txFrames", "circuits.99.vci"]
    line = ground.tvctl_run(f"watch {paths} --count 1").stdout
    expect("rows", list(fields(line).values()), ["3000", "40", "1000", "1", "unknown"])
    expect("their names", list(fields(line)), ["adapter1." + name for name in names])
    (tick,) = documents(ground.tvctl_run(f"watch {paths} --json --count 1").stdout)
    expect("rows in JSON", tick["adapter1"], {"circuits": {
        "60": {"rxFrames": 3000}, "40": {"vci": 40, "rxFrames": 1000, "txFrames": 1}, "99": {"vci": None}}})
    records = list(csv.reader(io.StringIO(ground.tvctl_run(f"watch {paths} --csv --count 1").stdout, newline="")))
    expect("rows in CSV", records[0][2:], ["adapter1." + name for name in names])
    expect("rows in CSV", records[1][1:], ["", "3000", "40", "1000", "1", ""])
    watch = Watch(ground, "adapter1.circuits.60.rxFrames --rates --interval 0.25")
    watch.line()
    ground.simulator("set vc 1 row 1 rxPackets 3000")
    ground.simulator("set vc 1 row 1 vci 60")
    ground.simulator("set vc 1 row 3 vci 70")
    watch.line(), watch.line()  # between two of the commands two rows have the key
    expect("a row that has moved", fields(watch.line()), {"adapter1.circuits.60.rxFrames/s": "0"})
    watch.end(signal.SIGINT)
    told = json.loads(ground.tvctl_run("watch adapter1.circuits adapter1.circuits.60 --json --count 1").stdout)
    expect("a table has its rows", [row["vci"] for row in told["adapter1"]["circuits"]], [60, 50, 70])
    told = ground.tvctl_run("watch adapter3/les1.clients.00:A0:3E:00:00:01.state --count 1").stdout
    expect("another kind of key", list(fields(told)), ["adapter3/les1.clients.00:a0:3e:00:00:01.state"])
    ground.simulator("unset")
    ground.simulator("rows vc 1 auto")


def smoothed(ground):
    """Growth of one tick is divided by the time of all since the first one."""
    ground.simulator("set adapter 1 rxCells 0")
    watch = Watch(ground, "adapter1.rxCells --smooth --interval 0.25")
    watch.line()
    ground.simulator("set adapter 1 rxCells 3000")
    lines = [watch.until(lambda line: not line.endswith("=0\n"))] + [watch.line() for _ in range(4)]
    moments = [datetime.fromisoformat(line.split("Z")[0]) for line in lines]
    values = [float(fields(line)["adapter1.rxCells/s"]) for line in lines]
    since = 3000 / values[0]
    for moment, rate in zip(moments, values):
        wanted = 3000 / (since + (moment - moments[0]).total_seconds())
        if abs(rate / wanted - 1) > 0.1:
            problems.append(f"3000 cells, smoothed: {rate} and not {wanted}")
    ground.simulator("set adapter 1 rxCells 3")
    expect("set back", fields(watch.until(lambda line: "unknown" in line))["adapter1.rxCells/s"], "unknown")
    expect("then", fields(watch.line())["adapter1.rxCells/s"], "0")
    watch.end(signal.SIGINT)
    ground.simulator("unset")


def driver_comes_and_goes(ground):
    ground.end_driver()
    watch = Watch(ground, "adapter1.rxCells adapter1.mac --rates --json --interval 0.25")
    away = {"code": 8, "message": "there is no driver"}
    for _ in range(2):
        (tick,) = documents(watch.line())
        expect("no driver", (tick.keys(), tick["error"]), ({"format", "time", "error"}, away))
    for _ in range(2):
        ground.start_driver()
        (tick,) = documents(watch.until(lambda line: "error" not in line))
        expect("a driver that has come", tick["adapter1"], {"rxCells/s": None, "mac": "00:a0:3e:00:00:01"})
        (tick,) = documents(watch.line())
        expect("the tick after", tick["adapter1"]["rxCells/s"], 0)
        ground.end_driver()
        (tick,) = documents(watch.until(lambda line: "error" in line))
    # Between two ticks: nobody sees that it was away, but its counters are others.
    ground.start_driver()
    watch.until(lambda line: '"rxCells/s":0' in line)
    ground.end_driver()
    ground.start_driver()
    watch.until(lambda line: '"rxCells/s":null' in line or '"error"' in line)
    watch.until(lambda line: '"rxCells/s":0' in line)
    list(documents(watch.end(signal.SIGTERM)))


def faults(ground):
    for fault, message in (
        ("adapter.aal every resp 9", "adapter1: the driver refuses to say (9)"),
        ("adapter.aal every short 20", "adapter1: the driver's answer is incomplete"),
        ("adapter.aal every silent", "adapter1: the driver does not answer"),
        ("adapter.aal every hangup", "adapter1: the driver does not answer"),
        ("any every silent", "the driver did not answer"),
        ("driver.boards every hangup", "there is no driver"),
        ("open every errno EACCES", "the driver cannot be opened: Permission denied"),
    ):  # fmt: skip
        ground.simulator(f"fault {fault}")
        watch = Watch(ground, "adapter1.rxCells --timeout 0.3 --interval 0.25")
        troubled = fields(watch.line()), fields(watch.line())
        values = {"adapter1.rxCells": "unknown"} if message.startswith("adapter1") else {}
        expect(fault, troubled, ({"error": message} | values,) * 2)
        ground.simulator("fault clear")
        expect("without " + fault, fields(watch.until(lambda line: "error" not in line)), {"adapter1.rxCells": "0"})
        watch.end(signal.SIGHUP)
    ground.simulator("fault adapter.aal every resp 9")
    text = ground.tvctl_run("watch adapter1.rxCells --csv --count 1").stdout
    expect("an error in CSV", list(csv.reader([text.splitlines()[1]]))[0][1:], ["adapter1: the driver refuses to say (9)", ""])
    ground.simulator("fault clear")


def pace(ground):
    """Ticks that take 0.7 s leave out every second one of 0.5 s."""
    ground.simulator("fault adapter.aal every late 700")
    lines = ground.tvctl_run("watch adapter1.rxCells --interval 0.5 --count 4").stdout.splitlines()
    ground.simulator("fault clear")
    lines += ground.tvctl_run("watch adapter1.rxCells --interval 0.5 --count 3").stdout.splitlines()
    moments = [datetime.fromisoformat(line.split("Z")[0]) for line in lines]
    between = [(after - before).total_seconds() for before, after in zip(moments, moments[1:])]
    for got, wanted in zip(between[:3] + between[4:], [1, 1, 1, 0.5, 0.5]):
        if abs(got - wanted) > 0.2:
            problems.append(f"{got} s and not {wanted} s between two ticks")


def endings(ground):
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        watch = Watch(ground, "adapter1.rxCells --interval 1000")
        watch.line()
        expect("behind a signal", watch.end(number), "")
    ground.simulator("fault any every silent")
    watch = Watch(ground, "adapter1.rxCells")
    time.sleep(0.5)
    expect("a tick that is not complete", watch.end(signal.SIGINT), "")
    ground.simulator("fault clear")
    # A reader that goes is noticed long before the next tick, and at a tick.
    for interval in 1000, 0.25:
        watch = Watch(ground, f"adapter1.rxCells --interval {interval}")
        watch.line()
        watch.process.stdout.close()
        expect("without a reader", watch.process.wait(5), 0)
        expect("complaints", watch.process.stderr.read(), "")
    with open("/dev/full", "w") as full:
        done = subprocess.run([ground.tvctl, "watch", "adapter1"], stdout=full, stderr=subprocess.PIPE, text=True,
                              env=ground.environment, timeout=20)
    expect("a full disk", (done.returncode, done.stderr), (5, "tvctl: the output cannot be written\n"))


def refused_words(ground):
    for words, status in (
        ("watch", 2), ("watch adapter1.nothing", 2), ("watch adapter1/lec1.mtu.x", 2), ("watch adapter1.", 2),
        ("watch adapter1/lec1.rxCells", 2), ("watch adapter9.rxCells", 10), ("watch adapter1 adapter9.nothing", 10),
        ("watch adapter1 --interval 0.2", 2), ("watch adapter1 --count 0", 2), ("watch adapter1 --count x", 2),
        ("watch adapter1 --csv --json", 2), ("watch adapter1.circuits.x", 2), ("watch adapter1.circuits.07", 2),
        ("watch adapter1.circuits.7.x", 2), ("watch adapter1.circuits.", 2), ("watch adapter1.rxCells.7", 2),
        ("watch adapter1/les1.clients.00:a0:3e:00:00", 2), ("watch adapter1.circuits.5 adapter1/lec1.connections --csv", 2), ("watch adapter1.circuits adapter1.rxCells --csv", 2),
    ):  # fmt: skip
        done = ground.tvctl_run(words)
        expect(words, (done.returncode, done.stdout if "--json" not in words else ""), (status, ""))


with Ground(sys.argv[1]) as ground:
    for look in same_values, rates, rows_by_their_keys, smoothed, driver_comes_and_goes, faults, pace, endings, refused_words:
        begin = time.monotonic()
        look(ground)
        print(f"{look.__name__}: {time.monotonic() - begin:.1f} s")
with Ground(sys.argv[1], "--adapters", "1,3") as ground:
    expect("an adapter that is not there", ground.tvctl_run("watch adapter1 adapter2/lec1").returncode, 10)
print("\n".join(problems))
sys.exit(bool(problems))
