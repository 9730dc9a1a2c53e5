"""The script that checks the DLL finds what it looks for."""

import unittest

import check_dll

TEXT = """
KineDll.dll:     file format pei-x86-64

Characteristics 0x222e
\texecutable
\tDLL

DllCharacteristics\t00000160
\t\t\t\t\tHIGH_ENTROPY_VA
\t\t\t\t\tDYNAMIC_BASE
\t\t\t\t\tNX_COMPAT
SizeOfStackReserve\t0000000000200000
Entry 5 000000000003f000 000000ac Base Relocation Directory [.reloc]
Entry 6 0000000000000000 00000000 Debug Directory

\tDLL Name: KERNEL32.dll
\tvma:  Hint/Ord Member-Name Bound-To
\t3b240\t  283  DeleteCriticalSection

\tDLL Name: msvcrt.dll
\tvma:  Hint/Ord Member-Name Bound-To
\t3b34c\t  903  acos

The Export Tables (interpreted .edata section contents)

Name \t\t\t\t000000000003a1e0 KineDll.dll
Ordinal Base \t\t\t1

Export Address Table -- Ordinal Base 1
\t[   0] +base[   1] 13b0 Export RVA
\t[   1] +base[   2] 13c0 Export RVA

[Ordinal/Name Pointer] Table
\t[   0] Kine_A
\t[   1] Kine_B

The Function Table (interpreted .pdata section contents)
\t[   2] Kine_C
"""


def problems(old="", new="", listed=("Kine_A", "Kine_B"), bits=64):
    """What is wrong with the text once one part of it is another."""
    assert old in TEXT
    return check_dll.problems(TEXT.replace(old, new) if old else TEXT, list(listed), bits)


class CheckDll(unittest.TestCase):
    def test_a_dll_as_it_should_be_passes(self):
        self.assertEqual(problems(), [])

    def test_what_objdump_shows_is_read(self):
        self.assertEqual(check_dll.exports(TEXT), ["Kine_A", "Kine_B"])
        self.assertEqual(check_dll.imports(TEXT), ["KERNEL32.dll", "msvcrt.dll"])
        self.assertEqual(check_dll.flags(TEXT), {"HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"})

    def test_the_form_of_a_later_objdump_is_read(self):
        text = TEXT.replace("[   0] Kine_A", "[   0] +base[   1]  0000 Kine_A")
        self.assertEqual(check_dll.exports(text.replace("[   1] Kine_B", "[   1] +base[   2]  0001 Kine_B")),
                         ["Kine_A", "Kine_B"])

    def test_nothing_readable_is_a_fault(self):
        self.assertGreater(len(check_dll.problems("", ["Kine_A"], 64)), 5)

    def test_another_processor_is_reported(self):
        self.assertEqual(len(problems("pei-x86-64", "pei-i386")), 1)
        self.assertEqual(problems("pei-x86-64", "pei-i386", bits=32), [])
        self.assertEqual(len(problems(bits=32)), 1)

    def test_another_name_of_its_own_is_reported(self):
        self.assertEqual(len(problems("1e0 KineDll.dll", "1e0 libKineDll.dll")), 1)

    def test_other_exports_are_reported(self):
        self.assertEqual(problems(listed=["Kine_A"]), ["exported but not listed: Kine_B"])
        self.assertEqual(problems(listed=["Kine_A", "Kine_B", "Kine_C"]), ["listed but not exported: Kine_C"])
        for decorated in ("Kine_B@8", "_Kine_B"):
            self.assertEqual(len(problems("Kine_B", decorated)), 2)

    def test_other_libraries_are_reported(self):
        for library in ("libwinpthread-1.dll", "libgcc_s_seh-1.dll", "libstdc++-6.dll", "USER32.dll"):
            self.assertEqual(problems("msvcrt.dll", library), [f"it needs {library}"])

    def test_missing_flags_and_relocations_are_reported(self):
        for flag in check_dll.FLAGS[64]:
            self.assertEqual(problems(f"\t\t\t\t\t{flag}\n"), [f"without {flag}"])
        self.assertEqual(len(problems("000000ac Base", "00000000 Base")), 1)
        self.assertEqual(len(problems("Entry 5", "Entry 4")), 1)


if __name__ == "__main__":
    unittest.main()
