"""Tests of check_objects.py on listings as nm and objdump print them."""

import unittest

import check_objects

LISTING = """
0000000000000000 <cost_a_c>:
   0:\tpush   %rbx
   1:\tcall   6 <cost_a_c+0x6>
   6:\tret
   7:\tnopw   0x0(%rax,%rax,1)

0000000000000010 <cost_a_cpp>:
  10:\tpush   %rbx
  11:\tret
  12:\txchg   %ax,%ax
"""


class Needs(unittest.TestCase):
    def test_exports_and_plain_copies_are_all_it_may_need(self):
        self.assertEqual(check_objects.needs("  U Kine_A\n  U memset\n", {"Kine_A"}), [])

    def test_an_allocation_and_a_missing_export_are_told(self):
        self.assertEqual(check_objects.needs("  U _Znwm\n", {"Kine_A"}), ["needs _Znwm", "no wrapper calls Kine_A"])


class Costs(unittest.TestCase):
    def test_instructions_are_counted_without_padding(self):
        self.assertEqual(check_objects.instructions(LISTING), {"cost_a_c": 3, "cost_a_cpp": 2})

    def test_a_longer_wrapper_and_a_missing_partner_are_told(self):
        self.assertEqual(check_objects.costs({"cost_a_c": 10, "cost_a_cpp": 15}), [])
        self.assertEqual(check_objects.costs({"cost_a_c": 10, "cost_a_cpp": 16}),
                         ["cost_a: 16 instructions with the wrapper, 10 without"])
        self.assertEqual(check_objects.costs({"cost_a_c": 10}), ["cost_a: no pair"])
        self.assertEqual(check_objects.costs({}), ["no functions to compare"])


if __name__ == "__main__":
    unittest.main()
