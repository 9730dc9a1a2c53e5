"""The checking scripts find what they look for."""

import os
import pathlib
import subprocess
import tempfile
import unittest
import unittest.mock

import check_layout
import check_packages
import check_quotes
import check_subproject
import consume
import layout


def write(folder, *names):
    for name in names:
        path = pathlib.Path(folder, name)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(name, encoding="utf-8")


class Layout(unittest.TestCase):
    def test_files_links_and_empty_folders_are_found(self):
        with tempfile.TemporaryDirectory() as folder:
            write(folder, "a", "b/c")
            pathlib.Path(folder, "empty").mkdir()
            pathlib.Path(folder, "b/link").symlink_to("nowhere")
            self.assertEqual(layout.found(folder), {"a", "b/c", "b/link", "empty"})
            self.assertEqual(layout.found(folder + "/missing"), set())

    def test_files_on_one_side_only_are_named(self):
        self.assertEqual(layout.differences({"a", "b"}, {"b", "c"}), ["not expected: a", "missing: c"])
        self.assertEqual(layout.differences({"a"}, {"a"}), [])

    def test_pages_and_programs_of_the_source_tree_are_documentation(self):
        with tempfile.TemporaryDirectory() as folder:
            write(folder, "docs/a.md", "docs/figures/b.svg", "docs/figures/make.py", "examples/c/c.c",
                  "examples/CMakeLists.txt", "bindings/csharp/KineDll.cs", "bindings/csharp/tests/t.cs",
                  "bindings/python/README.md", "bindings/python/kinedll/a.py")
            self.assertEqual(layout.documentation(folder, "d"),
                             {"d/README.md", "d/CHANGELOG.md", "d/docs/a.md", "d/docs/figures/b.svg", "d/examples/c/c.c",
                              "d/examples/CMakeLists.txt", "d/bindings/csharp/KineDll.cs", "d/bindings/python/README.md"})

    def test_components_share_no_file(self):
        with tempfile.TemporaryDirectory() as folder:
            write(folder, "docs/a.md", "examples/c/c.c")
            parts = layout.components(folder)
            self.assertEqual(sum(map(len, parts.values())), len(layout.everything(folder)))
            debs = layout.debian(folder, "any-linux")
            self.assertFalse(debs["libkinedll1"] & debs["libkinedll-dev"])


class CheckLayout(unittest.TestCase):
    def test_a_file_that_names_a_place_is_found(self):
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "a").write_bytes(b"\0\xff/home/me/build/x\0")
            pathlib.Path(folder, "b").write_bytes(b"/home/you")
            self.assertEqual(check_layout.naming(folder, (pathlib.Path("/home/me/build"),)),
                             ["a names /home/me/build"])

    def test_sections_of_debug_information_are_found(self):
        text = "  [ 7] .text   PROGBITS  0000 01\n  [27] .debug_info       PROGBITS         0000\n"
        self.assertEqual(check_layout.debug_sections(text), [".debug_info"])


class Consume(unittest.TestCase):
    def test_the_folder_of_libraries_is_put_into_a_script(self):
        text = 'A="$KINEDLL/lib"\nB="$KINEDLL/lib/c" $KINEDLL/libexec $KINEDLL/include'
        self.assertEqual(consume.script_for(text, "lib64"),
                         'A="$KINEDLL/lib64"\nB="$KINEDLL/lib64/c" $KINEDLL/libexec $KINEDLL/include')
        self.assertEqual(consume.script_for(text, "lib"), text)

    def test_what_leads_to_a_library_is_dropped_from_the_environment(self):
        with unittest.mock.patch.dict(os.environ, {"CPATH": "x", "KEPT": "y"}):
            there = consume.environment(MORE="z")
        self.assertNotIn("CPATH", there)
        self.assertEqual((there["KEPT"], there["MORE"]), ("y", "z"))


class CheckSubproject(unittest.TestCase):
    def test_flags_of_a_source_are_those_beside_input_and_output(self):
        entry = {"file": "/p/cell.c", "command": "cc -I/s/include -Werror -o d/cell.dir/cell.c.o -c /p/cell.c"}
        other = {"file": "/s/a.cpp", "command": "c++ -O3 -c /s/a.cpp"}
        self.assertEqual(check_subproject.own_flags([entry, other], "cell.c"), ["-I/s/include", "-Werror"])
        self.assertEqual(check_subproject.own_flags([], "cell.c"), ["0 commands for cell.c"])

    def test_sources_compiled_otherwise_or_on_one_side_only_are_named(self):
        def compiled(file, flag):
            return {"file": file, "command": f"c++ {flag} -o {flag}.o -c {file}"}
        alone = [compiled("a", "-O3"), compiled("b", "-O3")]
        self.assertEqual(check_subproject.compiled_otherwise(alone, alone), [])
        for other in ([compiled("a", "-O0"), compiled("b", "-O3")], alone[:1], alone + [compiled("c", "-O3")]):
            self.assertEqual(len(check_subproject.compiled_otherwise(other, alone)), 1)


