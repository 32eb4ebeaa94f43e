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
      - Adapters and services, such as C(adapter1) or C(adapter1/lec2). With none it is all of them.
    type: list
    elements: str
    default: []
  state:
    description:
      - What the driver reports, in place of the configuration in the files.
    type: bool
    default: false
  services:
    description:
      - Return the names of services instead, such as C(adapter1/lec2) - those that work, and those that the files enable.
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

- name: What is up, and what should be
  tarvolin.atm.facts:
    services: true
"""

RETURN = r"""
ansible_facts:
  description: Facts.
  returned: success, and on failure what could be read
  type: complex
  contains:
    tarvolin:
      description: The document of C(tvctl --json show), which M(tarvolin.atm.adapter) takes.
      returned: without I(state) and I(services)
      type: dict
    tarvolin_state:
      description: The document of C(tvctl --json show --state).
      returned: with I(state)
      type: dict
    tarvolin_up:
      description: The services that have joined, serve or run.
      returned: with I(services)
      type: list
      elements: str
    tarvolin_enabled:
      description: The services that the files enable.
      returned: with I(services)
      type: list
      elements: str
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


# tvctl's words for the states in which a service does its work.
UP = ("Joined", "On PVCs", "Serving", "Running")


def is_up(service):
    state = service.get("state")
    return isinstance(state, dict) and state.get("text") in UP


def is_enabled(service):
    return service.get("enabled") is True


def names(document, wanted):
    """The paths of those services of a document that `wanted` is true of."""
    return sorted(
        "%s/%s" % (adapter, name)
        for adapter, services in document.items()
        if adapter.startswith("adapter")
        for name, service in services.items()
        if isinstance(service, dict) and wanted(service)
    )


def whole(document):
    return document


# The facts for each way of asking: name, option of tvctl, what is taken of its document.
CONFIGURATION = (("tarvolin", [], whole),)
STATE = (("tarvolin_state", ["--state"], whole),)
SERVICES = (
    ("tarvolin_up", ["--state"], lambda document: names(document, is_up)),
    ("tarvolin_enabled", [], lambda document: names(document, is_enabled)),
)


def main():
    module = AnsibleModule(
        argument_spec=dict(
            COMMON_OPTIONS,
            paths=dict(type="list", elements="str", default=[]),
            state=dict(type="bool", default=False),
            services=dict(type="bool", default=False),
        ),
        mutually_exclusive=[("state", "services")],
        supports_check_mode=True,
    )
    parameters = module.params
    result = dict(changed=False, ansible_facts={})
    for fact, option, take in SERVICES if parameters["services"] else STATE if parameters["state"] else CONFIGURATION:
        # Behind "--" nothing is an option.
        answer = run_tvctl(module, ["show"] + option + ["--"] + parameters["paths"])
        result["ansible_facts"][fact] = take(answer.document)
        if answer.failed:
            result.update(answer.reason())
            module.fail_json(**result)
    module.exit_json(**result)


if __name__ == "__main__":
    main()
