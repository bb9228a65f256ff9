#!/usr/bin/env python3
"""check_target_objects.py OBJECT...: files compiled for one kind of processor share no code with the others.

Of an inline function that several files bring, the linker keeps any one. So what such a file defines weakly must belong to
its own lane type; otherwise a processor could meet instructions that it does not have.
"""
import re
import subprocess
import sys

LANES = {"rows_avx2": "F64x4", "rows_avx512": "F64x8"}


def main(objects):
    faults, looked_at = [], 0
    for path in objects:
        target = next((name for name in LANES if name in path), None)
        if not target:
            continue
        looked_at += 1
        listing = subprocess.run(["nm", "-C", "--defined-only", path], capture_output=True, text=True, check=True)
        for line in listing.stdout.splitlines():
            # An object for Windows has no weak symbols; what the linker keeps one of has a section of its own there.
            match = re.match(r"\S*\s+([WVu]|t (?=\.text\$))\s*(.*)", line)
            data = match and match.group(2).startswith("DW.ref.")  # of exception handling; no instructions
            if match and not data and LANES[target] not in match.group(2):
                faults.append(f"{path}: {match.group(2)}")
    print("\n".join(faults) or f"{looked_at} target objects keep to themselves")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
