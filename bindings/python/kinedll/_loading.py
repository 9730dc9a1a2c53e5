"""Finds the library and loads private copies of it.

The library keeps one configuration per process, and a loader that is asked for the same file again gives the same
library again. A copy of the file is another library to the loader, with a configuration of its own.
"""

from __future__ import annotations

import ctypes
import ctypes.util
import itertools
import os
import pathlib
import sys
import tempfile
import weakref
from typing import Any, Dict, Optional, Union

from . import _elf, _lines
from ._interface import FUNCTION_TYPES
from .errors import LibraryError

if sys.platform == "win32":
    from . import _pe as _image
else:
    _image = _elf

Functions = Dict[str, Any]

_NAME = "KineDll.dll" if sys.platform == "win32" else "libKineDll.so.1"
_serial = itertools.count(1)


def find_library() -> str:
    """The path of the library that an arm loads when it is not told another.

    The environment variable KINEDLL_LIBRARY, else the file beside this package (a wheel brings it), else what the
    system's loader finds under the name of the library.
    """
    told = os.environ.get("KINEDLL_LIBRARY")
    if told:
        if not os.path.isfile(told):
            raise LibraryError(f"KINEDLL_LIBRARY names no file: {told}")
        return told
    beside = pathlib.Path(__file__).with_name(_NAME)
    if beside.is_file():
        return str(beside)
    found = _found_by_loader()
    if found is None:
        raise LibraryError(f"{_NAME} was not found: set KINEDLL_LIBRARY to its path, or install the library")
    return found


def _found_by_loader() -> Optional[str]:
    if sys.platform == "win32":
        return ctypes.util.find_library(_NAME)
    try:
        library = ctypes.CDLL(_NAME)
    except OSError:
        return None
    path = _elf.path_of(library._handle)
    _elf.close(library._handle)
    return path


def load_copy(path: Union[str, "os.PathLike[str]"], capture: bool) -> Functions:
    """The functions of a new private copy of the library.

    The copy is unloaded when the last of the functions is gone. As a call in progress holds its function, a copy never
    goes away under a call.
    """
    try:
        content = pathlib.Path(path).read_bytes()
        library = _from_memory(content) or _from_temporary_file(content)
    except OSError as error:
        raise LibraryError(f"{os.fspath(path)} cannot be loaded: {error}") from error
    functions: Functions = {}
    for name, function_type in FUNCTION_TYPES.items():
        try:
            address = ctypes.addressof(ctypes.c_char.in_dll(library, name))
        except ValueError:
            raise LibraryError(f"{os.fspath(path)} has no function {name}") from None
        # Not library[name]: such a function refers to itself, and would stay until the garbage collector comes by.
        function = function_type(address)
        function.loaded_from = library
        functions[name] = function
    if capture:
        _image.redirect(library._handle, _lines.TARGETS)
    return functions


def _from_memory(content: bytes) -> Optional[ctypes.CDLL]:
    """The library from a file that exists in memory only; None where there are no such files."""
    if sys.platform != "linux" or not hasattr(os, "memfd_create"):
        return None
    try:
        descriptor = os.memfd_create("KineDll", os.MFD_CLOEXEC)
    except OSError:
        return None
    with os.fdopen(descriptor, "wb") as file:
        file.write(content)
        file.flush()
        # The loader takes a path it has met before for the library it loaded then, and descriptors are used again:
        # the number of the copy is spelled in the slashes, "/" and "/./" for its binary digits.
        spelled = "".join("/./" if digit == "1" else "/" for digit in f"{next(_serial):b}")
        try:
            return _opened(f"/proc/self/fd{spelled}{file.fileno()}", None)
        except OSError:
            return None  # no /proc, or nothing in memory may be executed


def _from_temporary_file(content: bytes) -> ctypes.CDLL:
    """The library from a file that is removed again: at once, or on Windows with the library."""
    descriptor, path = tempfile.mkstemp(prefix="KineDll-", suffix=os.path.splitext(_NAME)[1])
    try:
        with os.fdopen(descriptor, "wb") as file:
            file.write(content)
        library = _opened(path, path if sys.platform == "win32" else None)
    except BaseException:
        os.unlink(path)
        raise
    if sys.platform != "win32":
        os.unlink(path)
    return library


def _opened(path: str, to_remove: Optional[str]) -> ctypes.CDLL:
    # DEEPBIND: the copy finds its own functions first, even where the process is linked with the library itself.
    library = ctypes.CDLL(path, mode=getattr(os, "RTLD_NOW", 0) | getattr(os, "RTLD_DEEPBIND", 0))
    finalizer = weakref.finalize(library, _unload, library._handle, to_remove)
    # At exit the system unloads everything; only a file must not stay behind.
    finalizer.atexit = to_remove is not None
    return library


def _unload(handle: int, to_remove: Optional[str]) -> None:
    _image.close(handle)
    if to_remove is not None:
        try:
            os.unlink(to_remove)
        except OSError:
            pass  # still in use: it stays in the folder of temporary files
