"""The tests: which there are, and how they are run where files of the build have others in their place."""
import json
import os
import re
import shlex
import signal
import subprocess
import time
from dataclasses import dataclass

from build import ToolError, run

MARGIN_SECONDS = 5  # beside ten times a case's usual time
NO_RUNAWAYS = "ulimit -v 8000000 && ulimit -f 40000000 && ulimit -c 0"  # KiB of memory, 512-byte blocks of a file, no cores


@dataclass(frozen=True)
class Case:
    name: str
    program: str  # by its name in bin/
    filter: str  # empty: a plain command
    arguments: tuple
    environment: tuple
    expected: str  # a pattern that the output has to have, whatever the exit status; empty: the exit status counts


def read_cases(build):
    """Every test of the build that is a program of it."""
    listed = json.loads(run(["ctest", "--test-dir", build.folder, "--show-only=json-v1"]))
    return [case for case in (read_case(build, test) for test in listed["tests"]) if case is not None]


def read_case(build, test):
    command = test.get("command", [])
    folder = os.path.join(build.folder, "bin")
    if not command or os.path.dirname(command[0]) != folder:
        return None
    properties = {entry["name"]: entry["value"] for entry in test.get("properties", [])}
    filters = [word.split("=", 1)[1] for word in command[1:] if word.startswith("--gtest_filter=")]
    return Case(test["name"], os.path.basename(command[0]), filters[0] if filters else "", tuple(command[1:]),
                tuple(properties.get("ENVIRONMENT", [])), "".join(properties.get("PASS_REGULAR_EXPRESSION", [])))


@dataclass(frozen=True)
class Outcome:
    passed: bool
    is_late: bool
    failed: str  # the filter of the case that failed, as far as it is known
    seconds: float


class Runner:
    """Runs tests in namespaces of their own, with a /tmp that nobody else sees and with the files below `files` in place
    of the build's. A fault may do anything: all but that /tmp is read-only to it, and it sees no other process."""

    def __init__(self, build, folder, files=None):
        self.build = build
        self.folder = folder
        self.files = files
        self.temporary = os.path.join(folder, "tmp")
        os.makedirs(self.temporary, exist_ok=True)
        self.unshare = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc"]
        if os.geteuid() != 0:
            self.unshare += ["--user", "--map-root-user"]

    def check(self):
        if subprocess.run(self.unshare + ["true"], check=False, capture_output=True).returncode != 0:
            raise ToolError("unshare --mount --pid does not work here; faulty programs are put in place with it")

    def run(self, cases, limit, extra=None):
        """Runs cases of one program in one process."""
        program = os.path.join(self.build.folder, "bin", cases[0].program)
        command = [program, *cases[0].arguments]
        if cases[0].filter:
            command = [program, "--gtest_filter=" + ":".join(case.filter for case in cases), "--gtest_fail_fast",
                       "--gtest_color=no"]
        output = os.path.join(self.folder, "output")
        start = time.monotonic()
        with open(output, "wb") as file:
            process = subprocess.Popen(self.unshare + ["sh", "-c", self.script(command)], stdin=subprocess.DEVNULL,
                                       stdout=file, stderr=subprocess.STDOUT, env=self.environment(cases[0], extra),
                                       start_new_session=True, cwd=self.build.folder)
            is_late = not self.ends(process, limit)
        with open(output, errors="replace") as file:
            text = file.read()
        is_right = bool(re.search(cases[0].expected, text)) if cases[0].expected else process.returncode == 0
        passed = not is_late and is_right
        return Outcome(passed, is_late, "" if passed else failed_case(text, cases), time.monotonic() - start)

    def script(self, command):
        quote = shlex.quote
        lines = [NO_RUNAWAYS]
        for folder, _, names in os.walk(self.files or ""):
            for name in names:
                new = os.path.join(folder, name)
                lines.append(f"mount --bind {quote(new)} "
                             f"{quote(os.path.join(self.build.folder, os.path.relpath(new, self.files)))}")
        if not self.build.folder.startswith("/tmp/"):  # the build would be hidden
            lines.append(f"mount --bind {quote(self.temporary)} /tmp")
        if self.files:
            lines.append("mount -o remount,bind,ro /")
        lines.append("{ " + " ".join(quote(word) for word in command) + "; exit; }")  # the first process hears no signals
        return " && ".join(lines)

    def environment(self, case, extra):
        values = {**os.environ, **dict(entry.split("=", 1) for entry in case.environment), **(extra or {})}
        sentences = os.path.join(os.path.dirname(self.build.root), "shared", "nmea")
        if os.path.isdir(sentences):
            values.update(NFW_NMEA_DIR=sentences)
        return values

    @staticmethod
    def ends(process, limit):
        """Whether it ended by itself; what it left running ends in any case."""
        try:
            process.wait(limit)
            return True
        except subprocess.TimeoutExpired:
            return False
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()


def failed_case(text, cases):
    """The case that the output names as failed, or else the last one that it began with."""
    for pattern in (r"^\[  FAILED  \] (\S+?)(?:, where| \(|$)", r"^\[ RUN      \] (\S+)"):
        found = re.findall(pattern, text, re.MULTILINE)
        if found:
            return found[0] if "FAILED" in pattern else found[-1]
    return cases[0].filter
