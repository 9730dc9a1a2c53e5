"""The checking scripts find what they look for."""

import unittest

import check_dynamic
import check_globals
import check_layers
import check_symbols


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


class CheckGlobals(unittest.TestCase):
    def test_writable_objects_of_the_namespace_are_found(self):
        symbols = check_globals.parse_nm(
            "_ZN4kine12_GLOBAL__N_17libraryE d 1000 10\n_ZN4kine5kNameE r 2000 8\n_ZN4kine3fooEv t 3000 8\n"
            "_ZZN4kine3fooEvE5count b 4000 4\n_ZTVN4kine8ArmModelE d 5000 8\nother B 6000 8\n")
        self.assertEqual(check_globals.writable_globals(symbols),
                         {"_ZN4kine12_GLOBAL__N_17libraryE", "_ZZN4kine3fooEvE5count"})


class CheckDynamic(unittest.TestCase):
    TEXT = (" 0x0001 (NEEDED)             Shared library: [libm.so.6]\n"
            " 0x0001 (NEEDED)             Shared library: [libc.so.6]\n"
            " 0x000e (SONAME)             Library soname: [libX.so.1]\n"
            " 0x000c (INIT)               0x1000\n")

    def test_entries_are_read(self):
        self.assertEqual(check_dynamic.parse_dynamic(self.TEXT), (["libX.so.1"], ["libm.so.6", "libc.so.6"]))

    def test_name_and_libraries_are_checked(self):
        good = ["libm.so.6", "libc.so.6", "ld-linux-x86-64.so.2"]
        self.assertEqual(check_dynamic.problems(["libX.so.1"], good, "libX.so.1"), [])
        self.assertEqual(len(check_dynamic.problems(["libX.so"], good, "libX.so.1")), 1)
        self.assertEqual(len(check_dynamic.problems([], good, "libX.so.1")), 1)
        self.assertEqual(len(check_dynamic.problems(["libX.so.1"], [], "libX.so.1")), 1)
        for library in ("libstdc++.so.6", "libgcc_s.so.1", "libpthread.so.0", "libcurl.so.4"):
            self.assertEqual(len(check_dynamic.problems(["libX.so.1"], good + [library], "libX.so.1")), 1)


if __name__ == "__main__":
    unittest.main()
