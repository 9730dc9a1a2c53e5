"""Checks the Markdown files of the repository: every relative link and image leads to a file, every anchor to a
heading, and docs/index.md leads to every chapter. Addresses on the network are not asked.

An anchor is the heading in lower case without punctuation, spaces turned into hyphens; the second of two equal ones
gets -1.
"""

import argparse
import pathlib
import re
import sys

LINK = re.compile(r"!?\[[^\]]*\]\(([^()\s]+)\)")
IMAGE = re.compile(r"<img\b[^>]*\bsrc=\"([^\"]+)\"")
HEADING = re.compile(r"^#{1,6} +(.+?) *#*$")
CODE = re.compile(r"`[^`\n]*`")
NETWORK = re.compile(r"^[a-z]+:")
LEFT_OUT = {"build", "node_modules", "__pycache__"}


def prose_lines(text):
    """Number and text of the lines outside of fenced and indented code."""
    fenced = False
    for number, line in enumerate(text.split("\n"), start=1):
        if line.lstrip().startswith("```"):
            fenced = not fenced
        elif not fenced and not line.startswith("    "):
            yield number, line


def anchors_of(text):
    anchors, seen = set(), {}
    for _, line in prose_lines(text):
        heading = HEADING.match(line)
        if not heading:
            continue
        words = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading.group(1)).replace("`", "")
        slug = re.sub(r"[^\w\- ]", "", words.lower()).replace(" ", "-")
        count = seen.get(slug, 0)
        seen[slug] = count + 1
        anchors.add(slug if count == 0 else f"{slug}-{count}")
    return anchors


def targets_of(text):
    """Line number and target of every link and image; code is left out. A link may be wrapped."""
    lines = [""] * (text.count("\n") + 1)
    for number, line in prose_lines(text):
        lines[number - 1] = line
    plain = CODE.sub("", "\n".join(lines))
    found = sorted((match.start(1), match.group(1)) for pattern in (LINK, IMAGE) for match in pattern.finditer(plain))
    for place, target in found:
        yield plain.count("\n", 0, place) + 1, target


def problem_with(document, target, root):
    """A sentence on a link that leads nowhere, or None."""
    if NETWORK.match(target):
        return None
    path, _, anchor = target.partition("#")
    goal = (document.parent / path).resolve() if path else document
    if not goal.exists():
        return f"{target}: no such file"
    if root not in goal.parents and goal != root:
        return f"{target}: leads out of the repository"
    if anchor and goal.suffix == ".md" and anchor not in anchors_of(goal.read_text(encoding="utf-8")):
        return f"{target}: no such heading"
    return None


def documents_under(root):
    return [path for path in sorted(root.rglob("*.md"))
            if not any(part in LEFT_OUT or part.startswith(".") for part in path.relative_to(root).parts)]


def problems_under(root):
    """Sentences, each with its file and line."""
    root = root.resolve()
    found = []
    for document in documents_under(root):
        for number, target in targets_of(document.read_text(encoding="utf-8")):
            problem = problem_with(document, target, root)
            if problem:
                found.append(f"{document.relative_to(root)}:{number}: {problem}")
    return found + chapters_not_listed(root)


def chapters_not_listed(root):
    index = root / "docs" / "index.md"
    if not index.exists():
        return ["docs/index.md: no such file"]
    listed = {target.partition("#")[0] for _, target in targets_of(index.read_text(encoding="utf-8"))}
    return [f"docs/index.md: does not lead to {chapter.name}" for chapter in sorted(index.parent.glob("*.md"))
            if chapter != index and chapter.name not in listed]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("root", type=pathlib.Path)
    problems = problems_under(parser.parse_args().root)
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
