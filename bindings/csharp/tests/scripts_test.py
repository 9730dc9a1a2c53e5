"""The scripts that compare KineDll.cs with KineDll.h find what they look for."""

import unittest

import check_declarations
import extract_snippet
import header_facts

HEADER = """
#define KINE_OK 0x0000u        /**< success */
#define KINE_ERR_A 0x6001u     /**< a */
#define KINE_ARM_SIX_AXIS 6u   /**< six */
#define KINE_ASSERT_SIZE(type, size) nothing

/** A frame. */
typedef struct KineFrame
{
    double X; /**< mm; a comment with KINE_ERR_A and double Z; */
    double Y;
} KineFrame;

/** A record. */
typedef struct KineThing
{
    int32_t Number;
    uint8_t Reserved[7];
    KineFrame AxisFrame[6];
} KineThing;

/**
 * Changes a thing.
 *
 * Codes: KINE_ERR_A.
 */
KINE_API KineResult KINE_CALL Kine_Change(uint32_t kind, const KineFrame* frame,
                                          KineThing* out);

/** Measures. */
KINE_API int32_t KINE_CALL Kine_Measure(const KineFrame* frame, double* size);

KINE_ASSERT_SIZE(KineFrame, 16);
KINE_ASSERT_OFFSET(KineFrame, X, 0);
KINE_ASSERT_OFFSET(KineFrame, Y, 8);
"""

SOURCE = """
    [StructLayout(LayoutKind.Sequential)]
    public struct KineFrame
    {
        /// <summary>mm</summary>
        public double X;
        /// <summary>mm</summary>
        public double Y;

        public KineFrame(double x)
        {
            double z;
        }
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct KineThing
    {
        public int Number;
        readonly KineReserved7 Reserved;
        public KineFrames6 AxisFrame;
    }

        /// <summary>Changes a thing.</summary>
        /// <returns>KINE_ERR_A</returns>
        public static uint Kine_Change(KineArm kind, KineFrame frame,
            out KineThing result)
        {
            return Native.Kine_Change(kind, ref frame,
                out result);
        }

        /// <summary>Measures.</summary>
        public static int Kine_Measure(KineFrame frame, out double size)
        {
            return Native.Kine_Measure(ref frame, out size);
        }

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_Change(KineArm kind, ref KineFrame frame,
                out KineThing result);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern int Kine_Measure(ref KineFrame frame, out double size);
"""


class HeaderFacts(unittest.TestCase):
    def test_functions_are_read_across_lines_with_the_codes_of_their_own_comment(self):
        found = header_facts.functions(HEADER)
        self.assertEqual(list(found), ["Kine_Change", "Kine_Measure"])
        self.assertEqual(found["Kine_Change"],
                         ("KineResult", [("uint32_t", "kind"), ("const KineFrame*", "frame"), ("KineThing*", "out")],
                          {"KINE_ERR_A"}))
        self.assertEqual(found["Kine_Measure"].codes, set())

    def test_records_are_read_without_what_comments_say(self):
        self.assertEqual(header_facts.records(HEADER)["KineFrame"], [("double", "X", 1), ("double", "Y", 1)])
        self.assertEqual(header_facts.records(HEADER)["KineThing"],
                         [("int32_t", "Number", 1), ("uint8_t", "Reserved", 7), ("KineFrame", "AxisFrame", 6)])

    def test_layout_and_numbers_are_read(self):
        self.assertEqual(header_facts.layout(HEADER),
                         ({"KineFrame": 16}, {("KineFrame", "X"): 0, ("KineFrame", "Y"): 8}))
        self.assertEqual(header_facts.constants(HEADER), {"KINE_OK": 0, "KINE_ERR_A": 0x6001, "KINE_ARM_SIX_AXIS": 6})

    def test_every_fact_becomes_a_line(self):
        code = {"code": "0x6001", "name": "KINE_ERR_A", "causes": ["one", "two"], "remedy": "Do it."}
        found = list(header_facts.lines(HEADER, [code]))
        for line in (("size", "KineFrame", 16), ("offset", "KineFrame", "Y", 8), ("function", "Kine_Change", 3),
                     ("constant", "KINE_ERR_A", 0x6001), ("code", 0x6001, "KINE_ERR_A", "one; two", "Do it.")):
            self.assertIn(line, found)
        self.assertEqual(len(found), 9)


