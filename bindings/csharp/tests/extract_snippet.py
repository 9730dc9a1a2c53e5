"""Writes the first block of code in a language from a Markdown file into a file of its own, to be compiled and run."""

import pathlib
import re
import sys


def snippet(text, language):
    """The lines between ```language and ```; an error when there are none."""
    found = re.search(rf"^```{re.escape(language)}\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
    if not found:
        raise ValueError(f"no block of {language}")
    return found[1]


def main():
    source, language, output = sys.argv[1:]
    pathlib.Path(output).write_text(snippet(pathlib.Path(source).read_text(encoding="utf-8"), language),
                                    encoding="utf-8")


if __name__ == "__main__":
    main()
