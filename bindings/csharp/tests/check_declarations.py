"""Compares the declarations of KineDll.cs with those of KineDll.h: functions, parameters, codes named in their
comments, records and their fields.

Each function is there twice: as the library has it, with every record by its address ("ref", a result "out"), and for
callers, with inputs by value. The second does nothing but call the first. A fixed array is a structure with an index.
"""

import pathlib
import re
import sys
from typing import NamedTuple

import header_facts

# A number, alone and as the element of an array.
NUMBERS = {"double": "double", "float": "float", "int8_t": "sbyte", "uint8_t": "byte", "int16_t": "short",
           "uint16_t": "ushort", "int32_t": "int", "uint32_t": "uint", "KineResult": "uint"}
ARRAYS = {"double": "KineDoubles", "KineFrame": "KineFrames", "uint8_t": "KineBytes", "int16_t": "KineShorts",
          "int32_t": "KineInts", "uint32_t": "KineUInts"}
SIZES = {"double": 8, "uint8_t": 1}
# Three numbers with a name each.
VECTORS = {("KineLoad", "Cog"), ("KineLoad", "Aom"), ("KineLoad", "Inertia")}
# Enumerations and the numbers they stand for.
UNDERLYING = {"KineArm": "uint", "KineSingularityKind": "uint", "KineInchMode": "int", "KineAlignMode": "int",
              "KineCrdMode": "int", "KineDifFrame": "int", "KineUnitKind": "ushort"}
# Pointers to three numbers, and results that a successful call may leave as they are or changes in place.
IN_PLACE = {("Kine_InchMovePosCalc", "steps"): "ref KineInchSteps", ("Kine_CalcZVec", "out"): "ref KineVector",
            ("SafeArea_Check", "centre"): "KineVector", ("Kine_CalcAlignCoordProc", "tool"): "ref KineTool",
            ("Kine_CalcAlignCoordProc", "wobj"): "ref KineWobj"}
# A word of the language.
RENAMED = {"out": "result"}
# Every calibration has this code from the rules above them all.
CODES_OF_CALIBRATIONS = {"KINE_ERR_POSE"}


class Imported(NamedTuple):
    """A function as the library has it."""
    attribute: str
    result: str
    parameters: list


class Offered(NamedTuple):
    """A function for callers: its parameters as (type, name), the codes of its comment, what it does."""
    result: str
    parameters: list
    codes: set
    body: str


def parameters_of(text):
    return [header_facts.split_parameter(part) for part in text.split(",")]


def imported(source):
    """The functions as the library has them, by name."""
    return {name: Imported(attribute, result, parameters_of(parameters)) for attribute, result, name, parameters in
            re.findall(r"\[DllImport\(([^\]]*)\)\]\s*internal static extern (\w+) (\w+)\(([^)]*)\);", source)}


def offered(source):
    """The functions for callers, by name."""
    pattern = (r"((?:^ *///[^\n]*\n)+) *public static (\w+) ((?:Kine|SafeArea)_\w+)\(([^)]*)\)\n"
               r" {8}\{\n(.*?)\n {8}\}")
    return {name: Offered(result, parameters_of(parameters), header_facts.codes(comment), " ".join(body.split()))
            for comment, result, name, parameters, body in re.findall(pattern, source, re.MULTILINE | re.DOTALL)}


def records(source):
    """The fields of each structure as (type, name), by its name."""
    found = {}
    for layout, name, body in re.findall(r"\[StructLayout\((.*?)\)\]\s*(?:public )?struct (\w+)\n    \{(.*?)\n    \}",
                                         source, re.DOTALL):
        fields = re.findall(r"^        (?:\[FieldOffset\(0\)\] )?(?:public |readonly )?(\w+) (\w+);", body,
                            re.MULTILINE)
        found[name] = layout, fields
    return found


