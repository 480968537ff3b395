"""What no test of its own notices may show in some order of events: the scenarios of scripts/schedule."""
import os
import re

from build import Build, run
from cases import Case, Runner
from faults import CAUGHT, SURVIVED, CaughtByCompiler, Stillborn, Verdict, Worker

PROGRAM = "nfw_schedule_tests"
SEEDS = 1000  # of each scenario
LIMIT = 600  # seconds; usual are fifteen
TOOLS = ("nfw-drive", "nfw-log")  # no scenario reaches these


class ScheduleBuild(Build):
    """The one that the scheduler runs."""

    def __init__(self, root):
        super().__init__(root)
        self.folder = os.path.join(root, "build", "mutants-schedule")

    def prepare(self):
        run(["cmake", "-S", self.root, "--preset", "schedule", "-B", self.folder], cwd=self.root)
        run(["ninja", "-C", self.folder, PROGRAM])


class ScheduleWorker(Worker):
    def __init__(self, build, number):
        super().__init__(build, None, number)
        self.case = Case("the scenarios", PROGRAM, "", ("--count", str(SEEDS)), (), "")

    def try_fault(self, site):
        if site.subsystem in TOOLS or not self.build.units_of(site.path):
            return Verdict(SURVIVED)
        try:
            self.link(self.compile(site), {PROGRAM})
        except Stillborn:
            return Verdict(SURVIVED)  # not of this build
        except CaughtByCompiler:
            return Verdict(CAUGHT, "the compiler's analysis of locks")
        if self.runner.run([self.case], LIMIT).passed:
            return Verdict(SURVIVED)
        found = self.finding()
        if self.runner.run([self.case], LIMIT).passed:
            return Verdict(SURVIVED, unsteady=[found])
        return Verdict(CAUGHT, found)

    def finding(self):
        """The scenario and the seed."""
        with open(os.path.join(self.folder, "output"), errors="replace") as file:
            found = re.search(r"^(\w+: seed \d+): ", file.read(), re.MULTILINE)
        return "scenario " + (found.group(1) if found else "(which ended without a word)")


def prepare(root):
    build = ScheduleBuild(root)
    build.prepare()
    Runner(build, os.path.join(build.folder, "work", "check")).check()
    return build
