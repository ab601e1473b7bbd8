#!/usr/bin/env python3
"""format.py ZEL SOURCE: what the manual says of the ZEL format, against the program.

Its examples have no message, its messages are those of the reader, and it names every keyword, unit and colour.
"""

import pathlib
import re
import subprocess
import sys

zel, source = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
manual = source / "docs/manual"
reference = (manual / "format.md").read_text()
failures = []


def run(*arguments, text=None):
    result = subprocess.run([zel, *arguments], input=text, capture_output=True, text=True, cwd=manual / "format")
    return result.stdout, result.stderr


def expect(got, wanted, what):
    if got != wanted:
        failures.append(f"{what}\n  got    {got!r}\n  wanted {wanted!r}")


def blocks(page):
    """The fenced blocks of a page: attributes and text."""
    return re.findall(r"^``` ?(?:\{\.)?(\w.*?)\}?\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)


def check_examples():
    shown = set()
    for page in sorted(manual.glob("*.md")):
        for attributes, text in blocks(page.read_text()):
            words = dict(re.findall(r'(\w+)="([^"]*)"', attributes))
            if "example" in words:
                shown.add(words["example"])
            elif attributes.split()[0] == "zel":
                expect(run("check", "-q", "-", text=text)[0], "", f"{page.name}: {text}")
    expect(shown, {path.stem for path in manual.glob("format/*.zel")}, "examples shown, and files")
    expect(run("check", "-q", "-r", ".")[0], "", "examples")


def check_messages():
    rows = re.findall(r"^\| `((?:start;|end|circle;).*?)` +\| (.*) \|$", reference, re.MULTILINE)
    if len(rows) < 30:
        failures.append(f"only {len(rows)} messages found")
    for lines, message in rows:
        got = run("check", "-q", "-", text="\n".join(line.strip() for line in lines.split(";")))[0]
        expect([line.split(": ", 1)[1] for line in got.splitlines() if "has no place but" not in line], [message], lines)


def check_names():
    code = {name: (source / name).read_text() for name in
            ("format/Keyword.cpp", "format/BlockReader.cpp", "format/LineSettings.cpp", "format/ColorNames.h", "geo/UnitsTable.def")}
    table = code["format/Keyword.cpp"].split("kKeywords[] = {")[1].split("\n};")[0]
    names = set(re.findall(r'^    (?:\{|shape\()"(\w+)"', table, re.MULTILINE)) - {"3d"}
    names |= set(re.findall(r'"(3d \w+)"', code["format/BlockReader.cpp"] + code["format/LineSettings.cpp"]))
    names |= set(re.findall(r'"(kml_\w+)"', code["format/BlockReader.cpp"]))
    names |= set(re.findall(r'\{"(\w+)", "0x', code["format/ColorNames.h"]))
    units = re.findall(r'"(?:length|angle)", "(\w+)", "([\w ]+)"', code["geo/UnitsTable.def"])
    names |= {abbreviation for abbreviation, name in units}
    if len(names) < 110:
        failures.append(f"only {len(names)} names found")
    written = {word for code in re.findall(r"`([^`\n]+)`", reference)
               for word in (code, code.removeprefix("# "), code.split()[0])}
    expect(sorted(names - written), [], "names that the reference lacks")
    expect([name for abbreviation, name in units if name not in reference], [], "units that the reference lacks")


check_examples()
check_messages()
check_names()
print("\n".join(failures))
sys.exit(bool(failures))
