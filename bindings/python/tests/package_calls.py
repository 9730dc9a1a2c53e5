"""The package behind the interface that the comparison with the naive model drives: records are bytes.

A call goes through its method of Arm. Where a method cannot express it (null pointers, a result in the memory of an
input), and to see what a refused call left in the records that are input and output at once, it goes through Arm.call.
"""

import ctypes
import inspect

from compare import Found
from exports import IN_OUT, OUTPUT_SIZES, RESULT_PLACES, SIGNATURES
from records import DEG2RAD, VECTOR

from kinedll import Arm, KineError, parameters, records

RECORDS = {
    "joint": records.Joints, "tool": records.Tool, "wobj": records.Wobj, "load": records.Load, "pose": records.Pose,
    "frame": records.Frame, "unit": records.MechUnit, "ext_axis": records.ExtAxisParam, "directions": records.InchDir,
    "param": parameters.KinematicParam, "error": records.CalibError, "config": records.ArmConfig,
    "vector": ctypes.c_double * 3, "steps": ctypes.c_double * 3, "tilt": ctypes.c_double,
}  # fmt: skip
FILL = bytes(range(112))
SINGULAR, CONFIG_REFUSED = 0xFFFFFFFF, 0x6090


def methods():
    """The method of Arm for each export: the one whose text begins with its name."""
    found = {}
    for name, method in inspect.getmembers(Arm, inspect.isfunction):
        export = (method.__doc__ or "").split(":")[0].split(" ")[0]
        if export in SIGNATURES:
            found[export] = name
    return found


METHODS = methods()


def record_of(kind, data):
    kind = kind.removesuffix("_inout")
    if kind == "param":
        cls = {272: parameters.SixAxisParam, 96: parameters.FourAxisParam}[len(data)]
        return cls.from_buffer_copy(data)
    return RECORDS[kind].from_buffer_copy(data)


class PackageCalls:
    """Calls of one arm, until the next initialisation of the naive model starts with a fresh one."""

    def __init__(self):
        self.by_method = dict.fromkeys(SIGNATURES, 0)
        self.arm = Arm()

    def restart(self):
        self.arm.close()
        self.arm = Arm()

    def call(self, call, count):
        kinds = SIGNATURES[call.name]
        whole = call.shared is None and all(value is not None and value is not False for value in call.args)
        if call.name == "Kine_InitKinematicParam":
            # A record of another arm type is refused before the call.
            whole = whole and (len(call.args[1]) == 272) == (call.args[0] == 6)
        if whole:
            given = {i: record_of(kind, value) for i, (kind, value) in enumerate(zip(kinds, call.args))
                     if isinstance(value, bytes)}  # fmt: skip
            found = self.through_method(call, kinds, given)
            changed = [i for i, record in given.items() if bytes(record) != call.args[i]]
            if changed:
                return found._replace(complaint=f"the method changed its arguments {changed}")
            self.by_method[call.name] += 1
            if not any(kind in IN_OUT for kind in kinds) or found.code == 0:
                return found
            plain = self.through_call(call, kinds)
            if plain[:2] != found[:2]:
                return found._replace(complaint=f"method and call differ: {plain}")
            return plain
        return self.through_call(call, kinds)

    def through_method(self, call, kinds, given):
        """The answer of the method, as the C call would have left it."""
        arguments = [given.get(i, value) for i, (kind, value) in enumerate(zip(kinds, call.args))
                     if kind not in OUTPUT_SIZES and kind not in ("error_inout", "tilt_inout")]  # fmt: skip
        changed = {i: call.args[i] for i, kind in enumerate(kinds) if kind in IN_OUT}
        if call.name == "Kine_InitKinematicParam":
            arguments.reverse()
        if call.name == "Kine_InchMovePosCalc":
            directions, mode, tool, wobj, load, steps, joints = arguments
            arguments = [directions, mode, steps, joints, tool, wobj, load]
            a, b, c = VECTOR.unpack(call.args[5])
            changed[5] = VECTOR.pack(a * DEG2RAD, b, c * DEG2RAD)
        try:
            result = getattr(self.arm, METHODS[call.name])(*arguments)
        except KineError as error:
            assert error.call == call.name
            return Found(error.code, error.printed, None, False, changed, None)
        code, output = 0, None
        if call.name == "Kine_IsSingularity":
            code = SINGULAR if result else 0
        elif call.name == "Kine_IsArmTypeValid":
            code = 0 if result else CONFIG_REFUSED
        elif call.name == "SafeArea_Check":
            code = int(result)
        elif call.name == "Kine_CalcAlignCoordProc":
            changed = {0: bytes(result.tool), 1: bytes(result.wobj)}
        elif call.name == "Kine_CalcZVec":
            output = None if result is None else VECTOR.pack(*result)
        elif "error_inout" in kinds:
            output, changed = bytes(result.frame), {len(kinds) - 1: bytes(result.error)}
        elif "tilt_inout" in kinds:
            output, changed = bytes(result.frame), {len(kinds) - 1: bytes(ctypes.c_double(result.tilt_rad))}
        elif result is not None:
            output = bytes(result)
        return Found(code, b"", output, output is not None, changed, None)

    def through_call(self, call, kinds):
        arguments = []
        for kind, value in zip(kinds, call.args):
            if kind in OUTPUT_SIZES:
                target = RECORDS[kind.removeprefix("out_")].from_buffer_copy(FILL[: OUTPUT_SIZES[kind]])
                arguments.append(target if value else None)
            elif isinstance(value, bytes):
                size = ctypes.sizeof(RECORDS[kind.removesuffix("_inout")])
                arguments.append(RECORDS[kind.removesuffix("_inout")].from_buffer_copy(value.ljust(size, b"\0")))
            else:
                arguments.append(value)
        place = RESULT_PLACES[call.name]
        if call.shared is not None:
            shared = arguments[call.shared]
            arguments[place] = type(arguments[place]).from_buffer(shared)
        before = None if place is None or arguments[place] is None else bytes(arguments[place])
        printed = b""
        try:
            code = self.arm.call(call.name, *arguments, answers=(1,))
        except KineError as error:
            code, printed = error.code, error.printed
        output = None if before is None else bytes(arguments[place])
        changed = {i: bytes(arguments[i]) for i, kind in enumerate(kinds) if kind in IN_OUT and call.args[i]}
        return Found(code, printed, output, output != before, changed, None)
