"""Usage: replay.py TRANSCRIPT... -- DEBUGGER [ARGUMENT...]

Gives gdb or lldb the commands of transcripts, those after "(gdb) " or "(lldb) ", and fails unless
it answers each as written there. The arguments bring it to where the first transcript begins; the
next goes on where one ends.

In a transcript, what precedes the first command and what follows an empty line are remarks; a line
that ends in a backslash goes on in the next, after the spaces there. What differs from one version
of a debugger to the next is left out: the numbers that gdb gives to what it prints, as in "$1 = ";
in lldb, the "::" before the names of global variables, the addresses that references refer to, the
name that stands for a class only declared, complaints about debug information, and advice on its
settings.
"""

import difflib
import pathlib
import re
import subprocess
import sys

PROMPTS = "(gdb) ", "(lldb) "


def transcript_lines(transcript):
    text = re.sub(r"\\\n *", "", "\n" + transcript.read_text(encoding="utf-8"))
    prompts = "|".join(map(re.escape, PROMPTS))
    first = re.search(rf"^({prompts})", text, flags=re.MULTILINE)
    text = text[first.start() :] if first else ""
    return re.sub(
        rf"\n\n.*?(?=^({prompts})|\Z)", "\n", text, flags=re.DOTALL | re.MULTILINE
    ).splitlines()


def gdb_options(commands):
    """With each, the prompt and the command are printed: gdb does not in a batch."""
    for command in commands:
        yield from ("-ex", f"python print({PROMPTS[0] + command!r})", "-ex", command)


def lldb_options(commands):
    """As they are: lldb prints them by itself."""
    for command in commands:
        yield from ("-o", command)


def same_in_all_versions(output):
    output = re.sub(r"^\$\d+ = ", "", output, flags=re.MULTILINE)
    output = re.sub(r"^error: .* DW_TAG_member .*\n", "", output, flags=re.MULTILINE)
    output = re.sub(r"^\*\*\* Some of the displayed .*\n", "", output, flags=re.MULTILINE)
    output = output.replace("$foundation_json_value", "foundation::json::Value")
    output = re.sub(r"(?<=\) )::(?=\w+ = )", "", output)
    return re.sub(r"(?<= &\) )(\w+ = )0x[0-9a-f]+ ", r"\1", output)


try:
    separator = sys.argv.index("--")
except ValueError:
    separator = 1
transcripts, debugger = map(pathlib.Path, sys.argv[1:separator]), sys.argv[separator + 1 :]
expected = [line for transcript in transcripts for line in transcript_lines(transcript)]
prompt = next((prompt for prompt in PROMPTS if expected and expected[0].startswith(prompt)), None)
if not prompt or not debugger:
    sys.exit("replay.py: expected: transcripts with commands, --, a debugger and its arguments")

commands = [line.removeprefix(prompt) for line in expected if line.startswith(prompt)]
options = gdb_options(commands) if prompt == PROMPTS[0] else lldb_options(commands)
run = subprocess.run(
    [*debugger, *options], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60
)
output = same_in_all_versions("\n" + run.stdout.decode(errors="backslashreplace"))
before, begin, answers = output.partition("\n" + expected[0] + "\n")
answers = (begin + answers).strip("\n").splitlines()
if 'value="{...}"' in output:
    # An older gdb, which shows no text beside children through its machine interface.
    expected = [
        re.sub(r'value="JSON (array|object) of length [1-9]\d*"', 'value="{...}"', line)
        for line in expected
    ]
if answers != expected:
    difference = difflib.unified_diff(expected, answers, "expected", "answered", n=1, lineterm="")
    print(*difference, sep="\n")
    sys.exit(1 if answers else f"replay.py: did not get as far as the first command:\n{output}")
