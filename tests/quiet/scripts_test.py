"""The depth of the stack is added up over the calls that there are, and nothing unknown is passed over."""

import pathlib
import tempfile
import unittest

from stack_depth import (Call, Function, Graph, addresses_taken, check, name_called_at, overriders, parse)

def node(title, shown, frame, objects=0):
    return f'node: {{ title: "{title}" label: "{shown}\\nsrc/a.cpp:1:2\\n{frame}\\n{objects} dynamic objects" }}\n'


def function(title, frame, shown="", dynamic=False):
    return Function(title, shown or f"void {title}()", frame, dynamic)


def depths(functions, calls, allowances=None, **more):
    graph = Graph(functions, calls, allowances or {}, **more)
    return check(graph, ["Kine_A"], 1000)


class Parse(unittest.TestCase):
    def test_frames_and_calls_are_read(self):
        text = ('graph: { title: "a.cpp"\n' + node("Kine_A", "int Kine_A(int)", "48 bytes (static)") +
                'node: { title: "sin" label: "double sin(double)\\n<built-in>" shape : ellipse }\n'
                'edge: { sourcename: "Kine_A" targetname: "sin" label: "src/a.cpp:7:9" }\n'
                'edge: { sourcename: "Kine_A" targetname: "memcpy" }\n}\n')
        functions, calls = parse(text)
        self.assertEqual(functions, [Function("Kine_A", "int Kine_A(int)", 48, False)])
        self.assertEqual(calls, [Call("Kine_A", "sin", "src/a.cpp:7:9"), Call("Kine_A", "memcpy", "")])

    def test_a_frame_is_dynamic_unless_it_is_bounded(self):
        for kind, objects, dynamic in (("static", 0, False), ("dynamic,bounded", 0, False), ("dynamic", 0, True),
                                       ("static", 1, True)):
            text = node("f", "void f()", f"48 bytes ({kind})", objects)
            self.assertEqual(parse(text)[0][0].dynamic, dynamic, kind)


class Names(unittest.TestCase):
    def test_the_name_before_the_bracket_is_the_one_called(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "a.cpp"
            path.write_text("int x;\n    pose = model->Forward(joints, Other(x));\n", encoding="utf-8")
            self.assertEqual(name_called_at(f"{path}:2:26"), "Forward")
            self.assertEqual(name_called_at(f"{path}:2:40"), "Other")
            self.assertIsNone(name_called_at(f"{path}:1:3"))

    def test_overriders_are_the_virtual_functions_of_the_name_in_any_class(self):
        functions = [function("a", 0, "virtual int kine::A::Get(int) const"),
                     function("b", 0, "virtual int kine::B::Get()"),
                     function("c", 0, "virtual int kine::A::GetMore()"), function("d", 0, "int kine::Get(int)")]
        self.assertEqual(overriders(functions, "Get"), {"a", "b"})

    def test_addresses_are_taken_by_instructions_and_by_tables(self):
        disassembly = "  10:\tlea    0x20(%rip),%rdx        # 40 <_Zloaded>\n  20:\tcall   50 <_Zcalled>\n"
        symbols = ("     5: 0000000000000060    12 FUNC    LOCAL  DEFAULT   12 _Zlisted\n"
                   "     6: 0000000000000070    12 FUNC    LOCAL  DEFAULT   12 _Zother\n")
        relocations = "0000000000037d50  0000000000000008 R_X86_64_RELATIVE                         60\n"
        self.assertEqual(addresses_taken(disassembly, symbols, relocations), {"_Zloaded", "_Zlisted"})


class Depth(unittest.TestCase):
    def test_the_deepest_path_counts(self):
        functions = [function("Kine_A", 100), function("f", 10), function("g", 200), function("h", 50)]
        calls = [Call("Kine_A", "f", ""), Call("Kine_A", "g", ""), Call("f", "h", ""), Call("g", "sin", "")]
        found, problems = depths(functions, calls, {"sin": 64})
        self.assertEqual(found, [(364, ("Kine_A", "g", "sin"), "Kine_A")])
        self.assertEqual(problems, [])

    def test_the_limit_itself_passes(self):
        for frame, count in ((1000, 0), (1001, 1)):
            self.assertEqual(len(depths([function("Kine_A", frame)], [])[1]), count)

    def test_a_virtual_call_may_reach_every_overrider(self):
        functions = [function("Kine_A", 1), function("x", 10, "virtual void X::Go()"),
                     function("y", 30, "virtual void Y::Go()")]
        calls = [Call("Kine_A", "__indirect_call", "here")]
        found, problems = depths(functions, calls, called_at=lambda place: "Go")
        self.assertEqual((found[0][0], problems), (31, []))

    def test_a_call_through_a_pointer_may_reach_every_function_whose_address_is_taken(self):
        functions = [function("Kine_A", 1), function("src/a.cpp:x", 10), function("y", 30), function("z", 50)]
        calls = [Call("Kine_A", "__indirect_call", "here")]
        found, problems = depths(functions, calls, taken={"x", "y"}, called_at=lambda place: "solve")
        self.assertEqual((found[0][0], problems), (31, []))

    def test_a_pointer_to_nothing_known_is_reported(self):
        calls = [Call("Kine_A", "__indirect_call", "here")]
        self.assertEqual(len(depths([function("Kine_A", 1)], calls, called_at=lambda place: "solve")[1]), 1)

    def test_recursion_is_reported(self):
        functions = [function("Kine_A", 1), function("f", 2), function("g", 3)]
        ring = [Call("Kine_A", "f", ""), Call("f", "g", ""), Call("g", "f", "")]
        self.assertIn("calls itself: f -> g -> f", depths(functions, ring)[1])
        self.assertIn("calls itself: f -> f", depths(functions, [ring[0], Call("f", "f", "")])[1])

    def test_a_function_that_is_not_known_is_reported(self):
        self.assertEqual(len(depths([function("Kine_A", 1)], [Call("Kine_A", "malloc", "")], {"sin": 1})[1]), 1)

    def test_a_frame_without_a_bound_is_reported(self):
        self.assertEqual(len(depths([function("Kine_A", 1, dynamic=True)], [])[1]), 1)

    def test_a_missing_export_is_reported(self):
        self.assertEqual(len(check(Graph([function("Kine_A", 1)], [], {}), ["Kine_A", "Kine_B"], 1000)[1]), 1)


if __name__ == "__main__":
    unittest.main()
