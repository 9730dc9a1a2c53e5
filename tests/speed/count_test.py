"""The counting script reads callgrind and leaves out what both runs share."""

import unittest

import count_instructions


class CountInstructions(unittest.TestCase):
    def test_the_total_is_read_from_what_callgrind_prints(self):
        output = "==7== Events    : Ir\n==7== Collected : 7829034\n==7== \n==7== I   refs:      7,829,034\n"
        self.assertEqual(count_instructions.collected(output), 7829034)

    def test_start_and_set_up_drop_out_of_the_count(self):
        start, call, calls = 123456, 789, 500
        fewer, more = start + call * calls, start + call * 2 * calls
        self.assertEqual(count_instructions.per_call(fewer, more, calls), call)

    def test_a_count_at_its_ceiling_passes_and_one_above_does_not(self):
        ceiling = count_instructions.CEILINGS["inverse_six_axis"].must
        self.assertFalse(count_instructions.is_above("inverse_six_axis", ceiling))
        self.assertTrue(count_instructions.is_above("inverse_six_axis", ceiling + 1))


if __name__ == "__main__":
    unittest.main()
