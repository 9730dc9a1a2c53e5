// The records lie in memory as the header says, the functions are found in the library, and the codes are the
// documented ones.

using System;
using System.Collections.Generic;
using System.Globalization;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using Kine;

static class LayoutTests
{
    const BindingFlags Everything = BindingFlags.Instance | BindingFlags.Public | BindingFlags.NonPublic;

    static int Number(string text)
    {
        return int.Parse(text, CultureInfo.InvariantCulture);
    }

    static readonly Type[] Arrays =
    {
        typeof(KineDoubles6), typeof(KineDoubles7), typeof(KineDoubles8), typeof(KineFrames6), typeof(KineBytes6),
        typeof(KineShorts3), typeof(KineShorts4), typeof(KineInts14), typeof(KineUInts7),
    };

    public static void every_record_has_the_size_of_the_header()
    {
        foreach (string[] fact in Testing.Facts("size"))
        {
            Testing.Equal(Number(fact[1]), Marshal.SizeOf(Testing.KineType(fact[0])), fact[0]);
        }
    }

    public static void every_field_has_the_offset_of_the_header()
    {
        foreach (string[] fact in Testing.Facts("offset"))
        {
            int offset = (int)Marshal.OffsetOf(Testing.KineType(fact[0]), fact[1]);
            Testing.Equal(Number(fact[2]), offset, fact[0] + "." + fact[1]);
        }
    }

    public static void every_field_is_one_of_the_header()
    {
        List<string[]> offsets = Testing.Facts("offset");
        foreach (string[] fact in Testing.Facts("size"))
        {
            string[] expected = offsets.Where(offset => offset[0] == fact[0]).Select(offset => offset[1]).ToArray();
            string[] present = Testing.KineType(fact[0]).GetFields(Everything).Select(field => field.Name).ToArray();
            Testing.Equal(string.Join(" ", expected), string.Join(" ", present), fact[0]);
        }
    }

    public static void every_field_reaches_to_the_next_one()
    {
        foreach (string[] fact in Testing.Facts("size"))
        {
            Type record = Testing.KineType(fact[0]);
            if (record == typeof(KineKinematicParam)) continue;
            int end = 0;
            foreach (FieldInfo field in record.GetFields(Everything))
            {
                Testing.Equal(end, (int)Marshal.OffsetOf(record, field.Name), fact[0] + "." + field.Name);
                Type stored = field.FieldType.IsEnum ? Enum.GetUnderlyingType(field.FieldType) : field.FieldType;
                end += Marshal.SizeOf(stored);
            }
            Testing.Equal(Number(fact[1]), end, fact[0]);
        }
    }

    // The program lays records out on its own; where it does so as the library does, a call gets a plain address.
    public static void records_lie_side_by_side_as_the_library_sees_them()
    {
        IEnumerable<Type> records = Testing.Facts("size").Select(fact => Testing.KineType(fact[0]));
        foreach (Type record in records.Concat(Arrays).Concat(new[] { typeof(KineVector), typeof(KineInchSteps) }))
        {
            Array two = Array.CreateInstance(record, 2);
            GCHandle pinned = GCHandle.Alloc(two, GCHandleType.Pinned);
            long distance = (long)Marshal.UnsafeAddrOfPinnedArrayElement(two, 1) -
                            (long)Marshal.UnsafeAddrOfPinnedArrayElement(two, 0);
            pinned.Free();
            Testing.Equal(Marshal.SizeOf(record), distance, record.Name);
        }
    }

    public static void three_numbers_lie_in_the_order_of_their_use()
    {
        byte[] expected = new[] { 1.0, 2.0, 3.0 }.SelectMany(BitConverter.GetBytes).ToArray();
        Testing.True(expected.SequenceEqual(Testing.Bytes(new KineVector(1.0, 2.0, 3.0))), "KineVector");
        Testing.True(expected.SequenceEqual(Testing.Bytes(new KineInchSteps(1.0, 2.0, 3.0))), "KineInchSteps");
    }

    static object Filled(Type element)
    {
        if (element == typeof(KineFrame)) return new KineFrame(-1.5, -1.5, -1.5, -1.5, -1.5, -1.5);
        return Convert.ChangeType(77, element, CultureInfo.InvariantCulture);
    }

    public static void an_element_lies_where_its_index_says_and_nothing_else_changes()
    {
        foreach (Type array in Arrays)
        {
            PropertyInfo item = array.GetProperty("Item");
            int length = (int)array.GetField("Length").GetValue(null);
            int size = Marshal.SizeOf(item.PropertyType);
            Testing.Equal(Marshal.SizeOf(array), length * size, array.Name);
            object value = Filled(item.PropertyType);
            for (int i = 0; i < length; ++i)
            {
                object boxed = Activator.CreateInstance(array);
                item.SetValue(boxed, value, new object[] { i });
                byte[] expected = new byte[length * size];
                Testing.Bytes(value).CopyTo(expected, i * size);
                Testing.True(expected.SequenceEqual(Testing.Bytes(boxed)), array.Name + " element " + i);
                Testing.Equal(value, item.GetValue(boxed, new object[] { i }), array.Name + " element " + i);
            }
        }
    }

