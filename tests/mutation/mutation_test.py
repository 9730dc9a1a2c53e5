"""The mutation testing itself: which changes are found, chosen, named and counted."""

import pathlib
import random
import sys
import tempfile
import unittest

import choice
import ledger
import places
import workshop
from cpp_text import closing, code_of, statement_end
from ledger import EQUIVALENT, KILLED, SURVIVED, BROKEN, Key, Result


def mutants(text, kind=None):
    """All the texts that a piece of code is changed into."""
    return {places.apply_change(text, change) for place in places.changes_of(text) for change in place
            if kind in (None, change.kind)}


class Code(unittest.TestCase):
    def test_what_is_no_code_is_blank_and_nothing_moves(self):
        text = ('#include "a1.h"\n// 1 < 2\n/* 3\n4 */ int x = 5;\nstatic_assert(sizeof(A) ==\n 6);\nusing B = 7;\n'
                'template <class T, int N>\nstd::array<double, 8> y;  // 9\nconst char* s = "10 // 11";\n')
        code = code_of(text)
        self.assertEqual(len(code), len(text))
        self.assertEqual(code.count("\n"), text.count("\n"))
        self.assertEqual([word for word in code.split() if any(c.isdigit() for c in word)], ["5;"])

    def test_the_other_branch_of_a_condition_of_the_preprocessor_is_blank(self):
        self.assertEqual(code_of("#if A\nx;\n#else\ny;\n#endif\nz;\n").split(), ["x;", "z;"])

    def test_quotes_in_comments_and_escaped_ones_do_not_end_strings(self):
        self.assertEqual(code_of("x; // don't\ny;").split(), ["x;", "y;"])
        self.assertEqual(code_of(r'f("a\"b", 1);'), 'f("    ", 1);')

    def test_brackets_and_statements_end_where_they_close(self):
        self.assertEqual(closing("f(a[1], (b))c", 1), 11)
        self.assertEqual(closing("(a", 0), -1)
        self.assertEqual(statement_end("a = {1; 2}; b", 0), 11)
        self.assertEqual(statement_end("a }; b;", 0), -1)


