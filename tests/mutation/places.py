"""Where a C++ file can be changed, and into what: the mutation operators.

One function per kind of change; each yields (begin, end, replacement) for the code of a file. A replacement that does
not compile is no harm: such a mutant is dropped. One that leaves the same program is not offered where the text shows
it (another spelling of the same number).
"""

import re
from collections import namedtuple
from decimal import Decimal

from cpp_text import closing, code_of, statement_end, strings

# text[begin:end] becomes new.
Change = namedtuple("Change", "begin end new kind")

FLOAT = re.compile(r"(?<![\w.])(?:\d+\.\d*(?:e[+-]?\d+)?|\d+e[+-]?\d+)(?![\w.])")
INTEGER = re.compile(r"(?<![\w.])(\d+)(U?)(?![\w.])")
COMPARISONS = {"<": ("<=", ">"), "<=": ("<", ">="), ">": (">=", "<"), ">=": (">", "<="), "==": ("!=",), "!=": ("==",)}
ARITHMETIC = {"+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "+=": "-=", "-=": "+=", "*=": "/=", "&&": "||",
              "||": "&&", "&": "|", "|": "&"}
UNARY = re.compile(r"(?:[({\[,=?:<>&|!*/+-]|\breturn)\s*(-)(?=[\w(])")
NOT = re.compile(r"!(?=[\w(])")
OPERAND = r"[\w.]+(?:\[\w+\])*(?:\(\))?"
SWAPPED_OPERANDS = re.compile(rf"(?<![\w\].)] )(?<![\w.:])({OPERAND}) ([-/%]) ({OPERAND})(?![\w.(\[:])")
SWAPPED_ARGUMENTS = re.compile(rf"(?<=\w)\(({OPERAND}), ({OPERAND})\)")
# Products of transforms do not commute.
TRANSFORM = rf"(?:\w+From\w+|\w*Frame|[st]|turn|[\w.]+AsMatrix\(\)|(?:MatrixInverse|PoseToMatrix)\({OPERAND}\))"
SWAPPED_TRANSFORMS = re.compile(rf"(?<![\w.])({TRANSFORM}) (\*) ({TRANSFORM})(?![\w.(])")
CODE = re.compile(r"(?<!case )\bKINE_(?:OK|SINGULAR|ERR_\w+)\b(?!:)")
CONDITION = re.compile(r"\b(?:if|while) (\()(?!const\b|auto\b)")
CODE_TAKEN = re.compile(r"\bif \(const KineResult code = (.*?)\)(?:\s*\{)?\s*return code;(?:\s*\})?", re.DOTALL)
TERNARY = re.compile(rf"\? (-?{OPERAND}) : (-?{OPERAND})(?![\w.(\[:])")
STATEMENT = re.compile(r"^[ \t]*(?:if \(.*\) )?([\w:.\[\]()>-]+(?: [-+*/|&]?= |\())", re.MULTILINE)
NO_STATEMENT = re.compile(r"(?:if|for|while|switch|case|else|return|const|constexpr|static|break|continue|default|"
                          r"explicit|friend|public|private|struct|enum|auto|sizeof|alignas)\b")

# A name and what takes its place.
FIELDS = {"x": "y", "y": "z", "z": "x", "X": "Y", "Y": "Z", "Z": "X", "a": "b", "b": "c", "c": "a", "A": "B", "B": "C",
          "C": "A", "sin": "cos", "cos": "sin", "upper": "lower", "lower": "upper", "row": "column", "column": "row",
          "Cfg1": "Cfg2", "Cfg2": "Cfg3", "Cfg3": "Cfg4", "Cfg4": "Cfg1", "tool": "wobj", "wobj": "tool",
          "user": "object", "object": "user", "r": "t", "Largest": "Smallest", "Smallest": "Largest", "u": "v",
          "v": "u", "begin": "end", "linearStep": "rotationStep", "rotationStep": "linearStep"}
