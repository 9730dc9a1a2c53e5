"""The checking scripts find what they look for."""

import pathlib
import tempfile
import unittest

import check_abi
import check_dynamic
import check_layers
import check_macros
import check_symbols
import check_windows


def violations(path, *lines):
    return len(check_layers.file_violations(path, "\n".join(lines)))


class CheckLayers(unittest.TestCase):
    ORDER = ("math", "models", "config", "chain", "calib", "api")

    def test_includes_of_lower_layers_and_the_own_one_pass_and_of_higher_ones_do_not(self):
        for i, layer in enumerate(self.ORDER):
            for j, other in enumerate(self.ORDER):
                with self.subTest(layer=layer, other=other):
                    self.assertEqual(violations(f"{layer}/a.cpp", f'#include "{other}/b.h"'), int(j > i))

    def test_calib_and_motion_do_not_include_each_other(self):
        self.assertEqual(violations("calib/a.cpp", '#include "motion/b.h"'), 1)
        self.assertEqual(violations("motion/a.cpp", '#include "calib/b.h"'), 1)
        self.assertEqual(violations("motion/a.cpp", '#include "chain/b.h"', '#include "motion/b.h"'), 0)
        self.assertEqual(violations("api/a.cpp", '#include "motion/b.h"', '#include "calib/b.h"'), 0)

    def test_public_records_are_named_in_api_only(self):
        for record in check_layers.RECORDS:
            line = f"void f(const {record}& record);"
            self.assertEqual(violations("api/a.h", line), 0)
            for layer in ("math", "models", "config", "chain", "calib", "motion"):
                self.assertEqual(violations(f"{layer}/a.h", line), 1)

    def test_names_in_comments_and_other_public_names_pass(self):
        self.assertEqual(violations("chain/a.h", "// KineJoint", "/* KinePose", "KineTool */ int x;"), 0)
        self.assertEqual(violations("chain/a.h", "KineArmConfig c;", "KineJointly j;", "KineResult r;"), 0)

    def test_print_routine_is_out_of_reach_of_silent_layers(self):
        for layer in ("models", "math", "calib"):
            self.assertEqual(violations(f"{layer}/a.cpp", '#include "config/print.h"'), 1)
        for layer in ("config", "chain", "motion", "api"):
            self.assertEqual(violations(f"{layer}/a.cpp", '#include "config/print.h"'), 0)

    def test_only_the_print_routine_includes_what_prints(self):
        self.assertEqual(violations("config/print.cpp", "#include <cstdio>"), 0)
        self.assertEqual(violations("api/a.cpp", "#include <cstdio>"), 1)
        self.assertEqual(violations("math/a.cpp", "#include  <iostream>"), 1)

    def test_only_exports_name_the_instance_of_the_store(self):
        self.assertEqual(violations("api/a.cpp", "Store& s = Library();"), 0)
        self.assertEqual(violations("config/store.cpp", "Store& Library() { return library; }"), 0)
        self.assertEqual(violations("chain/a.cpp", "Store& s = Library();"), 1)

    def test_files_and_includes_outside_the_layers_are_reported(self):
        self.assertEqual(violations("misc/a.cpp", ""), 1)
        self.assertEqual(violations("chain/a.cpp", '#include "records.h"'), 1)
        self.assertEqual(violations("chain/a.cpp", '#include "KineDll.h"', "#include <cmath>"), 0)
        self.assertEqual(violations("math/a.cpp", '#include "KineDll.h"'), 1)


class CheckSymbols(unittest.TestCase):
    def test_names_are_read_without_version(self):
        self.assertEqual(check_symbols.parse_nm("Kine_A T 1000 10\nKine_B@@V1 T 1010 10\n\n"), {"Kine_A", "Kine_B"})

    def test_either_side_is_reported(self):
        self.assertEqual(check_symbols.differences({"a", "b"}, {"a", "b"}), [])
        self.assertEqual(check_symbols.differences({"a", "b"}, {"a"}), ["exported but not listed: b"])
        self.assertEqual(check_symbols.differences({"a"}, {"a", "b"}), ["listed but not exported: b"])


