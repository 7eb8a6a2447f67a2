#!/usr/bin/env python3
"""The checks of the pages find what they are there for: each is shown a small tree with that one fault."""
import importlib.util
import os
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
SCRIPTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts")

spec = importlib.util.spec_from_file_location("check_docs", os.path.join(SCRIPTS, "check-docs.py"))
check_docs = importlib.util.module_from_spec(spec)
spec.loader.exec_module(check_docs)

TREE = {
    "README.md": "# Title\n\n## A part, or two\n",
    "render/caeenv.h": "class KVO_EXPORT CAEEnv\n{\n    void renderModel();\n};\n",
    "scripts/check": "case $1 in\nrelease | debug) ;;\nesac\n",
    "scripts/readme": "not executable\n",
    "CMakePresets.json": '{"configurePresets": [{"name": "base", "hidden": true}, {"name": "release"}],'
                         ' "buildPresets": [{"name": "release"}], "testPresets": [{"name": "debug"}]}',
    "host/main.cpp": "int main()\n{\n    return 0;\n}\n",
    "kvo": "#!/bin/sh\n[ \"$*\" = 'render --help' ] && echo '  -o,--output OUT   --view VIEW' && exit 0\n"
           "[ \"$*\" = '--help' ] && echo '--version' && exit 0\nexit 2\n",
}


def write_tree(root, files):
    for name, text in files.items():
        path = os.path.join(root, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as stream:
            stream.write(text)
    for name in ("scripts/check", "kvo"):
        if name in files:
            os.chmod(os.path.join(root, name), 0o755)


class Pages(unittest.TestCase):
    def problems(self, text):
        with tempfile.TemporaryDirectory() as root:
            write_tree(root, {**TREE, "docs/page.md": text + "\n"})
            return list(check_docs.problems(root, os.path.join(root, "kvo")))

    def assert_fault(self, text, words):
        found = self.problems(text)
        self.assertEqual(len(found), 1, found)
        self.assertIn(words, found[0])

    def test_a_true_page(self):
        self.assertEqual(self.problems(
            "# Page\n[top](../README.md#a-part-or-two) [here](#page) [web](https://example.org/x)\n"
            "`render/caeenv.h` `render/*.h` `render/{caeenv}.h` `demo/a.png` `CAEEnv::renderModel` `renderModel()`\n\n"
            "    scripts/check release  # unknown\n    A=1 cmake --preset release && cmake --build --preset release\n"
            "    kvo render x -o out.png --view iso\n\n"
            "<!-- file: host/main.cpp -->\n```cpp\nint main()\n{\n    return 0;\n}\n```\n"
            "<!-- part of: host/main.cpp -->\n```cpp\n    return 0;\n```"), [])

    def test_link_to_nothing(self):
        self.assert_fault("[x](nothing.md)", "no such file")

    def test_picture_that_is_not_there(self):
        self.assert_fault("![x](images/nothing.png)", "no such file")

    def test_link_to_no_heading(self):
        self.assert_fault("[x](../README.md#nothing)", "no such heading")

    def test_path_that_is_not_there(self):
        self.assert_fault("`render/nothing.h`", "no such path")

    def test_pattern_that_matches_nothing(self):
        self.assert_fault("`render/{caeenv,nothing}.h`", "no such path")

    def test_script_that_is_not_there(self):
        self.assert_fault("text\n\n    scripts/nothing", "no such program")

    def test_script_that_is_not_executable(self):
        self.assert_fault("text\n\n    scripts/readme", "no such program")

    def test_unknown_configuration(self):
        self.assert_fault("text\n\n    scripts/check fast", "no such configuration")

    def test_unknown_presets(self):
        self.assert_fault("text\n\n    cmake --preset base", "no such preset")
        self.assert_fault("text\n\n    ctest --preset release", "no such preset")

    def test_unknown_kvo_command(self):
        self.assert_fault("text\n\n    kvo paint model", "no such command")

    def test_unknown_kvo_option(self):
        self.assert_fault("`kvo render model --vie iso`", "no option --vie")

    def test_unknown_member(self):
        self.assert_fault("`CAEEnv::paintModel`", "no such member")

    def test_unknown_function(self):
        self.assert_fault("`paintModel(w, h)`", "no such function")

    def test_changed_quotation(self):
        self.assert_fault("<!-- file: host/main.cpp -->\n```cpp\nint main()\n{\n    return 1;\n}\n```", "quoted from")
        self.assert_fault("<!-- file: host/main.cpp -->\n```cpp\nint main()\n```", "quoted from")
        self.assert_fault("<!-- part of: host/main.cpp -->\n```cpp\n    return 1;\n```", "quoted from")

    def test_mark_without_quotation(self):
        self.assert_fault("<!-- file: host/main.cpp -->\ntext", "without a code block")


class Oddities(unittest.TestCase):
    TREE = {
        "render/a.cpp": "// deliberate(odd-row): kept.\n",
        "readgen/readme.h": "",
        "tests/a_test.cpp": "TEST(Suite, name)\n{\n}\nTEST_F(Other, name)\n{\n}\n",
        "docs/oddities.md": "| name | what looks wrong | tests |\n|---|---|---|\n"
                            "| `odd-row` | what | `Suite.name`, `Other.name` |\n",
    }

    def with_files(self, files):
        with tempfile.TemporaryDirectory() as root:
            write_tree(root, {**self.TREE, **files})
            done = subprocess.run([sys.executable, os.path.join(SCRIPTS, "check-oddities.py"), root],
                                  capture_output=True, text=True, check=False)
            return done.returncode, done.stdout

    def test_in_step(self):
        self.assertEqual(self.with_files({})[0], 0)

    def test_tag_without_row(self):
        status, text = self.with_files({"readgen/b.cpp": "// deliberate(even-row): kept.\n"})
        self.assertEqual(status, 1)
        self.assertIn("deliberate(even-row) has no row", text)

    def test_row_without_tag(self):
        status, text = self.with_files({"render/a.cpp": ""})
        self.assertEqual(status, 1)
        self.assertIn("`odd-row` is tagged nowhere", text)

    def test_row_without_test(self):
        status, text = self.with_files({"tests/a_test.cpp": "TEST(Suite, name)\n"})
        self.assertEqual(status, 1)
        self.assertIn("no such test Other.name", text)


if __name__ == "__main__":
    unittest.main()
