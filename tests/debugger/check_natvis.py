"""Usage: check_natvis.py NATVIS COMPILER [FLAG...]

Fails unless every expression of a Natvis file compiles, as an expression about an object of the
type it is given for. Members of the types end in an underscore there, as nothing else does.
"""

import re
import subprocess
import sys
import xml.etree.ElementTree

natvis, *compiler = sys.argv[1:]
namespace = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"


def expressions(element):
    """The expressions of an element and those within it."""
    yield from element.attrib.get("Condition", "").splitlines()
    if element.tag == namespace + "DisplayString":
        yield from re.findall(r"{([^}]*)}", element.text)
    elif not len(element):
        yield element.text
    for child in element:
        yield from expressions(child)


source = "#include <foundation/json/json.hpp>\n"
count = 0
for number, of_type in enumerate(xml.etree.ElementTree.parse(natvis).getroot()):
    source += f"void show{number}(const {of_type.attrib['Name']}& self) {{\n"
    for expression in expressions(of_type):
        count += 1
        members = re.sub(r"(?<![\w.>])([a-z]\w*_)\b", r"self.\1", expression)
        source += f"    static_cast<void>({members});\n"
    source += "}\n"
if not count:
    sys.exit(f"check_natvis.py: no expressions in {natvis}")

# Debuggers see private members.
flags = ["-std=c++17", "-fsyntax-only", "-fno-access-control", "-xc++", "-"]
run = subprocess.run([*compiler, *flags], input=source, text=True)
sys.exit(run.returncode and f"check_natvis.py: not all of this compiles:\n{source}")
