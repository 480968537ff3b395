"""Which test runs which line: each case once by itself, in the build without a fault."""
import bisect
import concurrent.futures
import hashlib
import json
import os
import queue
import re
import shutil
import struct
import subprocess
import sys

from build import ToolError
from cases import Runner, read_cases
from subsystems import subsystem_of

TRIES = 3  # a case that passes once in so many passes: the machine may be busy
LIMIT = 120  # seconds
NAMED = 10  # tests that an error names


class Coverage:
    """The cases with their times, and for each line of a source the cases that reach it."""

    def __init__(self, cases, seconds, lines):
        self.cases = cases
        self.seconds = seconds  # by the index of the case
        self.lines = lines  # path -> line -> set of indices; a line with code that nothing reaches has an empty set

    def reaching(self, site, includers):
        """The cases for a fault: those of its line, or where that has no code, of its function, or else of its file."""
        lines = self.lines.get(site.path, {})
        if site.line in lines:
            return lines[site.line]
        if site.scope:
            inside = [cases for line, cases in lines.items() if site.scope[0] <= line <= site.scope[1]]
            if inside:
                return set().union(*inside)
        paths = [site.path] if lines else includers
        return set().union(*(cases for path in paths for cases in self.lines.get(path, {}).values()))


def measure(build, jobs, say):
    """The coverage of the build as it is: each test program's is measured, or kept from when it was the same."""
    folder = os.path.join(build.folder, "coverage")
    os.makedirs(folder, exist_ok=True)
    programs = {}
    for case in read_cases(build):
        programs.setdefault(case.program, []).append(case)
    shared, modules = shared_state(build), {}
    cases, seconds, lines = [], [], {}
    for program, own in programs.items():
        kept = measure_program(build, own, os.path.join(folder, program), shared, modules, jobs, say)
        for path, rows in kept["lines"].items():
            for line, indices in rows.items():
                lines.setdefault(path, {}).setdefault(int(line), set()).update(index + len(cases) for index in indices)
        cases += own
        seconds += kept["seconds"]
    return Coverage(cases, seconds, lines)


def measure_program(build, cases, folder, shared, modules, jobs, say):
    """Of one program's cases; indices are among these."""
    state = shared.copy()
    add_file(state, os.path.join(build.folder, "bin", cases[0].program))
    state.update(repr(cases).encode())
    file_name = folder + ".json"
    if os.path.exists(file_name):
        with open(file_name) as file:
            kept = json.load(file)
        if kept["state"] == state.hexdigest():
            return kept
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    seconds = run_all(build, cases, folder, jobs, say)
    say("reading the coverage")
    lines = collect(build, cases, folder, modules)
    kept = {"state": state.hexdigest(), "seconds": seconds,
            "lines": {path: {line: sorted(indices) for line, indices in rows.items()} for path, rows in lines.items()}}
    with open(file_name, "w") as file:
        json.dump(kept, file)
    return kept


def add_file(state, name):
    with open(name, "rb") as file:
        state.update(name.encode() + b"\0" + file.read())


def shared_state(build):
    """What every test program may run besides itself: the libraries and the tools."""
    state = hashlib.sha1()
    add_file(state, __file__)
    for kind in ("lib", "lib/seams", "bin"):
        folder = os.path.join(build.folder, kind)
        for name in sorted(os.listdir(folder)):
            if os.path.isfile(os.path.join(folder, name)) and not name.endswith("_tests"):
                add_file(state, os.path.join(folder, name))
    return state


def run_all(build, cases, folder, jobs, say):
    """Runs each case by itself; the seconds that each takes."""
    runners = queue.Queue()
    for number in range(jobs):
        runners.put(Runner(build, os.path.join(build.folder, "work", f"base-{number}")))

    def one(index):
        runner = runners.get()
        try:
            return run_case(runner, cases[index], os.path.join(folder, str(index)))
        finally:
            runners.put(runner)

    seconds = [0.0] * len(cases)
    failed = []
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        running = {pool.submit(one, index): index for index in range(len(cases))}
        for done, future in enumerate(concurrent.futures.as_completed(running), 1):
            index = running[future]
            say(f"coverage: {done} of {len(cases)} tests")
            outcome = future.result()
            seconds[index] = outcome.seconds
            if not outcome.passed:
                failed.append(cases[index].name)
    if failed:
        more = f" and {len(failed) - NAMED} more" if len(failed) > NAMED else ""
        raise ToolError(f"without a fault these tests fail: {', '.join(sorted(failed)[:NAMED])}{more}")
    return seconds


