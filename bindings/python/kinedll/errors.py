"""What the package raises: KineError for a result code, LibraryError for a library that cannot be used."""

from __future__ import annotations

from typing import TYPE_CHECKING, Optional, Tuple

from ._codes import ResultCode

if TYPE_CHECKING:
    from .records import CalibError


class LibraryError(OSError):
    """The shared library was not found, cannot be loaded, or cannot be used the way it was asked for."""


class KineError(Exception):
    """A call returned a result code.

    Attributes:
        code: the code; compares equal to an int and to a member of ResultCode.
        call: the C name of the call, such as "Kine_WobjPosToJoint".
        printed: the diagnostic lines of the call, byte for byte. Empty without capture.
        report: the error report of a tool calibration whose touches were solved before a later step failed,
            otherwise None.
    """

    def __init__(self, code: int, call: str, printed: bytes = b"") -> None:
        super().__init__(code, call, printed)
        self.code = int(code)
        self.call = call
        self.printed = printed
        self.report: Optional[CalibError] = None

    @property
    def result(self) -> Optional[ResultCode]:
        """The code as a member of ResultCode; None for a number that is no code of the library."""
        try:
            return ResultCode(self.code)  # type: ignore[call-arg]  # the value alone finds the member
        except ValueError:
            return None

    @property
    def name(self) -> str:
        """The name of the code in the header, such as "KINE_ERR_IK_7"."""
        return self.result.name if self.result is not None else f"0x{self.code:04X}"

    @property
    def causes(self) -> Tuple[str, ...]:
        """What can cause the code, one sentence part each."""
        return self.result.causes if self.result is not None else ()

    @property
    def remedy(self) -> str:
        """What to do about it."""
        return self.result.remedy if self.result is not None else ""

    @property
    def lines(self) -> Tuple[str, ...]:
        """The diagnostic lines as text, without their line ends.

        One line holds the bytes A3 BA, a full-width colon in code page GBK; all others are ASCII. The bytes
        are decoded as GBK.
        """
        return tuple(line.decode("gbk", "replace") for line in self.printed.splitlines())

    def __str__(self) -> str:
        text = f"{self.call}: {self.name} (0x{self.code:04X})"
        if self.causes:
            text += ": " + "; or ".join(self.causes)
        if self.remedy:
            text += f"\n  what to do: {self.remedy}"
        return text + "".join(f"\n  printed: {line}" for line in self.lines)
