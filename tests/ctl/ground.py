"""What the scripts here share: a private root with the sample configuration and a simulated driver, and tvctl below it."""

import os
import shutil
import subprocess
import tempfile
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
# Who may change the configuration is root; fakeroot is enough for that.
AS_ROOT = [] if os.getuid() == 0 else ["fakeroot", "--"]


class Ground:
    """Used with "with". `build` is the folder of the build; the simulator's clock stands unless `runs`."""

    def __init__(self, build, *options, runs=False):
        build = Path(build).resolve()
        self.tvctl, self.tvsim = build / "ctl/tvctl", build / "sim/tvsim"
        self.options = options if runs else ("--frozen", *options)

    def __enter__(self):
        self.root = Path(tempfile.mkdtemp())
        self.environment = os.environ | {"TARVOLIN_ROOT": str(self.root)}
        self.environment["PATH"] = f"{self.tvctl.parent}:{os.environ['PATH']}"
        (self.root / "dev").mkdir()
        shutil.copytree(TREE / "resources/sample/etc", self.root / "etc")
        self.driver = None
        self.start_driver()
        return self

    def __exit__(self, *_):
        self.end_driver()
        shutil.rmtree(self.root)

    def start_driver(self):
        self.driver = subprocess.Popen([self.tvsim, *self.options], env=self.environment,
                                       stdout=subprocess.PIPE, text=True)
        assert self.driver.stdout.readline().startswith("ready"), "the simulator did not start"

    def end_driver(self):
        if self.driver:
            self.driver.terminate()
            self.driver.wait()
            self.driver.stdout.close()
        self.driver = None

    def simulator(self, words):
        """A command of "tvsim ctl"."""
        self.run([self.tvsim, "ctl", *words.split()]).check_returncode()

    def run(self, words, **more):
        return subprocess.run([str(word) for word in words], env=self.environment, capture_output=True, text=True,
                              timeout=100, **more)

    def tvctl_run(self, words, text=""):
        return self.run([*AS_ROOT, self.tvctl, *words.split()], input=text)

    def edit(self, file, old, new):
        path = self.root / file
        before = path.read_text()
        assert old in before, f"{file} has no {old!r}"
        path.write_text(before.replace(old, new, 1))
