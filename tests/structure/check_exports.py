#!/usr/bin/env python3
"""check_exports.py MODULE LIST: the module exports exactly the names that the list (a linker map) makes global."""
import re
import subprocess
import sys


def global_names(export_list):
    text = re.sub(r"/\*.*?\*/", "", open(export_list).read(), flags=re.S)
    return set(re.findall(r"(\w+);", text.split("local:")[0]))


def main(module, export_list):
    wanted = global_names(export_list)
    symbols = subprocess.run(["nm", "-D", "--defined-only", module], capture_output=True, text=True, check=True)
    exported = {line.split()[-1] for line in symbols.stdout.splitlines() if line.strip()}
    for name in sorted(wanted - exported):
        print(f"{module}: does not export {name}, which {export_list} lists")
    for name in sorted(exported - wanted):
        print(f"{module}: exports {name}, which {export_list} does not list")
    print(f"{len(exported)} exported, {len(wanted)} listed")
    return 0 if wanted and wanted == exported else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:3]))
