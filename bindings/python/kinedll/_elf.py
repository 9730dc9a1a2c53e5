"""Where a loaded ELF library keeps the addresses of the functions it imports.

The loader describes a library by a link map and the dynamic section it points to. Every function that the library
imports has a slot with its address, named by a relocation. The slots lie in memory that the loader makes read-only once
they are filled (RELRO). 64-bit processes only.
"""

from __future__ import annotations

import ctypes
import mmap
import os
import struct
from typing import Dict, Iterable, Iterator, List, Tuple

from .errors import LibraryError

_RTLD_DI_LINKMAP = 2
_DT_PLTRELSZ, _DT_STRTAB, _DT_SYMTAB, _DT_RELA, _DT_RELASZ, _DT_JMPREL = 2, 5, 6, 7, 8, 23
_PT_GNU_RELRO = 0x6474E552
_PROT_READ, _PROT_WRITE = 1, 2
_RELA, _SYMBOL_SIZE, _PROGRAM_HEADER = struct.Struct("QQq"), 24, struct.Struct("IIQQQQQQ")


class _LinkMap(ctypes.Structure):
    base: int
    path: bytes
    dynamic: int
    _fields_ = [
        ("base", ctypes.c_size_t),
        ("path", ctypes.c_char_p),
        ("dynamic", ctypes.c_size_t),
        ("next", ctypes.c_void_p),
        ("previous", ctypes.c_void_p),
    ]


def _link_map(handle: int) -> _LinkMap:
    """The loader's description of what dlopen gave a handle for."""
    found = ctypes.POINTER(_LinkMap)()
    dlinfo = ctypes.CDLL(None).dlinfo
    dlinfo.argtypes = ctypes.c_void_p, ctypes.c_int, ctypes.c_void_p
    if dlinfo(handle, _RTLD_DI_LINKMAP, ctypes.byref(found)) != 0:
        raise LibraryError("dlinfo knows nothing of the library")
    described: _LinkMap = found.contents
    return described


def path_of(handle: int) -> str:
    """The file a library was loaded from."""
    return os.fsdecode(_link_map(handle).path)


def close(handle: int) -> None:
    """Gives a library back to the loader."""
    dlclose = ctypes.CDLL(None).dlclose
    dlclose.argtypes = (ctypes.c_void_p,)
    dlclose(handle)


def _dynamic_section(module: _LinkMap) -> Dict[int, int]:
    entries: Dict[int, int] = {}
    address = module.dynamic
    while True:
        tag, value = struct.unpack("QQ", ctypes.string_at(address, 16))
        if tag == 0:
            return entries
        entries[tag] = value
        address += 16


def _relocations(module: _LinkMap) -> Iterator[Tuple[str, int]]:
    """Name and slot of everything the library imports."""
    entries = _dynamic_section(module)

    def place(tag: int) -> int:
        # Most loaders turn the addresses of this section from relative ones into absolute ones.
        return entries[tag] + (module.base if entries[tag] < module.base else 0)

    for table, size in ((_DT_RELA, _DT_RELASZ), (_DT_JMPREL, _DT_PLTRELSZ)):
        if table not in entries:
            continue
        for slot, info, _ in _RELA.iter_unpack(ctypes.string_at(place(table), entries[size])):
            symbol = info >> 32
            if symbol:
                at = place(_DT_SYMTAB) + symbol * _SYMBOL_SIZE
                text = place(_DT_STRTAB) + ctypes.c_uint32.from_address(at).value
                yield ctypes.string_at(text).decode("ascii"), module.base + slot


def _read_only_ranges(module: _LinkMap) -> List[Tuple[int, int]]:
    """From where to where the loader has made memory read-only after filling it."""
    header = ctypes.string_at(module.base, 64)
    if header[:5] != b"\x7fELF\x02":
        raise LibraryError("not a 64-bit ELF library")
    (first,) = struct.unpack_from("Q", header, 32)
    size, count = struct.unpack_from("HH", header, 54)
    ranges = []
    for i in range(count):
        kind, _, _, start, _, _, length, _ = _PROGRAM_HEADER.unpack_from(
            ctypes.string_at(module.base + first + i * size, _PROGRAM_HEADER.size)
        )
        if kind == _PT_GNU_RELRO:
            ranges.append((module.base + start, module.base + start + length))
    return ranges


def redirect(handle: int, targets: Dict[str, int]) -> None:
    """Lets calls that this library makes to the named functions go to other addresses; no other library sees it."""
    if ctypes.sizeof(ctypes.c_void_p) != 8:
        raise LibraryError("redirecting imports needs a 64-bit process")
    module = _link_map(handle)
    read_only = _read_only_ranges(module)
    slots = [(name, slot) for name, slot in _relocations(module) if name in targets]
    require_all(targets, (name for name, _ in slots))
    mprotect = ctypes.CDLL(None, use_errno=True).mprotect
    mprotect.argtypes = ctypes.c_void_p, ctypes.c_size_t, ctypes.c_int
    page_size = mmap.ALLOCATIONGRANULARITY  # the same as mmap.PAGESIZE, which not every system has
    for name, slot in slots:
        page = slot - slot % page_size
        protected = any(start <= slot < end for start, end in read_only)
        if protected and mprotect(page, page_size, _PROT_READ | _PROT_WRITE) != 0:
            raise LibraryError(ctypes.get_errno(), "the imports of the library cannot be made writable")
        ctypes.c_size_t.from_address(slot).value = targets[name]
        if protected:
            mprotect(page, page_size, _PROT_READ)


def require_all(targets: Dict[str, int], found: Iterable[str]) -> None:
    """Fails unless every target was found."""
    missing = sorted(set(targets) - set(found))
    if missing:
        raise LibraryError(f"the library does not import {', '.join(missing)}")