class Changes(unittest.TestCase):
    def test_numbers_change_in_the_last_written_digit_and_by_half(self):
        self.assertEqual(mutants("x = 0.25;", "number"), {"x = 0.26;", "x = 0.24;", "x = 0.375;"})
        self.assertEqual(mutants("x = 2e-5;", "number"), {"x = 3e-5;", "x = 1e-5;", f"x = {2e-5 * 1.5!r};"})
        self.assertEqual(mutants("x = 1.0;", "number"), {"x = 1.1;", "x = 0.9;", "x = 1.5;", "x = 0.0;"})
        self.assertEqual(mutants("x = 0.0;", "number"), {"x = 0.1;", "x = 1.0;"})

    def test_another_spelling_of_the_same_number_is_no_change(self):
        # Neighbours of this double are 2^-53 = 1.1e-16 apart: the 18th decimal is far below half of that.
        self.assertEqual(mutants("x = 0.500000000000000000;", "number"), {"x = 0.75;"})

    def test_integers_and_indices_change_by_one_and_stay_natural(self):
        self.assertEqual(mutants("x[0] = 3U;", "integer"), {"x[1] = 3U;", "x[0] = 4U;", "x[0] = 2U;"})

    def test_comparisons_take_the_bound_in_or_out_or_turn_round(self):
        self.assertEqual(mutants("return a < b;", "comparison"), {"return a <= b;", "return a > b;"})
        self.assertEqual(mutants("return a >= b;", "comparison"), {"return a > b;", "return a <= b;"})
        self.assertEqual(mutants("return a == b;", "comparison"), {"return a != b;"})

    def test_operators_between_operands_change_and_those_of_types_do_not(self):
        self.assertEqual(mutants("x = a + b && c;", "operator"), {"x = a - b && c;", "x = a + b || c;"})
        self.assertEqual(mutants("x += a * b;", "operator"), {"x -= a * b;", "x += a / b;"})
        self.assertEqual(mutants("const A* f(B& b, C&& c);", "operator"), set())

    def test_signs_and_negations_are_left_out(self):
        self.assertEqual(mutants("f(-a, b - c);", "sign"), {"f(a, b - c);"})
        self.assertEqual(mutants("return -a;", "sign"), {"return a;"})
        self.assertEqual(mutants("x = !a != b;", "negation"), {"x = a != b;"})

    def test_conditions_are_negated_unless_they_declare_or_are_negated_already(self):
        self.assertEqual(mutants("if (a || f(b)) c;", "negation"), {"if (!(a || f(b))) c;"})
        self.assertEqual(mutants("if (const A* a = f()) c;", "negation"), set())
        self.assertEqual(mutants("if (!a) c;", "negation"), {"if (a) c;"})

    def test_operands_arguments_and_choices_are_swapped(self):
        self.assertEqual(mutants("x = a - b;", "swap"), {"x = b - a;"})
        self.assertEqual(mutants("x = f(a, b[1]);", "swap"), {"x = f(b[1], a);"})
        self.assertEqual(mutants("x = a - std::f(b);", "swap"), set())
        self.assertEqual(mutants("x = f(a, a) / (t * t);", "swap"), set())
        self.assertEqual(mutants("x = a ? b : -c;", "swap"), {"x = a ? -c : b;"})
        self.assertEqual(mutants("x = aFromB * bFromC;", "swap"), {"x = bFromC * aFromB;"})

    def test_only_transforms_are_swapped_in_products(self):
        self.assertEqual(mutants("x = p * q;", "swap"), set())

    def test_fields_and_symbols_change_into_names_that_the_file_has(self):
        self.assertEqual(mutants("r.x = r.z;", "name"), {"r.y = r.z;", "r.x = r.x;"})
        self.assertEqual(mutants("f(s1, c1);", "name"), {"f(c1, c1);", "f(s1, s1);"})
        self.assertEqual(mutants("f(q1);", "name"), set())
        self.assertEqual(mutants("f(q1 + q2);", "name"), {"f(q2 + q2);", "f(q1 + q1);"})

    def test_calls_are_left_out_or_become_their_counterparts(self):
        self.assertEqual(mutants("x = std::fabs(y);", "name"), {"x = (y);"})
        self.assertEqual(mutants("v = Rotate(m, w);", "name"), {"v = RotateBack(m, w);"})

    def test_codes_change_but_labels_do_not(self):
        self.assertEqual(mutants("return KINE_ERR_LOAD;", "result"), {"return KINE_OK;", "return KINE_ERR_POSE;"})
        self.assertEqual(mutants("return KINE_OK;", "result"), {"return KINE_ERR_POSE;"})
        self.assertEqual(mutants("case KINE_ERR_LOAD: break;", "result"), set())

    def test_codes_of_calls_are_ignored(self):
        self.assertIn("static_cast<void>(f(a));", mutants("if (const KineResult code = f(a)) return code;", "result"))

    def test_statements_are_removed_but_declarations_and_returns_are_not(self):
        text = "{\n    int a = 1;\n    b.c = f(\n        2);\n    g(b);\n    return a;\n}\n"
        self.assertEqual(mutants(text, "removal"), {text.replace("b.c = f(\n        2);", ";"),
                                                    text.replace("g(b);", ";")})
        self.assertEqual(mutants("{\n    A(const A&) = default;\n}\n", "removal"), set())

    def test_letters_of_texts_change_and_conversions_do_not(self):
        self.assertEqual(mutants(r'f("a%d;\n");', "text"), {r'f("A%d;\n");', r'f("a%d\n");'})

    def test_every_change_of_the_library_changes_it(self):
        root = pathlib.Path(__file__).resolve().parents[2]
        for path in sorted((root / "src").rglob("*.[hc]*")):
            text = path.read_text(encoding="utf-8")
            changes = [change for place in places.changes_of(text) for change in place]
            self.assertEqual(len(changes), len({change[:3] for change in changes}), path)
            for change in changes:
                self.assertNotEqual(text[change.begin:change.end], change.new, path)


class Choice(unittest.TestCase):
    def test_small_files_get_three_or_all_and_others_a_share_by_size(self):
        sizes = {"a": 1000, "b": 500, "c": 10, "d": 2}
        quotas = choice.quotas(sizes, 100)
        self.assertEqual((quotas["c"], quotas["d"]), (3, 2))
        self.assertTrue(100 <= sum(quotas.values()) <= 102)
        self.assertAlmostEqual(quotas["a"], 2 * quotas["b"], delta=1)

    def test_more_than_there_is_takes_all(self):
        self.assertEqual(choice.quotas({"a": 5, "b": 1}, 100), {"a": 5, "b": 1})

    def test_a_seed_repeats_the_choice_whatever_the_other_files_hold(self):
        text = "x = a + b - 3;\n" * 20
        one = choice.choose({"a": places.changes_of(text)}, 10, 7)
        two = choice.choose({"b": places.changes_of("y = 1 < 2;"), "a": places.changes_of(text)}, 10, 7)
        self.assertEqual(one["a"][1], two["a"][1])
        self.assertNotEqual(one["a"][1], choice.choose({"a": places.changes_of(text)}, 10, 8)["a"][1])

    def test_every_change_comes_once_and_each_place_before_any_place_again(self):
        found = places.changes_of("x = a < 3;\nreturn !b;\n")
        order = choice.ordered(found, random.Random(1))
        self.assertEqual(sorted(order), sorted(change for place in found for change in place))
        first = [(change.begin, change.end, change.kind) for change in order[:len(found)]]
        self.assertEqual(len(set(first)), len(found))


