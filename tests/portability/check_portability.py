"""Usage: check_portability.py FOLDER

What only some compilers, processors or systems have stands in the few files that say what stands for
it elsewhere. FOLDER is the project's. Writes where it stands besides, and then fails.
"""

import pathlib
import re
import sys

COMPILER = "src/system/compiler.hpp"
FILES = "src/system/files.hpp"
LOCALE = "src/system/locale.hpp"
EXPORT = "include/foundation/json/export.hpp"
WORDS = "include/foundation/json/detail/words.hpp"
VECTORS = "src/text/byte_vector.hpp"
ENVIRONMENT = "src/number/default_environment.hpp"

# What must not stand in a source but in these.
RULES = {
    r"\b__builtin_\w+": {COMPILER, WORDS, VECTORS},
    r"\b__attribute__\b|\b__declspec\b": {EXPORT},
    r"\b__(BYTE_ORDER|ORDER_\w+)__\b": {COMPILER},
    r"\b__(u?int128|SIZEOF_INT128__|extension__)\b": {COMPILER},
    r"\b__(GNUC\w*|clang\w*|MINGW\w*|GLIBC\w*)\b|\b_MSC_\w+": {COMPILER, EXPORT, WORDS, VECTORS},
    r"\b__(x86_64|i386|aarch64|arm\w*|ARM_\w+|SSE\w*|AVX\w*)\b|\b_M_\w+": {COMPILER, VECTORS},
    r"\b_WIN(32|64)\b": {COMPILER, FILES, LOCALE, EXPORT},
    r"\basm\b": {ENVIRONMENT},
    r"\b__(inline|restrict|func|PRETTY_FUNCTION|typeof)\w*\b|\btypeof\b|\bssize_t\b": set(),
    r"#\s*include\s*<(unistd|fcntl|io|process|share|windows|sys/\w+)\.h>": {FILES},
    r"#\s*include\s*<langinfo\.h>": {LOCALE},
    r"#\s*include\s*<\w*intrin\.h>|#\s*include\s*<arm_neon\.h>": {COMPILER, VECTORS},
}


def code_of(text):
    """The text without comments, line by line."""
    text = re.sub(r"/\*.*?\*/", lambda found: "\n" * found[0].count("\n"), text, flags=re.DOTALL)
    return re.sub(r"//.*", "", text).split("\n")


def main():
    root = pathlib.Path(sys.argv[1])
    sources = sorted(path for folder in ("include", "src") for path in (root / folder).rglob("*.?pp"))
    if not sources:
        sys.exit(f"no sources in {root}")
    found = 0
    for path in sources:
        name = path.relative_to(root).as_posix()
        for number, line in enumerate(code_of(path.read_text(encoding="utf-8")), 1):
            for pattern, files in RULES.items():
                if name not in files and re.search(pattern, line):
                    print(f"{name}:{number}: belongs into {' or '.join(sorted(files)) or 'no source'}: {line.strip()}")
                    found += 1
    sys.exit(1 if found else 0)


main()
