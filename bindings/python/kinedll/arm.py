"""An arm: a private copy of the library with the configuration of one robot."""

from __future__ import annotations

import os
from types import TracebackType
from typing import Any, Optional, Type, Union

from ._calibration import Calibration
from ._calls import ClosedFunctions
from ._loading import find_library, load_copy
from ._motion import Motion
from ._positions import Positions
from ._setup import ArmParam, Setup


class Arm(Setup, Positions, Calibration, Motion):
    """One robot arm, with all calls of the library as methods.

    Every arm loads the library once more, as a private copy with a configuration of its own; a process may hold as
    many arms as it likes. A call keeps the interpreter's lock, so that calls never overlap and any thread may use any
    arm. (Interpreters without such a lock: keep the setup calls of an arm apart from its other calls.)

    A method whose call refuses raises KineError, with the diagnostic lines of the call. With capture=False the lines
    go to the standard output of the process instead, written by the library itself.

    close(), leaving a with block, or dropping the last reference unloads the copy; a call in progress ends first.

    Args:
        param: when given, the arm is initialised with it, see init_kinematic_param.
        arm_type: see there.
        library: path of the library; not given, see find_library.
        capture: whether diagnostic lines are attached to the exceptions.

    Raises:
        LibraryError: no library was found, or it cannot be loaded, or (with capture) its output not be taken.
        KineError: the parameters are refused.
    """

    def __init__(
        self,
        param: Optional[ArmParam] = None,
        arm_type: Optional[int] = None,
        *,
        library: Optional[Union[str, "os.PathLike[str]"]] = None,
        capture: bool = True,
    ) -> None:
        self._functions = load_copy(find_library() if library is None else library, capture)
        if param is not None or arm_type is not None:
            self.init_kinematic_param(param, arm_type)

    @property
    def closed(self) -> bool:
        """Whether close() was called."""
        return isinstance(self._functions, ClosedFunctions)

    def close(self) -> None:
        """Gives the copy of the library back; further calls raise ValueError. May be called again."""
        self._functions = ClosedFunctions()

    def __enter__(self) -> "Arm":
        return self

    def __exit__(
        self,
        kind: Optional[Type[BaseException]],
        error: Optional[BaseException],
        traceback: Optional[TracebackType],
    ) -> None:
        self.close()

    def __reduce__(self) -> Any:
        raise TypeError("an arm is a loaded library: it cannot be copied or pickled")
