#!/usr/bin/env python3
"""Writes LowercaseTables.h from the files of the Unicode Character Database.

Usage: generate_lowercase_tables.py DIRECTORY > LowercaseTables.h
DIRECTORY holds UnicodeData.txt, SpecialCasing.txt and DerivedCoreProperties.txt of one version
(Debian: package unicode-data, /usr/share/unicode).
"""

import re
import sys
from pathlib import Path


def rows(path):
    for line in path.read_text(encoding="utf-8").splitlines():
        fields = line.split("#", 1)[0].split(";")
        if len(fields) > 1:
            yield [field.strip() for field in fields]


def simple_mappings(directory):
    return [(int(f[0], 16), int(f[13], 16)) for f in rows(directory / "UnicodeData.txt") if f[13]]


def special_mappings(directory):
    """Unconditional mappings to several characters."""
    result = []
    for fields in rows(directory / "SpecialCasing.txt"):
        lower = [int(code, 16) for code in fields[1].split()]
        if not fields[4] and len(lower) > 1:
            result.append((int(fields[0], 16), lower))
    return result


def property_ranges(directory, name):
    result = []
    for fields in rows(directory / "DerivedCoreProperties.txt"):
        if fields[1] == name:
            first, _, last = fields[0].partition("..")
            result.append((int(first, 16), int(last or first, 16)))
    merged = []
    for first, last in sorted(result):
        if merged and first == merged[-1][1] + 1:
            merged[-1] = (merged[-1][0], last)
        else:
            merged.append((first, last))
    return merged


def runs(mappings):
    """Folds mappings into runs (first, last, step, distance): every step-th character from first to
    last lies `distance` away from its lower-case form."""
    result = []
    for code, lower in sorted(mappings):
        if result:
            first, last, step, distance = result[-1]
            gap = code - last
            if lower - code == distance and (gap == step or (first == last and gap <= 2)):
                result[-1] = (first, code, gap, distance)
                continue
        result.append((code, code, 1, lower - code))
    return result


def version(directory):
    head = (directory / "SpecialCasing.txt").read_text(encoding="utf-8").splitlines()[0]
    return re.search(r"-(\d+\.\d+\.\d+)\.txt", head).group(1)


def table(name, comment, lines):
    print(f"\n// {comment}")
    print(f"inline constexpr auto {name} = std::to_array<{lines[0]}>({{")
    for line in lines[1]:
        print(f"    {line},")
    print("});")


def main():
    directory = Path(sys.argv[1])
    special = special_mappings(directory)
    special_codes = {code for code, _ in special}
    simple = [m for m in simple_mappings(directory) if m[0] not in special_codes]
    if [lower for _, lower in special if len(lower) != 2]:
        sys.exit("a character maps to more than two; LowercasePair does not hold it")
    print("#pragma once\n")
    print(f"// Written by generate_lowercase_tables.py from the Unicode Character Database {version(directory)}")
    print("// (UnicodeData.txt, SpecialCasing.txt, DerivedCoreProperties.txt). Do not edit by hand.\n")
    print("#include <array>\n#include <cstdint>\n")
    print("namespace pelistra::unicode {\n")
    print("// Every step-th character from first to last has its lower-case form at that distance.")
    print("struct LowercaseRun {\n    char32_t first;\n    char32_t last;\n    std::uint8_t step;")
    print("    std::int32_t distance;\n};\n")
    print("// A character whose lower-case form is two characters.")
    print("struct LowercasePair {\n    char32_t code;\n    std::array<char32_t, 2> lower;\n};\n")
    print("struct CodeRange {\n    char32_t first;\n    char32_t last;\n};")
    table("lowercaseRuns", "Ascending.",
          ("LowercaseRun", [f"{{{a:#x}, {b:#x}, {s}, {d}}}" for a, b, s, d in runs(simple)]))
    table("lowercasePairs", "Ascending.",
          ("LowercasePair", [f"{{{c:#x}, {{{l[0]:#x}, {l[1]:#x}}}}}" for c, l in special]))
    for name, prop in (("casedRanges", "Cased"), ("caseIgnorableRanges", "Case_Ignorable")):
        table(name, f"Characters with the property {prop}, ascending.",
              ("CodeRange", [f"{{{a:#x}, {b:#x}}}" for a, b in property_ranges(directory, prop)]))
    print("\n} // namespace pelistra::unicode")


main()
