# Runs tvctl on the host and takes its answer apart. What it says is passed on as it is.
from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json

COMMON_OPTIONS = dict(
    root=dict(type="path"),
    timeout=dict(type="float"),
    executable=dict(type="path", default="tvctl"),
)

# Its exit statuses that are no failures: all is well, and a preview that found a difference.
GOOD, DIFFERENT = 0, 1


class Answer(object):
    """What tvctl printed: the document without its format, the exit status, the complaints besides the error's."""

    def __init__(self, status, document, complaints):
        self.status = status
        self.document = document
        self.error = document.pop("error", None)
        self.warnings = [line for line in complaints if not self.error or line != self.error["message"]]

    @property
    def failed(self):
        return self.error is not None or self.status not in (GOOD, DIFFERENT)

    def reason(self):
        """The members of a failed result."""
        message = self.error["message"] if self.error else "tvctl ended with status %d" % self.status
        return dict(msg=message, rc=self.status, error=self.error)


def run_tvctl(module, words, text=None):
    """Runs it with the words and, as standard input, the text; fails if its answer is none of tvctl's."""
    parameters = module.params
    command = [module.get_bin_path(parameters["executable"], required=True), "--json"]
    if parameters["root"] is not None:
        command += ["--root", parameters["root"]]
    if parameters["timeout"] is not None:
        command += ["--timeout", str(parameters["timeout"])]
    status, output, complaints = module.run_command(command + words, data=text, binary_data=True)
    try:
        document = json.loads(output)
        if document["format"] != 1:
            raise ValueError("format")
    except (KeyError, TypeError, ValueError):
        module.fail_json(msg="this is no answer of a tvctl that is known here", rc=status, stdout=output,
                         stderr=complaints)
    prefix = "tvctl: "
    lines = [line[len(prefix):] if line.startswith(prefix) else line for line in complaints.splitlines()]
    answer = Answer(status, document, lines)
    for line in answer.warnings:
        module.warn(line)
    return answer
