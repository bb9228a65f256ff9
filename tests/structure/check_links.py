#!/usr/bin/env python3
"""Every relative link and picture of the documents leads to a file, and every anchor to a heading.

    check_links.py ROOT
"""

import pathlib
import re
import subprocess
import sys


def anchors(text):
    """The names that a reader of such documents gives to the headings."""
    for heading in re.findall(r"(?m)^#+ (.*)$", text):
        yield re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def main():
    root = pathlib.Path(sys.argv[1])
    listed = subprocess.run(["git", "-C", root, "ls-files", "*.md"], capture_output=True, text=True)
    documents = [root / name for name in listed.stdout.split()] or sorted(root.glob("docs/*.md")) + [root / "README.md"]
    faults, count = [], 0
    for document in documents:
        text = re.sub(r"(?s)```.*?```", "", document.read_text())
        for target in re.findall(r"\]\(([^)\s]+)\)", text):
            if re.match(r"\w+:", target):
                continue
            count += 1
            file, _, anchor = target.partition("#")
            to = document.parent / file if file else document
            if not to.exists():
                faults.append(f"{document.relative_to(root)}: {target} does not exist")
            elif anchor and anchor not in anchors(to.read_text()):
                faults.append(f"{document.relative_to(root)}: {target} is no heading there")
    for fault in faults:
        print(fault)
    print(f"{count} links in {len(documents)} documents")
    sys.exit(1 if faults or not count else 0)


main()
