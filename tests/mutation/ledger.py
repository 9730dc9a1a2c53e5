"""The names of mutants, the list of equivalent ones, the record of a run and its report.

A mutant is named by its file, the changed line before and after the change, and where the file has this line several
times, which of them: names survive when lines move.
"""

from collections import Counter, namedtuple

from places import line_of, shown

Key = namedtuple("Key", "file before after")
Result = namedtuple("Result", "file line before after kind state by")

KILLED, SURVIVED, EQUIVALENT, BROKEN = "killed", "survived", "equivalent", "not compiled"


def squeezed(text):
    return " ".join(text.split())


def occurrences(lines, before):
    """Where consecutive lines, squeezed and joined, read like before."""
    found = []
    for i in range(len(lines)):
        joined = ""
        for line in lines[i:]:
            joined = squeezed(f"{joined} {line}")
            if joined == before:
                found.append(i)
            if len(joined) >= len(before):
                break
    # A blank line before the place reads the same.
    return [i for i in found if lines[i].strip()]


def key_of(name, text, change):
    before, after = shown(text, change)
    places = occurrences(text.split("\n"), before)
    which = f" #{places.index(line_of(text, change) - 1) + 1}" if len(places) > 1 else ""
    return Key(name + which, before, after)


def parse_equivalent(text):
    """Blocks of a file name, pairs of lines '- before' and '+ after', and '= reason' for all pairs of the block."""
    reasons = {}
    for block in text.split("\n\n"):
        lines = [line for line in block.split("\n") if line.strip() and not line.startswith("# ")]
        if not lines:
            continue
        pairs = [line for line in lines[1:] if line[:2] in ("- ", "+ ")]
        reason = squeezed(" ".join(line for line in lines[1:] if line[:2] in ("= ", "  ")).lstrip("= "))
        in_turn = all(line[0] == "-+"[i % 2] for i, line in enumerate(pairs))
        if not pairs or len(pairs) % 2 or not in_turn or not reason:
            raise ValueError(f"neither pairs nor reason: {block}")
        for before, after in zip(pairs[::2], pairs[1::2]):
            reasons[Key(lines[0].strip(), squeezed(before[2:]), squeezed(after[2:]))] = reason
    return reasons


def stale(reasons, read):
    """Entries whose line is not in its file any more; read gives the text of a file, None without one."""
    found = []
    for key in reasons:
        name, _, which = key.file.partition(" #")
        text = read(name)
        count = len(occurrences(text.split("\n"), key.before)) if text is not None else 0
        if count == 0 or (count > 1) != bool(which) or int(which or 1) > count:
            found.append(key)
    return found


def to_line(result):
    return "\t".join(str(field) for field in result)


def parse_record(text):
    results = [Result(*line.split("\t")) for line in text.splitlines() if line.count("\t") == len(Result._fields) - 1]
    return {Key(result.file, result.before, result.after): result for result in results}


def score(counts):
    """Share of the mutants that are not equivalent and were killed, in per cent; None without one."""
    tried = counts[KILLED] + counts[SURVIVED]
    return 100.0 * counts[KILLED] / tried if tried else None


def report(results):
    """A table: per file and in total."""
    by_file = {}
    for result in results:
        if result.state != BROKEN:
            by_file.setdefault(result.file.partition(" #")[0], Counter())[result.state] += 1
    total = sum(by_file.values(), Counter())
    lines = [f"{'file':44} mutants  killed  equivalent  survivors    score"]
    for name, counts in [*sorted(by_file.items()), ("total", total)]:
        share = score(counts)
        lines.append(f"{name:44} {counts.total():7} {counts[KILLED]:7} {counts[EQUIVALENT]:11} {counts[SURVIVED]:10} "
                     + (f"{share:7.1f} %" if share is not None else "        -"))
    return "\n".join(lines)
