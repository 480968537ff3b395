"""Draws faults: the same ones for a seed as long as their lines do not change."""
import hashlib

from operators import OPERATORS


def rank(seed, text):
    return hashlib.sha1(f"{seed}\0{text}".encode()).hexdigest()


def draws(seed, subsystem, sites):
    """The subsystem's sites in the order of drawing: each operator in turn by its share, one fault a line."""
    turns = [name for name, share, _ in OPERATORS for _ in range(share)]
    turns = sorted(range(len(turns)), key=lambda turn: rank(seed, f"{subsystem} {turns[turn]} {turn}")), turns
    waiting = {}
    for site in sorted(sites, key=lambda site: rank(seed, site.id), reverse=True):
        waiting.setdefault(site.operator, []).append(site)
    lines, later = set(), []
    while any(waiting.values()):
        for turn in turns[0]:
            kind = waiting.get(turns[1][turn], [])
            while kind:
                site = kind.pop()
                if (site.path, site.line) not in lines:
                    lines.add((site.path, site.line))
                    yield site
                    break
                later.append(site)
    yield from later


def quotas(count, sizes):
    """How many faults of each subsystem: evenly, as far as each has that many."""
    left, given = count, {name: 0 for name in sizes}
    while left > 0 and any(given[name] < sizes[name] for name in sizes):
        for name in sizes:
            if left > 0 and given[name] < sizes[name]:
                given[name] += 1
                left -= 1
    return given
