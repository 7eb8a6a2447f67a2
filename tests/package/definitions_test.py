#!/usr/bin/env python3
"""The check of definitions finds names with two of them, and only these."""
import contextlib
import importlib.util
import io
import os
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "check-definitions.py")

spec = importlib.util.spec_from_file_location("check_definitions", SCRIPT)
check_definitions = importlib.util.module_from_spec(spec)
spec.loader.exec_module(check_definitions)


class Definitions(unittest.TestCase):
    def problems(self, first, second, where=("import/a.h", "scene/b.h")):
        with tempfile.TemporaryDirectory() as root:
            for name, text in zip(where, (first, second)):
                os.makedirs(os.path.join(root, os.path.dirname(name)), exist_ok=True)
                with open(os.path.join(root, name), "w", encoding="utf-8") as stream:
                    stream.write(text)
            out = io.StringIO()
            with contextlib.redirect_stdout(out):
                status = check_definitions.main(root)
            lines = out.getvalue().splitlines()[:-1]
            self.assertEqual(status, 1 if lines else 0)
            return lines

    def test_types(self):
        long = "namespace kvo {\n\nstruct IdRange\n{\n    long first, last;\n};\n}\n"
        short = "namespace kvo {\nstruct IdRange\n{\n    int first, last;\n};\n}\n"
        self.assertEqual(self.problems(long, short), ["scene/b.h:2: kvo::IdRange is defined in import/a.h:3, too"])
        for text in ("class KVO_EXPORT Box final : public A<int>\n{\n};\n", "enum class Box : char\n{\n    A\n};\n",
                     "template <class T, int n> struct Box {\n};\n", "union Box { int a; };\n"):
            self.assertEqual(len(self.problems(text, "struct Box\n{\n};\n")), 1, text)

    def test_functions(self):
        for text in ("inline bool isBlank(char c)\n{\n    return c == ' ';\n}\n", "int size(const A& a, int b = 2) { }\n",
                     "template <class T> void put(std::vector<T>& to, T value)\n{\n}\n", "void A::put() const {\n}\n"):
            self.assertEqual(len(self.problems(text, text)), 1, text)

    def test_names_of_parameters_do_not_matter(self):
        self.assertEqual(len(self.problems("inline int f(int a) {}\n", "inline int f(int number = 3) {}\n")), 1)

    def test_overloads(self):
        self.assertEqual(self.problems("inline int f(int a) {}\n", "inline int f(long a) {}\n"), [])
        self.assertEqual(self.problems("template <> struct Of<int> {\n};\n", "template <> struct Of<long> {\n};\n"), [])

    def test_what_others_cannot_name(self):
        for text in ("namespace {\nstruct A\n{\n};\n}\n", "namespace kvo {\nnamespace {\nvoid f() {\n}\n}\n}\n",
                     "static int f() {\n}\n", "int main() {\n}\n", "struct A;\nvoid f();\n", "// struct A {\n// };\n",
                     "const char* const text = \"struct A {\";\n", "/*\nstruct A {\n*/\n", "#define A struct B {\n",
                     "void g(int) {\n    struct A {\n    };\n}\n"):
            other = text.replace("void g(int)", "void g(long)")
            self.assertEqual(self.problems(text, other), [], text)

    def test_other_namespaces(self):
        self.assertEqual(self.problems("namespace a {\nstruct A {\n};\n}\n", "namespace b {\nstruct A {\n};\n}\n"), [])
        self.assertEqual(len(self.problems("namespace a {\nnamespace b {\nstruct A {\n};\n}\n}\n",
                                           "namespace a::b {\nstruct A {\n};\n}\n")), 1)

    def test_tests(self):
        where = ("import/a.h", "tests/import/b.cpp")
        self.assertEqual(len(self.problems("struct A {\n};\n", "struct A {\n};\n", where)), 1)
        self.assertEqual(self.problems("void f() {\n}\n", "void f() {\n}\n", where), [], "a reader of the test's own")
        self.assertEqual(self.problems("struct A {\n};\n", "struct A {\n};\n", ("tests/a/a.cpp", "tests/b/a.cpp")), [],
                         "two programs")


if __name__ == "__main__":
    unittest.main()