CALLS = {"Rotate": ("RotateBack",), "RotateBack": ("Rotate",), "Transpose": ("",), "MatrixInverse": ("",),
         "RigidInverse": ("",), "std::fabs": ("",), "std::max": ("std::min",), "std::min": ("std::max",),
         "std::sin": ("std::cos",), "std::cos": ("std::sin",), "std::sqrt": ("",), "std::trunc": ("",),
         "WithOneNaN": ("",), "AxisX": ("AxisY",), "AxisY": ("AxisZ",), "AxisZ": ("AxisX",), "SinCosDeg": ("SinCosOf",),
         "SafeAcos": ("SafeAsin",), "SafeAsin": ("SafeAcos",), "RotateX": ("RotateY",), "RotateY": ("RotateZ",),
         "RotateZ": ("RotateX",), "TranslateX": ("TranslateZ",), "TranslateZ": ("TranslateX",), "WrapOnce": ("",),
         "SumAwayFromZero": ("std::atan2",), "std::isfinite": ("std::isnan",), "std::isnan": ("std::isfinite",),
         "RotMatrixToEulerExact": ("RotMatrixToEuler",), "Norm": ("",), "max": ("min",), "min": ("max",)}
WORDS = {"true": "false", "false": "true", "break": "continue", "continue": "break", "upper": "lower", "lower": "upper"}


def float_changes(code):
    for match in FLOAT.finditer(code):
        old = match.group(0)
        value = float(old)
        mantissa, e, exponent = old.partition("e")
        digit = Decimal(1).scaleb(Decimal(mantissa).as_tuple().exponent)
        spellings = [f"{Decimal(mantissa) + digit}", f"{Decimal(mantissa) - digit}"]
        candidates = [spelling + e + exponent for spelling in spellings] + [repr(value * 1.5)]
        if value in (0.0, 1.0):
            candidates.append(repr(1.0 - value))
        for new in candidates:
            if float(new) != value and "-" not in new.partition("e")[0]:
                yield match.start(), match.end(), new if re.search(r"[.e]", new) else new + ".0"


def integer_changes(code):
    for match in INTEGER.finditer(code):
        value, suffix = int(match.group(1)), match.group(2)
        for new in (value + 1, value - 1):
            if new >= 0:
                yield match.start(), match.end(), f"{new}{suffix}"


def comparison_changes(code):
    for match in re.finditer(r"(?<= )(?:<=|>=|==|!=|<|>)(?= )", code):
        for new in COMPARISONS[match.group(0)]:
            yield match.start(), match.end(), new


def operator_changes(code):
    """Arithmetic and logic; clang-format leaves spaces around what has two operands, but not in declarations."""
    for match in re.finditer(r"(?<=[\w)\]}] )(?:[-+*]=|&&|\|\||[-+*/%&|])(?=\s)", code):
        yield match.start(), match.end(), ARITHMETIC[match.group(0)]


def sign_changes(code):
    for match in UNARY.finditer(code):
        yield match.start(1), match.end(1), ""


def negation_changes(code):
    for match in NOT.finditer(code):
        yield match.start(), match.end(), ""
    for match in CONDITION.finditer(code):
        end = closing(code, match.start(1))
        if end > 0 and ";" not in code[match.start(1):end] and code[match.start(1) + 1] != "!":
            yield match.start(1), end + 1, f"(!{code[match.start(1):end + 1]})"


def swap_changes(code):
    for match in SWAPPED_OPERANDS.finditer(code):
        left, sign, right = match.groups()
        if left not in ("return", "case"):
            yield match.start(), match.end(), f"{right} {sign} {left}"
    for match in SWAPPED_TRANSFORMS.finditer(code):
        yield match.start(), match.end(), f"{match.group(3)} * {match.group(1)}"
    for match in SWAPPED_ARGUMENTS.finditer(code):
        yield match.start(), match.end(), f"({match.group(2)}, {match.group(1)})"
    for match in TERNARY.finditer(code):
        yield match.start(), match.end(), f"? {match.group(2)} : {match.group(1)}"


