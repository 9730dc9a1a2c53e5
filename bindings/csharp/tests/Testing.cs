// A small test runner: the public static methods of the classes below are the tests, and a test fails by an exception.
// The program runs the tests of one class, named by its first argument; the second is what header_facts.py has written.

using System;
using System.Collections.Generic;
using System.Globalization;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using Kine;

static class Testing
{
    // Lines of words: see header_facts.py.
    static string[][] facts = { };

    static int Main(string[] arguments)
    {
        facts = File.ReadAllLines(arguments[1]).Select(line => line.Split('\t')).ToArray();
        Type tests = Assembly.GetExecutingAssembly().GetType(arguments[0], true);
        int ran = 0, failed = 0;
        foreach (MethodInfo test in tests.GetMethods(BindingFlags.Public | BindingFlags.Static))
        {
            ++ran;
            try
            {
                test.Invoke(null, new object[] { });
            }
            catch (TargetInvocationException thrown)
            {
                ++failed;
                Console.WriteLine("FAILED {0}.{1}: {2}", tests.Name, test.Name, thrown.InnerException);
            }
        }
        Console.WriteLine("{0}: {1} tests, {2} failed", tests.Name, ran, failed);
        return ran > 0 && failed == 0 ? 0 : 1;
    }

    // The facts of one sort, without its name; never none.
    public static List<string[]> Facts(string sort)
    {
        List<string[]> found = facts.Where(fact => fact[0] == sort).Select(fact => fact.Skip(1).ToArray()).ToList();
        True(found.Count > 0, "facts: " + sort);
        return found;
    }

    public static Type KineType(string name)
    {
        return typeof(KineDll).Assembly.GetType("Kine." + name, true);
    }

    public static void True(bool condition, string what)
    {
        if (!condition) throw new Exception(what);
    }

    public static void Equal<T>(T expected, T actual, string what)
    {
        True(EqualityComparer<T>.Default.Equals(expected, actual),
             string.Format(CultureInfo.InvariantCulture, "{0}: {1} instead of {2}", what, actual, expected));
    }

    public static void Ok(uint code)
    {
        Equal(KineDll.KINE_OK, code, "code");
    }

    public static void Near(double expected, double actual, string what, double tolerance = 1e-9)
    {
        True(Math.Abs(expected - actual) <= tolerance,
             string.Format(CultureInfo.InvariantCulture, "{0}: {1:R} instead of {2:R}", what, actual, expected));
    }

    public static void Near(KineFrame expected, KineFrame actual, string what, double tolerance = 1e-9)
    {
        Near(expected.X, actual.X, what + ".X", tolerance);
        Near(expected.Y, actual.Y, what + ".Y", tolerance);
        Near(expected.Z, actual.Z, what + ".Z", tolerance);
        Near(expected.A, actual.A, what + ".A", tolerance);
        Near(expected.B, actual.B, what + ".B", tolerance);
        Near(expected.C, actual.C, what + ".C", tolerance);
    }

    public static void Near(KineJoint expected, KineJoint actual, string what, double tolerance = 1e-9)
    {
        for (int i = 0; i < KineDoubles8.Length; ++i)
        {
            Near(expected.Axis[i], actual.Axis[i], what + ".Axis " + i, tolerance);
        }
        for (int i = 0; i < KineDoubles6.Length; ++i)
        {
            Near(expected.ExtAxis[i], actual.ExtAxis[i], what + ".ExtAxis " + i, tolerance);
        }
    }

    public static void Equal(KineArmConfig expected, KineArmConfig actual, string what)
    {
        True(SameBits(expected, actual),
             string.Format("{0}: {1} {2} {3} {4} instead of {5} {6} {7} {8}", what, actual.Cfg1, actual.Cfg2,
                           actual.Cfg3, actual.Cfg4, expected.Cfg1, expected.Cfg2, expected.Cfg3, expected.Cfg4));
    }

    public static void Throws<Expected>(Action action, string what) where Expected : Exception
    {
        try
        {
            action();
        }
        catch (Expected)
        {
            return;
        }
        throw new Exception(what + " throws nothing");
    }

    // A record as it lies in memory. Pinning refuses what is not passed as it is.
    public static byte[] Bytes(object record)
    {
        GCHandle pinned = GCHandle.Alloc(record, GCHandleType.Pinned);
        try
        {
            byte[] bytes = new byte[Marshal.SizeOf(record)];
            Marshal.Copy(pinned.AddrOfPinnedObject(), bytes, 0, bytes.Length);
            return bytes;
        }
        finally
        {
            pinned.Free();
        }
    }

    public static bool SameBits(object a, object b)
    {
        return Bytes(a).SequenceEqual(Bytes(b));
    }
}
