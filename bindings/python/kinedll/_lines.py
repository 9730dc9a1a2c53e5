"""The diagnostic lines of the library, taken before they reach standard output.

The library writes a line with one fwrite and one fflush. In a private copy these two imports lead here instead, so that
nothing of the process is touched: not its standard output, not its descriptors, not another copy. A line belongs to the
thread that made the call, and a call that prints nothing never comes here.
"""

from __future__ import annotations

import ctypes
import threading
from typing import Any, Dict, List, Optional


class _Lines(threading.local):
    """What the calls of one thread have printed since it was last taken."""

    def __init__(self) -> None:
        self.pieces: List[bytes] = []


_lines = _Lines()


def _fwrite(text: Optional[int], size: int, count: int, stream: Optional[int]) -> int:
    if text:
        _lines.pieces.append(ctypes.string_at(text, size * count))
    return count


def _fflush(stream: Optional[int]) -> int:
    return 0


_void, _size = ctypes.c_void_p, ctypes.c_size_t
_CALLED_BACK: Dict[str, Any] = {
    "fwrite": ctypes.CFUNCTYPE(_size, _void, _size, _size, _void)(_fwrite),
    "fflush": ctypes.CFUNCTYPE(ctypes.c_int, _void)(_fflush),
}

# For each import to redirect, the address of what to call instead.
TARGETS: Dict[str, int] = {
    name: ctypes.cast(function, ctypes.c_void_p).value or 0 for name, function in _CALLED_BACK.items()
}


def take() -> bytes:
    """What the calls of this thread have printed since the last time."""
    pieces = _lines.pieces
    if not pieces:
        return b""
    text = b"".join(pieces)
    pieces.clear()
    return text
