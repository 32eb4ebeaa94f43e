#!/usr/bin/python3
"""tvctl metrics as Prometheus reads it, by its client library's parser and promtool: values are those that show --state
and diff print; what the driver does not give has no sample. Argument: the folder of the build."""

import fcntl
import json
import os
import signal
import stat
import subprocess
import sys
import threading
import time

from ground import AS_ROOT, Ground
from prometheus_client.parser import text_string_to_metric_families

problems = []


def expect(what, got, wanted):
    if got != wanted:
        problems.append(f"{what}: {got!r} and not {wanted!r}")


def samples(text):
    """By name and labels, sorted. A series must not stand twice, nor a family in two places."""
    found, families = {}, []
    for family in text_string_to_metric_families(text):
        families.append(family.name)
        for sample in family.samples:
            key = (sample.name.removeprefix("tarvolin_"), *(f"{name}={value}" for name, value in sample.labels.items()))
            if key in found or sample.timestamp is not None:
                problems.append(f"twice, or with a time: {sample}")
            found[key] = sample.value
    expect("families in one place", len(families), len(set(families)))
    return found


def collect(ground, words=""):
    done = ground.tvctl_run("metrics " + words)
    expect(f"metrics {words}: status, complaints", (done.returncode, done.stderr), (0, ""))
    checked = subprocess.run(["promtool", "check", "metrics"], input=done.stdout, text=True, capture_output=True)
    expect("promtool", (checked.returncode, checked.stdout + checked.stderr), (0, ""))
    return samples(done.stdout)


def success(found):
    return {key[1].removeprefix("collector="): bool(value) for key, value in found.items() if key[0] == "collect_success"}


def failing(found):
    return " ".join(name for name, good in success(found).items() if not good)


def same_values(ground):
    found = collect(ground, "--per-vc")
    state = json.loads(ground.tvctl_run("show --state --json").stdout)
    one = state["adapter1"]
    for name, labels, value in (
        ("aal5_receive_cells_total", "adapter=adapter1", one["rxCells"]),
        ("aal5_receive_errors_total", "adapter=adapter1 kind=vci", one["invalidVcis"]),
        ("aal5_transmit_dropped_packets_total", "adapter=adapter2", state["adapter2"]["txDropped"]),
        ("adapter_info", f"adapter=adapter1 mac={one['mac']} link=OC3c_MM", 1),
        ("link_alarm", "adapter=adapter1 alarm=lossOfFrame", 0),
        ("link_alarm", "adapter=adapter1 alarm=linkDown", None),
        ("link_alarm", "adapter=adapter2 alarm=linkDown", 1),
        ("link_alarm", "adapter=adapter2 alarm=lossOfSignal", None),
        ("circuits", "adapter=adapter1", len(one["circuits"])),
        ("circuit_receive_frames_total", "adapter=adapter1 vci=5", one["signalling"]["signallingRxFrames"]),
        ("signalling_receive_frames_total", "adapter=adapter1 protocol=signalling", one["signalling"]["signallingRxFrames"]),
        ("signalling_state", "adapter=adapter1 protocol=ilmi state=ILMI_Registered", 1),
        ("service_state", "adapter=adapter1 service=lec1 state=Joined", 1),
        ("service_state", "adapter=adapter1 service=lec1 state=Joining", 0),
        ("connections", "adapter=adapter1 service=lec1", len(one["lec1"]["connections"])),
        ("connections", "adapter=adapter1 service=lecs", one["lecs"]["connectionsOpen"]),
        ("clients", "adapter=adapter1 service=les1", len(one["les1"]["clients"])),
        ("lecs_requests_total", "adapter=adapter1 service=lecs result=rejected", one["lecs"]["rejectedRequests"]),
        ("service_enabled", "adapter=adapter1 service=les4", 0),
        ("service_up", "adapter=adapter1 service=les4", None),  # neither enabled nor there
        ("service_up", "adapter=adapter1 service=ip", 1),
        ("service_up", "adapter=adapter3 service=ip", 0),  # enabled on an adapter that the driver has not
        ("service_state", "adapter=adapter3 service=ip state=Running", None),
        ("change_pending", "", 0),
    ):
        expect(f"{name} {labels}", found.get((name, *(word.replace("_", " ") for word in labels.split()))), value)
    for row in one["lec1"]["connections"]:
        key = ("connection_transmit_packets_total", "adapter=adapter1", "service=lec1", f"vci={row['vci']}")
        expect("a row", found.get(key), row["txPackets"])
    expect("collectors", success(found), dict.fromkeys(("files", "driver", "differences", "history"), True))
    plain = collect(ground)
    rows = {key for key in found if key[0].split("_")[0] in ("circuit", "connection", "client")}
    expect("with rows and without", set(found) - rows, set(plain))
    newest = max(path.stat().st_mtime for path in (ground.root / "etc/atm").iterdir())
    expect("saved", found[("config_saved_timestamp_seconds",)] <= newest, True)


