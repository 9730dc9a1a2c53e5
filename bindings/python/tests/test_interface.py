"""The records and prototypes of the package against the text of the header and the list of exports."""

import ctypes
import re

from conftest import EXPORTS, HEADER
from kinedll import Arm, _interface, parameters, records

RECORDS = {
    f"Kine{name}": cls
    for name, cls in {**vars(parameters), **vars(records)}.items()
    if hasattr(cls, "_fields_") and name != "Record"
}
RECORDS["KineJoint"] = RECORDS.pop("KineJoints")


def snake(name):
    """A name of the header the way Python writes it: TFrame is t_frame, UFFix uf_fix, Link1TiltX link1_tilt_x."""
    return re.sub(r"(?<=[a-z0-9])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])", "_", name).lower()


def without_comments(text):
    return re.sub(r"/\*.*?\*/", "", text, flags=re.DOTALL)


def test_every_record_has_the_size_the_header_asserts():
    sizes = re.findall(r"^KINE_ASSERT_SIZE\((\w+), (\d+)\);", HEADER, re.MULTILINE)
    assert len(sizes) == 14
    assert {name: ctypes.sizeof(RECORDS[name]) for name, _ in sizes} == {name: int(size) for name, size in sizes}
    assert set(RECORDS) == {name for name, _ in sizes}


def test_every_field_has_the_offset_the_header_asserts():
    offsets = re.findall(r"^KINE_ASSERT_OFFSET\((\w+), (\w+), (\d+)\);", HEADER, re.MULTILINE)
    found = {}
    for name, cls in RECORDS.items():
        for field, *_ in cls._fields_:
            descriptor = cls.__dict__[field]
            found[name, field] = getattr(descriptor, "_plain", descriptor).offset
    assert found == {(name, snake(field)): int(offset) for name, field, offset in offsets}


def test_every_field_has_the_type_of_the_header():
    plain = {
        "double": ctypes.c_double, "float": ctypes.c_float, "int8_t": ctypes.c_int8, "uint8_t": ctypes.c_uint8,
        "int16_t": ctypes.c_int16, "uint16_t": ctypes.c_uint16, "int32_t": ctypes.c_int32, "uint32_t": ctypes.c_uint32,
    }  # fmt: skip
    structures = re.findall(r"typedef (?:struct|union) (\w+)\n\{(.*?)\n\}", without_comments(HEADER), re.DOTALL)
    assert len(structures) == 14
    for name, body in structures:
        declared = []
        for kind, field, _, count in re.findall(r"(\w+) (\w+)(\[(\d+)\])?;", body):
            single = plain.get(kind) or RECORDS[kind]
            declared.append((snake(field), single * int(count) if count else single))
        assert [tuple(field) for field in RECORDS[name]._fields_] == declared, name


def declarations():
    """Name, result and argument types of every function of the header, with the names of the arguments."""
    text = without_comments(HEADER)
    for result, name, arguments in re.findall(r"KINE_API (\w+) KINE_CALL (\w+)\(([^)]*)\);", text):
        yield name, result, [re.sub(r"\s+", " ", argument).strip().rsplit(" ", 1) for argument in arguments.split(",")]


def test_the_table_of_prototypes_is_the_list_of_exports():
    assert sorted(_interface.PROTOTYPES) == sorted(EXPORTS)
    assert len(EXPORTS) == 44


def test_every_prototype_is_that_of_the_header():
    numbers = {"uint32_t": ctypes.c_uint32, "int32_t": ctypes.c_int32, "double": ctypes.c_double}
    results = {"KineResult": ctypes.c_uint32, "int32_t": ctypes.c_int32}
    seen = {}
    for name, result, arguments in declarations():
        types = []
        for kind, _ in arguments:
            kind = kind.replace("const ", "")
            if kind.endswith("*"):
                target = numbers.get(kind[:-1]) or RECORDS[kind[:-1]]
                types.append(ctypes.POINTER(target))
            else:
                types.append(numbers[kind])
        seen[name] = tuple(types)
        assert _interface.result_type(name) is results[result], name
        assert _interface.FUNCTION_TYPES[name]._argtypes_ == tuple(types), name
        assert _interface.FUNCTION_TYPES[name]._restype_ is results[result], name
    assert _interface.PROTOTYPES == seen


def test_every_export_has_a_method_that_names_it():
    def method_name(export):
        parts = re.sub(r"^Kine_", "", export).split("_")
        return "_".join(snake(part) if not part[0].isdigit() else part.lower() for part in parts)

    special = {"Kine_CalcGripToolPrm_Scara2P": "calc_grip_tool_prm_scara2p", "Kine_FKineVision": "fkine_vision",
               "Kine_CalcExtWobj_UserPrm_Cirle3P": "calc_ext_wobj_user_prm_cirle3p",
               "Kine_CalcPositionerJ1Prm_3P": "calc_positioner_j1prm_3p"}  # fmt: skip
    for export in EXPORTS:
        method = getattr(Arm, special.get(export) or method_name(export))
        assert method.__doc__.startswith(export), export
