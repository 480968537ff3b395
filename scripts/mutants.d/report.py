"""What is told: a table by subsystem, the survivors, and the same for machines."""
import json
import os
import sys
import tomllib

from faults import CAUGHT, EQUIVALENT, STILLBORN, SURVIVED
from sites import bare_name, one_line
from subsystems import NAMES

EQUIVALENTS = os.path.join(os.path.dirname(__file__), "equivalents.toml")
WIDTH = 150


class Equivalents:
    """The list of faults that nobody could notice. An entry is found by the file's name, the operator and the text of
    the line before and after, so it outlives moves; it has a reason."""

    def __init__(self, name=EQUIVALENTS):
        with open(name, "rb") as file:
            entries = tomllib.load(file).get("equivalent", [])
        for number, entry in enumerate(entries, 1):
            missing = {"file", "operator", "line", "fault", "reason"} - set(entry)
            if missing:
                raise ValueError(f"{name}: entry {number} has no {', '.join(sorted(missing))}")
        self.reasons = {self.key(entry["file"], entry["operator"], entry["line"], entry["fault"]): entry["reason"]
                        for entry in entries}

    @staticmethod
    def key(path, operator, before, after):
        return bare_name(path), operator, one_line(before), one_line(after)

    def reason(self, site):
        return self.reasons.get(self.key(site.path, site.operator, site.before, site.after))


def as_entry(site):
    """The fault as an entry of the list, to be given a reason."""
    quote = json.dumps
    return (f"[[equivalent]]\nfile = {quote(bare_name(site.path))}\noperator = {quote(site.operator)}\n"
            f"line = {quote(site.before)}\nfault = {quote(site.after)}\nreason = \"\"\n")


def cut(text):
    return text if len(text) <= WIDTH else text[:WIDTH - 3] + "..."


def difference(site):
    """Where, by which operator, and the lines before and after."""
    return f"{site.path}:{site.line}: {site.operator} ({site.id})\n  - {cut(site.before)}\n  + {cut(site.after)}"


def counts(results):
    rows = {}
    for site, verdict in results:
        row = rows.setdefault(site.subsystem, {CAUGHT: 0, SURVIVED: 0, EQUIVALENT: 0, STILLBORN: 0, "unreached": 0})
        row[verdict.verdict] += 1
        row["unreached"] += verdict.verdict == SURVIVED and verdict.reached_by == 0
    ordered = {name: rows[name] for name in NAMES if name in rows}
    ordered["all"] = {key: sum(row[key] for row in rows.values())
                      for key in (CAUGHT, SURVIVED, EQUIVALENT, STILLBORN, "unreached")}
    return ordered


def share_caught(row):
    judged = row[CAUGHT] + row[SURVIVED]
    return 100 * row[CAUGHT] / judged if judged else 100.0


def table(results):
    lines = [f"{'subsystem':<12} {'caught':>7} {'survived':>9} {'unreached':>10} {'equivalent':>11} {'stillborn':>10}"
             f" {'caught of judged':>17}"]
    for name, row in counts(results).items():
        lines.append(f"{name:<12} {row[CAUGHT]:>7} {row[SURVIVED]:>9} {row['unreached']:>10} {row[EQUIVALENT]:>11}"
                     f" {row[STILLBORN]:>10} {share_caught(row):>15.1f} %")
    return "\n".join(lines)


def survivors(results):
    lines = []
    for site, verdict in results:
        if verdict.verdict == SURVIVED:
            lines.append(difference(site) + ("" if verdict.reached_by else "\n  (no test reaches it)"))
    return "\n".join(lines)


def write_json(name, results, facts):
    faults = [{"id": site.id, "subsystem": site.subsystem, "file": site.path, "line": site.line,
               "operator": site.operator, "before": site.before, "after": site.after, "verdict": verdict.verdict,
               "by": verdict.by, "reached_by": verdict.reached_by, "unsteady": verdict.unsteady}
              for site, verdict in results]
    rows = {key: {**row, "percent": round(share_caught(row), 1)} for key, row in counts(results).items()}
    os.makedirs(os.path.dirname(os.path.abspath(name)), exist_ok=True)
    with open(name, "w") as file:
        json.dump({**facts, "subsystems": rows, "faults": faults}, file, indent=1)
        file.write("\n")


class Progress:
    """One line that is written over, on a terminal only."""

    def __init__(self):
        self.is_on = sys.stderr.isatty()

    def __call__(self, text):
        if self.is_on:
            sys.stderr.write("\r\033[K" + text)
            sys.stderr.flush()

    def clear(self):
        self("")
