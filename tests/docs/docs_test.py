"""The checks of the documents find what they are there to find."""

import pathlib
import tempfile
import unittest

import links
import programs


class Blocks(unittest.TestCase):
    def test_program_gets_the_text_block_that_follows(self):
        text = "```c\nint main(void)\n```\nprints\n\n```text\n1\n```\n"
        self.assertEqual([(p.line, p.output) for p in programs.programs_of(text, ["c"])], [(1, "1\n")])

    def test_text_after_the_next_program_is_not_its_output(self):
        text = "```c\nint main(void)\n```\n```cpp\nint main()\n```\n```text\n2\n```\n"
        self.assertEqual([p.output for p in programs.programs_of(text, ["c", "cpp"])], [None, "2\n"])

    def test_other_languages_are_left_alone(self):
        self.assertEqual(programs.programs_of("```sh\nmake\n```\n```c\nint main(void)\n```\n", ["cpp"]), [])

    def test_block_that_repeats_a_file_is_left_alone(self):
        block = "```c\nint main(void)\n```\n"
        self.assertEqual(programs.programs_of("<!-- from: a.c -->\n" + block, ["c"]), [])
        self.assertEqual(len(programs.programs_of("<!-- from: a.c -->\n\n" + block, ["c"])), 1)

    def test_block_without_an_end_is_refused(self):
        with self.assertRaises(ValueError):
            programs.blocks_of("```c\nint main(void)\n")

    def test_block_without_main_is_not_whole(self):
        self.assertFalse(programs.is_whole(programs.Program("c", 1, "KineTool tool;\n", None)))
        self.assertTrue(programs.is_whole(programs.Program("c", 1, "int main(void)\n{\n}\n", None)))


class Output(unittest.TestCase):
    def test_last_digit_and_the_sign_of_zero_may_differ(self):
        self.assertIsNone(programs.output_problem("X 0.000 1.235\n", "X -0.000 1.234"))

    def test_more_than_a_digit_is_found(self):
        self.assertIn("instead of", programs.output_problem("1.235", "1.233"))

    def test_whole_numbers_and_words_must_be_equal(self):
        self.assertIsNotNone(programs.output_problem("729 of 729", "728 of 729"))
        self.assertIsNotNone(programs.output_problem("0x6097", "0x6098"))
        self.assertIsNotNone(programs.output_problem("Cfg 1 0", "Cfg -1 0"))

    def test_missing_and_further_lines_are_found(self):
        self.assertIn("1 lines instead of 2", programs.output_problem("1\n2\n", "1\n"))

    def test_other_number_of_digits_is_found(self):
        self.assertIsNotNone(programs.output_problem("1.0", "1.00"))


class Links(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.root = pathlib.Path(self.folder.name).resolve()
        (self.root / "docs").mkdir()
        self.write("docs/index.md", "# The book\n\n[one](one.md)\n")
        self.write("docs/one.md", "# One: `code` & more\n\n## Twice\n\n## Twice\n")

    def write(self, name, text):
        (self.root / name).write_text(text, encoding="utf-8")

    def problems_of(self, text):
        self.write("README.md", text)
        return links.problems_under(self.root)

    def test_links_that_lead_somewhere_pass(self):
        text = ("[a](docs/one.md) [b](docs/one.md#one-code--more) [c](docs/one.md#twice-1) [d](#here)"
                " <img src=\"docs/one.md\"> [e](https://example.org/x)\n\n# Here\n")
        self.assertEqual(self.problems_of(text), [])

    def test_missing_file_image_and_heading_are_found(self):
        text = "[a](none.md)\n![b](none.svg)\n[c](docs/one.md#thrice)\n<img src=\"none.png\">\n[d](#none)\n"
        self.assertEqual([problem.split(":")[1] for problem in self.problems_of(text)], ["1", "2", "3", "4", "5"])

    def test_wrapped_link_is_found(self):
        self.assertEqual(self.problems_of("see [what\nthere is](none.md)\n"), ["README.md:2: none.md: no such file"])

    def test_code_is_no_link(self):
        self.assertEqual(self.problems_of("`[a](none.md)`\n\n```c\n[a](none.md)\n```\n\n    [a](none.md)\n"), [])

    def test_link_out_of_the_repository_is_found(self):
        self.assertEqual(len(self.problems_of("[a](../)\n")), 1)

    def test_chapter_that_the_index_lacks_is_found(self):
        self.write("docs/two.md", "# Two\n")
        self.assertIn("two.md", self.problems_of("# Title\n")[0])

    def test_built_files_are_left_out(self):
        (self.root / "build").mkdir()
        self.write("build/copy.md", "[a](none.md)\n")
        self.assertEqual(self.problems_of("# Title\n"), [])


if __name__ == "__main__":
    unittest.main()
