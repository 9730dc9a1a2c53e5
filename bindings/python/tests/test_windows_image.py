"""Reading the imports of a Windows library from its image in memory, on any system."""

import ctypes
import shutil
import struct
import subprocess

import pytest

from kinedll import LibraryError, _pe

SOURCE = """
#include <stdio.h>
__declspec(dllexport) int speak(const char* text) { return fwrite(text, 1, 1, stdout) == 1 && fflush(stdout) == 0; }
"""


def written(image, place, data):
    image[place : place + len(data)] = data


def small_image(size):
    """Two libraries: the first gives fwrite, a function by number and fflush, the second puts."""
    image = bytearray(0x800)
    written(image, 0, b"MZ")
    written(image, 0x3C, struct.pack("<I", 0x80))
    written(image, 0x80, b"PE\0\0")
    magic, directories = {8: (0x20B, 112), 4: (0x10B, 96)}[size]
    written(image, 0x98, struct.pack("<H", magic))
    written(image, 0x98 + directories + 8, struct.pack("<II", 0x200, 60))
    written(image, 0x200, struct.pack("<5I", 0x300, 0, 0, 0x500, 0x400))
    written(image, 0x214, struct.pack("<5I", 0x340, 0, 0, 0x510, 0x440))
    written(image, 0x500, b"first.dll\0")
    written(image, 0x510, b"second.dll\0")
    entries = {0x300: [0x600, (1 << (8 * size - 1)) | 7, 0x620], 0x340: [0x640]}
    for table, values in entries.items():
        for i, value in enumerate(values):
            written(image, table + i * size, value.to_bytes(size, "little"))
    for place, name in ((0x600, b"fwrite"), (0x620, b"fflush"), (0x640, b"puts")):
        written(image, place + 2, name + b"\0")
    return (ctypes.c_char * len(image)).from_buffer(image)


@pytest.mark.parametrize("size", [8, 4])
def test_imports_by_name_have_the_slots_of_the_second_table(size):
    image = small_image(size)
    base = ctypes.addressof(image)
    assert [(name, slot - base, width) for name, slot, width in _pe.imports(base)] == [
        ("fwrite", 0x400, size),
        ("fflush", 0x400 + 2 * size, size),
        ("puts", 0x440, size),
    ]


@pytest.mark.parametrize("place", [0, 0x80, 0x98])
def test_what_is_no_windows_library_is_refused(place):
    image = small_image(8)
    ctypes.memset(ctypes.addressof(image) + place, 0xEE, 2)
    with pytest.raises(LibraryError):
        list(_pe.imports(ctypes.addressof(image)))


@pytest.mark.parametrize("compiler", ["x86_64-w64-mingw32-gcc", "i686-w64-mingw32-gcc"])
def test_a_compiled_library_imports_the_calls_that_print(compiler, tmp_path):
    """In the image of a file that was not loaded yet, a slot still holds where its name stands."""
    if shutil.which(compiler) is None:
        pytest.skip(f"*** SKIPPED: {compiler} is missing (Debian: gcc-mingw-w64) ***")
    (tmp_path / "speak.c").write_text(SOURCE)
    subprocess.run([compiler, "-shared", "-o", tmp_path / "speak.dll", tmp_path / "speak.c"], check=True)
    content = (tmp_path / "speak.dll").read_bytes()
    (header,) = struct.unpack_from("<I", content, 0x3C)
    sections, optional = (
        struct.unpack_from("<H", content, header + 6)[0],
        struct.unpack_from("<H", content, header + 20)[0],
    )
    (whole,) = struct.unpack_from("<I", content, header + 24 + 56)
    image = ctypes.create_string_buffer(content[:0x400], whole)
    for i in range(sections):
        at = header + 24 + optional + 40 * i
        _, address, length, place = struct.unpack_from("<4I", content, at + 8)
        ctypes.memmove(
            ctypes.addressof(image) + address, content[place : place + length], len(content[place : place + length])
        )
    base = ctypes.addressof(image)
    found = {name: (slot, size) for name, slot, size in _pe.imports(base)}
    assert {"fwrite", "fflush"} <= set(found)
    for name, (slot, size) in found.items():
        place = int.from_bytes(ctypes.string_at(slot, size), "little")
        assert ctypes.string_at(base + place + 2) == name.encode()
        assert size == (8 if "x86_64" in compiler else 4)
