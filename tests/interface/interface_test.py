"""Tests of the scripts that keep the repeated parts of the interface in step."""

import pathlib
import re
import sys
import unittest

import check_exports

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "interface"))
import generate  # noqa: E402  (found by the line above)

CODE = {"code": "0x6000", "name": "KINE_ERR_A", "causes": ["one", "two of Kine_B"], "remedy": "Do it."}
OK = {"code": "0x0000", "name": "KINE_OK", "causes": ["success"], "remedy": "Nothing."}
HEADER = "#define KINE_OK 0x0000u  /**< success */\n#define KINE_ERR_A 0x6000u\n"


class Exports(unittest.TestCase):
    def test_functions_of_a_header_are_found_across_lines(self):
        header = ("KINE_API KineResult KINE_CALL Kine_A(const KinePose* pose,\n                    double x);\n"
                  "KINE_API int32_t KINE_CALL B_Check(void);\n/** KINE_API of no function */\n")
        self.assertEqual(check_exports.declared(header), ["Kine_A", "B_Check"])

    def test_a_name_on_one_side_only_is_told(self):
        self.assertEqual(check_exports.differences(["A", "B"], ["B", "C"]),
                         ["declared but not listed: C", "listed but not declared: A"])

    def test_a_list_out_of_order_is_told(self):
        self.assertEqual(len(check_exports.differences(["B", "A"], ["A", "B"])), 1)
        self.assertEqual(len(check_exports.differences(["A", "A"], ["A"])), 1)
        self.assertEqual(check_exports.differences(["A", "B"], ["B", "A"]), [])


class Codes(unittest.TestCase):
    def test_agreeing_header_and_data_have_no_contradiction(self):
        self.assertEqual(generate.contradictions(HEADER, [OK, CODE]), [])

    def test_another_value_a_missing_and_a_surplus_code_are_told(self):
        other = dict(CODE, code="0x6001")
        surplus = dict(CODE, name="KINE_ERR_C")
        self.assertEqual(generate.contradictions(HEADER, [OK, other]),
                         ["KINE_ERR_A: 0x6000 in the header, 0x6001 in the data"])
        self.assertEqual(generate.contradictions(HEADER, [OK]),
                         ["KINE_ERR_A: 0x6000 in the header, nothing in the data"])
        self.assertEqual(generate.contradictions(HEADER, [OK, CODE, surplus]), ["KINE_ERR_C: not in the header"])

    def test_a_code_without_cause_or_remedy_is_told(self):
        for lacking in (dict(CODE, causes=[]), dict(CODE, causes=[""]), dict(CODE, remedy="")):
            self.assertEqual(generate.contradictions(HEADER, [OK, lacking]), ["KINE_ERR_A: no cause or no remedy"])

    def test_text_outside_the_marks_stays(self):
        text = "before\n// codes: begin\nold\n// codes: end\nafter\n"
        self.assertEqual(generate.with_codes(text, ["new"]), "before\n// codes: begin\nnew\n// codes: end\nafter\n")
        for broken in ("no marks\n", "codes: end\ncodes: begin\n"):
            with self.assertRaises(ValueError):
                generate.with_codes(broken, ["new"])

    def test_markdown_joins_causes_and_marks_names(self):
        self.assertEqual(list(generate.markdown([CODE]))[-1],
                         "| `0x6000` | `KINE_ERR_A` | one; two of `Kine_B` | Do it. |")

    def test_python_members_are_python_and_keep_long_texts_whole(self):
        long = dict(CODE, remedy="Do it. " * 40 + "Done.")
        members = {}
        exec("class Codes:\n" + "\n".join(generate.python([OK, long])), members)
        self.assertEqual(members["Codes"].KINE_OK, (0, ("success",), "Nothing."))
        self.assertEqual(members["Codes"].KINE_ERR_A, (0x6000, ("one", "two of Kine_B"), long["remedy"]))
        self.assertLessEqual(max(map(len, generate.python([OK, long]))), 120)

    def test_csharp_texts_are_wrapped_and_complete(self):
        long = dict(CODE, causes=["a < b & \"c\"", "word " * 40 + "end"])
        rows = list(generate.csharp([OK, long]))
        self.assertLessEqual(max(map(len, rows)), 120)
        self.assertIn("        /// <summary>success</summary>", rows)
        self.assertIn("        public const uint KINE_ERR_A = 0x6000;", rows)
        comment = " ".join(row.split("/// ")[1] for row in rows if "/// " in row)
        self.assertIn("a &lt; b &amp; \"c\"; " + "word " * 40 + "end", comment)
        table = "\n".join(rows[rows.index("") + 1:])
        strings = re.sub(r'" \+\n *"', "", table)
        self.assertIn(generate.quoted("; ".join(long["causes"])), strings)

    def test_cpp_literals_side_by_side_are_the_text(self):
        cause, remedy = "word " * 60 + "end", "Do \"it\" " + "and so on " * 30 + "again."
        lines = list(generate.cpp([dict(CODE, causes=[cause, "two"], remedy=remedy)]))
        self.assertLessEqual(max(map(len, lines)), 110)
        # Python, too, takes literals side by side as one.
        row = eval("(" + "\n".join(lines).strip("{} ,\n").replace("0x6000u", "0x6000") + ")")
        self.assertEqual(row, (0x6000, "KINE_ERR_A", cause + "; two", remedy))


if __name__ == "__main__":
    unittest.main()