class Ledger(unittest.TestCase):
    TEXT = "a = 1;\n\nb = 2;\n  a  =  1;\n"

    def key(self, begin, end, new):
        return ledger.key_of("f.cpp", self.TEXT, places.Change(begin, end, new, "integer"))

    def test_a_name_holds_both_lines_and_which_of_equal_ones_it_is(self):
        self.assertEqual(self.key(4, 5, "0"), Key("f.cpp #1", "a = 1;", "a = 0;"))
        self.assertEqual(self.key(12, 13, "3"), Key("f.cpp", "b = 2;", "b = 3;"))
        last = self.TEXT.rindex("1")
        self.assertEqual(self.key(last, last + 1, "0"), Key("f.cpp #2", "a = 1;", "a = 0;"))

    def test_a_reason_holds_for_all_pairs_of_its_block(self):
        parsed = ledger.parse_equivalent("# Opening.\n\nf.cpp #2\n- a = 1;\n+ a = 0;\n- b;\n+ c;\n= Nobody\n  asks.\n")
        self.assertEqual(parsed, {Key("f.cpp #2", "a = 1;", "a = 0;"): "Nobody asks.",
                                  Key("f.cpp #2", "b;", "c;"): "Nobody asks."})

    def test_a_block_without_reason_or_with_half_a_pair_is_refused(self):
        for block in ("f.cpp\n- a\n+ b\n", "f.cpp\n- a\n= why\n", "f.cpp\n+ a\n- b\n= why\n", "f.cpp\n= why\n"):
            with self.assertRaises(ValueError):
                ledger.parse_equivalent(block)

    def test_entries_whose_line_is_gone_or_not_the_only_one_are_stale(self):
        good = [Key("f.cpp", "b = 2;", ""), Key("f.cpp #2", "a = 1;", "")]
        bad = [Key("f.cpp", "a = 1;", ""), Key("f.cpp #3", "a = 1;", ""), Key("f.cpp #1", "b = 2;", ""),
               Key("f.cpp", "c", ""), Key("g.cpp", "b = 2;", "")]
        read = lambda name: self.TEXT if name == "f.cpp" else None
        self.assertEqual(ledger.stale(dict.fromkeys(good + bad, "why"), read), bad)

    def test_a_record_is_read_as_it_was_written_and_the_last_line_counts(self):
        first = Result("f.cpp", "1", "a", "b", "sign", SURVIVED, "")
        last = first._replace(state=KILLED, by="math_tests")
        text = f"{ledger.to_line(first)}\n{ledger.to_line(last)}\nhalf a li"
        self.assertEqual(ledger.parse_record(text), {Key("f.cpp", "a", "b"): last})

    def test_the_score_leaves_out_what_is_equivalent_or_did_not_compile(self):
        results = [Result("f.cpp", "1", str(i), "", "sign", state, "")
                   for i, state in enumerate([KILLED] * 3 + [SURVIVED, EQUIVALENT, BROKEN])]
        last = ledger.report(results).splitlines()[-1].split()
        self.assertEqual(last, ["total", "5", "3", "1", "1", "75.0", "%"])

    def test_the_list_of_the_library_is_in_order(self):
        root = pathlib.Path(__file__).resolve().parents[2]
        reasons = ledger.parse_equivalent((root / "tests/mutation/equivalent.txt").read_text(encoding="utf-8"))
        self.assertEqual(ledger.stale(reasons, lambda name: (root / name).read_text(encoding="utf-8")), [])


class Workshop(unittest.TestCase):
    def test_a_command_is_redirected(self):
        command = workshop.Command(["c++", "a.o", "b.o", "-o", "p", "-lm"], "p", ["a.o", "b.o"])
        self.assertEqual(workshop.redirected(command, "q", {"b.o": "new.o"}), ["c++", "a.o", "new.o", "-o", "q", "-lm"])

    def test_dependencies_are_read(self):
        text = "a.o: #deps 2, deps mtime 1 (VALID)\n    x.cpp\n    ../y.h\n\nb.o: #deps 0, deps mtime 2 (VALID)\n"
        self.assertEqual(workshop.parse_deps(text), {"a.o": {"x.cpp", "../y.h"}, "b.o": set()})

    def test_failures_crashes_and_endless_loops_are_no_success(self):
        with tempfile.TemporaryDirectory() as folder:
            run = lambda code, limit: workshop.succeeds([sys.executable, "-c", code], folder, limit=limit)
            self.assertTrue(run("pass", 60.0))
            self.assertFalse(run("raise SystemExit(3)", 60.0))
            self.assertFalse(run("import os; os.abort()", 60.0))
            self.assertFalse(run("while True: pass", 0.5))


if __name__ == "__main__":
    unittest.main()
