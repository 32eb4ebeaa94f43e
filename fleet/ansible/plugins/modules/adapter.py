#!/usr/bin/python
# Nobody has chosen a licence for this file yet.
from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
---
module: adapter
short_description: Configure ATM network adapters
version_added: "2.0.0"
description:
  - Makes the configuration of the host's ATM adapters that of a document, or changes single settings of it.
  - It runs C(tvctl apply) or C(tvctl set) on the host, and passes on what that says. Files are replaced together or not
    at all, the running driver is told, and the change stands in the host's history.
  - Nothing is written or sent when nothing differs from the host's files. What the driver refused the files have all the
    same, so a second run finds nothing to change. With I(confirm) such a change is taken back, since nobody confirms it;
    C(tvctl diff) tells what the driver has not.
author:
  - Tarvolin (@tarvolin)
extends_documentation_fragment:
  - tarvolin.atm.tvctl
options:
  document:
    description:
      - A document as C(tvctl --json show) prints it, or a part of one with its C(format).
      - What it does not mention stays as it is; a list that it mentions is the whole list.
    type: dict
  settings:
    description:
      - Values by C(PATH.KEY), such as C(adapter1/lec2.mtu); all of them are one change.
      - Put addresses between quotes, since YAML takes some of them for numbers.
    type: dict
  file_only:
    description:
      - Change the files and tell the driver nothing.
    type: bool
    default: false
  confirm:
    description:
      - Take the change back after so many seconds, 1 to 86400, unless somebody runs C(tvctl confirm) before.
      - Confirm over a new connection, to prove that the change has not cut it off.
      - While a change waits nobody else can change anything.
    type: int
  note:
    description:
      - Words for the history.
    type: str
attributes: {}
seealso:
  - module: tarvolin.atm.facts
  - name: tvctl(8)
    description: The manual page of tvctl on the host.
    link: file:///usr/share/man/man8/tvctl.8.gz
"""

EXAMPLES = r"""
- name: One document on all hosts
  tarvolin.atm.adapter:
    document: "{{ lookup('ansible.builtin.file', 'atm.json') | from_json }}"
    note: ELAN of the new building

- name: Two settings
  tarvolin.atm.adapter:
    settings:
      adapter1/lec1.mtu: 4544
      adapter1/lec1.networkPrefix: "47:00:79:00:00:00:00:00:00:00:00:00:00"

- name: A new address, taken back unless it is confirmed
  tarvolin.atm.adapter:
    settings:
      adapter1/ip.address: "192.168.10.{{ host_number }}"
    confirm: 120
  register: address

- name: Connect anew
  ansible.builtin.meta: reset_connection

- name: Confirm
  ansible.builtin.command:
    argv: [tvctl, confirm, "{{ address.change }}"]
  changed_when: false
  when: address.change is not none
"""

RETURN = r"""
changes:
  description: What differed. A setting has its old and its new value; an entry of a list the one or the other.
  returned: always, unless nothing could be done
  type: list
  elements: dict
  sample: [{"where": "adapter1/lec1.mtu", "old": 1516, "new": 4544}]
requests:
  description: What was sent to the driver, or would be, with the driver's answers; 0 is taken, null not answered or not sent.
  returned: always, unless nothing could be done
  type: list
  elements: dict
  sample: [{"name": "LEC_INIT", "where": "adapter1/lec1", "resp": 0}]
driver:
  description: Whether the driver was told, or would be.
  returned: always, unless nothing could be done
  type: bool
change:
  description: The change's number in the history; null when there is none.
  returned: always, unless nothing could be done
  type: int
result:
  description: How it ended, C(ok), C(no change), C(dry run), C(refused) or C(silent).
  returned: always, unless nothing could be done
  type: str
rc:
  description: The exit status of tvctl, which tvctl(8) explains.
  returned: failure
  type: int
error:
  description: Why it failed, with C(code), C(message) and, where there is one, C(where).
  returned: failure
  type: dict
  sample: {"code": 4, "message": "LEC 1: restart refused (12). It runs with its old settings."}
"""

import json

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.tarvolin.atm.plugins.module_utils.tvctl import COMMON_OPTIONS, run_tvctl


def word_of(value):
    """A value as the command line takes it."""
    if isinstance(value, bool):
        return "true" if value else "false"
    return "" if value is None else str(value)


def command_of(module):
    """The words, and what goes into standard input."""
    parameters = module.params
    settings, text = parameters["settings"], None
    if settings is None:
        words, names, text = ["apply"], ["-"], json.dumps(parameters["document"])
    else:
        words, names = ["set"], ["%s=%s" % (path, word_of(value)) for path, value in settings.items()]
    if module.check_mode:
        words.append("--dry-run")
    if parameters["file_only"]:
        words.append("--file-only")
    if parameters["confirm"] is not None:
        words += ["--confirm", str(parameters["confirm"])]
    if parameters["note"] is not None:
        words += ["--note", parameters["note"]]
    # Behind "--" nothing is an option.
    return words + ["--"] + names, text


def two_sides(changes):
    """Old and new values by their places, as Ansible compares them."""
    return dict(
        before=dict((change["where"], change["old"]) for change in changes if "old" in change),
        after=dict((change["where"], change["new"]) for change in changes if "new" in change),
    )


def main():
    module = AnsibleModule(
        argument_spec=dict(
            COMMON_OPTIONS,
            document=dict(type="dict"),
            settings=dict(type="dict"),
            file_only=dict(type="bool", default=False),
            confirm=dict(type="int"),
            note=dict(type="str"),
        ),
        mutually_exclusive=[("document", "settings")],
        required_one_of=[("document", "settings")],
        supports_check_mode=True,
    )
    answer = run_tvctl(module, *command_of(module))
    result = dict((name, value) for name, value in answer.document.items() if name != "format")
    # A list in another order is a change without differences. A change that the driver refused is one, too.
    result["changed"] = result.get("result", "no change") != "no change"
    if module._diff:
        result["diff"] = two_sides(result.get("changes", []))
    if answer.failed:
        result.update(answer.reason())
        module.fail_json(**result)
    module.exit_json(**result)


if __name__ == "__main__":
    main()
