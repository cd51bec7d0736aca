"""A copy of a project in a build tree of its own, whose sources may be changed, and its tests."""

import json
import os
import re
import shutil
import signal
import subprocess
import time
from dataclasses import dataclass
from pathlib import Path

# Unoptimised, without debug information, and with a fast linker if there is one: each mutant is
# built anew.
CONFIGURATION = ["-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0"]
if shutil.which("ld.lld"):
    CONFIGURATION.append("-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld")
TIMES_SLOWER = 10  # than without a change, before a test counts as hanging


@dataclass
class Test:
    """One test of CTest, what to build for it, and the project's files that it is built from."""

    name: str
    command: list
    folder: str
    environment: dict
    target: str
    sources: set
    seconds: float = 0  # without a change


def files_of(project):
    """The names of a project's files, without those of builds and of version control."""
    for folder, folders, files in os.walk(project):
        if folder == str(project):
            folders[:] = [each for each in folders if each not in ("build", ".git")]
        for file in files:
            if (path := Path(folder, file)).is_file():
                yield str(path.relative_to(project))


class BuildTree:
    """Holds the copy in the folder `source` and its build in the folder `build`."""

    def __init__(self, project, folder):
        self.project, self.source, self.build = project, folder / "source", folder / "build"
        self.log = folder / "log.txt"

    def prepare(self):
        """Copies the project's files that differ and configures the build."""
        files = set(files_of(self.project))
        for old in [path for path in self.source.rglob("*") if path.is_file()]:
            if str(old.relative_to(self.source)) not in files:
                old.unlink()
        for file in files:
            copy, original = self.source / file, self.project / file
            if not copy.exists() or copy.read_bytes() != original.read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(original, copy)
        if not self.run(["cmake", "-S", self.source, "-B", self.build, *CONFIGURATION]):
            raise SystemExit(f"The copy could not be configured: {self.log}")

    def run(self, command, seconds=None, **place):
        """Runs a command, whose output is logged, and ends all its processes.

        Returns whether it succeeded; None if it takes longer than some seconds.
        """
        with open(self.log, "w") as log:
            process = subprocess.Popen(command, stdout=log, stderr=log, stdin=subprocess.DEVNULL,
                                       start_new_session=True, **place)
            try:
                return process.wait(seconds) == 0
            except subprocess.TimeoutExpired:
                return None
            finally:
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                process.wait()

    def make(self, targets):
        jobs = str(len(os.sched_getaffinity(0)))
        return self.run(["ninja", "-j", jobs, "-C", self.build, *sorted(targets)])

    def ask(self, *command):
        return subprocess.run(command, cwd=self.build, check=True, capture_output=True,
                              text=True).stdout

    def inputs(self, target):
        """The files that a target is made from, directly or not, except headers."""
        return [line.strip() for line in self.ask("ninja", "-t", "inputs", target).split("\n")]

    def targets_by_test(self, pattern, files):
        """What to build for each test whose name matches and that is built from one of the files.

        A test without a target of its name runs a script, which may need any program.
        """
        changeable = {str(self.source / file) for file in files}
        targets = {line.split(":")[0]
                   for line in self.ask("ninja", "-t", "targets", "all").split("\n")}
        found = {}
        for test in json.loads(self.ask("ctest", "--show-only=json-v1"))["tests"]:
            name = test["name"]
            target = name if name in targets else "all"
            if re.search(pattern, name) and not changeable.isdisjoint(self.inputs(target)):
                found[name] = target
        return found

    def sources_by_target(self, targets):
        """The project's files that each target is built from, including headers; after a build."""
        read = {}  # by an object, the files that its compiler read
        for block in self.ask("ninja", "-t", "deps").split("\n\n"):
            name, *files = block.split("\n")
            paths = [Path(os.path.normpath(self.build / file.strip())) for file in files]
            read[name.split(":")[0]] = {str(path.relative_to(self.source)) for path in paths
                                        if path.is_relative_to(self.source)}
        return {target: set().union(*(read.get(file, ()) for file in self.inputs(target)))
                for target in targets}

    def tests(self, pattern, files):
        """Builds and returns the tests whose names match and that notice one of the files."""
        targets = self.targets_by_test(pattern, files)
        if not self.make(set(targets.values())):
            raise SystemExit(f"The project could not be built: {self.log}")
        sources = self.sources_by_target(set(targets.values()))
        found = []
        for test in json.loads(self.ask("ctest", "--show-only=json-v1"))["tests"]:
            properties = {each["name"]: each["value"] for each in test.get("properties", [])}
            if test["name"] in targets and not properties.get("DISABLED"):
                target = targets[test["name"]]
                found.append(Test(
                    test["name"], test["command"], properties.get("WORKING_DIRECTORY", self.build),
                    dict(each.split("=", 1) for each in properties.get("ENVIRONMENT", [])),
                    target, sources[target]))
        return found

    def passes(self, test, seconds):
        """Runs a test. None if it takes longer than some seconds."""
        return self.run(test.command, seconds, cwd=test.folder, env=os.environ | test.environment)

    def measure(self, tests, seconds):
        """Runs the tests without a change. Returns those that pass, with their times."""
        passed = []
        for test in tests:
            begin = time.monotonic()
            if self.passes(test, seconds):
                test.seconds = time.monotonic() - begin
                passed.append(test)
            else:
                print(f"Left out, because it fails without a change: {test.name}", flush=True)
        return passed

    def try_change(self, file, text, tests, seconds):
        """Builds the tests with another text of a file and runs them until one fails.

        Returns the test and whether it hung; (None, False) if all pass; None if the text does not
        compile.
        """
        original = (self.source / file).read_text()
        (self.source / file).write_text(text)
        try:
            built = 0
            for number, test in enumerate(tests):
                if number == built:  # twice as many as before, because few are needed mostly
                    built = 2 * built + 1
                    if not self.make({test.target for test in tests[number:built]}):
                        return None
                limit = max(seconds, TIMES_SLOWER * test.seconds)
                passed = self.passes(test, limit)
                # A failure that does not repeat is not the change's.
                if passed is None or not passed and not self.passes(test, limit):
                    return test, passed is None
            return None, False
        finally:
            (self.source / file).write_text(original)