def run_case(runner, case, folder):
    os.makedirs(folder, exist_ok=True)
    for _ in range(TRIES):
        outcome = runner.run([case], LIMIT, {"NFW_COVER": folder})
        if outcome.passed:
            break
    return outcome


def collect(build, cases, folder, modules):
    """Path -> line -> the cases that reach it; the modules are kept for the next program."""
    lines, seen = {}, set()
    for index in range(len(cases)):
        place = os.path.join(folder, str(index))
        for name in os.listdir(place):
            if not name.endswith(".hit"):
                continue
            module = name[:-len(".hit")]
            if module not in modules:
                modules[module] = Module(build, module, os.path.join(place, module + ".pcs"))
            if module not in seen:
                seen.add(module)
                for path, line in modules[module].all_lines():
                    lines.setdefault(path, {}).setdefault(line, set())
            with open(os.path.join(place, name), "rb") as file:
                hits = file.read()
            for path, line in modules[module].lines_of(hits):
                lines[path][line].add(index)
        shutil.rmtree(place)
    return lines


class Module:
    """A library or program: the lines of each of its blocks."""

    def __init__(self, build, name, pcs):
        with open(pcs, "rb") as file:
            data = file.read()
        addresses = struct.unpack(f"<{len(data) // 8}Q", data)
        folder, file_name = name.split(",", 1)
        kind = next(kind for kind in ("bin", "lib", "lib/seams") if os.path.basename(kind) == folder)
        rows = line_rows(os.path.join(build.folder, kind, file_name), build)
        order = sorted(range(len(addresses)), key=addresses.__getitem__)
        starts = [addresses[index] for index in order]
        self.blocks = [set() for _ in addresses]
        for start, end, line in rows:
            at = max(bisect.bisect_right(starts, start) - 1, 0)
            while at < len(starts) and starts[at] < end:
                self.blocks[order[at]].add(line)
                at += 1

    def all_lines(self):
        return set().union(*self.blocks) if self.blocks else set()

    def lines_of(self, hits):
        found = set()
        for index in re.finditer(b"\x01", hits):
            found |= self.blocks[index.start() - 1]  # the byte of block 0 is the one behind the first
        return found


def line_rows(binary, build):
    """Stretches of addresses with the line of ours that they come from: (start, end, (path, line))."""
    process = subprocess.Popen(["llvm-dwarfdump", "--debug-line", binary], stdout=subprocess.PIPE, text=True)
    rows, folders, files, last = [], {}, {}, None
    pattern = re.compile(r"0x([0-9a-f]{16})\s+(\d+)\s+\d+\s+(\d+) ")
    for text in process.stdout:
        row = pattern.match(text)
        if row:
            address, line, number = int(row.group(1), 16), int(row.group(2)), int(row.group(3))
            if last is not None and last[1] is not None and last[0] < address:
                rows.append((last[0], address, last[1]))
            path = path_in(files.get(number), folders, build)
            last = (address, (path, line) if path and line else None)
            if "end_sequence" in text:
                last = None
        elif text.startswith("debug_line["):
            folders, files, last = {}, {}, None
        elif text.startswith("include_directories["):
            folders[int(text[20:23])] = text.split('"')[1]
        elif text.startswith("file_names["):
            number = int(text[11:14])
            files[number] = [None, 0]
        elif text.lstrip().startswith("name: "):
            files[number][0] = text.split('"')[1]
        elif text.lstrip().startswith("dir_index: "):
            files[number][1] = int(text.split(":")[1])
    if process.wait() != 0:
        raise ToolError(f"llvm-dwarfdump --debug-line {binary}: exit status {process.returncode}")
    return rows


def path_in(file, folders, build, known={}):
    """The path from the root of a source of ours, or None. Folder 0 is the one it was compiled in: this build's, though
    a compiler cache may have it from another copy of the project, with another name."""
    if file is None:
        return None
    key = (file[0], folders.get(file[1], "") if file[1] else "")
    if key not in known:
        path = os.path.normpath(os.path.join(build.folder, key[1], key[0]))
        path = os.path.relpath(path, build.root) if path.startswith(build.root + "/") else None
        known[key] = path if path and subsystem_of(path) else None
    return known[key]
