"""Usage: compile_time.py REPETITIONS INCLUDES FLAG...

Measures the compilation of empty programs that include one header each, of this library and of others,
and of programs that also convert a struct of ten members. Writes the medians of the compiler's
processor time to standard output, as JSON. INCLUDES is the folder of this library's headers; each FLAG
goes to g++, for instance to find the others' headers. Headers that do not exist are left out.
"""

import json
import random
import resource
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

PEERS = {"nlohmann": ["nlohmann/json.hpp"],
         "RapidJSON": ["rapidjson/document.h", "rapidjson/prettywriter.h"],
         "Boost.JSON": ["boost/json.hpp"],
         "JsonCpp": ["json/json.h"]}

# A struct of ten members, and functions that convert it both ways.
TEN = """
#include <string>
#include <vector>
struct Ten {
    std::string name, text, link; int port = 0, count = 0; double share = 0;
    bool on = false, off = false; long long id = 0; std::vector<std::string> tags;
};
"""
STRUCT = ", struct of ten members"
NAMES = "name text link port count share on off id tags".split()
CONVERSIONS = {
    ("foundation::json", "convert.hpp"): "template <> inline constexpr auto "
    "foundation::json::members<Ten> = table("
    + ", ".join(f'required("{name}", &Ten::{name})' for name in NAMES) + ");\n"
    "Ten read(const foundation::json::Value& v) { return foundation::json::to<Ten>(v); }\n"
    "foundation::json::Value write(const Ten& ten) { return foundation::json::from(ten); }\n",
    ("nlohmann", "nlohmann/json.hpp"):
    f"NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Ten, {', '.join(NAMES)})\n"
    "Ten read(const nlohmann::json& v) { return v.get<Ten>(); }\n"
    "nlohmann::json write(const Ten& ten) { return ten; }\n",
    ("Boost.JSON", "boost/json.hpp"): "#include <boost/describe.hpp>\n"
    f"BOOST_DESCRIBE_STRUCT(Ten, (), ({', '.join(NAMES)}))\n"
    "Ten read(const boost::json::value& v) { return boost::json::value_to<Ten>(v); }\n"
    "boost::json::value write(const Ten& ten) { return boost::json::value_from(ten); }\n"}


def seconds_to_compile(source, flags):
    """The processor time of the compiler, or None if it fails."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    done = subprocess.run(["g++", "-std=c++17", "-O0", "-c", "-o", "/dev/null", *flags, source],
                          capture_output=True, check=False)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    if done.returncode != 0:
        return None
    return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime


def main(arguments):
    repetitions, includes, flags = int(arguments[0]), Path(arguments[1]), arguments[2:]
    headers = sorted(includes.glob("foundation/json/*.hpp"))
    flags = [*flags, f"-I{includes}", "-I/usr/include/jsoncpp"]
    programs = {("foundation::json", header.name): [str(header.relative_to(includes))]
                for header in headers}
    programs |= {(peer, needed[0]): needed for peer, needed in PEERS.items()}
    programs |= {(contender, header + STRUCT): programs[contender, header]
                 for contender, header in CONVERSIONS}

    with tempfile.TemporaryDirectory() as folder:
        sources = {}
        for number, (program, needed) in enumerate(programs.items()):
            source = Path(folder) / f"{number}.cpp"
            source.write_text("".join(f"#include <{header}>\n" for header in needed)
                              + (TEN + CONVERSIONS[program[0], needed[0].split("/json/")[-1]
                                                   if program[0] == "foundation::json"
                                                   else needed[0]]
                                 if program[1].endswith(STRUCT) else ""))
            if seconds_to_compile(source, flags) is not None:
                sources[program] = source
            elif program[0] == "foundation::json":
                sys.exit(f"{program[1]} does not compile")
        times = {program: [] for program in sources}
        for _ in range(repetitions):
            for program in random.sample(list(sources), len(sources)):
                times[program].append(seconds_to_compile(sources[program], flags))
    json.dump([{"contender": contender, "header": header, "seconds": statistics.median(seconds)}
               for (contender, header), seconds in times.items()], sys.stdout, indent=1)
    print()


main(sys.argv[1:])
