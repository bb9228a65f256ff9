"""Reads what a Windows program or library file (PE, 64-bit) says of itself."""
import pathlib
import struct


class PeFile:
    def __init__(self, path):
        self.data = pathlib.Path(path).read_bytes()
        header = self.u32(0x3C)
        assert self.data[header:header + 4] == b"PE\0\0", f"{path} is no PE file"
        self.machine, sections = struct.unpack_from("<HH", self.data, header + 4)
        optional_size, self.characteristics = struct.unpack_from("<HH", self.data, header + 20)
        optional = header + 24
        assert struct.unpack_from("<H", self.data, optional)[0] == 0x20B, f"{path} is not 64-bit"
        self.dll_characteristics = struct.unpack_from("<H", self.data, optional + 70)[0]
        self.directories = [self.u32(optional + 112 + 8 * i) for i in range(16)]
        table = optional + optional_size
        self.sections = [struct.unpack_from("<8sIIII", self.data, table + 40 * i) for i in range(sections)]

    def u32(self, at):
        return struct.unpack_from("<I", self.data, at)[0]

    def at(self, address):
        """The place in the file of an address in memory."""
        for _, size, start, _, raw in self.sections:
            if start <= address < start + size:
                return address - start + raw
        raise ValueError(f"address {address:#x} is in no section")

    def text(self, address):
        at = self.at(address)
        return self.data[at:self.data.index(b"\0", at)].decode()

    def exports(self):
        if not self.directories[0]:
            return set()
        at = self.at(self.directories[0])
        count, names = self.u32(at + 24), self.at(self.u32(at + 32))
        return {self.text(self.u32(names + 4 * i)) for i in range(count)}

    def imports(self):
        """The names of the functions that are taken from each DLL."""
        result, at = {}, self.at(self.directories[1])
        while self.u32(at + 12):
            names, thunk = set(), self.at(self.u32(at) or self.u32(at + 16))
            while entry := struct.unpack_from("<Q", self.data, thunk)[0]:
                names.add(f"#{entry & 0xFFFF}" if entry >> 63 else self.text((entry & 0x7FFFFFFF) + 2))
                thunk += 8
            result.setdefault(self.text(self.u32(at + 12)), set()).update(names)
            at += 20
        return result

    def resources(self):
        """The bytes of each resource, by type and id; names stay names."""
        if not self.directories[2]:
            return {}
        root = self.at(self.directories[2])

        def entries(directory):
            named, numbered = struct.unpack_from("<HH", self.data, root + directory + 12)
            for i in range(named + numbered):
                key, place = struct.unpack_from("<II", self.data, root + directory + 16 + 8 * i)
                if key >> 31:
                    name = root + (key & 0x7FFFFFFF)
                    length = struct.unpack_from("<H", self.data, name)[0]
                    key = self.data[name + 2:name + 2 + 2 * length].decode("utf-16le")
                yield key, place & 0x7FFFFFFF

        found = {}
        for kind, names in entries(0):
            for name, languages in entries(names):
                for _, leaf in entries(languages):
                    address, size = struct.unpack_from("<II", self.data, root + leaf)
                    at = self.at(address)
                    found[kind, name] = self.data[at:at + size]
        return found