class ReuseObject(unittest.TestCase):
    def test_the_object_file_of_a_source_is_copied_and_anything_else_compiled(self):
        with tempfile.TemporaryDirectory() as folder:
            write(folder, "objects/src/a.cpp.o")
            command = ["sh", check_subproject.LAUNCHER, "/s", "objects", "sh", "-c", "echo ran", "-o", "x.o", "-c"]
            for source, said, made in (("/s/src/a.cpp", "", True), ("/s/src/b.cpp", "ran\n", False)):
                with self.subTest(source=source):
                    pathlib.Path(folder, "x.o").unlink(missing_ok=True)
                    result = subprocess.run([*command, source], cwd=folder, check=True, capture_output=True, text=True)
                    self.assertEqual(result.stdout, said)
                    self.assertEqual(pathlib.Path(folder, "x.o").exists(), made)


CONTENTS = """drwxr-xr-x root/root         0 2026-11-21 22:48 ./usr/
-rw-r--r-- root/root    230632 2026-11-21 22:48 ./usr/lib/libKineDll.so.1.0.0
lrwxrwxrwx root/root         0 2026-11-21 22:48 ./usr/lib/libKineDll.so.1 -> libKineDll.so.1.0.0
"""
CONTROL = """Package: libkinedll1
Depends: libc6 (>= 2.14)
Version: 1.0.0-1
Section: libs
Priority: optional
Architecture: amd64
Maintainer: KineDll developers <kinedll@example.org>
Installed-Size: 475
Description: kinematics of industrial robot arms
 First line
 .
 Last line.
"""


class CheckPackages(unittest.TestCase):
    EXPECTED = {"usr/lib/libKineDll.so.1", "usr/lib/libKineDll.so.1.0.0"}

    def content_problems(self, text):
        return check_packages.content_problems("p", check_packages.parse_contents(text), self.EXPECTED)

    def test_contents_as_expected_pass(self):
        self.assertEqual(self.content_problems(CONTENTS), [])

    def test_other_files_owners_modes_and_links_do_not_pass(self):
        for old, new in (("libKineDll.so.1.0.0\nl", "other\nl"), ("root/root    2", "me/me 2"),
                         ("-rw-r--r--", "-rw-rw-r--"), ("-> libKineDll.so.1.0.0", "-> libKineDll.so.2")):
            with self.subTest(new=new):
                self.assertIn(old, CONTENTS)
                self.assertTrue(self.content_problems(CONTENTS.replace(old, new)))

    def test_fields_as_expected_pass(self):
        self.assertEqual(check_packages.field_problems("libkinedll1", check_packages.parse_fields(CONTROL)), [])

    def test_other_missing_and_surplus_fields_do_not_pass(self):
        for old, new in (("2.14", "x"), ("Section: libs\n", ""), ("475", "0"), (" .\n", " .\n  verbatim\n"),
                         ("Priority: optional", "Priority: extra"), ("Version:", "Essential: yes\nVersion:")):
            with self.subTest(new=new):
                self.assertIn(old, CONTROL)
                fields = check_packages.parse_fields(CONTROL.replace(old, new))
                self.assertEqual(len(check_packages.field_problems("libkinedll1", fields)), 1)


PAGE = """Text
<!-- from: a.c -->
```c
int a;
int b;
```
"""


class CheckQuotes(unittest.TestCase):
    def problems(self, file, page=PAGE):
        return len(check_quotes.problems(page, {"a.c": file}.__getitem__))

    def test_a_piece_in_whole_lines_passes_also_when_less_indented(self):
        self.assertEqual(self.problems("int a;\nint b;\n"), 0)
        self.assertEqual(self.problems("{\n    int a;\n    int b;\n}\n"), 0)

    def test_other_lines_do_not_pass(self):
        for file in ("int a;\n", "int a;\n\nint b;\n", "int a;\nint b; // c\n", "int a;\n    int b;\n", ""):
            with self.subTest(file=file):
                self.assertEqual(self.problems(file), 1)

    def test_code_from_no_file_does_not_pass_and_a_command_does(self):
        self.assertEqual(self.problems("", "```c\nint a;\n```\n"), 1)
        self.assertEqual(self.problems("", "```sh\nls\n```\n"), 0)


if __name__ == "__main__":
    unittest.main()
