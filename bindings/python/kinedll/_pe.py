"""Where a loaded Windows library keeps the addresses of the functions it imports.

A module is mapped as its file describes it: headers first, and in them the place of the import directory. For each
library it imports from, the directory has two parallel tables: the names, and the slots with the addresses.
"""

from __future__ import annotations

import ctypes
import struct
import sys
from typing import Dict, Iterator, Tuple

from ._elf import require_all
from .errors import LibraryError

_PE32, _PE32_PLUS = 0x10B, 0x20B
_PAGE_READWRITE = 4


def imports(base: int) -> Iterator[Tuple[str, int, int]]:
    """Name, address of the slot and its size for every function imported by name."""
    (header,) = struct.unpack("<I", ctypes.string_at(base + 0x3C, 4))
    if ctypes.string_at(base, 2) != b"MZ" or ctypes.string_at(base + header, 4) != b"PE\0\0":
        raise LibraryError("not a Windows library")
    optional = base + header + 24
    (magic,) = struct.unpack("<H", ctypes.string_at(optional, 2))
    if magic not in (_PE32, _PE32_PLUS):
        raise LibraryError("not a Windows library for this process")
    size, directories = (8, 112) if magic == _PE32_PLUS else (4, 96)
    (directory,) = struct.unpack("<I", ctypes.string_at(optional + directories + 8, 4))
    while directory:
        names, _, _, library, slots = struct.unpack("<5I", ctypes.string_at(base + directory, 20))
        if not library:
            return
        for i in range(_length(base + names, size) if names else 0):
            entry = int.from_bytes(ctypes.string_at(base + names + i * size, size), "little")
            if not entry >> (8 * size - 1):  # otherwise imported by number
                name = ctypes.string_at(base + entry + 2).decode("ascii")
                yield name, base + slots + i * size, size
        directory += 20


def _length(table: int, size: int) -> int:
    count = 0
    while any(ctypes.string_at(table + count * size, size)):
        count += 1
    return count


if sys.platform == "win32":
    from ctypes import wintypes

    _kernel = ctypes.WinDLL("kernel32", use_last_error=True)
    _kernel.VirtualProtect.argtypes = wintypes.LPVOID, ctypes.c_size_t, wintypes.DWORD, wintypes.LPDWORD
    _kernel.FreeLibrary.argtypes = (wintypes.HMODULE,)

    def close(handle: int) -> None:
        """Gives a library back to the loader."""
        _kernel.FreeLibrary(handle)

    def redirect(handle: int, targets: Dict[str, int]) -> None:
        """Lets calls that this library makes to the named functions go to other addresses; no other sees it."""
        found = [(name, slot) for name, slot, _ in imports(handle) if name in targets]
        require_all(targets, (name for name, _ in found))
        before = wintypes.DWORD()
        size = ctypes.sizeof(ctypes.c_void_p)
        for name, slot in found:
            if not _kernel.VirtualProtect(slot, size, _PAGE_READWRITE, ctypes.byref(before)):
                raise LibraryError(ctypes.get_last_error(), "the imports of the library cannot be made writable")
            ctypes.c_size_t.from_address(slot).value = targets[name]
            _kernel.VirtualProtect(slot, size, before.value, ctypes.byref(before))