class CheckDynamic(unittest.TestCase):
    TEXT = ("  Type           Offset   VirtAddr           PhysAddr           FileSiz  MemSiz   Flg Align\n"
            "  LOAD           0x001000 0x0000000000001000 0x0000000000001000 0x000165 0x000165 R E 0x1000\n"
            "  GNU_STACK      0x000000 0x0000000000000000 0x0000000000000000 0x000000 0x000000 RW  0x10\n"
            "  GNU_RELRO      0x002df0 0x0000000000003df0 0x0000000000003df0 0x000210 0x000210 R   0x1\n"
            "\n"
            " 0x0000000000000001 (NEEDED)             Shared library: [libm.so.6]\n"
            " 0x0000000000000001 (NEEDED)             Shared library: [libc.so.6]\n"
            " 0x000000000000000e (SONAME)             Library soname: [libX.so.1]\n"
            " 0x000000000000000c (INIT)               0x1000\n"
            " 0x000000000000001e (FLAGS)              BIND_NOW\n"
            " 0x000000006ffffffb (FLAGS_1)            Flags: NOW\n")
    SEGMENTS = [("LOAD", "RE"), ("GNU_STACK", "RW"), ("GNU_RELRO", "R")]
    NEEDED = [("NEEDED", "libm.so.6"), ("NEEDED", "libc.so.6")]
    NOW = [("FLAGS", "BIND_NOW")]

    def test_entries_are_read(self):
        self.assertEqual(check_dynamic.parse_dynamic(self.TEXT),
                         [*self.NEEDED, ("SONAME", "libX.so.1"), ("INIT", "0x1000"), *self.NOW,
                          ("FLAGS_1", "Flags: NOW")])
        self.assertEqual(check_dynamic.parse_segments(self.TEXT), self.SEGMENTS)

    def test_name_and_libraries_are_checked(self):
        self.assertEqual(check_dynamic.name_problems([("SONAME", "libX.so.1")], "libX.so.1"), [])
        self.assertEqual(len(check_dynamic.name_problems([("SONAME", "libX.so")], "libX.so.1")), 1)
        self.assertEqual(len(check_dynamic.name_problems([], "libX.so.1")), 1)
        self.assertEqual(check_dynamic.needed_problems(self.NEEDED), [])
        self.assertEqual(len(check_dynamic.needed_problems([])), 1)
        for library in ("libstdc++.so.6", "libgcc_s.so.1", "libpthread.so.0", "libcurl.so.4", "ld-linux-x86-64.so.2"):
            self.assertEqual(len(check_dynamic.needed_problems([*self.NEEDED, ("NEEDED", library)])), 1)

    def test_segments_are_checked(self):
        problems = check_dynamic.hardening_problems
        self.assertEqual(problems(self.NOW, self.SEGMENTS), [])
        self.assertEqual(problems([("FLAGS_1", "Flags: NOW")], self.SEGMENTS), [])
        self.assertEqual(len(problems([("FLAGS_1", "Flags: NODELETE")], self.SEGMENTS)), 1)
        self.assertEqual(len(problems([], self.SEGMENTS)), 1)
        for tag in ("RPATH", "RUNPATH", "TEXTREL"):
            self.assertEqual(len(problems([*self.NOW, (tag, "x")], self.SEGMENTS)), 1)
        self.assertEqual(len(problems([("FLAGS", "TEXTREL BIND_NOW")], self.SEGMENTS)), 1)
        self.assertEqual(len(problems(self.NOW, self.SEGMENTS[:2])), 1)
        self.assertEqual(len(problems(self.NOW, [self.SEGMENTS[0], self.SEGMENTS[2]])), 1)
        self.assertEqual(len(problems(self.NOW, [*self.SEGMENTS, ("LOAD", "RWE")])), 1)
        self.assertEqual(len(problems(self.NOW, [("GNU_STACK", "RWE"), ("GNU_RELRO", "R")])), 2)

    def test_file_and_links_are_checked(self):
        with tempfile.TemporaryDirectory() as folder:
            library = pathlib.Path(folder) / "libX.so.1.2.3"
            library.touch()
            (library.parent / "libX.so.1").symlink_to(library.name)
            self.assertEqual(len(check_dynamic.link_problems(library, "libX.so.1", "1.2.3")), 1)
            (library.parent / "libX.so").symlink_to("libX.so.1")
            self.assertEqual(check_dynamic.link_problems(library, "libX.so.1", "1.2.3"), [])
            self.assertEqual(check_dynamic.link_problems(library.parent / "libX.so", "libX.so.1", "1.2.3"), [])
            self.assertEqual(len(check_dynamic.link_problems(library, "libX.so.1", "1.2.4")), 1)
            self.assertEqual(len(check_dynamic.link_problems(library, "libX.so.2", "1.2.3")), 2)


class CheckMacros(unittest.TestCase):
    def test_expansion_is_read(self):
        self.assertEqual(check_macros.parse_expansion("int a;\napi<__x(y)> call< __cdecl >\n"), ("__x(y)", "__cdecl"))
        self.assertEqual(check_macros.parse_expansion("api<> call<>\n"), ("", ""))
        self.assertIsNone(check_macros.parse_expansion("int a;\n"))


class CheckWindows(unittest.TestCase):
    CONTROL = "\tcalll\t_CalledByDefault@4\n"

    def test_plain_imported_names_pass(self):
        assembly = self.CONTROL + "\tmovl\t__imp__Kine_A, %ecx\n\tmovl\t__imp__Kine_B, %ecx\n"
        self.assertEqual(check_windows.problems(assembly, ["Kine_A", "Kine_B"]), [])

    def test_other_names_are_reported(self):
        for name in ("__imp__Kine_A@4", "_Kine_A", "__imp_@Kine_A@4"):
            self.assertTrue(check_windows.problems(f"{self.CONTROL}\tmovl\t{name}, %ecx\n", ["Kine_A"]))

    def test_a_caller_whose_default_is_cdecl_tests_nothing(self):
        assembly = "\tcalll\t_CalledByDefault\n\tmovl\t__imp__Kine_A, %ecx\n"
        self.assertEqual(len(check_windows.problems(assembly, ["Kine_A"])), 1)


class CheckAbi(unittest.TestCase):
    def test_only_no_difference_passes(self):
        self.assertEqual(check_abi.verdict(0), "")
        for status in range(1, 16):
            self.assertTrue(check_abi.verdict(status))
        self.assertTrue(check_abi.verdict(-11))

    def test_a_break_is_told_from_an_addition_and_from_an_error(self):
        self.assertIn("Programs built", check_abi.verdict(4 | 8))
        self.assertIn("If nothing but", check_abi.verdict(4))
        self.assertIn("could not", check_abi.verdict(1 | 2))


if __name__ == "__main__":
    unittest.main()
