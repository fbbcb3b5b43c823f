"""Compares the tables of docs/host.md with the headers, the sources and the minimal host.

Usage: host_page_test.py ROOT
"""
import re
import sys
import unittest
from pathlib import Path

ROOT = Path(sys.argv.pop(1)) if len(sys.argv) > 1 else Path(__file__).resolve().parents[2]
PAGE = (ROOT / "docs/host.md").read_text(encoding="utf-8")
MOST_OPERATIONS = 30


def code_of(path):
    """A source without its comments."""
    return re.sub(r"//[^\n]*", "", path.read_text(encoding="utf-8"))


def section(heading):
    return re.search(rf"^## {re.escape(heading)}\n(.*?)(?=^## |\Z)", PAGE, re.M | re.S).group(1)


def rows_of(text):
    """The rows of the first table as lists of cells, without the head and the line below it."""
    table = re.search(r"(?:^\|.*\n)+", text, re.M).group(0).splitlines()
    return [[cell.strip() for cell in row.strip("|").split("|")] for row in table[2:]]


def names_in(cell):
    return set(re.findall(r"`(\w+)`", cell))


def overrides_of_minimal_host():
    return re.findall(r"(\w+)\([^;{}]*\)\s*(?:const\s*)?override", code_of(ROOT / "examples/minimal_host/MinimalHost.h"))


class HostPage(unittest.TestCase):
    def test_minimal_host_writes_what_the_page_says_and_no_more(self):
        written = overrides_of_minimal_host()
        on_page = [name for row in rows_of(section("What a plain stock host writes")) for name in names_in(row[2])]
        self.assertEqual(sorted(written), sorted(on_page))
        self.assertLess(len(written), MOST_OPERATIONS)
        number = int(re.search(r"A\s+plain stock\s+host writes (\d+) operations", PAGE).group(1))
        self.assertEqual(len(written), number)

    def test_every_operation_of_the_boundary_has_its_thread_and_locks(self):
        on_page = {name for row in rows_of(section("Threads, locks and call-backs")) for name in names_in(row[0])}
        headers = sorted((ROOT / "src/platform").glob("*.h")) + [ROOT / "src/records/Account.h"]
        operations = {name for header in headers
                      for name in re.findall(r"\bvirtual\s[^;{~]*?\b(\w+)\(", code_of(header))}
        self.assertGreater(len(operations), 60)
        self.assertEqual(operations - on_page, set())

    def test_every_service_of_the_boundary_is_named(self):
        on_page = {name for row in rows_of(section("All services")) for name in names_in(row[0])}
        services = {name for header in (ROOT / "src/platform").glob("*.h")
                    for name in re.findall(r"class (?:ORDERSERVICE_EXPORT )?(\w+) :[^{]*CHostService<", code_of(header))}
        self.assertGreater(len(services), 10)
        self.assertEqual(services - on_page, set())

    def test_headers_with_operations_of_a_service_are_in_its_row(self):
        cells = {name: row[1] for row in rows_of(section("All services")) for name in names_in(row[0])}
        themes = {header.name: match.group(1) for header in (ROOT / "src/platform").glob("*.h")
                  for match in re.finditer(r"using CService = (\w+);", code_of(header))}
        self.assertGreater(len(themes), 5)
        self.assertEqual({name for name, service in themes.items() if f"`src/platform/{name}`" not in cells[service]}, set())

    def test_every_switch_is_on_the_page(self):
        on_page = {name for row in rows_of(section("Switches")) for name in names_in(row[0])}
        asked = {name for path in (ROOT / "src").rglob("*.cpp") for name in re.findall(r'"(mdl_order_\w+)"', code_of(path))}
        asked |= {name for path in (ROOT / "src").rglob("*.h") for name in re.findall(r'"(mdl_order_\w+)"', code_of(path))}
        self.assertGreater(len(asked), 5)
        self.assertEqual(asked - on_page, set())

    def test_user_kinds_are_those_of_the_code(self):
        code = (ROOT / "src/check/CommandIssue.cpp").read_text(encoding="utf-8")
        kinds = re.search(r"kCommandUserKinds\[\] = \{([\d, ]+)\}", code).group(1)
        on_page = re.search(r"`getUserKind` must be one of ([\d, and]+)", PAGE).group(1)
        self.assertEqual(sorted(map(int, re.findall(r"\d+", on_page))), sorted(map(int, kinds.split(","))))

    def test_options_are_those_of_the_build(self):
        options = set(re.findall(r"option\((\w+)", (ROOT / "cmake/ProjectOptions.cmake").read_text(encoding="utf-8")))
        self.assertGreater(len(options), 3)
        self.assertEqual({name for name in options if f"`{name}`" not in PAGE}, set())


if __name__ == "__main__":
    unittest.main(verbosity=2)
