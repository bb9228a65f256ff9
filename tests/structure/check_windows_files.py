#!/usr/bin/env python3
"""check_windows_files.py MODULE PROGRAM LIST SCRIPT OBJDUMP: what a Windows loads with the plug-in file and the program.

The module exports exactly the names that LIST (a linker map) makes global, carries the property list of SCRIPT, and moves no
wide vector to or from memory as if it were aligned: the system aligns stacks to 16 bytes, and this compiler no further. Both
files need only DLLs that every Windows has, and of those nothing but what the language's runtime needs.
"""
import pathlib
import re
import subprocess
import sys

from check_exports import global_names

FLAGS = {"HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT"}  # of a hardened file
DLLS = {"KERNEL32.dll", "msvcrt.dll"}
# An effect starts no programs and speaks to nobody. The program starts itself, to drive plug-ins that may crash.
STARTS_ITSELF = {"CreateProcessA"}
SURPRISING = re.compile(r"CreateProcess|WinExec|ShellExecute|_w?(exec|spawn)|_?w?system$|_?w?popen|CreateRemoteThread|"
                        r"WriteProcessMemory|SetWindowsHook|Reg[A-Z]|Pipe|connect|socket|URLDownload|Internet|CryptA")
ALIGNED_MOVE = re.compile(r"\bvmov(aps|apd|dqa|dqa32|dqa64|ntps|ntpd|ntdq|ntdqa)\s.*[%{][yz]mm")


def listed(objdump, path, *options):
    return subprocess.run([objdump, *options, path], capture_output=True, text=True, check=True).stdout


def imports_of(headers):
    """The names of the functions that are taken from each DLL."""
    return {dll: re.findall(r"(?m)^\t[0-9a-f]+\t +\d+  (\S+)", table)
            for dll, table in re.findall(r"DLL Name: (\S+)\n((?:\t.*\n)*)", headers)}


def exports_of(headers):
    table = headers.partition("[Ordinal/Name Pointer] Table\n")[2].partition("\n\n")[0]
    return set(re.findall(r"(?m)\] (\w+)$", table))


def faults_in_head(path, headers, expected):
    if "file format pei-x86-64" not in headers:
        yield f"{path}: is not for x86-64"
    for flag in sorted(FLAGS - set(headers.split())):
        yield f"{path}: lacks the flag {flag}"
    for dll, names in imports_of(headers).items():
        if dll not in DLLS:
            yield f"{path}: needs {dll}"
        for name in names:
            if SURPRISING.search(name) and name not in expected:
                yield f"{path}: takes {name} from {dll}"


def faults_in_module(path, headers, export_list, script):
    if "\tDLL\n" not in headers:
        yield f"{path}: is no DLL"
    wanted, exported = global_names(export_list), exports_of(headers)
    for name in sorted(wanted ^ exported):
        yield f"{path}: {name} is in {'the list' if name in wanted else 'the module'} only"
    words = re.findall(r"0x([0-9A-F]{4})", open(script).read())
    properties = b"".join(int(word, 16).to_bytes(2, "little") for word in words)
    entry = rf"(?s)name: .*: PIPL,.*ID: 0x003e80,.*Leaf: .*, Size: {len(properties):#08x},"
    if not properties or not re.search(entry, headers) or properties not in pathlib.Path(path).read_bytes():
        yield f"{path}: has no resource PIPL 16000, or one that is not {script}"


def faults_in_code(path, objdump):
    """A memory operand that is relative to the instruction pointer is a constant, which the linker does align."""
    wide = 0
    for line in listed(objdump, path, "-d", "--no-show-raw-insn").splitlines():
        wide += "%ymm" in line or "%zmm" in line
        if ALIGNED_MOVE.search(line) and "(" in line and "(%rip)" not in line:
            yield f"{path}: {' '.join(line.split())}"
    if wide < 1000:
        yield f"{path}: has only {wide} wide instructions; are the row targets in?"


def main(module, program, export_list, script, objdump):
    faults = []
    for path in (module, program):
        headers = listed(objdump, path, "-p")
        faults += faults_in_head(path, headers, STARTS_ITSELF if path == program else set())
        if path == module:
            faults += [*faults_in_module(path, headers, export_list, script), *faults_in_code(path, objdump)]
        names = {dll: len(names) for dll, names in imports_of(headers).items()}
        print(f"{path}: {len(exports_of(headers))} exports, imports {names}")
    print("\n".join(faults[:40]))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:6]))
