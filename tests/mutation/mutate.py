"""Makes mutants of the libraries' sources, and of the headers that define more than declarations,
and reports which of them the tests kill.

To be started by scripts/mutate, which has built the unchanged library and its tests in
ROOT/build/mutate.

A mutant differs from the sources in one place, by one of the rules below. Only the files that depend
on the mutant are compiled again, each worker in a folder of its own. Test programs that use the
shared libraries load the mutants of these; the other test programs are linked again. The functions of
a header are compiled into the test programs: each test source of a header becomes a program of its
own, so that the linker cannot choose the same function from an unchanged source.
"""

import argparse
import concurrent.futures
import filecmp
import json
import os
import pathlib
import queue
import random
import re
import shlex
import shutil
import signal
import subprocess
import sys
import time

VERSION = re.search(r"VERSION ([0-9.]+)",
                    (pathlib.Path(__file__).parents[2] / "CMakeLists.txt").read_text().split("project(")[1])[1]
LIBRARIES = (f"libfoundation_json.so.{VERSION}", f"libfoundation_json_parser.so.{VERSION}")
PUBLIC, INTERNAL, PARSER, ALLOCATION = (
    "foundation_json_tests", "foundation_json_internal_tests", "foundation_json_parser_tests",
    "foundation_json_allocation_tests",
)  # fmt: skip
PROGRAMS = (PUBLIC, INTERNAL, PARSER, ALLOCATION)
# The libraries and programs that contain objects of the libraries.
LINKED = (*LIBRARIES, INTERNAL, PARSER)
# The tests that take longest come last; they are seldom needed.
LONG = "*Random*:AnyStream.*:*OutOfMemory.*:PeakMemory.*:ParserAndIndependentReader.*"
RUNS = [(p, f"-{LONG}") for p in PROGRAMS] + [(p, LONG) for p in PROGRAMS]
MEMORY = 4 << 30
HEADERS = tuple(f"include/foundation/json/{name}.hpp"
                for name in ("content", "convert", "detail/number_parts", "members", "number",
                             "pointer"))
HEADER_TESTS = re.compile(r"tests/.*\.dir/(?:(content|convert)/|allocation/(content|convert)_test)")

# ---- The rules -----------------------------------------------------------------------------

TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*|^[ \t]*static_assert\b[^;]*)
      | (?P<string>"(?:[^"\\\n]|\\.)*")
      | (?P<char>'(?:[^'\\\n]|\\.)+')
      | (?P<number>\b(?:0x[0-9A-Fa-f]+|[0-9]+(?:\.[0-9]*)?(?:[eE][-+]?[0-9]+)?)[fuUlL]*\b)
      | (?P<word>\b[A-Za-z_]\w*\b)
      | (?P<operator>(?<=\ )(?:<=|>=|==|!=|<<|>>|&&|\|\||\+=|-=|/=|<|>|\+|-|\*|/|%|&|\|)(?=[ \n]))
      | (?P<step>\+\+|--)""",
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

OPERATORS = {
    "<": ["<=", ">"], "<=": ["<", ">="], ">": [">=", "<"], ">=": [">", "<="],
    "==": ["!="], "!=": ["=="], "&&": ["||"], "||": ["&&"],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["/"], "&": ["|"], "|": ["&"],
    "<<": [">>"], ">>": ["<<"], "+=": ["-="], "-=": ["+="], "/=": ["*="],
    "++": ["--"], "--": ["++"],
}  # fmt: skip

# The statements that may be removed. Two words in a row would be a declaration.
STATEMENT = re.compile(
    r"^[ ]+(?:throw\b|delete\b|\(|[*+\-]*[a-z_][\w.]*(?:::\w+)*(?:\(|\[|->|\.|\+\+|--| ?[-+/&|]?= | << ))"
)


def changed_literal(text, rng):
    """A string or character literal with one character changed."""
    quote, body = text[0], text[1:-1]
    pieces = re.findall(r"\\.[0-7x]*|.", body)
    if not pieces:
        return quote + "x" + quote if quote == '"' else None
    at = rng.randrange(len(pieces))
    pieces[at] = "x" if pieces[at] != "x" else "y"
    return quote + "".join(pieces) + quote


def changed_number(text, rng):
    match = re.fullmatch(r"(0x[0-9A-Fa-f]+|[0-9]+)([uUlL]*)", text)
    if match:
        octal = re.fullmatch("0[0-7]+", match[1])
        value = abs(int(match[1], 8 if octal else 0) + rng.choice((1, -1)))
        return f"{f'0{value:o}' if octal else value}{match[2]}"
    number = text.rstrip("fF")
    return f"{float(number) * 2 + 1!r}{text[len(number):]}"


def closing(text, at):
    """The position of the parenthesis that closes the one at a position."""
    depth = 0
    for i in range(at, len(text)):
        depth += {"(": 1, ")": -1}.get(text[i], 0)
        if depth == 0:
            return i
    raise ValueError("unbalanced parentheses")


def replacements(text, rng):
    """Yields (rule, begin, end, replacement) for every mutant of a file."""
    blank = list(text)  # the text with comments, strings and characters blanked out
    for match in TOKEN.finditer(text):
        kind, token, (begin, end) = match.lastgroup, match[0], match.span()
        if kind in ("skip", "string", "char"):
            blank[begin:end] = ["\n" if c == "\n" else "_" for c in token]
        line = text[text.rfind("\n", 0, begin) + 1 : (text + "\n").find("\n", begin)]
        if kind == "string" or kind == "char":
            yield f"{kind} literal", begin, end, changed_literal(token, rng)
        elif kind == "number":
            yield "number", begin, end, changed_number(token, rng)
        elif kind == "word" and token in ("true", "false"):
            yield "flag", begin, end, "false" if token == "true" else "true"
        elif kind in ("operator", "step") and not (token == "<<" and "stream" in line):
            yield f"operator {token}", begin, end, rng.choice(OPERATORS[token])
        elif kind == "word" and token in ("if", "while") and text[end : end + 2] == " (":
            close = closing(text, end + 1)
            if ";" in text[end:close]:
                continue  # with a declaration of its own
            condition = text[end + 2 : close]
            if " = " not in condition:
                yield "negated condition", end + 2, close, f"!({condition})"
                yield "removed branch", end + 2, close, "false"
    blank = "".join(blank)
    before = "{"
    offset = 0
    for line in blank.splitlines(keepends=True):
        code = line.rstrip()
        complete = before.endswith(("{", "}", ";", ":")) and code.endswith(";")
        complete = complete and code.count("(") == code.count(")")
        begin, end = offset + len(line) - len(line.lstrip()), offset + len(code)
        if complete and STATEMENT.match(code):
            yield "dropped statement", begin, end, ";"
        if complete and re.match(r" +return [^;]", code) and code.strip() != "return {};":
            yield "returned value", begin, end, "return {};"
        offset += len(line)
        if code.strip("_ "):
            before = code
    return


class Mutant:
    def __init__(self, file, text, rule, begin, end, replacement):
        self.file, self.rule = file, rule
        self.text = text[:begin] + replacement + text[end:]
        self.line = text.count("\n", 0, begin) + 1
        first = text.rfind("\n", 0, begin) + 1
        last = text.find("\n", end)
        self.before = " ".join(text[first:last].split())
        self.after = " ".join((text[first:begin] + replacement + text[end:last]).split())

    def key(self):
        return self.file, self.before, self.after

    def __str__(self):
        return f"{self.file}:{self.line}: {self.rule}\n    - {self.before}\n    + {self.after}"


def all_mutants(root, seed):
    """The mutants of each file, in an order that the seed decides."""
    by_file = {}
    for path in sorted([*(root / "src").rglob("*.?pp"), *(root / header for header in HEADERS)]):
        file = str(path.relative_to(root))
        text = path.read_text()
        rng = random.Random(f"{seed} {file}")
        mutants = [
            Mutant(file, text, rule, begin, end, new)
            for rule, begin, end, new in replacements(text, rng)
            if new is not None and new != text[begin:end]
        ]
        rng.shuffle(mutants)
        by_file[file] = mutants
    return by_file


def choose(root, seed, count, patterns):
    """Up to `count` mutants: all files get their share, growing more slowly than they do."""
    by_file = all_mutants(root, seed)
    if patterns:
        for file, mutants in by_file.items():
            by_file[file] = [m for m in mutants if any(p in f"{file}:{m.before}" for p in patterns)]
    total = sum(map(len, by_file.values()))
    share = {file: len(mutants) ** 0.5 for file, mutants in by_file.items()}
    chosen = {file: 0 for file in by_file}
    while sum(chosen.values()) < min(count, total):
        file = min(
            (f for f in by_file if chosen[f] < len(by_file[f])),
            key=lambda f: (chosen[f] >= 4, chosen[f] / share[f]),
        )
        chosen[file] += 1
    return [m for f in by_file for m in by_file[f][: chosen[f]]]


# ---- The survivors' file -------------------------------------------------------------------


def read_explanations(path):
    """The mutants that are explained: blocks of a file name, pairs of - and + lines, a reason."""
    explained = {}
    blocks = re.split(r"\n\s*\n", path.read_text()) if path.exists() else []
    for block in blocks:
        lines = [line.rstrip() for line in block.splitlines() if line.strip()]
        if not lines or lines[0].startswith("#"):
            continue
        file, pairs = lines[0], []
        rest = [line.strip() for line in lines[1:]]
        while len(rest) >= 2 and rest[0].startswith("- ") and rest[1].startswith("+ "):
            pairs.append((file, " ".join(rest[0][2:].split()), " ".join(rest[1][2:].split())))
            rest = rest[2:]
        if not pairs or not rest:
            sys.exit(f"mutate: not a file, lines - and +, and a reason, in {path}: {lines[0]}")
        for pair in pairs:
            explained[pair] = " ".join(rest)
    return explained


# ---- Building and running ------------------------------------------------------------------


class Project:
    """The commands, dependencies and times of the unchanged build."""

    def __init__(self, root):
        self.root, self.base = root, root / "build" / "mutate"
        self.compile, self.link = {}, {}
        for entry in json.loads(self.ninja("-t", "compdb")):
            output, command = entry["output"], entry["command"]
            words = [w for w in shlex.split(command.removeprefix(": && ").removesuffix(" && :"))]
            if entry["command"].endswith(entry["file"]) and output.endswith(".o"):
                words = words[1:] if words[0].endswith("ccache") else words
                self.compile[output] = self.without_dependencies(words)
            elif command and os.path.basename(output) in (*LIBRARIES, *PROGRAMS):
                words = words[: words.index("&&")] if "&&" in words else words
                self.link[os.path.basename(output)] = words
        self.dependents = {}
        for block in self.ninja("-t", "deps").split("\n\n"):
            lines = block.split("\n")
            output = lines[0].split(":")[0]
            for line in lines[1:]:
                self.dependents.setdefault(os.path.normpath(self.base / line.strip()), set()).add(output)
        self.seconds = {}
        self.reference = {}

    def ninja(self, *arguments):
        return subprocess.run(["ninja", "-C", self.base, "--quiet", *arguments], check=True,
                              text=True, stdout=subprocess.PIPE).stdout  # fmt: skip

    @staticmethod
    def without_dependencies(words):
        result, skip = [], False
        for word in words:
            if skip or word in ("-MD", "-c"):
                skip = False
            elif word in ("-MT", "-MF", "-o"):
                skip = True
            else:
                result.append(word)
        return result

    def objects_of(self, file):
        """The objects that depend on a file and become part of a library or its tests."""
        outputs = self.dependents.get(str(self.root / file), set())
        linked = {w for name in LINKED for w in self.link[name]}
        return sorted(o for o in outputs if o in linked)

    def header_tests_of(self, file):
        """(object, test program) for the test sources of a header, those of its own name first."""
        outputs = self.dependents.get(str(self.root / file), set())
        own = pathlib.PurePath(file).stem
        found = [(o, name) for name in (PUBLIC, ALLOCATION) for o in outputs
                 if o in self.link[name] and HEADER_TESTS.match(o)]  # fmt: skip
        return sorted(found, key=lambda f: (own not in f[0], "random" in f[0], "allocation" in f[0], f))


def run(command, folder, seconds, environment=None):
    """The exit status of a command, or None if it took too long."""
    process = subprocess.Popen(
        ["prlimit", f"--as={MEMORY}", "--core=0", *command], cwd=folder, env=environment,
        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
        start_new_session=True)  # fmt: skip
    try:
        return process.wait(seconds)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()
        return None


class Worker:
    def __init__(self, project, number):
        self.project = project
        self.folder = project.root / "build" / "mutate-work" / str(number)
        shutil.rmtree(self.folder, ignore_errors=True)
        for name in ("src", "include"):
            shutil.copytree(project.root / name, self.folder / name)
        (self.folder / "objects").mkdir()

    def build_object(self, output, to):
        ours, mine = f"{re.escape(str(self.project.root))}/(src|include)(?=/|$)", rf"{self.folder}/\1"
        words = [re.sub(ours, mine, w) for w in self.project.compile[output]]
        return run([*words, "-w", "-c", "-o", to], self.project.base, 300) == 0

    def link(self, name, replaced):
        words = [replaced.get(w, w) for w in self.project.link[name]]
        # A library's major version alone is in the name by which programs load it.
        loaded = re.sub(r"(\.so\.[0-9]+).*", r"\1", name)
        words[words.index("-o") + 1] = self.folder / loaded
        return run(words, self.project.base, 300) == 0

    def run_tests(self, program, libraries, which, seconds):
        """None if the tests pass, else how they fail."""
        environment = dict(os.environ, LD_LIBRARY_PATH=str(libraries), GTEST_BRIEF="1",
                           LOCPATH=str(self.project.base / "tests" / "locales"))  # fmt: skip
        command = [program, "--gtest_fail_fast", f"--gtest_filter={which}"]
        status = run(command, self.folder, seconds, environment)
        return "took too long" if status is None else f"status {status}" if status else None

    def test(self, name, which, seconds):
        program = (self.folder if name in LINKED else self.project.base / "tests") / name
        return self.run_tests(program, self.folder, which, seconds)

    def header_test(self, name, output, replacement, seconds):
        """None if the tests of one source pass, else how they fail."""
        program = str(self.folder / "header_test")
        words = [replacement if w == output else w for w in self.project.link[name]
                 if not w.endswith(".o") or w == output or "/support/" in w]  # fmt: skip
        words[words.index("-o") + 1] = program
        if run(words, self.project.base, 300) != 0:
            return "does not link"
        return self.run_tests(program, self.project.base, "*", seconds)

    def unbroken_header_test(self, name, output):
        """The same for the unchanged source. Keeps the object to compare mutants with, since file names
        may differ in the object that ninja has built."""
        reference = str(self.folder / "objects" / f"reference-{len(self.project.reference)}.o")
        self.project.reference[output] = reference
        if not self.build_object(output, reference):
            return "does not compile"
        return self.header_test(name, output, reference, 600)

    def header_outcome(self, mutant):
        changed = False
        to = str(self.folder / "objects" / "header_test.o")
        for output, name in self.project.header_tests_of(mutant.file):
            if not self.build_object(output, to):
                return "does not compile", ""
            if filecmp.cmp(to, self.project.reference[output], shallow=False):
                continue
            changed = True
            failure = self.header_test(name, output, to, 10 + 5 * self.project.seconds[output])
            if failure:
                return "killed", f"{output.split('/')[-1].removesuffix('.cpp.o')}: {failure}"
        return ("survived", "") if changed else ("unchanged", "the same program")

    def outcome(self, mutant):
        """(outcome, detail): killed, survived, unchanged or does not compile."""
        target = self.folder / mutant.file
        original = target.read_text()
        target.write_text(mutant.text)
        try:
            if mutant.file in HEADERS:
                return self.header_outcome(mutant)
            replaced, changed = {}, False
            for number, output in enumerate(self.project.objects_of(mutant.file)):
                to = str(self.folder / "objects" / f"{number}.o")
                if not self.build_object(output, to):
                    return "does not compile", ""
                replaced[output] = to
                changed = changed or not filecmp.cmp(to, self.project.base / output, shallow=False)
            if not changed:
                return "unchanged", "the same program"
            if not all(self.link(name, replaced) for name in LINKED):
                return "does not compile", "does not link"
            for name, which in RUNS:
                if mutant.file.startswith(("src/grammar/", "src/reading/")) and name not in (PARSER, ALLOCATION):
                    continue  # does not use the parser
                failure = self.test(name, which, 10 + 5 * self.project.seconds[name, which])
                if failure:
                    return "killed", f"{name}: {failure}"
            return "survived", ""
        finally:
            target.write_text(original)


def main():
    parser = argparse.ArgumentParser(prog="mutate")
    parser.add_argument("root", type=pathlib.Path)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=190)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--check", action="store_true",
                        help="build nothing: only see whether each explained line is in the sources")
    parser.add_argument("patterns", nargs="*")
    arguments = parser.parse_intermixed_args()
    root, jobs = arguments.root, arguments.jobs
    mutants = choose(root, arguments.seed, arguments.count, arguments.patterns)
    if not mutants:
        sys.exit(f"mutate: nothing to break in {' or '.join(arguments.patterns)}")
    explained = read_explanations(root / "tests" / "mutation" / "survivors.txt")
    stale = [k for k in explained if k[1] not in " ".join((root / k[0]).read_text().split())]
    if arguments.check:
        for file, before, _ in stale:
            print(f"Explained, but no longer in {file}: {before}")
        return 1 if stale else 0

    os.nice(10)
    project = Project(root)
    workers = queue.SimpleQueue()
    for number in range(min(jobs, len(mutants))):
        workers.put(Worker(project, number))

    # First the unchanged library: its tests must pass, and show how long they take.
    worker = workers.get()
    files = {mutant.file for mutant in mutants}
    runs = RUNS if files - set(HEADERS) else []
    if runs and not all(worker.link(name, {}) for name in LINKED):
        sys.exit("mutate: the unbroken libraries cannot be linked")
    header_tests = {test for file in files & set(HEADERS) for test in project.header_tests_of(file)}
    tests = {run: (run[0], lambda run=run: worker.test(*run, 600)) for run in runs}
    tests |= {output: (output, lambda o=output, n=name: worker.unbroken_header_test(n, o))
              for output, name in header_tests}  # fmt: skip
    for key, (name, test) in tests.items():
        begin = time.monotonic()
        failure = test()
        if failure:
            sys.exit(f"mutate: the unbroken library fails its tests: {name}: {failure}")
        project.seconds[key] = time.monotonic() - begin
    workers.put(worker)

    def examine(mutant):
        worker = workers.get()
        try:
            return mutant, *worker.outcome(mutant)
        finally:
            workers.put(worker)

    found = {"killed": [], "survived": [], "unchanged": [], "does not compile": []}
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for done, (mutant, outcome, detail) in enumerate(pool.map(examine, mutants), 1):
            found[outcome].append(mutant)
            print(f"[{done}/{len(mutants)}] {outcome}{detail and f' ({detail})'}: {mutant}", flush=True)

    unexplained = [m for m in found["survived"] if m.key() not in explained]
    known = len(found["survived"]) - len(unexplained)
    tested = len(found["killed"]) + len(found["survived"])
    print()
    for mutant in unexplained:
        print(f"Survived without an explanation: {mutant}")
    for file, before, _ in stale:
        print(f"Explained, but no longer in {file}: {before}")
    print(f"{tested} mutants tested: {len(found['killed'])} killed, {len(found['survived'])} survived, "
          f"of which {known} are explained. Left out: {len(found['unchanged'])} that are the same "
          f"program, {len(found['does not compile'])} that do not compile.")  # fmt: skip
    return 1 if unexplained or stale else 0


if __name__ == "__main__":
    sys.exit(main())