def name_changes(code):
    """Fields, axes and indices in names; only into a name that the file has."""
    names = set(re.findall(r"\w+", code))
    for match in re.finditer(r"(?<=[\w\])]\.)[A-Za-z]\w*\b(?!\()", code):
        new = FIELDS.get(match.group(0))
        if new:
            yield match.start(), match.end(), new
    for match in re.finditer(r"(?<![\w:.])(?:std::)?[A-Za-z]\w*(?=\()", code):
        for new in CALLS.get(match.group(0), ()):
            yield match.start(), match.end(), new
    # Not the names of declarations, behind their type.
    for match in re.finditer(r"(?<!\w )(?<![>&*] )\b[A-Za-z]\w*\b|(?<=return )\w+", code):
        old = match.group(0)
        candidates = []
        if re.fullmatch(r"[sc](?:\d+|[abce])", old):
            candidates.append(("c" if old[0] == "s" else "s") + old[1:])
        digit = re.fullmatch(r"(r)(\d)(\d)|([a-z][A-Za-z]*)(\d)", old)
        if digit and digit.group(1):
            row, column = int(digit.group(2)), int(digit.group(3))
            candidates += [f"r{column}{row}", f"r{row}{(column + 1) % 3}", f"r{(row + 1) % 3}{column}"]
        elif digit:
            number = int(digit.group(5))
            candidates += [f"{digit.group(4)}{number + 1}", f"{digit.group(4)}{number - 1}"]
        for new in candidates:
            if new != old and new in names:
                yield match.start(), match.end(), new
    for match in re.finditer(r"(?<![\w.])(?:true|false|break|continue|upper|lower)\b(?!\()", code):
        yield match.start(), match.end(), WORDS[match.group(0)]


def result_changes(code):
    for match in CODE.finditer(code):
        other = "KINE_ERR_TOOL" if match.group(0) == "KINE_ERR_POSE" else "KINE_ERR_POSE"
        for new in ("KINE_OK", other):
            if new != match.group(0):
                yield match.start(), match.end(), new
    for match in CODE_TAKEN.finditer(code):
        yield match.start(), match.end(), f"static_cast<void>({match.group(1)});"


def removals(code):
    for match in STATEMENT.finditer(code):
        begin = match.start(1)
        before = code[:begin].rstrip()
        if NO_STATEMENT.match(match.group(1)) or before[-1:] not in tuple(";{}:)"):
            continue
        end = statement_end(code, begin)
        if end > 0 and not re.search(r"= (?:default|delete);$", code[begin:end]):
            yield begin, end, ";"


OPERATORS = {"number": float_changes, "integer": integer_changes, "comparison": comparison_changes,
             "operator": operator_changes, "sign": sign_changes, "negation": negation_changes, "swap": swap_changes,
             "name": name_changes, "result": result_changes, "removal": removals}


def string_changes(text):
    """A letter in the other case, or the last mark but the end of the line."""
    for begin, end in strings(text):
        for match in re.finditer(r"(?<![\\%])[A-Za-z]|[:;,.!](?=(?:\\n)?$)", text[begin:end]):
            old = match.group(0)
            yield begin + match.start(), begin + match.end(), old.swapcase() if old.isalpha() else ""


def changes_of(text):
    """All changes of a file in the order of their places: a list of lists, one for each place."""
    code = code_of(text)
    places = {}
    for kind, find in OPERATORS.items():
        for begin, end, new in find(code):
            # Strings inside a longer piece of code are blank there.
            if '"' not in code[begin:end] and new != code[begin:end]:
                places.setdefault((begin, end, kind), []).append(Change(begin, end, new, kind))
    letters = [Change(begin, end, new, "text") for begin, end, new in string_changes(text)]
    for begin, end in strings(text):
        inside = [change for change in letters if begin <= change.begin < end]
        if inside:
            places[begin, end, "text"] = inside
    return [places[key] for key in sorted(places)]


def apply_change(text, change):
    return text[:change.begin] + change.new + text[change.end:]


def shown(text, change):
    """The changed lines before and after, each on one line without the blanks in between."""
    begin = text.rfind("\n", 0, change.begin) + 1
    end = text.find("\n", change.end)
    end = len(text) if end < 0 else end
    after = text[begin:change.begin] + change.new + text[change.end:end]
    return " ".join(text[begin:end].split()), " ".join(after.split())


def line_of(text, change):
    return text.count("\n", 0, change.begin) + 1
