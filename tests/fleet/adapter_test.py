#!/usr/bin/python3
"""The modules of the Ansible collection, run by Ansible on a private root with a simulated driver: what each run answers,
and whether it touches files or driver. Argument: the folder of the build."""

import fcntl
import json
import os
import sys
import tempfile
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(TREE / "tests/ctl"))
from ground import AS_ROOT, Ground

problems = []
MTU = {"settings": {"adapter1/lec1.mtu": 4544}}


def part(**settings):
    return {"document": {"format": 1, "adapter1": {"lec2": settings}}}


# A run: options of Ansible (check, diff), the module's arguments, whether it is "unchanged", "changed" or "failed", whether
# files and driver are as before, and members of the answer; a text is to be found in it.
CHECK, DIFF = "--check", "--diff"
NEW_MTU = {"where": "adapter1/lec1.mtu", "old": 1516, "new": 4544}
MTU_DIFF = {"before": {"adapter1/lec1.l3Mtu": 1500, "adapter1/lec1.mtu": 1516},
            "after": {"adapter1/lec1.l3Mtu": 4544, "adapter1/lec1.mtu": 4544}}  # fmt: skip
TWICE = {"settings": {"adapter1/lec1.l3Mtu": 1400, "adapter1/lec2.elanName": "", "adapter1/lec3.useLecs": True,
                      "adapter1/signalling.uniRevision": 3.0}}  # fmt: skip
RUNS = (
    ((CHECK, DIFF), MTU, "changed", True, {"result": "dry run", "diff": MTU_DIFF}),
    ((), MTU, "changed", False, {"result": "ok", "change": 1}),
    ((), MTU, "unchanged", True, {"result": "no change", "change": None}),
    ((), TWICE, "changed", False, {"change": 2}),
    ((), TWICE, "unchanged", True, {}),
    ((CHECK,), part(elanName="x"), "changed", True, {"result": "dry run"}),
    ((), part(elanName="x") | {"note": "why so"}, "changed", False, {"change": 3}),
    ((CHECK, DIFF), part(elanName="x"), "unchanged", True, {"diff": {"before": {}, "after": {}}}),
    ((), part(mtu=7), "failed", True, {"rc": 9, "msg": "adapter1/lec2.mtu"}),
    ((CHECK,), part(nothing=7), "failed", True, {"rc": 9, "msg": 'no setting "nothing"'}),
    ((), {"document": {"adapter1": {}}}, "failed", True, {"rc": 9, "msg": "format"}),
    ((), {"settings": {"adapter1/lec1.nothing": 1}}, "failed", True, {"rc": 2, "msg": "nothing"}),
    ((), {"settings": {"--dry-run": True, "adapter1/lec1.mtu": 1516}}, "failed", True, {"rc": 2, "msg": "names no setting"}),
    ((), MTU | part(mtu=1516), "failed", True, {"msg": "mutually exclusive"}),
    ((), MTU | {"executable": "/bin/false"}, "failed", True, {"rc": 1, "msg": "no answer of a tvctl"}),
    ((), part(elanName="kept") | {"file_only": True}, "changed", False, {"driver": False, "requests": []}),
)  # fmt: skip


def ansible(ground, module, arguments, *options):
    with tempfile.TemporaryDirectory() as answers:
        done = ground.run([*AS_ROOT, "ansible", "localhost", "--connection", "local", "--tree", answers,
                           "--extra-vars", "ansible_python_interpreter=/usr/bin/python3", "--module-name",
                           f"tarvolin.atm.{module}", "--args", json.dumps(arguments), "-vvv", *options])  # fmt: skip
        answer = Path(answers, "localhost")
        assert answer.exists(), done.stdout + done.stderr
        return json.loads(answer.read_text()) | {"failed": done.returncode != 0}


def standing(ground):
    """What files and driver have."""
    files = {path.name: path.read_bytes() for path in sorted((ground.root / "etc/atm").iterdir())}
    driver = ground.run([ground.tvsim, "ctl", "dump", "config"]).stdout if ground.driver else ""
    return files, driver, sorted((ground.root / "var").glob("lib/tarvolin/history/*"))


