#!/usr/bin/python3
"""Runs the commands of the guide, in its order, and compares their answers with those that it shows. Argument: the folder of
the build. For commands that another script runs, only their presence there is checked."""

import os
import re
import subprocess
import sys
import tempfile
from dataclasses import dataclass, field
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(TREE / "tests/ctl"))
from ground import AS_ROOT, Ground

GUIDE = (TREE / "doc/guide.md").read_text(encoding="utf-8")
# Enough for all three sizes of batches.
FLEET = "fleet/simulation/run --hosts 100 --shell", "fleet/simulation/run --hosts 15 --shell"
# Commands of a checkout that other programs run.
ELSEWHERE = {"./run": ("check", "timeout 1800 ./run\n"), "./run --shell": ("check", "| ./run --shell)")}
# Blocks that are for a host of its own, and what runs them there.
ON_A_HOST = {"build": ("tools/packages-proof", "commands_of build"), "install": ("tools/machine-proof", "guide install"),
             "timer": ("tools/machine-proof", "guide timer")}  # fmt: skip
problems = []


@dataclass
class Command:
    text: str
    answer: list[str] = field(default_factory=list)
    status: int = 0


def blocks():
    """Where each block is to be run, and its commands. The last one of a block ends with the status behind "fails"."""
    for words, body in re.findall(r"^```console ?(.*)\n((?:.*\n)*?)```$", GUIDE, re.MULTILINE):
        where, _, status = words.partition("fails")
        commands = []
        for line in body.splitlines():
            if line.startswith("$ "):
                commands.append(Command(line[2:]))
            elif line.startswith("> "):
                commands[-1].text += "\n" + line[2:]
            else:
                commands[-1].answer.append(line)
        commands[-1].status = int(status or 0)
        yield where.strip(), commands


def pattern(answer):
    """A line "..." stands for any lines, "..." in a line for any words. A command without an answer prints nothing."""
    lines = [r"(?:.*\n)*?" if line == "..." else re.escape(line).replace(r"\.\.\.", ".*") + "\n" for line in answer]
    return re.compile("".join(lines))


def run(commands, shell, **more):
    """One after another in a single shell."""
    script = "".join(f"{{ {each.text}\n}} 2>&1 </dev/null\necho '@@@' $?\n" for each in commands)
    done = subprocess.run(shell, input=script, capture_output=True, text=True, check=False, timeout=900, **more)
    answers = re.split(r"^@@@ (\d+)\n", done.stdout, flags=re.MULTILINE)
    for command, said, status in zip(commands, answers[::2], answers[1::2]):
        expected = {command.status} | ({1} if "--dry-run" in command.text or " diff @" in command.text else set())
        if int(status) not in expected:
            problems.append(f"$ {command.text}\n{said}status {status}")
        elif not pattern(command.answer).fullmatch(said):
            problems.append(f"$ {command.text}\n{said}and not\n" + "\n".join(command.answer))
    if len(answers) // 2 != len(commands):
        problems.append(f"{shell} ended after {len(answers) // 2} of {len(commands)} commands: {done.stderr}")


def runs(proof):
    return bool(proof) and proof[1] in (TREE / proof[0]).read_text(encoding="utf-8")


def main():
    build = Path(sys.argv[1]).resolve()
    places = {}
    for where, commands in blocks():
        places.setdefault(where, []).extend(commands)
    with Ground(build, runs=True) as ground, tempfile.TemporaryDirectory() as folder:
        run(places.pop(""), [*AS_ROOT, "bash"], env=ground.environment, cwd=folder)
        galaxy = os.environ | {"ANSIBLE_COLLECTIONS_PATH": folder, "ANSIBLE_HOME": folder}
        run(places.pop("collection"), ["bash"], env=galaxy, cwd=TREE)
    run(places.pop("fleet"), [TREE / FLEET[1].split()[0], *FLEET[1].split()[1:], "--build", build])
    for command in places.pop("checkout"):
        if command.text not in FLEET and not runs(ELSEWHERE.get(command.text)):
            problems.append(f"Nobody runs {command.text}")
    problems.extend(f"Nobody runs the blocks {where}" for where in places if not runs(ON_A_HOST.get(where)))
    problems.extend(f"There is no {picture}" for picture in re.findall(r"!\[.*?\]\((.*?)\)", GUIDE)
                    if not (TREE / "doc" / picture).exists())  # fmt: skip
    print("\n\n".join(problems) or "The guide is right.")
    return bool(problems)


if __name__ == "__main__":
    sys.exit(main())
