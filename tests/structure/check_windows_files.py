#!/usr/bin/env python3
"""check_windows_files.py MODULE PROGRAM LIST SCRIPT OBJDUMP: what a Windows loads with the plug-in file and the program.

The module exports exactly the names that LIST (a linker map) makes global, carries the property list of SCRIPT, and moves no
wide vector to or from memory as if it were aligned: the system aligns stacks to 16 bytes, and this compiler no further. Both
files need only DLLs that every Windows has, and of those nothing but what the language's runtime needs.
"""
import re
import subprocess
import sys

from check_exports import global_names
from pe_file import PeFile

X86_64, LIBRARY = 0x8664, 0x2000
ANY_ADDRESS, NO_CODE_IN_DATA = 0x0060, 0x0100
DLLS = {"KERNEL32.dll", "msvcrt.dll"}
# An effect starts no programs and speaks to nobody. The program starts itself, to drive plug-ins that may crash.
STARTS_ITSELF = {"CreateProcessA"}
SURPRISING = re.compile(r"CreateProcess|WinExec|ShellExecute|_w?(exec|spawn)|_?w?system$|_?w?popen|CreateRemoteThread|"
                        r"WriteProcessMemory|SetWindowsHook|Reg[A-Z]|Pipe|connect|socket|URLDownload|Internet|CryptA")
ALIGNED_MOVE = re.compile(r"\bvmov(aps|apd|dqa|dqa32|dqa64|ntps|ntpd|ntdq|ntdqa)\s.*[%{][yz]mm")


def faults_in_head(path, pe, expected):
    if pe.machine != X86_64:
        yield f"{path}: is not for x86-64"
    for flag in (ANY_ADDRESS, NO_CODE_IN_DATA):
        if pe.dll_characteristics & flag != flag:
            yield f"{path}: lacks the flags {flag:#06x} of a hardened file"
    imports = pe.imports()
    for dll in sorted(set(imports) - DLLS):
        yield f"{path}: needs {dll}"
    for dll, names in sorted(imports.items()):
        for name in sorted(names):
            if SURPRISING.search(name) and name not in expected:
                yield f"{path}: takes {name} from {dll}"


def faults_in_module(path, pe, export_list, script):
    if not pe.characteristics & LIBRARY:
        yield f"{path}: is no DLL"
    wanted, exported = global_names(export_list), pe.exports()
    for name in sorted(wanted ^ exported):
        yield f"{path}: {name} is in {'the list' if name in wanted else 'the module'} only"
    words = re.findall(r"0x([0-9A-F]{4})", open(script).read())
    properties = b"".join(int(word, 16).to_bytes(2, "little") for word in words)
    if not properties or pe.resources().get(("PIPL", 16000)) != properties:
        yield f"{path}: has no resource PIPL 16000, or one that is not {script}"


def faults_in_code(path, objdump):
    """A memory operand that is relative to the instruction pointer is a constant, which the linker does align."""
    listing = subprocess.run([objdump, "-d", "--no-show-raw-insn", path], capture_output=True, text=True, check=True)
    wide = 0
    for line in listing.stdout.splitlines():
        wide += "%ymm" in line or "%zmm" in line
        if ALIGNED_MOVE.search(line) and "(" in line and "(%rip)" not in line:
            yield f"{path}: {' '.join(line.split())}"
    if wide < 1000:
        yield f"{path}: has only {wide} wide instructions; are the row targets in?"


def main(module, program, export_list, script, objdump):
    faults = []
    for path in (module, program):
        pe = PeFile(path)
        faults += faults_in_head(path, pe, STARTS_ITSELF if path == program else set())
        if path == module:
            faults += [*faults_in_module(path, pe, export_list, script), *faults_in_code(path, objdump)]
        names = {dll: len(names) for dll, names in pe.imports().items()}
        print(f"{path}: {len(pe.exports())} exports, imports {names}")
    print("\n".join(faults[:40]))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:6]))
