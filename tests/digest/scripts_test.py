"""The comparison of digests finds what differs."""

import unittest

import same_digest

TEXT = "Kine_A 0123 7 calls 5 successes\nKine_B 4567 7 calls 6 successes\ndigest 89ab of 14 calls\n"


class SameDigest(unittest.TestCase):
    def test_parts_and_total_are_read(self):
        parts, total = same_digest.parse(TEXT)
        self.assertEqual(parts, {"Kine_A": "0123 7 calls 5 successes", "Kine_B": "4567 7 calls 6 successes"})
        self.assertEqual(total, "digest 89ab of 14 calls")

    def test_the_same_output_has_no_differences(self):
        self.assertEqual(same_digest.differences(same_digest.parse(TEXT), same_digest.parse(TEXT)), [])

    def test_an_export_that_differs_or_is_missing_is_named(self):
        first = same_digest.parse(TEXT)
        self.assertEqual(same_digest.differences(first, same_digest.parse(TEXT.replace("4567", "4568"))), ["Kine_B"])
        without = same_digest.parse(TEXT.replace("Kine_A 0123 7 calls 5 successes\n", ""))
        self.assertEqual(same_digest.differences(first, without), ["Kine_A"])
        self.assertEqual(same_digest.differences(without, first), ["Kine_A"])

    def test_a_total_alone_that_differs_is_a_difference(self):
        other = same_digest.parse(TEXT.replace("89ab", "89ac"))
        self.assertEqual(same_digest.differences(same_digest.parse(TEXT), other), ["the digest of all"])


if __name__ == "__main__":
    unittest.main()
