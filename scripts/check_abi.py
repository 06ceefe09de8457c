#!/usr/bin/env python3
"""Compares the binary interface of the shared library with the lists in tests/abi: scripts/check_abi.py [--write] [LIBRARY]

exports.txt has every symbol that the library exports, slots.txt the virtual functions of each exported class in their order,
layout.txt the size of each exported class and where its bases and members lie. Programs that were compiled against the library
depend on all three, members that are private included, since functions in headers reach them.

--write takes over what the library has now, which is to be read before it is committed. A change of slots, or of the layout of
a class that others derive from or hold by value, breaks programs that are not compiled anew.

The lists are those of the release preset by g++ on x86-64.
"""

import difflib
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
LISTS = ROOT / "tests" / "abi"
OURS = re.compile(r"(QvXmlLib9|QvXmlLib9Data|CInstanceMonitor|CInstanceClass|CQVCriticalSection)\b")


def run(*command):
    result = subprocess.run(command, stdout=subprocess.PIPE, check=True, encoding="utf-8")
    return result.stdout


def shorten(text):
    """The names of the standard library as sources write them."""
    for char, name in (("char", "std::string"), ("wchar_t", "std::wstring")):
        traits = f"std::char_traits<{char}>"
        for string in ("std::__cxx11::basic_string", "std::basic_string"):
            text = text.replace(f"{string}<{char}, {traits}, std::allocator<{char}> >", name)
            text = text.replace(f"{string}<{char}>", name)
        for view in (f"std::basic_string_view<{char}, {traits} >", f"std::basic_string_view<{char}, {traits}>"):
            text = text.replace(view, name + "_view")
        text = text.replace(f"std::basic_string_view<{char}>", name + "_view")
    return text


def list_exports(library):
    names = {line.split(maxsplit=2)[2] for line in run("nm", "-DC", "--defined-only", library).splitlines()}
    return sorted(shorten(name) for name in names)


def read_symbols(library):
    """Names by address, and the address and size of each table of virtual functions that is exported."""
    names = {}
    tables = {}
    pattern = re.compile(r"\s*\d+: ([0-9a-f]+)\s+(\d+) (FUNC|OBJECT)\s+(\S+)\s+(\S+)\s+\d+ (.+)$")
    for line in run("readelf", "-W", "--symbols", "--demangle", library).splitlines():
        match = pattern.match(line)
        if not match:
            continue
        address, size, binding, name = int(match[1], 16), int(match[2]), match[4], match[6]
        if match[3] == "FUNC":
            # Functions of equal code share their address.
            names.setdefault(address, set()).add(shorten(re.sub(r" \[clone [^]]*\]$", "", name)))
        elif name.startswith("vtable for ") and binding != "LOCAL":
            tables[name[len("vtable for "):]] = (address, size)
    return names, tables


def read_relocations(library, names):
    """What the dynamic linker stores at which address."""
    stored = {}
    pattern = re.compile(r"([0-9a-f]+)\s+[0-9a-f]+ (R_X86_64_64|R_X86_64_RELATIVE)\s+(.*)$")
    for line in run("readelf", "-W", "--relocs", "--demangle", library).splitlines():
        match = pattern.match(line)
        if not match:
            continue
        if match[2] == "R_X86_64_RELATIVE":
            stored[int(match[1], 16)] = " = ".join(sorted(names.get(int(match[3], 16), ())))
        else:
            stored[int(match[1], 16)] = shorten(re.sub(r"^[0-9a-f]{16} ", "", match[3]).rsplit(" + ", 1)[0])
    return stored


def list_slots(library):
    names, tables = read_symbols(library)
    stored = read_relocations(library, names)
    lines = []
    for table, (address, size) in sorted(tables.items()):
        if not OURS.match(table):
            continue
        lines.append(shorten(table))
        for slot in range(size // 8):
            name = stored.get(address + slot * 8)
            if name:
                lines.append(f"  {slot:3} {name}")
    return lines


def exported_classes(exports):
    classes = {line[len("typeinfo for "):] for line in exports if line.startswith("typeinfo for ")}
    for line in exports:
        # Classes without virtual functions are known by a constructor.
        match = re.match(r"(.*::)?(\w+)::\2\(", line)
        if match:
            classes.add((match[1] or "") + match[2])
    return sorted(name for name in classes if OURS.match(name))


def list_layout(exports):
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / "layout.cpp"
        uses = "".join(f"static_assert(sizeof({name}) != 0);\n" for name in exported_classes(exports))
        source.write_text(f'#include "quiver/QvXmlLib.h"\n{uses}', encoding="utf-8")
        dump = run("clang++", "-std=c++17", "-fsyntax-only", f"-I{ROOT}", "-Xclang", "-fdump-record-layouts", str(source))
    records = {}
    dump = re.sub(r"\((anonymous|unnamed)[^)]* at [^)]*\)", r"(\1)", dump)  # where it stands in whose folder
    for record in dump.split("*** Dumping AST Record Layout\n")[1:]:
        rows = [row.split(" | ", 1) for row in record.splitlines() if " | " in row]
        title = rows[0][1] if rows else ""
        name = shorten(re.sub(r"^(class|struct|union) ", "", title))
        if not OURS.match(name) or "(anonymous" in name or "(unnamed" in name:
            continue
        lines = records[name] = []
        for offset, row in rows[1:]:
            size = re.match(r" *\[?(?:nv)?sizeof=(\d+).*", row)
            if size:
                break
            # Deeper rows belong to the types of members, and those have their own records.
            if re.match(r"  [^ ]", row):
                lines.append(f"  {offset.strip():>3} {shorten(row.strip())}")
        size = re.search(r"\[sizeof=(\d+).*?align=(\d+)", record, re.DOTALL)
        lines.insert(0, f"{name}: {size[1]} bytes, aligned to {size[2]}")
    return [line for name in sorted(records) for line in records[name]]


def main(arguments):
    write = "--write" in arguments
    libraries = [argument for argument in arguments if argument != "--write"]
    library = libraries[0] if libraries else str(ROOT / "build/release/quiver/libQvXmlLib9.so")
    exports = list_exports(library)
    found = {"exports.txt": exports, "slots.txt": list_slots(library), "layout.txt": list_layout(exports)}
    foreign = [line for line in exports if not re.search(OURS, re.sub(r"[(<].*", "", line))]
    failed = False
    for line in foreign:
        print(f"check_abi: exported, and none of ours: {line}", file=sys.stderr)
        failed = True
    for name, lines in found.items():
        path = LISTS / name
        if write:
            path.write_text("\n".join(lines) + "\n", encoding="utf-8")
            continue
        expected = path.read_text(encoding="utf-8").splitlines()
        changes = list(difflib.unified_diff(expected, lines, f"tests/abi/{name}", "the library", lineterm="", n=1))
        if changes:
            print("\n".join(changes), file=sys.stderr)
            print(f"check_abi: the library differs from tests/abi/{name}; if that is meant, "
                  "scripts/check_abi.py --write takes it over", file=sys.stderr)
            failed = True
    if not failed:
        counts = ", ".join(f"{len(lines)} lines of {name}" for name, lines in found.items())
        print(f"check_abi: {'wrote' if write else 'ok,'} {counts}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
