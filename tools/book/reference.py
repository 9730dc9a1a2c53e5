"""Makes the reference from the headers with doxygen. A warning of doxygen is an error.

    python3 reference.py FOLDER

FOLDER gets the pages of KineDll.h, FOLDER/cpp those of KineDll.hpp, and FOLDER/KineDll.tag says where each name is.
In the C header everything that a caller can name must be documented, each parameter and return value too. The C++
header refers to it, so that there only a mistake in what is written counts.
"""

import os
import shutil
import subprocess
import sys

ROOT = os.path.abspath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
TAGS = "KineDll.tag"


def run_doxygen(settings):
    with open(os.path.join(ROOT, "docs", "Doxyfile"), encoding="utf-8") as file:
        text = file.read()
    # The way back to the book differs; doxygen has no name for it.
    book = settings.pop("BOOK")
    header = os.path.join(settings["OUTPUT_DIRECTORY"], "header.html")
    with open(os.path.join(ROOT, "tools", "book", "reference_header.html"), encoding="utf-8") as file:
        template = file.read().replace("BOOK/", book)
    with open(header, "w", encoding="utf-8") as file:
        file.write(template)
    settings["HTML_HEADER"] = header
    text += "".join(f"{name} = {value}\n" for name, value in settings.items())
    result = subprocess.run(["doxygen", "-"], input=text, text=True, cwd=ROOT, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, check=False)
    os.remove(header)
    # What doxygen says of its own settings is no reason to fail for it; here it is.
    if result.returncode != 0 or "warning:" in result.stdout:
        sys.exit(result.stdout)


def main(arguments):
    if len(arguments) != 1:
        sys.exit(__doc__)
    folder = os.path.abspath(arguments[0])
    cpp = os.path.join(folder, "cpp")
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(cpp)
    tags = os.path.join(folder, TAGS)
    run_doxygen({"INPUT": "include/KineDll.h", "OUTPUT_DIRECTORY": folder, "PROJECT_BRIEF": "Reference: C",
                 "OPTIMIZE_OUTPUT_FOR_C": "YES", "WARN_NO_PARAMDOC": "YES", "GENERATE_TAGFILE": tags, "BOOK": "../"})
    run_doxygen({"INPUT": "include/KineDll.hpp", "OUTPUT_DIRECTORY": cpp, "PROJECT_BRIEF": "Reference: C++",
                 "WARN_IF_UNDOCUMENTED": "NO", "WARN_IF_INCOMPLETE_DOC": "NO", "TAGFILES": f"{tags}=..",
                 "EXTRACT_ALL": "YES", "BOOK": "../../"})


if __name__ == "__main__":
    main(sys.argv[1:])
