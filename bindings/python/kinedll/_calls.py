"""One call of an export: result codes become exceptions, printed lines go with them."""

from __future__ import annotations

import ctypes
from typing import Any, Dict, NoReturn, Optional, Tuple

from . import _lines
from ._fields import checked_integer
from .errors import KineError
from .records import Load, Tool, Wobj

# What a call takes when it is not told otherwise. The library only reads them.
HELD_TOOL, FIXED_WOBJ, NO_LOAD = Tool(), Wobj(), Load()


class ClosedFunctions(Dict[str, Any]):
    """The functions of an arm that was closed."""

    def __missing__(self, name: str) -> NoReturn:
        raise ValueError(f"{name}: the arm is closed")


class Calls:
    """What all calls of an arm go through."""

    _functions: Dict[str, Any]

    def call(self, name: str, *arguments: Any, answers: Tuple[int, ...] = ()) -> int:
        """Calls an export by its C name and returns its code: 0, or one of the answers.

        Arguments are records, ctypes arrays, numbers, or None for a null pointer, in the order of the header; results
        are written into the records given for them.

        Raises:
            KineError: the export returned another code.
        """
        code: int = self._functions[name](*arguments)
        if code:
            printed = _lines.take()
            if code not in answers:
                raise KineError(code & 0xFFFFFFFF, name, printed)
        return code


def int32(value: int, name: str) -> int:
    """A signed argument; ctypes would drop the upper bits of what does not fit."""
    return checked_integer(ctypes.c_int32, value, name)


def uint32(value: int, name: str) -> int:
    """An unsigned argument; ctypes would drop the upper bits of what does not fit."""
    return checked_integer(ctypes.c_uint32, value, name)


def tool_of(tool: Optional[Tool]) -> Tool:
    """The tool, or a held one whose centre point is the flange."""
    return HELD_TOOL if tool is None else tool


def wobj_of(wobj: Optional[Wobj]) -> Wobj:
    """The work object, or a fixed one at the world origin."""
    return FIXED_WOBJ if wobj is None else wobj


def load_of(load: Optional[Load]) -> Load:
    """The payload, or none."""
    return NO_LOAD if load is None else load
