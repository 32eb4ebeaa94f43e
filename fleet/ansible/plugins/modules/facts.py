#!/usr/bin/python
# Nobody has chosen a licence for this file yet.
from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
---
module: facts
short_description: Configuration and state of ATM network adapters
version_added: "2.0.0"
description:
  - Returns what C(tvctl --json show) says on the host, as facts.
author:
  - Tarvolin (@tarvolin)
extends_documentation_fragment:
  - tarvolin.atm.tvctl
options:
  paths:
    description:
      - Adapters and services, such as C(adapter1) or C(adapter1/lec2). None are all.
    type: list
    elements: str
    default: []
  state:
    description:
      - What the driver reports, in place of the configuration in the files.
    type: bool
    default: false
seealso:
  - module: tarvolin.atm.adapter
"""

EXAMPLES = r"""
- name: The configuration
  tarvolin.atm.facts:

- name: The MTU of the first client
  ansible.builtin.debug:
    var: ansible_facts.tarvolin.adapter1.lec1.mtu

- name: What the driver reports of the first adapter
  tarvolin.atm.facts:
    paths: [adapter1]
    state: true
"""

RETURN = r"""
ansible_facts:
  description: Facts.
  returned: success, and on failure what could be read
  type: complex
  contains:
    tarvolin:
      description: The document of C(tvctl --json show), which M(tarvolin.atm.adapter) takes.
      returned: without I(state)
      type: dict
    tarvolin_state:
      description: The document of C(tvctl --json show --state).
      returned: with I(state)
      type: dict
rc:
  description: The exit status of tvctl, which tvctl(8) explains.
  returned: failure
  type: int
error:
  description: Why it failed, with C(code), C(message) and, where there is one, C(where).
  returned: failure
  type: dict
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.tarvolin.atm.plugins.module_utils.tvctl import COMMON_OPTIONS, run_tvctl


def main():
    module = AnsibleModule(
        argument_spec=dict(
            COMMON_OPTIONS,
            paths=dict(type="list", elements="str", default=[]),
            state=dict(type="bool", default=False),
        ),
        supports_check_mode=True,
    )
    state = module.params["state"]
    answer = run_tvctl(module, ["show"] + (["--state"] if state else []) + module.params["paths"])
    result = dict(changed=False, ansible_facts={"tarvolin_state" if state else "tarvolin": answer.document})
    if answer.failed:
        result.update(answer.reason())
        module.fail_json(**result)
    module.exit_json(**result)


if __name__ == "__main__":
    main()
