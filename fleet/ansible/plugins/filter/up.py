# Nobody has chosen a licence for this file yet.
from __future__ import absolute_import, division, print_function

__metaclass__ = type

# tvctl's words for the states in which a service does its work.
UP = ("Joined", "On PVCs", "Serving", "Running")


def up(document):
    paths = []
    for adapter, services in document.items():
        if not adapter.startswith("adapter"):
            continue
        for service, values in services.items():
            state = values.get("state") if isinstance(values, dict) else None
            if isinstance(state, dict) and state["text"] in UP:
                paths.append("%s/%s" % (adapter, service))
    return sorted(paths)


class FilterModule(object):
    def filters(self):
        return {"up": up}
