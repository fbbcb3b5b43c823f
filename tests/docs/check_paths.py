"""Fails if README.md or a page of docs/ names a path of this project that does not exist."""
import re
import sys
from pathlib import Path

ROOT = Path(sys.argv[1])
TOP = {p.name for p in ROOT.iterdir()} - {"build", ".git"}
NAME = re.compile(r"`([\w./<>-]+)`|\]\(([\w./-]+)\)")


def paths_of(page):
    for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
        for match in NAME.finditer(line):
            code, link = match.groups()
            if link:
                yield number, link, page.parent / link
            elif "/" in code and code.split("/")[0] in TOP and "<" not in code:
                yield number, code, ROOT / code


pages = [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]
checked = 0
missing = []
for page in pages:
    for number, name, path in paths_of(page):
        checked += 1
        if not path.exists():
            missing.append(f"{page.relative_to(ROOT)}:{number}: {name} does not exist")
print("\n".join(missing + [f"{checked} paths on {len(pages)} pages, {len(missing)} missing"]))
sys.exit(1 if missing or checked == 0 else 0)
