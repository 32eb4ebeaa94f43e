# Options of every module that runs tvctl.
from __future__ import absolute_import, division, print_function

__metaclass__ = type


class ModuleDocFragment(object):
    DOCUMENTATION = r"""
options:
  root:
    description:
      - The directory below which the system's paths are found on the host.
      - Without it the environment variable E(TARVOLIN_ROOT) counts, if it is set.
    type: path
  timeout:
    description:
      - Seconds to wait for the driver in all. C(tvctl) waits 15 seconds unless told otherwise.
    type: float
  executable:
    description:
      - The program, or its path on the host.
    type: path
    default: tvctl
requirements:
  - tvctl on the host (package tarvolin-tools)
"""
