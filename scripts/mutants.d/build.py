"""The build that faults are put into: everything once, and from then on single objects and programs."""
import json
import os
import re
import shlex
import subprocess
from dataclasses import dataclass
from functools import cached_property

from subsystems import subsystem_of

HEADER_COST = 8  # a header's faults are tried when its units cost no more: 1 for a unit, 3 for one of the tests
COVERAGE_FLAGS = ["-gline-tables-only", "-Xclang", "-fsanitize-coverage-type=3", "-Xclang",
                  "-fsanitize-coverage-trace-pc-guard", "-Xclang", "-fsanitize-coverage-pc-table", "-mllvm",
                  "-sanitizer-coverage-prune-blocks=0"]


class ToolError(Exception):
    """The tool itself cannot go on."""


def run(command, **options):
    result = subprocess.run(command, capture_output=True, text=True, **options)
    if result.returncode != 0:
        raise ToolError(f"{' '.join(command)}: exit status {result.returncode}\n{(result.stdout + result.stderr)[-3000:]}")
    return result.stdout


@dataclass
class Unit:
    """A translation unit: how it is compiled and into what."""
    source: str
    directory: str
    arguments: list
    object: str

    def parse_arguments(self):
        kept, words = [], iter(self.arguments[1:])
        for word in words:
            if word in ("-I", "-isystem", "-D", "-include"):
                kept += [word, next(words)]
            elif word.startswith(("-I", "-D", "-std=")):
                kept.append(word)
        return kept

    def compile_arguments(self):
        """As in the build, without what notes coverage; of the warnings, only those about locks."""
        kept, words = [], iter(self.arguments)
        for word in words:
            if word == "-o":
                next(words)
            elif word in ("-Xclang", "-mllvm"):
                option = next(words)
                kept += [] if option in COVERAGE_FLAGS else [word, option]
            elif word not in ("-c", self.source, "-Werror", "-gline-tables-only") and not word.startswith("-W"):
                kept.append(word)
        return kept + ["-Wno-everything", "-Wthread-safety", "-Werror=thread-safety"]


class Build:
    def __init__(self, root):
        self.root = root
        self.folder = os.path.join(root, "build", "mutants")

    def prepare(self):
        run([os.path.join(self.root, "scripts", "setup"), "mutants"])
        os.makedirs(self.folder, exist_ok=True)
        cover = os.path.join(self.folder, "cover.o")
        source = os.path.join(os.path.dirname(__file__), "cover.cpp")
        if not os.path.exists(cover) or os.path.getmtime(cover) < os.path.getmtime(source):
            run(["clang++", "-std=c++17", "-O2", "-fPIC", "-c", source, "-o", cover])
        link = "-fuse-ld=lld " + cover
        run(["cmake", "-S", self.root, "-B", self.folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
             "-DCMAKE_CXX_COMPILER=clang++", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON", "-DNFW_TEST_EACH=ON",
             "-DCMAKE_CXX_FLAGS_DEBUG=-O0 " + " ".join(COVERAGE_FLAGS), "-DCMAKE_EXE_LINKER_FLAGS=" + link,
             "-DCMAKE_SHARED_LINKER_FLAGS=" + link])
        run(["ninja", "-C", self.folder])

    @cached_property
    def units(self):
        with open(os.path.join(self.folder, "compile_commands.json")) as file:
            entries = json.load(file)
        found = []
        for entry in entries:
            arguments = shlex.split(entry["command"])
            found.append(Unit(entry["file"], entry["directory"], arguments, arguments[arguments.index("-o") + 1]))
        return found

    @cached_property
    def includers(self):
        """Units by the header that they include, those that the build writes to try headers by themselves left aside."""
        by_object = {unit.object: unit for unit in self.units if not unit.source.startswith(self.folder + "/")}
        found, unit = {}, None
        for line in run(["ninja", "-C", self.folder, "-t", "deps"]).splitlines():
            if line and not line.startswith(" "):
                unit = by_object.get(line.split(":")[0])
            elif unit is not None and line.startswith("    "):
                path = os.path.normpath(os.path.join(self.folder, line.strip()))
                if path.endswith(".h") and path.startswith(self.root + "/"):
                    found.setdefault(os.path.relpath(path, self.root), []).append(unit)
        return found

    def units_of(self, path):
        """What has to be compiled again when the file changes; where it is read best comes first."""
        if path.endswith(".h"):
            return sorted(self.includers.get(path, []), key=self.is_test)
        return [unit for unit in self.units if unit.source == os.path.join(self.root, path)]

    def is_test(self, unit):
        return not subsystem_of(os.path.relpath(unit.source, self.root))

    def sources_for_faults(self):
        paths = {os.path.relpath(unit.source, self.root) for unit in self.units}
        paths |= {path for path, units in self.includers.items()
                  if sum(3 if self.is_test(unit) else 1 for unit in units) <= HEADER_COST and
                  not all(self.is_test(unit) for unit in units)}
        return sorted(path for path in paths if subsystem_of(path))

    @cached_property
    def links(self):
        """The command that links each library and program, by its path in the build's folder."""
        found = {}
        for line in run(["ninja", "-C", self.folder, "-t", "commands", "all"]).splitlines():
            for command in line.split(" && "):
                made = re.search(r" -o ((?:bin|lib)/\S+)", command)
                if made:
                    found[made.group(1)] = shlex.split(command)
        return found

    @cached_property
    def archives(self):
        """The objects of each archive."""
        found = {}
        for line in run(["ninja", "-C", self.folder, "-t", "commands", "all"]).splitlines():
            made = re.search(r"\S+ar qc (\S+\.a)\s+([^&]*)", line)
            if made:
                found[made.group(1)] = shlex.split(made.group(2))
        return found

    def link_with(self, output, replaced):
        """The command that links the output with other objects, by the path of those they replace; None if it has none.

        An object from an archive stands before the archive: the linker then leaves the archive's own aside.
        """
        command, is_changed = [], False
        for word in self.links[output]:
            new = [replaced[name] for name in self.archives.get(word, []) if name in replaced]
            if word in replaced:
                new, word = [replaced[word]], None
            is_changed = is_changed or bool(new)
            command += new + ([word] if word is not None else [])
        return command if is_changed else None