def odd_states(ground):
    """Texts of any bytes, codes without words, services that have gone, keys that two rows have."""
    ground.simulator('set lec 1.1 elanName a"b\\c\x1b}')
    ground.simulator("set driver revision 2,\\=\"")
    subprocess.run([ground.tvsim, "ctl", "set", "lec", "1.2", "elanName", b"\xff\xc3("], env=ground.environment, check=True)
    ground.simulator("set lec 1.2 state 77")
    ground.simulator("set lec 1.3 state 0")
    ground.simulator("set les 1.3 state 0")
    ground.simulator("rows vc 1 3")
    for row, vci in (1, 40), (2, 50), (3, 40):
        ground.simulator(f"set vc 1 row {row} vci {vci}")
    found = collect(ground, "--per-vc")
    state = json.loads(ground.tvctl_run("show --state --json adapter1").stdout)["adapter1"]
    for lec in "lec1", "lec2":
        key = ("elan_info", "adapter=adapter1", f"service={lec}", f"elan={state[lec]['elanName']}")
        expect(f"the name of {lec}'s ELAN", found.get(key), 1)
    expect("the driver's version", found.get(("driver_info", 'version=2,\\\\="')), 1)
    states = {key[3]: value for key, value in found.items() if key[:3] == ("service_state", "adapter=adapter1", "service=lec2")}
    expect("a code without words", ([key for key, value in states.items() if value], len(states) > 5), (["state=state 77"], True))
    expect("absent and enabled", found.get(("service_state", "adapter=adapter1", "service=lec3", "state=no such client")), 1)
    expect("absent and enabled", found.get(("service_up", "adapter=adapter1", "service=lec3")), 0)
    expect("rows", [key[2] for key in found if key[0] == "circuit_receive_frames_total" and key[1] == "adapter=adapter1"], ["vci=50"])
    expect("their number", found[("circuits", "adapter=adapter1")], 3)
    ground.simulator("unset")
    ground.simulator("rows vc 1 auto")


def differences(ground):
    ground.edit("etc/atm/pvcconf0.0", "VC    =100", "VC    =333")
    ground.edit("etc/atm/tvconf", "ElanName                = accounting", "ElanName                = audit")
    counted = {}
    for each in json.loads(ground.tvctl_run("diff --json").stdout)["differences"]:
        path = each["where"].split(".")[0]
        counted[path] = counted.get(path, 0) + (each["mark"] not in ("?", "i"))
    found = collect(ground)
    told = {"/".join(label.split("=")[1] for label in key[1:]): value for key, value in found.items() if key[0] == "differences"}
    expect("what diff counts", {path: value for path, value in told.items() if value}, {p: n for p, n in counted.items() if n})
    if len(counted) < 3:
        problems.append(f"too few differences to compare: {counted}")


FAULTS = (  # the fault, tarvolin_up, the collectors that fail, a family that has samples and one that has none
    ("any every silent", 0, "driver differences", "service_enabled", "circuits"),
    ("open every silent", 0, "driver differences", "service_enabled", "driver_info"),
    ("lec.state nth 2 silent", 1, "driver differences", "aal5_receive_cells_total", "differences"),
    ("driver.boards nth 1 resp 5", 1, "driver differences", "driver_info", "adapter_info"),
    ("adapter.aal every resp 5", 1, "driver", "differences", "aal5_receive_cells_total"),
    ("lec.stats every resp 9", 1, "driver differences", "connections", None),
    ("lecs.table every short 17", 1, "driver differences", "lecs_requests_total", None),
)  # fmt: skip


def faults(ground):
    for fault, up, failed, there, missing in FAULTS:
        ground.simulator("fault " + fault)
        before = time.monotonic()
        found = collect(ground, "--timeout 0.5")
        names = {key[0] for key in found}
        expect(f"{fault}: up, failed", (found[("up",)], failing(found)), (up, failed))
        expect(f"{fault}: samples", (there in names, missing in names), (True, False))
        expect(f"{fault}: within 5 s", time.monotonic() - before < 5, True)
        ground.simulator("fault clear")
    ground.simulator("fault lec.stats every resp 9")
    of_lecs = [key for key in collect(ground) if key[0] == "differences" and "service=lec1" in key]
    expect("differences of a service that the driver does not tell of", of_lecs, [])
    ground.simulator("fault clear")


