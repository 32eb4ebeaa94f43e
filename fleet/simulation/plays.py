"""Runs of the play rollout.yml over hosts by Ansible's local connection."""

import json
import os
import re
import signal
import subprocess
import time
from dataclasses import dataclass, field

from hosts import AS_ROOT, TREE

RECAP = re.compile(r"^(\S+) +: ok=(\d+) +changed=(\d+) +unreachable=(\d+) +failed=(\d+) ", re.MULTILINE)


@dataclass
class Run:
    status: int
    text: str
    batches: list[float]  # seconds of each
    hosts: dict[str, dict[str, int]] = field(default_factory=dict)  # the recap

    def total(self, what):
        """Of how many hosts: "changed" or "failed"."""
        return sum(counts[what] > 0 for counts in self.hosts.values())


class Controller:
    """Ansible with an inventory of the hosts, in a folder of its own."""

    def __init__(self, folder, hosts, forks):
        self.folder = folder
        self.forks = forks
        place = folder / "ansible_collections/tarvolin/atm"
        place.parent.mkdir(parents=True)
        place.symlink_to(TREE / "fleet/ansible")
        self.environment = os.environ | {
            "ANSIBLE_COLLECTIONS_PATH": str(folder), "ANSIBLE_HOME": str(folder), "ANSIBLE_PIPELINING": "1",
            "ANSIBLE_LOCAL_TEMP": str(folder), "ANSIBLE_REMOTE_TEMP": str(folder), "ANSIBLE_NOCOLOR": "1",
            "LC_ALL": "C.UTF-8"}  # fmt: skip
        entries = {host.name: self._entry(host) for host in hosts}
        self.write("inventory.json", {"atm": {"hosts": entries}})

    @staticmethod
    def _entry(host):
        path = f"{host.tvctl.parent}:{os.environ['PATH']}"
        return {"ansible_connection": "local", "ansible_python_interpreter": "/usr/bin/python3",
                "rollout_environment": {"TARVOLIN_ROOT": str(host.root), "PATH": path}}  # fmt: skip

    def inventory(self):
        return json.loads((self.folder / "inventory.json").read_text(encoding="utf-8"))

    def write(self, name, content):
        (self.folder / name).write_text(json.dumps(content), encoding="utf-8")

    def cut_off(self, name, port, after_change=False):
        """From now on this host is asked for by ssh, at a port of this machine where nobody listens. `after_change`: only
        once it has been changed."""
        connection = "{{ 'local' if rollout is undefined else 'ssh' }}" if after_change else "ssh"
        inventory = self.inventory()
        inventory["atm"]["hosts"][name] |= {"ansible_connection": connection, "ansible_host": "127.0.0.1",
                                            "ansible_port": port}  # fmt: skip
        self.write("inventory.json", inventory)

    def roll_out(self, settings, *options, **variables):
        """Brings settings of adapter1 to all hosts. `variables`: of the play."""
        variables |= {"rollout_document": {"format": 1, "adapter1": settings}, "rollout_become": False}
        words = [*AS_ROOT, "ansible-playbook", "--inventory", "inventory.json", "--forks", str(self.forks),
                 "--extra-vars", json.dumps(variables), *options, TREE / "fleet/ansible/playbooks/rollout.yml"]  # fmt: skip
        lines, begins = [], []
        with subprocess.Popen([str(word) for word in words], cwd=self.folder, env=self.environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True) as process:  # fmt: skip
            try:
                for line in process.stdout:
                    lines.append(line)
                    if line.startswith(("PLAY [", "PLAY RECAP")):
                        begins.append(time.monotonic())
            except BaseException:
                os.killpg(process.pid, signal.SIGTERM)  # its workers, too
                raise
        run = Run(process.returncode, "".join(lines), [after - before for before, after in zip(begins, begins[1:])])
        names = ("ok", "changed", "unreachable", "failed")
        for name, *counts in RECAP.findall(run.text):
            run.hosts[name] = dict(zip(names, map(int, counts)))
        return run
