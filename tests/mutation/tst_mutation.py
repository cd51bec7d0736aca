"""Tests tests/mutate."""

import itertools
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from buildtree import BuildTree, Test
from mutants import chosen, code_of, mutants_of
from records import read_equivalent

FOLDER = Path(__file__).resolve().parent
PROJECT = FOLDER.parent.parent

# Code, and the lines that its mutants have in place of it.
CHANGES = [
    ("    if (a < b)", {"if (a <= b)", "if (!(a < b))"}),
    ("    while (a != b)", {"while (a == b)", "while (!(a != b))"}),
    ("    if (const auto a = b())", set()),
    ("    if (int n = a; b >= n)", {"if (int n = a; b > n)", "if (int n = a;!(b >= n))"}),
    ("    const int sum = a + b;", {"const int sum = a - b;"}),
    ("    const int part = a * b / c;",
     {"const int part = a / b / c;", "const int part = a * b * c;"}),
    ("    const bool both = a && !b;", {"const bool both = a || !b;", "const bool both = a && b;"}),
    ("    const int low = word >> 8 & 0xff;",
     {"const int low = word << 8 & 0xff;", "const int low = word >> 8 | 0xff;",
      "const int low = word >> 9 & 0xff;", "const int low = word >> 8 & 0x100;"}),
    ("    const float x = -12.5F;", {"const float x = 12.5F;", "const float x = -13.5F;"}),
    ("    const bool on = true;", {"const bool on = false;"}),
    ("    return a;", {"return {};"}),
    ("    return 0;", {"return 1;"}),
    ("    emit changed(a);", {";"}),
    ("    a->b().c(\n        d);", {";"}),
    ("    if (a)\n        b = c;", {"if (!(a))", ";"}),
    ("    break;", {";"}),
    ("    ++a;", {"--a;"}),
]
# Code without mutants.
UNCHANGED = [
    "// a < b", "/* a\n < b */", "#include <a>\n#define A(b) \\\n    b < 1\n",
    'const char *text = "a < 1";', "std::array<A, b> c;", "int *a = nullptr;", "void f(int a);",
    "template <class T>\nstruct A;", "return {};", "enum A { B };", "    A b(c);",
]


class Mutants(unittest.TestCase):
    def test_each_change_of_a_line_is_found(self):
        for code, expected in CHANGES:
            with self.subTest(code=code):
                source = f"void f()\n{{\n{code}\n}}\n"
                changes = [mutant.change(source) for mutant in mutants_of("f.cpp", source)]
                added = [line[2:] for change in changes for line in change if line[0] == "+"]
                self.assertEqual(sorted(added), sorted(expected))

    def test_text_that_is_no_code_and_declarations_stay(self):
        for code in UNCHANGED:
            with self.subTest(code=code):
                self.assertEqual(mutants_of("f.h", code + "\n"), [])

    def test_blanking_keeps_every_place(self):
        source = (FOLDER / "sample" / "level.cpp").read_text()
        code = code_of(source)
        self.assertEqual(len(code), len(source))
        self.assertEqual(code.index("return level"), source.index("return level"))

    def test_the_choice_depends_on_the_seed_alone(self):
        sources = {path.name: path.read_text() for path in (PROJECT / "game").glob("*.cpp")}
        reversed_sources = dict(reversed(sources.items()))
        some = list(itertools.islice(chosen(sources, 1), 10))
        more = list(itertools.islice(chosen(reversed_sources, 1), 20))
        self.assertEqual(some, more[:10])
        self.assertEqual(len(set(more)), 20)
        self.assertNotEqual(some, list(itertools.islice(chosen(sources, 2), 10)))


class Project(unittest.TestCase):
    def test_every_listed_mutant_is_still_one_of_its_file(self):
        for file, change in read_equivalent(PROJECT):
            source = (PROJECT / file).read_text()
            with self.subTest(file=file, change=change):
                self.assertIn(change, [each.change(source) for each in mutants_of(file, source)])

    def test_every_listed_mutant_has_a_reason(self):
        reason = False
        for line in (PROJECT / "tests" / "mutants-equivalent").read_text().splitlines():
            if line.startswith("# "):
                reason = True
            elif not line:
                reason = False
            else:
                self.assertTrue(reason, line)


class Sample(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.project = Path(folder.name) / "sample"
        shutil.copytree(FOLDER / "sample", self.project)

    def mutate(self, *arguments):
        return subprocess.run(
            [PROJECT / "tests" / "mutate", "--project", self.project, "--files", "level.cpp",
             *arguments], capture_output=True, text=True, check=False)

    def test_each_mutant_gets_its_verdict(self):
        run = self.mutate()
        self.assertEqual(run.stderr, "")
        verdicts = dict(line.split("] ")[1].split(": ") for line in run.stdout.splitlines()
                        if line.startswith("["))
        self.assertEqual(verdicts, {
            "level.cpp:7 constant": "survived",
            "level.cpp:7 return": "did not compile",
            "level.cpp:14 comparison": "equivalent",
            "level.cpp:14 condition": "noticed by tst_level",
            "level.cpp:15 return": "noticed by tst_level",
            "level.cpp:16 comparison": "equivalent",
            "level.cpp:16 condition": "noticed by tst_level",
            "level.cpp:16 constant": "equivalent",
            "level.cpp:17 constant": "noticed by tst_level",
            "level.cpp:17 statement": "noticed by tst_level",
            "level.cpp:18 return": "noticed by tst_level",
        })
        self.assertIn("\nlevel.cpp:7\n- return 100;\n+ return 101;\n", run.stdout)
        self.assertIn("Noticed: 85.7% of 7; 97% are required.", run.stdout)
        self.assertEqual(run.returncode, 1)
        self.assertEqual((self.project / "level.cpp").read_text(),
                         (FOLDER / "sample" / "level.cpp").read_text())
        self.a_resumed_run_tries_the_survivors_again()

    def a_resumed_run_tries_the_survivors_again(self):
        test = self.project / "tst_level.cpp"
        test.write_text(test.read_text().replace("> 50", "== 100"))
        run = self.mutate("--resume")
        self.assertIn("level.cpp:7 constant: noticed by tst_level\n", run.stdout)
        self.assertIn("Noticed: 100.0% of 7", run.stdout)
        self.assertEqual(run.returncode, 0)

    def test_a_program_that_hangs_is_ended(self):
        tree = BuildTree(self.project, self.project)
        sleeper = Test("sleeper", ["sleep", "600"], self.project, {}, "", set())
        self.assertIsNone(tree.passes(sleeper, 0.1))


if __name__ == "__main__":
    sys.dont_write_bytecode = True
    unittest.main()