    public static void an_index_outside_an_array_throws()
    {
        foreach (Type array in Arrays)
        {
            PropertyInfo item = array.GetProperty("Item");
            int length = (int)array.GetField("Length").GetValue(null);
            object boxed = Activator.CreateInstance(array);
            foreach (int index in new[] { -1, length, int.MinValue, int.MaxValue })
            {
                foreach (MethodInfo access in new[] { item.GetGetMethod(), item.GetSetMethod() })
                {
                    object[] arguments = access.ReturnType == typeof(void)
                        ? new[] { index, Filled(item.PropertyType) } : new object[] { index };
                    try
                    {
                        access.Invoke(boxed, arguments);
                    }
                    catch (TargetInvocationException thrown)
                    {
                        if (thrown.InnerException is IndexOutOfRangeException) continue;
                    }
                    throw new Exception(array.Name + " takes index " + index);
                }
            }
        }
    }

    public static void both_views_of_the_parameters_lie_at_the_same_place()
    {
        KineKinematicParam param = new KineFourAxisParam { Link1Length = 1.0, Link2Length = 2.0, Link2TiltY = 3.0 };
        Testing.Equal(1.0, param.SixAxis.a1, "offset 0");
        Testing.Equal(2.0, param.SixAxis.a2, "offset 8");
        Testing.Equal(3.0, param.SixAxis.alpha4, "offset 88");
        Testing.Equal(0.0, param.SixAxis.alpha5, "offset 96");
    }
}

static class EntryPointTests
{
    [DllImport("KineDll", ExactSpelling = true)]
    static extern uint Kine_NoSuchFunction();

    [DllImport("KineDllThatIsNotThere", ExactSpelling = true)]
    static extern uint Kine_CalcZVec();

    static MethodInfo Declaration(Type type, string name)
    {
        return type.GetMethod(name, BindingFlags.Public | BindingFlags.NonPublic | BindingFlags.Static);
    }

    public static void every_function_of_the_header_is_found_in_the_library()
    {
        Type native = typeof(KineDll).GetNestedType("Native", BindingFlags.NonPublic);
        foreach (string[] fact in Testing.Facts("function"))
        {
            MethodInfo declaration = Declaration(native, fact[0]);
            Testing.True(declaration != null, fact[0] + " is not declared");
            Testing.Equal(fact[1], declaration.GetParameters().Length.ToString(CultureInfo.InvariantCulture), fact[0]);
            Marshal.Prelink(declaration);
        }
    }

    public static void a_function_or_library_that_is_not_there_is_told()
    {
        Testing.Throws<EntryPointNotFoundException>(
            () => Marshal.Prelink(Declaration(typeof(EntryPointTests), "Kine_NoSuchFunction")), "no such function");
        Testing.Throws<DllNotFoundException>(
            () => Marshal.Prelink(Declaration(typeof(EntryPointTests), "Kine_CalcZVec")), "no such library");
    }
}

static class CodeTests
{
    public static void every_constant_has_the_number_of_the_header()
    {
        string[] arms = { "KINE_ARM_FOUR_AXIS", "KINE_ARM_SIX_AXIS", "KINE_ARM_FOUR_AXIS_4110" };
        KineArm[] values = { KineArm.FourAxis, KineArm.SixAxis, KineArm.FourAxis4110 };
        foreach (string[] fact in Testing.Facts("constant"))
        {
            uint expected = uint.Parse(fact[1], CultureInfo.InvariantCulture);
            int arm = Array.IndexOf(arms, fact[0]);
            uint actual = arm >= 0 ? (uint)values[arm] : (uint)typeof(KineDll).GetField(fact[0]).GetRawConstantValue();
            Testing.Equal(expected, actual, fact[0]);
        }
    }

    public static void every_code_has_its_documented_name_cause_and_remedy()
    {
        foreach (string[] fact in Testing.Facts("code"))
        {
            uint code = uint.Parse(fact[0], CultureInfo.InvariantCulture);
            KineCode meaning = KineDll.Describe(code);
            Testing.Equal(code, meaning.Code, fact[1]);
            Testing.Equal(fact[1], meaning.Name, fact[1]);
            Testing.Equal(fact[2], meaning.Cause, fact[1]);
            Testing.Equal(fact[3], meaning.Remedy, fact[1]);
        }
    }

    public static void every_code_but_success_throws_with_its_meaning()
    {
        foreach (string[] fact in Testing.Facts("code"))
        {
            uint code = uint.Parse(fact[0], CultureInfo.InvariantCulture);
            try
            {
                KineDll.Check(code);
                Testing.Equal(0u, code, "thrown for");
            }
            catch (KineException thrown)
            {
                Testing.True(code != 0u, "success throws");
                Testing.Equal(code, thrown.Code, fact[1]);
                Testing.Equal(fact[1], thrown.Name, fact[1]);
                Testing.Equal(fact[2], thrown.Cause, fact[1]);
                Testing.Equal(fact[3], thrown.Remedy, fact[1]);
                Testing.Equal(string.Format("{0} (0x{1:X4}): {2}. {3}", fact[1], code, fact[2], fact[3]),
                              thrown.Message, fact[1]);
            }
        }
    }

    public static void a_number_that_is_no_code_is_named_by_itself()
    {
        Testing.Equal("0x1234", KineDll.Describe(0x1234).Name, "name");
        Testing.Throws<KineException>(() => KineDll.Check(0x1234), "0x1234");
    }
}
