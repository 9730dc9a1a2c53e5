"""The check of writable data finds what it looks for."""

import unittest

import check_writable

SECTIONS = """
  [17] .init_array       INIT_ARRAY      0000000000037cc8 036cc8 000008 08  WA  0   0  8
  [19] .data.rel.ro      PROGBITS        0000000000037cd8 036cd8 000108 00  WA  0   0  8
  [15] .rodata           PROGBITS        0000000000033000 033000 0004d9 00   A  0   0 32
  [22] .got.plt          PROGBITS        0000000000037fe8 036fe8 000078 08  WA  0   0  8
  [23] .data             PROGBITS        0000000000038060 037060 000d58 00  WA  0   0 32
  [24] .bss              NOBITS          0000000000038db8 037db8 000008 00  WA  0   0  1
"""
RELRO = "  GNU_RELRO      0x036cc8 0x0000000000037cc8 0x0000000000037cc8 0x000338 0x000338 R   0x1\n"
SYMBOLS = """
     5: 0000000000038db8     1 OBJECT  LOCAL  DEFAULT   24 completed.0
     6: 0000000000038060     0 OBJECT  LOCAL  DEFAULT   23 __dso_handle
     7: 0000000000038080  3384 OBJECT  LOCAL  DEFAULT   23 _ZN4kine12_GLOBAL__N_17libraryE
     8: 0000000000037cd8    88 OBJECT  LOCAL  DEFAULT   19 _ZTVN4kine17FourAxis4110ModelE
     9: 0000000000033010   256 OBJECT  LOCAL  DEFAULT   15 _ZN4kineL5tableE
    10: 0000000000006000   120 FUNC    LOCAL  DEFAULT   12 _ZN4kine3fooEv
    11: 0000000000038db8     0 OBJECT  LOCAL  DEFAULT   23 __TMC_END__
"""
STATIC_LOCAL = "    12: 0000000000038dbc     4 OBJECT  LOCAL  DEFAULT   24 _ZZN4kine3fooEvE5count\n"


def problems(sections=SECTIONS, relro=RELRO, symbols=SYMBOLS):
    parsed = check_writable.parse_sections(sections)
    return check_writable.problems(parsed, check_writable.parse_relro(relro),
                                   check_writable.parse_symbols(symbols, parsed))


class CheckWritable(unittest.TestCase):
    def test_sections_are_read(self):
        section = check_writable.parse_sections(SECTIONS)[4]
        self.assertEqual(section, check_writable.Section(".data", 0x38060, 0xD58, 32, "WA"))
        self.assertEqual(check_writable.parse_sections(SECTIONS)[2].flags, "A")

    def test_the_store_and_what_the_runtime_brings_pass(self):
        self.assertEqual(problems(), [])

    def test_the_store_of_a_compiler_that_marks_it_as_local_passes(self):
        self.assertEqual(problems(symbols=SYMBOLS.replace("_17libraryE", "_1L7libraryE")), [])

    def test_any_other_object_is_named(self):
        self.assertEqual(problems(symbols=SYMBOLS + STATIC_LOCAL), [".bss: _ZZN4kine3fooEvE5count, 4 bytes"])

    def test_a_second_store_or_none_is_reported(self):
        without = "\n".join(line for line in SYMBOLS.splitlines() if "library" not in line)
        self.assertEqual(len(problems(symbols=without)), 2)
        twice = SYMBOLS + SYMBOLS.splitlines()[3].replace("     7:", "    13:").replace("38080", "38081")
        self.assertIn("2 stores", problems(symbols=twice))

    def test_bytes_without_a_name_are_reported(self):
        smaller = SYMBOLS.replace("  3384 OBJECT", "  3300 OBJECT")
        self.assertEqual(problems(symbols=smaller), [".data: 108 bytes without a name"])

    def test_data_of_threads_is_reported(self):
        tls = "  [18] .tbss             NOBITS          0000000000037cd0 036cd0 000010 00 WAT  0   0  8\n"
        self.assertEqual(problems(sections=SECTIONS + tls), [".tbss: 16 bytes for every thread"])

    def test_tables_outside_the_part_made_read_only_are_reported(self):
        self.assertIn(".data.rel.ro: _ZTVN4kine17FourAxis4110ModelE, 88 bytes", problems(relro=""))


if __name__ == "__main__":
    unittest.main()
