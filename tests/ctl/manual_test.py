#!/usr/bin/python3
"""The examples of tvctl(8), in their order, on the sample configuration with a driver: each ends with the status that
the page says, 0 unless a comment behind it has another. Argument: the folder of the build."""

import re
import subprocess
import sys

from ground import AS_ROOT, TREE, Ground


def examples():
    page = subprocess.run(["mandoc", "-T", "ascii", "-O", "width=200", TREE / "doc/tvctl.8"], check=True,
                          capture_output=True, text=True).stdout
    page = re.sub(r".\x08", "", page)
    section = page.split("\nEXAMPLES\n")[1].split("\nSEE ALSO\n")[0]
    for line in section.splitlines():
        if match := re.fullmatch(r" +(?:# )?((?:eval .*)?tvctl .*?)(?: +# status (\d+))?", line):
            yield match[1], int(match[2] or 0)


problems = []
with Ground(sys.argv[1]) as ground:
    lines = list(examples())
    for line, status in lines:
        done = ground.run([*AS_ROOT, "bash", "-c", line], cwd=ground.root)
        if done.returncode != status:
            problems.append(f"{line}: status {done.returncode} and not {status}: {done.stdout}{done.stderr}")
        elif done.stderr:
            problems.append(f"{line}: {done.stderr}")
if len(lines) < 20:
    problems.append(f"the page has only {len(lines)} examples")
print("\n".join(problems))
sys.exit(bool(problems))
