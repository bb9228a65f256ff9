#!/usr/bin/env python3
"""check_bundle.py BUNDLE EXPORTS ZAM: is a built Zam.plugin laid out as a host expects it? With LLVM's tools, on any system."""
import pathlib
import plistlib
import re
import subprocess
import sys

PROCESSORS = ["x86_64", "arm64"]
NEEDED = {"/System/Library/Frameworks/CoreServices.framework/Versions/A/CoreServices", "/usr/lib/libSystem.B.dylib",
          # on a Mac the C++ library is the system's, and the framework's own parts are named
          "/usr/lib/libc++.1.dylib",
          "/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/CarbonCore.framework/Versions/A/"
          "CarbonCore"}


def output_of(*command):
    return subprocess.run([str(word) for word in command], capture_output=True, text=True, check=True).stdout


def main(bundle, exports_map, zam):
    contents = pathlib.Path(bundle) / "Contents"
    code = contents / "MacOS" / "Zam"
    faults = []

    def hold(true, text):
        if not true:
            faults.append(text)

    plist = plistlib.loads((contents / "Info.plist").read_bytes())
    for key, value in (("CFBundleExecutable", "Zam"), ("CFBundleName", "Zam"), ("CFBundlePackageType", "eFKT"),
                       ("CFBundleSignature", "FXTC"), ("CFBundleInfoDictionaryVersion", "6.0")):
        hold(plist.get(key) == value, f"{key} is {plist.get(key)!r}")
    hold((contents / "PkgInfo").read_bytes() == b"eFKTFXTC", "PkgInfo is not eFKTFXTC")

    text = re.sub(r"/\*.*?\*/", "", pathlib.Path(exports_map).read_text(), flags=re.S)
    wanted = {"_" + name for name in re.findall(r"(\w+);", text.split("local:")[0])}
    hold(sorted(output_of("llvm-lipo-14", "-archs", code).split()) == sorted(PROCESSORS), "other processors")
    for processor in PROCESSORS:
        tool = ("llvm-objdump-14", "--macho", f"--arch={processor}")
        exported = set(re.findall(r"^0x\S+\s+(\S+)", output_of(*tool, "--exports-trie", code), flags=re.M))
        hold(wanted and exported == wanted, f"{processor}: exports differ by {sorted(exported ^ wanted)}")
        headers = output_of(*tool, "--private-headers", code)
        hold(re.search(r"\bBUNDLE\b", headers), f"{processor}: no loadable bundle")
        hold("LC_CODE_SIGNATURE" in headers, f"{processor}: no signature")
        hold(re.search(r"minos 11\.0\b", headers), f"{processor}: not for macOS 11.0 on")
        libraries = set(re.findall(r"^\s+name (\S+) \(offset", headers, flags=re.M))
        hold(libraries and libraries <= NEEDED, f"{processor}: needs {sorted(libraries - NEEDED)}")
    checked = subprocess.run([zam, "check", str(bundle)], capture_output=True, text=True)
    hold(checked.returncode == 0, checked.stdout)

    print("\n".join(faults) or f"{bundle}: {len(wanted)} exports for each of {', '.join(PROCESSORS)}; laid out as it should be")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
