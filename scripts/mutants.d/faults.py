"""Puts one fault in, builds what it changes, and runs the tests that reach it."""
import json
import os
import re
import shutil
import subprocess
from dataclasses import dataclass, field

from cases import MARGIN_SECONDS, Runner

COMPILE_LIMIT = 120  # seconds
FIRST_SHARE = 0.5  # seconds of tests in the first share; each later one is four times as long
CAUGHT, SURVIVED, EQUIVALENT, STILLBORN = "caught", "survived", "equivalent", "stillborn"


@dataclass
class Verdict:
    verdict: str
    by: str = ""  # what caught it, or why it is equivalent
    reached_by: int = 0  # tests that reach it
    unsteady: list = field(default_factory=list)  # tests that failed with it once and passed when repeated

    def unless(self, other):
        """The other's verdict, when that has caught what this one has not."""
        if other.verdict == CAUGHT:
            return Verdict(CAUGHT, other.by, self.reached_by, self.unsteady)
        return Verdict(self.verdict, self.by, self.reached_by, self.unsteady + other.unsteady)


class Stillborn(Exception):
    """The fault does not compile or link."""


class CaughtByCompiler(Exception):
    """The analysis of locks refuses it."""


class Worker:
    """Has one folder of its own; the sources and the build stay as they are."""

    def __init__(self, build, coverage, number):
        self.build = build
        self.coverage = coverage
        self.folder = os.path.join(build.folder, "work", str(number))
        shutil.rmtree(self.folder, ignore_errors=True)
        self.files = os.path.join(self.folder, "files")
        self.runner = Runner(build, self.folder, self.files)
        self.base = Runner(build, self.folder)

    def try_fault(self, site):
        includers = [os.path.relpath(unit.source, self.build.root) for unit in self.build.units_of(site.path)]
        reaching = self.coverage.reaching(site, includers)
        try:
            objects = self.compile(site)
            self.link(objects, {self.coverage.cases[index].program for index in reaching})
            verdict = self.run_cases(sorted(reaching, key=self.coverage.seconds.__getitem__))
        except Stillborn as reason:
            return Verdict(STILLBORN, str(reason), len(reaching))
        except CaughtByCompiler:
            return Verdict(CAUGHT, "the compiler's analysis of locks", len(reaching))
        finally:
            shutil.rmtree(self.files, ignore_errors=True)
            shutil.rmtree(self.runner.temporary, ignore_errors=True)
            os.makedirs(self.runner.temporary)
        if verdict.verdict == SURVIVED and self.is_same_code(site):
            verdict = Verdict(EQUIVALENT, "the optimised code is the same")
        verdict.reached_by = len(reaching)
        return verdict

    # --- Building

    def overlay(self, site):
        """Shows compilers the faulty copy in the source's place."""
        original = os.path.join(self.build.root, site.path)
        with open(original, "rb") as file:
            source = file.read()
        copy = os.path.join(self.folder, "faulty")
        with open(copy, "wb") as file:
            file.write(site.apply(source))
        name = os.path.join(self.folder, "overlay.yaml")
        with open(name, "w") as file:
            json.dump({"version": 0, "use-external-names": False,
                       "roots": [{"name": original, "type": "file", "external-contents": copy}]}, file)
        return name

    def compile(self, site):
        """The objects with the fault, by the names of those that they replace."""
        overlay = self.overlay(site)
        made = {}
        for number, unit in enumerate(self.build.units_of(site.path)):
            made[unit.object] = os.path.join(self.folder, f"{number}.o")
            result = self.compiler(unit, made[unit.object], ["-ivfsoverlay", overlay])
            if result.returncode == 0:
                continue
            if "-Wthread-safety" in result.stderr and not re.search(r"error: (?!.*-Wthread-safety)", result.stderr):
                raise CaughtByCompiler
            found = re.search(r"error: (.*)", result.stderr)
            raise Stillborn(found.group(1) if found else result.stderr[-200:])
        return made

    @staticmethod
    def compiler(unit, output, arguments):
        try:
            return subprocess.run([*unit.compile_arguments(), *arguments, "-c", unit.source, "-o", output],
                                  cwd=unit.directory, capture_output=True, text=True, timeout=COMPILE_LIMIT,
                                  check=False)
        except subprocess.TimeoutExpired:
            raise Stillborn("the compiler does not come to an end") from None

    def link(self, objects, programs):
        """Every library, and the programs that are needed, into the folder that takes the build's place."""
        shutil.rmtree(self.files, ignore_errors=True)
        for output in self.build.links:
            if not os.path.exists(os.path.join(self.build.folder, output)):
                continue
            folder, name = os.path.split(output)
            if folder == "bin" and name.endswith("_tests") and name not in programs or name.startswith("example"):
                continue
            command = self.build.link_with(output, objects)
            if command is None:
                continue
            made = os.path.join(self.files, output)
            os.makedirs(os.path.dirname(made), exist_ok=True)
            command[command.index("-o") + 1] = made
            result = subprocess.run([*command, "-fuse-ld=lld", "-Wl,--strip-debug", "-Wl,--threads=1"], cwd=self.build.folder,
                                    capture_output=True, text=True, check=False)
            if result.returncode != 0:
                raise Stillborn("does not link: " + result.stderr[-200:])

    def is_same_code(self, site):
        """Whether the compiler makes the same of it when it optimises."""
        options = ["-O2", "-g0"]
        overlay = ["-ivfsoverlay", os.path.join(self.folder, "overlay.yaml")]
        for unit in self.build.units_of(site.path):
            codes = []
            for extra in (overlay, []):
                output = os.path.join(self.folder, "optimised.o")
                if self.compiler(unit, output, options + extra).returncode != 0:
                    return False
                with open(output, "rb") as file:
                    codes.append(file.read())
            if codes[0] != codes[1]:
                return False
        return True

    # --- Running

    def run_cases(self, indices):
        """Fastest first, in growing shares, up to the first that fails."""
        unsteady = []
        for share in shares(indices, self.coverage.seconds):
            left = list(share)
            while left:
                failed = self.first_failure(left)
                if failed is None:
                    break
                if self.is_to_blame(failed):
                    return Verdict(CAUGHT, self.coverage.cases[failed].name, unsteady=unsteady)
                unsteady.append(self.coverage.cases[failed].name)
                left.remove(failed)
        return Verdict(SURVIVED, unsteady=unsteady)

    def first_failure(self, indices):
        """The index of a case that fails, or None."""
        for group in self.by_program(indices):
            outcome = self.run_group(group)
            if not outcome.passed:
                names = {self.coverage.cases[index].filter: index for index in group}
                return names.get(outcome.failed, group[-1])
        return None

    def is_to_blame(self, index):
        """Whether the fault is, and not the machine: the case fails again by itself, and passes without the fault."""
        return not self.run_group([index]).passed and self.run_group([index], self.base).passed

    def run_group(self, group, runner=None):
        limit = 10 * sum(self.coverage.seconds[index] for index in group) + MARGIN_SECONDS
        return (runner or self.runner).run([self.coverage.cases[index] for index in group], limit)

    def by_program(self, indices):
        """Cases that one process can run, commands without a filter by themselves."""
        groups = {}
        for index in indices:
            case = self.coverage.cases[index]
            groups.setdefault((case.program, "" if case.filter else case.name), []).append(index)
        return list(groups.values())


def shares(indices, seconds):
    """The cases in groups, each taking about four times as long as the one before."""
    limit, share, total = FIRST_SHARE, [], 0.0
    for index in indices:
        if share and total + seconds[index] > limit:
            yield share
            limit, share, total = 4 * limit, [], 0.0
        share.append(index)
        total += seconds[index]
    if share:
        yield share
