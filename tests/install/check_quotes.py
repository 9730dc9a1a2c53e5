"""Checks that a page shows the files that the tests run.

  check_quotes.py PAGE FOLDER

In front of a block stands which file of the folder it is taken from: <!-- from: find_package/CMakeLists.txt -->. It is
a piece of that file in whole lines, which may be less indented. Blocks in C, CMake and make must be from a file.
"""

import pathlib
import re
import sys
import textwrap

CHECKED = ("c", "cmake", "make")


def parse_blocks(text):
    """Language, file (None for none) and text of each block."""
    pattern = r"(?:^<!-- from: (\S+) -->\n)?^```(\w*)\n(.*?)^```$"
    return [(language, file or None, block)
            for file, language, block in re.findall(pattern, text, flags=re.MULTILINE | re.DOTALL)]


def is_piece(block, text):
    """Whether the block is some lines of the text that follow each other, apart from the indentation of all."""
    lines, wanted = text.splitlines(), block.splitlines()
    return bool(wanted) and any(textwrap.dedent("\n".join(lines[i:i + len(wanted)])) == "\n".join(wanted)
                                for i in range(len(lines) - len(wanted) + 1))


def problems(text, read):
    """One sentence for each block that is not as it should be. read gives the text of a file by its name."""
    found = []
    for language, file, block in parse_blocks(text):
        if file is None:
            if language in CHECKED:
                found.append(f"from no file:\n{block}")
        elif not is_piece(block, read(file)):
            found.append(f"not in {file}:\n{block}")
    return found


def main():
    page, folder = map(pathlib.Path, sys.argv[1:])
    text = page.read_text(encoding="utf-8")
    found = problems(text, lambda name: (folder / name).read_text(encoding="utf-8"))
    count = sum(file is not None for _, file, _ in parse_blocks(text))
    if count == 0:
        found.append("no block is from a file")
    print("\n".join(found) or f"{count} blocks are from files")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