def history(ground):
    def refused():
        return {key[2]: value for key, value in collect(ground).items() if key[0] == "change_refused"}

    ground.simulator("fault lec.control every resp 12")
    expect("refused", ground.tvctl_run("set adapter1/lec1.mtu=4544").returncode, 4)
    ground.simulator("fault clear")
    ground.tvctl_run("set adapter1/ip.subnetMask=255.255.0.0")
    expect("refused", refused(), {"service=lec1": 1, "service=ip": 0})
    ground.tvctl_run("set adapter1/lec1.mtu=9234")
    expect("taken", refused(), {"service=lec1": 0, "service=ip": 0})

    # A change whose guard was killed waits until another program takes it over; that is not this one.
    ground.tvctl_run("set adapter1/lec1.l3Mtu=3000 --confirm 1")
    pending = ground.root / "var/lib/tarvolin/pending.json"
    os.kill(json.loads(pending.read_text())["guard"], signal.SIGKILL)
    time.sleep(1.2)
    before = pending.read_text()
    expect("pending", collect(ground)[("change_pending",)], 1)
    expect("the same", pending.exists() and pending.read_text(), before)
    ground.tvctl_run("version")
    expect("taken back", collect(ground)[("change_pending",)], 0)

    # What cannot be read is no good news.
    for damaged in "garbage", '{"format": 1, "change": "3"}':
        pending.write_text(damaged)
        ground.tvctl_run("history")
        found = collect(ground)
        expect("a damaged record", (failing(found), ("change_pending",) in found), ("history", False))
        expect("it stays", pending.read_text(), damaged)
    pending.unlink()
    manifest = ground.root / "var/lib/tarvolin/history/0003/manifest.json"
    whole = manifest.read_text()
    manifest.write_text("garbage")
    found = collect(ground)
    expect("a damaged change", (failing(found), "service=ip" in refused()), ("history", False))
    said = ground.tvctl_run("history")
    expect("said", (said.returncode, said.stderr), (9, "tvctl: change 0003 of the history cannot be read\n"))
    expect("the others", [line[:4] for line in said.stdout.splitlines()], ["0005", "0004", "0002", "0001"])
    manifest.write_text(whole)


def hold_the_lock(ground):
    """As a change that takes long does."""
    with (ground.root / "run/tarvolin.lock").open("r+b") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        expect("busy", ground.tvctl_run("set adapter1/lec1.l3Mtu=2000 --timeout 1").returncode, 6)
        before = time.monotonic()
        expect("while somebody has the lock", failing(collect(ground)), "")
        expect("at once", time.monotonic() - before < 2, True)


def output(ground):
    place = ground.root / "out"
    place.mkdir()
    file = place / "tarvolin.prom"
    words = f"metrics --output {file}"
    before = os.umask(0o077)
    done = ground.tvctl_run(words)
    os.umask(before)
    expect("a file: status, text", (done.returncode, done.stdout, done.stderr), (0, "", ""))
    expect("a new file's mode", oct(stat.S_IMODE(file.stat().st_mode)), "0o644")
    file.chmod(0o640)
    expect("no name", ground.run([ground.tvctl, "metrics", "--output", ""]).returncode, 2)
    over = threading.Event()
    read = []

    def watch():
        while not over.is_set():
            read.append(file.read_text())

    reader = threading.Thread(target=watch)
    reader.start()
    for _ in range(20):
        ground.tvctl_run(words)
    over.set()
    reader.join()
    whole = {text.rstrip().rpartition("\n")[2].partition(" ")[0] for text in read}
    expect("every text is whole", whole, {'tarvolin_collect_duration_seconds{collector="history"}'})
    expect("its mode stays", oct(stat.S_IMODE(file.stat().st_mode)), "0o640")
    expect("nothing beside it", [each.name for each in place.iterdir()], [file.name])

    for what, path in ("a directory", place), ("a device", "/dev/null"), ("no directory", place / "no/file"):
        expect(what, ground.tvctl_run(f"metrics --output {path}").returncode, 5)
    expect("the device", stat.S_ISCHR(os.stat("/dev/null").st_mode), True)
    # No room for a new file: the old one goes.
    done = ground.run(["bash", "-c", f"trap '' XFSZ; ulimit -f 4; exec {' '.join(AS_ROOT)} {ground.tvctl} {words} --per-vc"])
    expect("no room: status", done.returncode, 5)
    expect("no room: files", list(place.iterdir()), [])


def nothing_there(ground):
    ground.end_driver()
    expect("no driver", (collect(ground)[("up",)], failing(collect(ground))), (0, "driver differences"))
    (ground.root / "etc/atm/tvconf").write_text("nothing of ours\n\0\xff" * 1000)
    collect(ground)
    (ground.root / "etc/atm/tvconf").unlink()
    found = collect(ground)
    expect("no files", (failing(found), [key for key in found if key[0] == "service_enabled"]), ("files driver differences", []))


with Ground(sys.argv[1], "--adapters", "1,2") as ground:
    ground.simulator("clock step 100")
    ground.simulator("link 2 25")
    ground.simulator("alarm 2 link on")
    for part in same_values, odd_states, faults, history, hold_the_lock, differences, output, nothing_there:
        part(ground)
print("\n".join(problems))
sys.exit(bool(problems))
