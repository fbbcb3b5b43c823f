"""The shared libraries export what a host uses, and nothing of the inside or of other libraries.

Usage: exports_test.py SOURCE_FOLDER LIBRARY...
"""
import re
import subprocess
import sys
import unittest
from pathlib import Path

ROOT, LIBRARIES = Path(sys.argv[1]), sys.argv[2:]
INSIDE = ("net", "intake", "socket", "variants")  # floors that export nothing
PARTLY = ("check", "service")                     # floors with a few public headers
# Other projects' libraries that are compiled in from headers. Exported symbols of theirs would clash with those of the host.
OTHERS = re.compile(r"\b(boost::asio|log4cxx|nlohmann)::")


def exported(library, kinds=""):
    """The exported symbols, demangled. With `kinds` only those with one of these letters of nm."""
    out = subprocess.run(["nm", "-DC", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    parts = [line.split(None, 2) for line in out.splitlines()]
    return [name for _, kind, name in parts if not kinds or kind in kinds]


def own_name(symbol):
    """`vtable for TC::X` and `TC::X::f(int)` without arguments and leading words."""
    return re.sub(r"^(vtable|typeinfo( name)?|VTT|guard variable) for ", "", symbol).split("(")[0]


def classes_inside():
    public = {"OrderServiceBase.h", "OrderService.h", "OrderServiceAdapter.h"}
    names = set()
    for floor in INSIDE + PARTLY:
        for header in (ROOT / "src" / floor).glob("*.h"):
            if header.name not in public:
                names |= set(re.findall(r"^(?:class|struct) (\w+)[^;]*$", header.read_text("utf-8"), re.M))
    return names


class Exports(unittest.TestCase):
    def test_nothing_of_the_inside(self):
        inside = classes_inside()
        self.assertLessEqual({"CFileService", "COrderServiceUnion", "CStrategyRegistry", "CCheckRun", "NetServer"}, inside)
        for library in LIBRARIES:
            names = {own_name(symbol) for symbol in exported(library)}
            self.assertEqual([n for n in names if set(re.findall(r"\w+", n)) & inside or n.startswith("net::")], [], library)

    def test_nothing_of_other_libraries(self):
        for library in LIBRARIES:
            self.assertEqual([s for s in exported(library) if OTHERS.search(own_name(s))], [], library)

    def test_what_a_host_uses(self):
        service, kit, ui = (set(map(own_name, exported(library))) for library in LIBRARIES)
        for name in ("TC::COrderService::loadFromConfig", "TC::installHost", "TC::CTradeClient::staticMetaObject",
                     "TC::CHostError", "TC::kFamilies", "bson::fromjson"):
            self.assertIn(name, service)
        for name in ("kit::commandJson[abi:cxx11]", "kit::CUserConfigBase", "kit::findOperation"):
            self.assertIn(name, {n for n in kit} | {n + "[abi:cxx11]" for n in kit})
        for name in ("TC::COrdersConfirmer::confirm", "TC::COrdersMessageBox::showOrders", "TC::COrdersConfirmWidget::staticMetaObject",
                     "TC::COrderParamTable", "UW::CBaseNormalTable::staticMetaObject"):
            self.assertIn(name, ui)

    def test_each_name_is_defined_in_one_library(self):
        """What is compiled from a header, such as a template, may be in several: the loader makes one object of it."""
        names = [set(exported(library, kinds="TDBR")) for library in LIBRARIES]
        for i, first in enumerate(names):
            for second in names[i + 1:]:
                self.assertEqual(sorted(first & second), [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
