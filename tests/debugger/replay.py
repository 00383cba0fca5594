"""Usage: replay.py TRANSCRIPT... -- DEBUGGER [ARGUMENT...]

Runs the commands of transcripts in gdb or lldb: the lines after "(gdb) " or "(lldb) ". Fails unless
the output of each is that of the transcript. The arguments bring the debugger to the place where the
first transcript begins; each further one begins where the one before it ends.

In a transcript, text before the first command and after an empty line is a remark; a line that ends in
a backslash is continued by the next, without the spaces at its start. The comparison leaves out what
differs between versions of the debuggers: the numbers that gdb gives to results, as in "$1 = "; in
lldb, the "::" before the names of global variables, the addresses of references, the name that stands
for a class that is only declared, complaints about debug information, and advice on its settings.
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
    """Prints the prompt and the command before each, as gdb itself does not in batch mode."""
    for command in commands:
        yield from ("-ex", f"python print({PROMPTS[0] + command!r})", "-ex", command)


def lldb_options(commands):
    """The commands alone, since lldb itself prints the prompt and the command."""
    for command in commands:
        yield from ("-o", command)


def same_in_all_versions(output):
    output = re.sub(r"^\$\d+ = ", "", output, flags=re.MULTILINE)
    output = re.sub(r"^error: .* DW_TAG_member .*\n", "", output, flags=re.MULTILINE)
    output = re.sub(r"^\*\*\* Some of the displayed .*\n", "", output, flags=re.MULTILINE)
    output = output.replace("$foundation_json_value", "foundation::json::Value")
    output = re.sub(r"(?<=\) )::(?=\w+ = )", "", output)
    return re.sub(r"(?<= &\) )(\w+ = )0x[0-9a-f]+ ", r"\1", output)


separator = sys.argv.index("--")
transcripts, debugger = map(pathlib.Path, sys.argv[1:separator]), sys.argv[separator + 1 :]
expected = [line for transcript in transcripts for line in transcript_lines(transcript)]
prompt = next(prompt for prompt in PROMPTS if expected[0].startswith(prompt))
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
