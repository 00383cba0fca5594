"""Usage: replay.py TRANSCRIPT... -- GDB [ARGUMENT...]

Gives gdb the commands of transcripts, those after "(gdb) ", and fails unless it answers each as
written there. The arguments bring gdb to where the first transcript begins; the next goes on where
one ends.

In a transcript, what precedes the first command and what follows an empty line are remarks; a line
that begins with spaces belongs to the one before. The numbers that gdb gives to what it prints, as
in "$1 = ", are left out.
"""

import difflib
import pathlib
import re
import subprocess
import sys

PROMPT = "(gdb) "


def answered(text):
    """Commands and answers, line by line, from the first command on."""
    _, prompt, rest = ("\n" + text).partition("\n" + PROMPT)
    return (prompt + rest).strip().splitlines()


def written(transcript):
    text = re.sub(r"\n +", "", transcript.read_text(encoding="utf-8"))
    return answered(re.sub(r"\n\n.*?(?=^\(gdb\) |\Z)", "\n", text, flags=re.DOTALL | re.MULTILINE))


try:
    separator = sys.argv.index("--")
except ValueError:
    separator = 1
transcripts, gdb = map(pathlib.Path, sys.argv[1:separator]), sys.argv[separator + 1 :]
expected = [line for transcript in transcripts for line in written(transcript)]
commands = [line.removeprefix(PROMPT) for line in expected if line.startswith(PROMPT)]
if not commands or not gdb:
    sys.exit("replay.py: expected: transcripts with commands, --, gdb and its arguments")

for command in commands:
    gdb += ["-ex", f"python print({PROMPT + command!r})", "-ex", command]
run = subprocess.run(gdb, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
output = run.stdout.decode(errors="backslashreplace")
answers = answered(re.sub(r"^\$\d+ = ", "", output, flags=re.MULTILINE))
if answers != expected:
    print(*difflib.unified_diff(expected, answers, "expected", "gdb", n=1, lineterm=""), sep="\n")
    sys.exit(1 if answers else f"replay.py: gdb did not get as far as the first command:\n{output}")