def look(ground, run, module="adapter"):
    options, arguments, outcome, untouched, members = run
    where = f"{module} {' '.join(options)} {json.dumps(arguments)[:200]}"
    before = standing(ground)
    answer = ansible(ground, module, arguments, *options)
    found = "failed" if answer["failed"] else "changed" if answer.get("changed") else "unchanged"
    if found != outcome:
        problems.append(f"{where}: {found} and not {outcome}: {answer}")
    if (standing(ground) == before) != untouched:
        problems.append(f"{where}: files or driver are {'not ' if untouched else ''}as before")
    for name, value in members.items():
        if value not in answer[name] if isinstance(value, str) else value != answer[name]:
            problems.append(f"{where}: {name} is {answer.get(name)} and not {value}")
    return answer


def facts_follow(ground):
    """What the facts say can be given back, also with a list turned round, which is a change without differences."""
    document = look(ground, ((), {"paths": []}, "unchanged", True, {}), "facts")["ansible_facts"]["tarvolin"]
    look(ground, ((), {"document": document}, "unchanged", True, {}))
    document["adapter1"]["lec1"]["pvcs"].reverse()
    turned = {"document": document}
    look(ground, ((CHECK,), turned, "changed", True, {"changes": []}))
    look(ground, ((), turned, "changed", False, {"changes": []}))
    look(ground, ((), turned, "unchanged", True, {}))
    state = look(ground, ((), {"state": True, "paths": ["adapter1/ip"]}, "unchanged", True, {}), "facts")
    if state["ansible_facts"]["tarvolin_state"]["adapter1"]["ip"]["state"]["text"] != "Starting":
        problems.append(f"facts: {state}")
    names = look(ground, ((), {"services": True, "paths": ["adapter1/ip", "adapter1/lec4"]}, "unchanged", True, {}), "facts")
    if names["ansible_facts"] != {"tarvolin_up": [], "tarvolin_enabled": ["adapter1/ip"]}:
        problems.append(f"services: {names}")
    look(ground, ((), {"paths": ["--state"]}, "failed", True, {"rc": 2, "msg": "no path"}), "facts")


def others_and_refusals(ground):
    with open(ground.root / "run/tarvolin.lock", "r+", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        look(ground, ((), part(elanName="later"), "failed", True, {"rc": 6}))
    answer = look(ground, ((), part(elanName="waits") | {"confirm": 600}, "changed", False, {"result": "ok"}))
    look(ground, ((), part(elanName="later"), "failed", True, {"rc": 6, "msg": "confirm"}))
    ground.tvctl_run(f"confirm {answer['change']}").check_returncode()

    ground.simulator("fault lec.control every resp 12")
    refused = ((), part(elanName="refused"), "failed", False, {"rc": 4, "changed": True, "msg": "refused (12)"})
    look(ground, refused)
    ground.simulator("fault clear")
    ground.simulator("fault lec.control every silent")
    silent = {"rc": 3, "changed": True, "result": "silent"}
    look(ground, ((), part(elanName="unheard") | {"timeout": 1}, "failed", False, silent))
    ground.simulator("fault clear")

    ground.end_driver()
    answer = look(ground, ((), part(elanName="alone"), "changed", False, {"driver": False}))
    if "no driver: saved to the files only" not in answer.get("warnings", []):
        problems.append(f"a missing driver is not said: {answer}")
    look(ground, ((), {"state": True}, "failed", True, {"rc": 8}), "facts")


with Ground(sys.argv[1]) as ground, tempfile.TemporaryDirectory() as collections:
    place = Path(collections, "ansible_collections/tarvolin/atm")
    place.parent.mkdir(parents=True)
    place.symlink_to(TREE / "fleet/ansible")
    ground.environment |= {"ANSIBLE_COLLECTIONS_PATH": collections, "ANSIBLE_HOME": collections, "LC_ALL": "C.UTF-8",
                           "ANSIBLE_LOCAL_TEMP": collections, "ANSIBLE_REMOTE_TEMP": collections}  # fmt: skip
    for each in RUNS:
        look(ground, each)
    facts_follow(ground)
    others_and_refusals(ground)
print("\n".join(problems))
sys.exit(bool(problems))
