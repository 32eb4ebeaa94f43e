#!/usr/bin/python3
"""Every command's JSON, failures too, is what doc/tvctl.schema.json says. Argument: the folder of the build."""

import json
import sys

import jsonschema
from ground import TREE, Ground

schema = json.loads((TREE / "doc/tvctl.schema.json").read_text())
jsonschema.Draft202012Validator.check_schema(schema)
problems = []
seen = set()


def validator(definition):
    return jsonschema.Draft202012Validator({"$ref": f"#/$defs/{definition}", "$defs": schema["$defs"]})


def look(ground, words, status, form=None, text=""):
    """Runs a command. `form`: the definition of its output, other than that of its name."""
    done = ground.tvctl_run("--json " + words, text)
    where = f"tvctl --json {words}"
    if done.returncode != status:
        problems.append(f"{where}: status {done.returncode} and not {status}: {done.stdout}{done.stderr}")
    try:
        document = json.loads(done.stdout)
    except json.JSONDecodeError:
        problems.append(f"{where}: no JSON: {done.stdout}{done.stderr}")
        return
    form = form or words.split()[0]
    if form != "failure":
        seen.add(form)
    problems.extend(f"{where}: {fault.json_path}: {fault.message[:300]}" for fault in validator(form).iter_errors(document))
    if not validator_of_all.is_valid(document):
        problems.append(f"{where}: the schema as a whole does not take it")
    # The forms are closed ones, and each member that must be there is missed.
    if validator(form).is_valid(document | {"stranger": 1}):
        problems.append(f"{where}: a member that is not there would not be found")
    if validator(form).is_valid({key: value for key, value in document.items() if key != "format"}):
        problems.append(f"{where}: a missing format would not be found")
    code = document.get("error", {}).get("code", status)
    if code != status:
        problems.append(f"{where}: code {code}, status {status}")


validator_of_all = jsonschema.Draft202012Validator(schema)

CHANGES = (
    ("set adapter1/lec1.mtu=4544 adapter1/lec1.elanName=x --dry-run", 1),
    ("set adapter1/lec1.mtu=4544 adapter1/lec1.elanName=x --note why", 0),
    ("set adapter1/lec1.mtu=4544", 0),
    ("pvc add adapter1/lec1 00:20:40:00:a1:09 vci 300 null broadcast rate 3", 0),
    ("pvc modify adapter1/lec1 300 llc", 0),
    ("pvc delete adapter1/lec1 300", 0),
    ("pvc add adapter1/ip 192.168.10.9 vci 301", 0),
    ("client add adapter1/les1 00:a0:3e:00:00:77-01", 0),
    ("client move adapter1/les2 00:a0:3e:00:00:77-01", 0),
    ("set adapter2/lec1.mtu=9234 --confirm 60", 0),
    ("history", 0),
    ("confirm", 0),
    ("history", 0),
    ("history 4", 0),
    ("revert 5 --dry-run", 1),
    ("revert 5", 0),
    ("diff @1 file", 1),
    ("diff sent file", 0),
)

FAILURES = (
    ("", 2), ("nothing", 2), ("set --what", 2), ("set adapter1/lec1.mtu", 2), ("show adapter1/lec9", 10),
    ("get adapter1/lec1.nothing", 2), ("get adapter1/lec1.pvcs[99]", 10), ("set adapter1/lec1.mtu=7", 9),
    ("history 99", 10), ("revert 99", 10), ("confirm", 10), ("init", 9), ("trace api", 2), ("apply /no/such/file", 9), ("diff @99", 10),
    ("pvc add adapter1/lec1 zz vci 3", 9), ("pvc delete adapter1/lec1 999", 10), ("help nothing", 2),
    ("metrics --output /no/such/file", 5), ("watch", 2), ("watch adapter1.nothing", 2), ("watch adapter1 --csv", 2), ("watch adapter9", 10),
    ("client delete adapter1/les1 00:a0:3e:00:00:78-00", 10),
)  # fmt: skip

