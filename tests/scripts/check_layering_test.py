"""Runs scripts/check-layering on small example trees, correct and wrong."""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts/check-layering"
TABLE = """| Floor | Folder | What lives there | May include |
|---|---|---|---|
| 1 | `base/` | low | Qt Core |
| 2 | `check/` | middle | base |
| 3 | `ui/` | top | check, Qt Widgets |
| 4 | `desk/` | host | check |
"""


class Layering(unittest.TestCase):
    def run_on(self, files):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            for name in ("src/base", "src/check", "src/ui", "desk", "docs"):
                (root / name).mkdir(parents=True)
            (root / "docs/architecture.md").write_text(TABLE, encoding="utf-8")
            for name, text in files.items():
                (root / name).parent.mkdir(parents=True, exist_ok=True)
                (root / name).write_text(text, encoding="utf-8")
            done = subprocess.run([sys.executable, SCRIPT, folder], capture_output=True, text=True)
            return done.returncode, done.stdout

    def test_good_tree_passes(self):
        code, out = self.run_on({"src/base/A.h": "#include <QString>\n", "src/ui/U.cpp": '#include "orderservice/base/A.h"\n#include <QDialog>\n'})
        self.assertEqual((code, out), (0, "2 files, 0 mistakes\n"))

    def test_upward_include_fails(self):
        code, out = self.run_on({"src/base/A.h": '#include "orderservice/check/B.h"\n', "src/check/B.h": ""})
        self.assertEqual(code, 1)
        self.assertIn("src/base/A.h:1: base may not include check/B.h", out)

    def test_host_may_not_include_the_inside(self):
        code, out = self.run_on({"desk/main.cpp": '#include "orderservice/ui/U.h"\n', "src/ui/U.h": ""})
        self.assertEqual(code, 1)
        self.assertIn("desk may not include ui/U.h", out)

    def test_folder_of_the_host_may_have_a_row_of_its_own(self):
        table = TABLE + "| 5 | `desk/window/` | window | desk, ui, Qt Widgets |\n"
        includes = '#include "orderservice/ui/U.h"\n'
        self.assertEqual(self.run_on({"docs/architecture.md": table, "desk/window/W.cpp": includes, "src/ui/U.h": ""})[0], 0)
        code, out = self.run_on({"docs/architecture.md": table, "desk/main.cpp": includes, "src/ui/U.h": ""})
        self.assertEqual(code, 1)
        self.assertIn("desk may not include ui/U.h", out)

    def test_include_of_a_floor_without_the_prefix_fails(self):
        code, out = self.run_on({"src/base/A.h": "", "src/check/C.h": '#include "base/A.h"\n',
                                 "desk/main.cpp": '#include <check/C.h>\n'})
        self.assertEqual(code, 1)
        self.assertIn("src/check/C.h:1: the prefix orderservice/ is missing before base/A.h", out)
        self.assertIn("desk/main.cpp:1: the prefix orderservice/ is missing before check/C.h", out)

    def test_cycle_inside_a_folder_fails(self):
        code, out = self.run_on({"src/base/A.h": '#include "orderservice/base/B.h"\n', "src/base/B.h": '#include "orderservice/base/A.h"\n'})
        self.assertEqual(code, 1)
        self.assertIn("include cycle: src/base/A.h -> src/base/B.h -> src/base/A.h", out)

    def test_widgets_outside_their_row_fail(self):
        code, out = self.run_on({"src/check/C.cpp": "#include <QDialog>\n"})
        self.assertEqual(code, 1)
        self.assertIn("Qt Widgets include QDialog", out)

    def test_folder_without_a_row_fails(self):
        code, out = self.run_on({"src/new/N.h": ""})
        self.assertEqual(code, 1)
        self.assertIn("src/new: no row", out)

    def test_empty_tree_fails(self):
        self.assertEqual(self.run_on({})[0], 1)


if __name__ == "__main__":
    unittest.main()
