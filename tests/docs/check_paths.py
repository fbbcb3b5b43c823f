"""Fails if README.md or a page of docs/ names a path of this project, or links to a section, that does not exist."""
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


LINK = re.compile(r"\]\(([\w./-]*\.md)?#([\w-]+)\)")
HEADING = re.compile(r"#+ (.*)")
ANCHOR = re.compile(r'<a id="([\w-]+)">')


def anchors_of(page):
    """The names of a page's sections, as its links write them, and of its own anchors."""
    text = page.read_text(encoding="utf-8")
    headings = (HEADING.match(line) for line in text.splitlines())
    names = {re.sub(r"[^\w -]", "", match[1]).lower().replace(" ", "-") for match in headings if match}
    return names | set(ANCHOR.findall(text))


def lost_links_of(page):
    for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
        for name, anchor in LINK.findall(line):
            target = page.parent / name if name else page
            if target.exists() and anchor not in anchors_of(target):
                yield f"{page.relative_to(ROOT)}:{number}: {name}#{anchor} does not exist"


pages = [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]
checked = 0
missing = []
for page in pages:
    missing += lost_links_of(page)
    for number, name, path in paths_of(page):
        checked += 1
        if not path.exists():
            missing.append(f"{page.relative_to(ROOT)}:{number}: {name} does not exist")
print("\n".join(missing + [f"{checked} paths on {len(pages)} pages, {len(missing)} missing"]))
sys.exit(1 if missing or checked == 0 else 0)
