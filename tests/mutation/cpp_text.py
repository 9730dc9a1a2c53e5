"""The code in a C++ file, as far as mutations need it: what may be changed, and where brackets close.

Everything that is no code to change is blanked with spaces, so that positions stay those of the file: comments,
preprocessor lines and what they leave out, static assertions, template heads and arguments, namespaces, the contents of
strings.
"""

import re

TOKENS = re.compile(r"""//[^\n]*|/\*.*?\*/|"(?:[^"\\\n]|\\.)*"|'(?:[^'\\\n]|\\.)+'""", re.DOTALL)
# What stands behind #else is for another C library.
DIRECTIVE = re.compile(r"^[ \t]*#(?: *else\b.*?# *endif\b|(?:[^\n]*\\\n)*[^\n]*)", re.MULTILINE | re.DOTALL)
NO_CODE = re.compile(r"""\bstatic_assert\((?:[^;])*;|\btemplate\s*<[^{;()]*?>\s*(?=\n)|^\s*(?:using|namespace)\b[^\n]*
                         |\bclass\s+\w+|\boperator\s*\S+?(?=\()""", re.MULTILINE | re.VERBOSE)
TEMPLATE_ARGUMENTS = re.compile(r"(?<=\w)<[\w:, *&]*>")

OPEN, CLOSE = "([{", ")]}"


def blanked(match):
    return re.sub(r"[^\n]", " ", match.group(0))


def strings(text):
    """The string literals of the code: (begin, end) without the quotes."""
    directives = DIRECTIVE.sub(blanked, text)
    return [(match.start() + 1, match.end() - 1) for match in TOKENS.finditer(directives)
            if match.group(0)[0] == '"' and match.end() - match.start() > 2]


def code_of(text):
    """The text with all that is not to be changed blanked out."""
    def blank_token(match):
        token = match.group(0)
        return '"' + " " * (len(token) - 2) + '"' if token[0] == '"' else blanked(match)

    code = TOKENS.sub(blank_token, text)
    for pattern in (DIRECTIVE, NO_CODE):
        code = pattern.sub(blanked, code)
    while TEMPLATE_ARGUMENTS.search(code):
        code = TEMPLATE_ARGUMENTS.sub(blanked, code)
    return code


def closing(code, begin):
    """Position of the bracket that closes the one at begin; -1 without one."""
    depth = 0
    for i in range(begin, len(code)):
        if code[i] in OPEN:
            depth += 1
        elif code[i] in CLOSE:
            depth -= 1
            if depth == 0:
                return i
    return -1


def statement_end(code, begin):
    """Position behind the semicolon that ends the statement at begin; -1 when its block ends first."""
    depth = 0
    for i in range(begin, len(code)):
        if code[i] in OPEN:
            depth += 1
        elif code[i] in CLOSE:
            depth -= 1
            if depth < 0:
                return -1
        elif code[i] == ";" and depth == 0:
            return i + 1
    return -1