class CheckDeclarations(unittest.TestCase):
    def one_difference(self, old, new, told):
        self.assertIn(old, SOURCE)
        found = check_declarations.differences(HEADER, SOURCE.replace(old, new, 1))
        self.assertEqual(len(found), 1, found)
        self.assertIn(told, found[0])

    def test_the_same_declarations_pass(self):
        self.assertEqual(check_declarations.differences(HEADER, SOURCE), [])

    def test_a_function_on_one_side_only_is_told(self):
        for old, new, told in (
                ("extern int Kine_Measure", "extern int Kine_Weigh", "imported"),
                ("public static int Kine_Measure", "public static int Kine_Weigh", "offered")):
            self.assertEqual(check_declarations.differences(HEADER, SOURCE.replace(old, new)),
                             ["Kine_Measure: only in the header", f"Kine_Weigh: only {told}"])

    def test_another_result_is_told(self):
        self.one_difference("extern int Kine_Measure", "extern uint Kine_Measure", "Kine_Measure: returns int, uint")
        self.one_difference("public static int Kine_Measure", "public static uint Kine_Measure",
                            "Kine_Measure: returns uint, int")

    def test_another_parameter_is_told(self):
        self.one_difference("extern uint Kine_Change(KineArm kind, ref KineFrame",
                            "extern uint Kine_Change(KineArm kind, KineFrame", "Kine_Change: imported with")
        self.one_difference("extern int Kine_Measure(ref KineFrame frame, out double size)",
                            "extern int Kine_Measure(ref KineFrame frame)", "Kine_Measure: imported with")
        found = check_declarations.differences(HEADER, SOURCE.replace("out double size", "out float size"))
        self.assertEqual(len(found), 1)
        self.assertIn("Kine_Measure: offered with", found[0])

    def test_a_call_with_other_arguments_is_told(self):
        self.one_difference("Native.Kine_Measure(ref frame, out size)", "Native.Kine_Measure(ref size, out frame)",
                            "Kine_Measure: return Native.Kine_Measure(ref size, out frame);")
        self.one_difference("Native.Kine_Measure(", "Native.Kine_Change(", "Kine_Measure: return Native.Kine_Change(")

    def test_another_way_of_calling_is_told(self):
        self.one_difference("CallingConvention = Cdecl, ", "", "Kine_Change: imported as")

    def test_a_code_on_one_side_only_is_told(self):
        self.one_difference("<returns>KINE_ERR_A</returns>", "<returns>nothing</returns>", "does not name KINE_ERR_A")
        self.one_difference("Measures.", "KINE_ERR_A", "Kine_Measure: names KINE_ERR_A")

    def test_another_field_is_told(self):
        self.one_difference("public double Y;", "public float Y;", "KineFrame: ")
        self.one_difference("public int Number;", "public uint Number;", "KineThing: ")
        self.one_difference("KineReserved7 Reserved", "KineReserved5 Reserved", "KineThing: ")
        self.one_difference("KineFrames6 AxisFrame", "KineFrames5 AxisFrame", "KineThing: ")
        self.one_difference("        readonly KineReserved7 Reserved;\n", "", "KineThing: ")

    def test_another_layout_is_told(self):
        self.one_difference("LayoutKind.Sequential", "LayoutKind.Auto", "KineFrame: laid out as LayoutKind.Auto")


class ExtractSnippet(unittest.TestCase):
    TEXT = "# A\n```c\nint a;\n```\n\n```csharp\nint b;\n\nint c;\n```\n```csharp\nint d;\n```\n"

    def test_the_first_block_of_the_language_is_taken(self):
        self.assertEqual(extract_snippet.snippet(self.TEXT, "csharp"), "int b;\n\nint c;\n")
        self.assertEqual(extract_snippet.snippet(self.TEXT, "c"), "int a;\n")

    def test_no_block_of_the_language_is_an_error(self):
        for text in ("", "csharp", "```csharp\nint b;\n"):
            with self.assertRaises(ValueError):
                extract_snippet.snippet(text, "csharp")


if __name__ == "__main__":
    unittest.main()
