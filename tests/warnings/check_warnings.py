"""Fails unless a compiler warns of exactly the lines of a source that are marked so.

Usage: check_warnings.py SOURCE COMPILER [OPTION...]

The mark is a comment at the end of the line, "warns: EXPRESSION" or "clang++ warns: EXPRESSION", with a
regular expression that one of the warnings must contain. Where only clang++ must warn, newer versions
of g++ may warn, too.
"""

import re
import subprocess
import sys

EXPECTED = re.compile(r"// (?P<clang>clang\+\+ )?warns: (?P<expression>.*)$")
WARNING = re.compile(r"^(?P<file>[^:\n]+):(?P<line>\d+):\d+: (?P<kind>warning|error|fatal error): (?P<text>.*)$", re.M)


def end_of_statement(lines, number):
    """The line with the end of a statement, where its comment is; g++ names the one where it begins."""
    while number < len(lines) and not re.search("[;{]", lines[number - 1]):
        number += 1
    return number


def main():
    source, command = sys.argv[1], sys.argv[2:]
    version = subprocess.run([command[0], "--version"], stdout=subprocess.PIPE, text=True, check=True)
    is_clang = "clang" in version.stdout
    with open(source) as file:
        lines = file.read().splitlines()
    expected = {}
    tolerated = {}
    for number, line in enumerate(lines, 1):
        match = EXPECTED.search(line)
        if match:
            needed = is_clang or not match["clang"]
            (expected if needed else tolerated)[number] = match["expression"]

    result = subprocess.run([*command, "-fsyntax-only", source], stderr=subprocess.PIPE, text=True)
    given = {}
    for match in WARNING.finditer(result.stderr):
        if match["file"] == source:
            given.setdefault(int(match["line"]), []).append(match["text"])

    wrong = [] if result.returncode == 0 else ["does not compile"]
    for number in sorted({*expected, *given}):
        texts = given.get(number, [])
        end = end_of_statement(lines, number)
        if any(end in tolerated and re.search(tolerated[end], text) for text in texts):
            continue
        if number not in expected:
            wrong.append(f"line {number} must not warn: {texts[0]}")
        elif not any(re.search(expected[number], text) for text in texts):
            wrong.append(f"line {number} must warn of {expected[number]}: {texts or 'it does not'}")
    if wrong:
        sys.exit("\n".join([f"check_warnings: {source}:", *wrong]))
    print(f"The compiler warns of exactly the {len(expected)} marked lines.")


main()