def expected_parameter(function, kind, name):
    """Type and name of a parameter for callers."""
    renamed = RENAMED.get(name, name)
    if (function, name) in IN_PLACE:
        return IN_PLACE[function, name], renamed
    pointer = re.fullmatch(r"(const )?(\w+)\*", kind)
    if not pointer:
        return NUMBERS[kind], renamed
    pointed = NUMBERS.get(pointer[2], pointer[2])
    return f"{'' if pointer[1] else 'out '}{pointed}", renamed


def as_imported(kind):
    """The type of a caller's parameter as the library takes it: records by their address."""
    return kind if " " in kind or kind in NUMBERS.values() or kind in UNDERLYING else f"ref {kind}"


def expected_body(name, parameters):
    """The call of the function as the library has it."""
    passed = []
    for kind, parameter in parameters:
        way, _, rest = as_imported(kind).rpartition(" ")
        passed.append(f"{way} {parameter}" if rest else parameter)
    return f"return Native.{name}({', '.join(argument.strip() for argument in passed)});"


def function_differences(header, source):
    declared, present, native = header_facts.functions(header), offered(source), imported(source)
    for name in sorted(declared.keys() ^ present.keys()):
        yield f"{name}: only {'in the header' if name in declared else 'offered'}"
    for name in sorted(declared.keys() ^ native.keys()):
        yield f"{name}: only {'in the header' if name in declared else 'imported'}"
    for name in sorted(declared.keys() & present.keys() & native.keys()):
        result, parameters, codes = declared[name]
        offer = present[name]
        if native[name].attribute != "Library, CallingConvention = Cdecl, ExactSpelling = true":
            yield f"{name}: imported as {native[name].attribute}"
        if not offer.result == native[name].result == NUMBERS[result]:
            yield f"{name}: returns {offer.result}, {native[name].result}"
        expected = [expected_parameter(name, *parameter) for parameter in parameters]
        plain = [(UNDERLYING.get(kind, kind), parameter) for kind, parameter in offer.parameters]
        if plain != expected:
            yield f"{name}: offered with {plain} instead of {expected}"
        expected = [(as_imported(kind), parameter) for kind, parameter in offer.parameters]
        if native[name].parameters != expected:
            yield f"{name}: imported with {native[name].parameters} instead of {expected}"
        if offer.body != expected_body(name, offer.parameters):
            yield f"{name}: {offer.body}"
        allowed = codes | CODES_OF_CALIBRATIONS if name.startswith("Kine_Calc") else codes
        yield from (f"{name}: does not name {code}" for code in sorted(codes - offer.codes))
        yield from (f"{name}: names {code}" for code in sorted(offer.codes - allowed))


def expected_field(record, field):
    """Type and name of a field in C#."""
    if field.name.lower().startswith("reserved"):
        size = SIZES[field.type] * field.count
        return (field.type if field.count == 1 else f"KineReserved{size}"), field.name
    if (record, field.name) in VECTORS:
        return "KineVector", field.name
    if field.count > 1:
        return f"{ARRAYS[field.type]}{field.count}", field.name
    return NUMBERS.get(field.type, field.type), field.name


def record_differences(header, source):
    present = records(source)
    for name, fields in header_facts.records(header).items():
        layout, its_fields = present.get(name, ("", []))
        expected = [expected_field(name, field) for field in fields]
        plain = [(UNDERLYING.get(kind, kind), field) for kind, field in its_fields]
        if plain != expected:
            yield f"{name}: {plain} instead of {expected}"
        if layout != ("LayoutKind.Explicit" if name == "KineKinematicParam" else "LayoutKind.Sequential"):
            yield f"{name}: laid out as {layout}"


def differences(header, source):
    """One sentence for each difference."""
    return [*function_differences(header, source), *record_differences(header, source)]


def main():
    header, source = (pathlib.Path(path).read_text(encoding="ascii") for path in sys.argv[1:3])
    found = differences(header, source)
    print("\n".join(found) or f"{len(offered(source))} functions, {len(header_facts.records(header))} records")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
