"""Finds the places of the sources that can be made faulty."""
import collections
import hashlib
import json
import multiprocessing
import os
import re
from dataclasses import asdict, dataclass

from clang.cindex import Index, TranslationUnitLoadError

import operators
from build import ToolError
from subsystems import subsystem_of

CACHE_FORM = b"1"  # another one when this file makes other sites of the same source


@dataclass(frozen=True)
class Site:
    """One fault: an edit of one stretch of a file, in bytes."""
    id: str
    path: str  # from the project's root
    operator: str
    start: int
    end: int
    text: str
    line: int
    scope: tuple  # first and last line of the function around it; empty outside of functions
    before: str  # the lines it touches, as one line
    after: str

    @property
    def subsystem(self):
        return subsystem_of(self.path)

    def apply(self, source):
        return source[:self.start] + self.text.encode() + source[self.end:]


def bare_name(path):
    """A file's name that outlives a move between folders."""
    return re.sub(r"^Nfw", "", os.path.basename(path))


def fault_id(path, operator, before, after, number):
    key = "\0".join([bare_name(path), operator, before, after, str(number)])
    return hashlib.sha1(key.encode()).hexdigest()[:8]


def one_line(text):
    return re.sub(r"\s+", " ", text).strip()


def touched_lines(source, edit):
    """The lines of an edit, before and after it, each as one line."""
    first = source.rfind(b"\n", 0, edit.start) + 1
    last = source.find(b"\n", edit.end)
    last = len(source) if last < 0 else last
    before = source[first:last].decode()
    after = source[first:edit.start].decode() + edit.text + source[edit.end:last].decode()
    return one_line(before), one_line(after)


def walk(node, parents, path):
    """The nodes that stand in the file, with their ancestors."""
    for child in node.get_children():
        if not parents:
            place = child.location.file
            if place is None or place.name != path:
                continue
        yield child, parents
        yield from walk(child, parents + [child], path)


def scope_of(parents, node):
    for ancestor in reversed(parents + [node]):
        if ancestor.kind in operators.FUNCTIONS:
            return ancestor.extent.start.line, ancestor.extent.end.line
    return ()


def is_off(path, operator):
    return any(name == operator and re.search(pattern, path) for name, pattern in operators.LEFT_OUT)


def sites_in(unit, path, source_path, source):
    """The sites of one file of a translation unit."""
    table = [(name, make) for name, _, make in operators.OPERATORS if not is_off(path, name)]
    seen, found, alike = set(), [], collections.Counter()
    for node, parents in walk(unit.cursor, [], source_path):
        place = operators.Place(node, parents, source)
        if place.end <= place.start:
            continue
        for name, make in table:
            for edit in make(place):
                before, after = touched_lines(source, edit)
                if before == after or (name, edit) in seen:
                    continue
                seen.add((name, edit))
                number = alike[(name, before, after)]
                alike[(name, before, after)] += 1
                line = source.count(b"\n", 0, edit.start) + 1
                found.append(Site(fault_id(path, name, before, after, number), path, name, edit.start, edit.end,
                                  edit.text, line, scope_of(parents, node), before, after))
    return found


def read_file(task):
    """Sites of one file, from the cache where the file has not changed."""
    path, source_path, main, arguments, cache = task
    with open(source_path, "rb") as file:
        source = file.read()
    if os.path.exists(cache):
        with open(cache) as file:
            return [Site(**{**entry, "scope": tuple(entry["scope"])}) for entry in json.load(file)]
    try:
        unit = Index.create().parse(main, args=arguments)
    except TranslationUnitLoadError as error:
        raise ToolError(f"{path}: cannot be parsed: {error}") from None
    errors = [str(note) for note in unit.diagnostics if note.severity >= 3]
    if errors:
        raise ToolError(f"{path}: cannot be parsed: {errors[0]}")
    sites = sites_in(unit, path, source_path, source)
    with open(cache + ".part", "w") as file:
        json.dump([asdict(site) for site in sites], file)
    os.replace(cache + ".part", cache)
    return sites


def find_sites(build, subsystems, jobs):
    """All sites of the subsystems; those of a header only where few units include it."""
    folder = os.path.join(build.folder, "sites")
    os.makedirs(folder, exist_ok=True)
    with open(operators.__file__, "rb") as file:
        tool = CACHE_FORM + file.read()
    tasks = []
    for path in build.sources_for_faults():
        if subsystem_of(path) not in subsystems:
            continue
        source_path = os.path.join(build.root, path)
        unit = build.units_of(path)[0]
        with open(source_path, "rb") as file:
            key = hashlib.sha1(tool + path.encode() + file.read()).hexdigest()[:16]
        tasks.append((path, source_path, unit.source, unit.parse_arguments(), os.path.join(folder, key + ".json")))
    with multiprocessing.Pool(jobs) as pool:
        return [site for sites in pool.imap(read_file, tasks, chunksize=1) for site in sites]
