"""The report of ./coverage finds what is not reached, and what is listed wrongly."""

import unittest

import report


def gcovr(*lines, file="src/a.cpp"):
    """gcovr's JSON of one file; each line is (number, count, counts of its branches)."""
    return {"files": [{"file": file, "lines": [
        {"line_number": number, "count": count, "branches": [{"count": taken} for taken in branches]}
        for number, count, branches in lines]}]}


SOURCES = {"src/a.cpp": ["int f()", "    if (a) b();", "    c();", "    if (a) b();"]}


def problems(lines, entries=()):
    return report.judge(report.read_counts(gcovr(*lines)), SOURCES, list(entries))


class Judge(unittest.TestCase):
    def test_everything_reached_is_no_problem(self):
        self.assertEqual(problems([(1, 5, []), (2, 5, [2, 3]), (3, 1, [])]), [])

    def test_line_that_never_ran_is_reported_with_its_number(self):
        self.assertEqual(problems([(3, 0, [])]), ["not reached: src/a.cpp:3: never run: c();"])

    def test_branch_that_was_never_taken_is_reported(self):
        self.assertEqual(problems([(2, 7, [7, 0])]),
                         ["not reached: src/a.cpp:2: never took branch 2 of 2: if (a) b();"])

    def test_listed_line_passes(self):
        self.assertEqual(problems([(2, 7, [7, 0])], [("src/a.cpp", "if (a) b();")]), [])

    def test_listed_line_that_is_reached_is_reported(self):
        self.assertEqual(problems([(2, 7, [6, 1])], [("src/a.cpp", "if (a) b();")]),
                         ["listed, but reached or not there: src/a.cpp: if (a) b();"])

    def test_listed_line_that_does_not_exist_is_reported(self):
        self.assertEqual(len(problems([(1, 1, [])], [("src/a.cpp", "d();")])), 1)
        self.assertEqual(len(problems([(3, 0, [])], [("src/b.cpp", "c();")])), 2)

    def test_one_entry_stands_for_one_of_two_equal_lines(self):
        lines = [(2, 7, [7, 0]), (4, 7, [7, 0])]
        entry = ("src/a.cpp", "if (a) b();")
        self.assertEqual(problems(lines, [entry]),
                         ["not reached: src/a.cpp:4: never took branch 2 of 2: if (a) b();"])
        self.assertEqual(problems(lines, [entry, entry]), [])

    def test_lines_without_code_are_left_out(self):
        document = gcovr((3, 0, []))
        document["files"][0]["lines"][0]["gcovr/noncode"] = True
        self.assertEqual(report.read_counts(document), {"src/a.cpp": []})

    def test_source_file_without_counts_is_reported(self):
        counted = report.read_counts(gcovr((1, 1, [])))
        self.assertEqual(report.without_counts(counted, ["src/a.cpp"]), [])
        self.assertEqual(report.without_counts(counted, ["src/b.cpp", "src/a.cpp"]), ["not measured: src/b.cpp"])


class ReadList(unittest.TestCase):
    def test_entries_are_read_and_comments_and_reasons_left_out(self):
        text = "# src/c.cpp: x;\n\nsrc/a.cpp:  if (a) b(); \n    Why.\n    More.\n\nsrc/b.cpp: y: z;\n\tWhy.\n"
        self.assertEqual(report.read_list(text), [("src/a.cpp", "if (a) b();"), ("src/b.cpp", "y: z;")])

    def test_list_without_entries_is_empty(self):
        self.assertEqual(report.read_list("# nothing\n"), [])

    def test_entry_without_reason_and_reason_without_entry_are_refused(self):
        for text in ("src/a.cpp: x;\n", "src/a.cpp: x;\nsrc/a.cpp: y;\n    Why.\n", "    Why.\n",
                     "src/a.cpp\n    Why.\n", "src/a.cpp: \n    Why.\n"):
            with self.subTest(text=text), self.assertRaises(ValueError):
                report.read_list(text)


class Table(unittest.TestCase):
    def test_complete_files_are_only_in_the_sum(self):
        files = report.read_counts(gcovr((1, 1, [1, 2])))
        files["src/b.cpp"] = [report.Line(1, 1, (1, 0)), report.Line(2, 0, ())]
        rows = report.table(files)
        self.assertEqual([row.split()[0] for row in rows], ["file", "src/b.cpp", "all"])
        self.assertIn("1 of 2 (50.0 %)", rows[1])
        self.assertIn("2 of 3 (66.6 %)", rows[2])
        self.assertIn("3 of 4 (75.0 %)", rows[2])

    def test_share_is_100_only_for_all(self):
        self.assertEqual(report.share(9999, 10000), "9999 of 10000 (99.9 %)")
        self.assertEqual(report.share(10000, 10000), "10000 of 10000 (100.0 %)")
        self.assertEqual(report.share(0, 0), "0 of 0 (100.0 %)")


if __name__ == "__main__":
    unittest.main()
