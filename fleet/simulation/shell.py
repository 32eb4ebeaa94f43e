"""A shell among the hosts, in which Ansible reaches all of them."""

import os
import signal
import subprocess
import sys

from hosts import AS_ROOT

WORDS = """\
{number} hosts, {first} to {last}, are in inventory.json; each is a folder here, with its files and its driver. Try
  tvctl --root {first} show adapter1/lec1
  ansible-playbook -i inventory.json tarvolin.atm.rollout -e @FILE
"exit" ends the fleet."""


def shell(controller, hosts, forks):
    """Until its end; the answer is its status. Commands can come from a pipe, too."""
    programs = hosts[0].tvctl.parent, hosts[0].tvsim.parent
    controller.write("inventory.json", controller.inventory() | {"all": {"vars": {"rollout_become": False}}})
    for host in hosts:
        (controller.folder / host.name).symlink_to(host.root)
    path = ":".join([*map(str, programs), controller.environment["PATH"]])
    environment = controller.environment | {"PATH": path, "ANSIBLE_FORKS": str(forks)}
    terminal = sys.stdin.isatty()
    command = [*AS_ROOT, "bash"]
    if terminal:
        profile = controller.folder / "profile"
        profile.write_text(
            f"[ ! -r ~/.bashrc ] || . ~/.bashrc\nPATH='{path}' PS1='fleet$ '\neval \"$(tvctl completion bash)\"\n",
            encoding="utf-8")  # fmt: skip
        command += ["--rcfile", str(profile), "-i"]
        print(WORDS.format(number=len(hosts), first=hosts[0].name, last=hosts[-1].name))
    # One that has a terminal ends what it has started when it is hung up; another one needs a group for that.
    with subprocess.Popen(command, cwd=controller.folder, env=environment, start_new_session=not terminal) as process:
        try:
            return process.wait()
        except BaseException:
            if terminal:
                process.send_signal(signal.SIGHUP)
            else:
                os.killpg(process.pid, signal.SIGTERM)
            raise