# Values that have no name, and what no text should hold.
ODD = (
    ("Mfs                     = 1", "Mfs = 9"), ("UniRev                  = 31", "UniRev = 0"),
    ("Enabled                 = 1", "Enabled = 2"), ("ElanType                = 0", "ElanType = 7"),
    ("ElanName                = engineering", "ElanName = a\x1b\u00e4\"\\x"),
    ("L3Mtu                   = 1500", "L3Mtu = -3"),
    ("NetPrefix               = 470999000000000000a03e0101", "NetPrefix = 47"),
)  # fmt: skip


def commands(ground):
    for words in ("show", "show adapter1/lec1 adapter2", "get adapter1/lec1.mtu", "get adapter1/lec1.mac",
                  "get adapter1/lec1.pvcs", "get adapter1/ip.pvcs[0]", "get adapter1/les1.clients",
                  "diff", "metrics", f"metrics --output {ground.root}/m.prom", "help", "help set", "version", "completion bash"):
        look(ground, words, 0)
    for words in ("show --state", "show --state adapter1/lec2 adapter4"):
        look(ground, words, 0, "show --state")
    for words in ("adapter1 adapter2/lec1", "adapter1/lecs.clients adapter1.rxCells --rates"):
        look(ground, f"watch {words} --count 1 --interval 0.25", 0, "watch")
    for words in ("check", "trace ilmi on"):
        look(ground, words, 0)
    for words, status in CHANGES:
        look(ground, words, status)
    for words, status in FAILURES:
        look(ground, words, status, "failure")
    document = ground.tvctl_run("show --json").stdout
    look(ground, "apply -", 0, text=document)
    look(ground, "apply -", 0, text=document.replace("accounting", "audit"))
    look(ground, "apply -", 9, "failure", text='{"format":1,')
    look(ground, "check -", 9, text='{"format":1,"adapter1":{"lec1":{"l3Mtu":0,"elanName":""}}}')
    for fault, status in (("resp 12", 4), ("silent", 3)):
        ground.simulator(f"fault lec.control every {fault}")
        look(ground, f"set adapter1/lec2.l3Mtu={status}000 --timeout 1", status)
        look(ground, f"pvc add adapter1/lec1 00:20:40:00:a1:0a vci {status}00 --timeout 1", status)
        ground.simulator("fault clear")
        ground.simulator(f"fault trace.switch every {fault}")
        look(ground, "trace api on --timeout 1", status)
        ground.simulator(f"fault les.stats every {fault}")
        look(ground, "show --state --timeout 1", status, "show --state")
        look(ground, "diff --timeout 1", status, "diff" if status == 4 else "failure")
        ground.simulator("fault clear")


def odd(ground):
    for old, new in ODD:
        ground.edit("etc/atm/tvconf", old, new)
    ground.edit("etc/atm/pvcconf0.0", "Encap =1", "Encap =7")
    ground.edit("etc/atm/pvcconf0.0", "Bcast =0", "Bcast =2")
    look(ground, "show", 0)
    look(ground, "show --state", 0, "show --state")
    ground.edit("etc/atm/pvcconf0.0", "VC    =100", "VC    =333")
    look(ground, "diff", 1)
    look(ground, "check", 9)
    lists = [ground.root / "etc/atm" / name for name in ("pvcconf1.1", "elan1.2")]
    texts = [each.read_text() for each in lists]
    for each in lists:
        each.write_text("xx\n")
    look(ground, "show", 9)
    look(ground, "diff", 9)
    for each, text in zip(lists, texts):
        each.write_text(text)
    ground.end_driver()
    look(ground, "show adapter1", 0)
    look(ground, "diff", 8, "failure")
    look(ground, "set adapter1/lec2.elanName=other", 0)
    (ground.root / "etc/atm/tvconf").unlink()
    look(ground, "show", 9, "failure")
    look(ground, "init", 0)


with Ground(sys.argv[1]) as ground:
    every = {each["name"] for each in json.loads(ground.tvctl_run("help --json").stdout)["commands"]}
    commands(ground)
    odd(ground)
problems.extend(f"{name}: nothing of this command was looked at" for name in sorted(every - seen))
print("\n".join(problems))
sys.exit(bool(problems))
