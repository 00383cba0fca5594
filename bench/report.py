"""Usage: report.py RESULTS PAGE

Writes the results of the benchmarks, the files of the folder RESULTS, between the markers of PAGE,
a Markdown file, and draws a chart of them next to it, as an SVG file of the same name.
"""

import json
import math
import re
import sys
from pathlib import Path
from xml.sax.saxutils import escape

OURS = "foundation::json"
PEERS = ["nlohmann", "RapidJSON", "Boost.JSON", "JsonCpp"]
BEGIN, END = "<!-- results: begin -->", "<!-- results: end -->"
TASKS = ["serialize", "pretty_print", "write to a stream", "write to std::ostringstream",
         "write to std::ofstream", "parse and destroy", "copy and destroy", "==", "<",
         "read strings", "read numbers", "push", "insert all keys", "1,000 lookups", "to structs",
         "to structs by hand", "from structs", "words", "numbers", "strings", "containers"]
CHARTED_FAMILIES = ["text", "streams", "values", "arrays", "objects", "conversion"]


def fail(message):
    sys.exit(f"report.py: {message}")


# ---- Results -------------------------------------------------------------------------------


def medians(file, field="cpu_time"):
    """The results of one family: {(task, subject): {contender: median}}."""
    rows = {}
    for run in json.loads(file.read_text())["benchmarks"]:
        if run.get("error_occurred"):
            fail(f"{run['name']}: {run['error_message']}")
        task, subject, contender = run["run_name"].split("/")
        row = rows.setdefault((task, subject), {})
        if run.get("aggregate_name") == "median":
            row[contender] = run[field]
    # The benchmarks ran in random order.
    return dict(sorted(rows.items(), key=lambda item: in_order(*item[0])))


def in_order(task, subject):
    return TASKS.index(task.split(", ")[0].removeprefix("growth of ")), natural(subject)


def natural(text):
    """A key that puts "10 keys" before "1,000 keys"."""
    parts = re.split(r"(\d+)", text.replace(",", ""))
    return [(int(part), "") if part.isdigit() else (0, part) for part in parts]


# ---- Tables --------------------------------------------------------------------------------


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|---|" + "---:|" * (len(header) - 1)]
    return lines + ["| " + " | ".join(row) + " |" for row in rows] + [""]


def digits(number):
    """Three significant digits without an exponent."""
    if number == 0:
        return "0"
    return f"{number:.{max(0, 2 - math.floor(math.log10(abs(number))))}f}"


def time_text(nanoseconds, unit):
    return digits(nanoseconds / {"ns": 1, "µs": 1e3, "ms": 1e6}[unit])


def unit_of(nanoseconds):
    return "ns" if nanoseconds < 1e3 else "µs" if nanoseconds < 1e6 else "ms"


def time_table(results, peers=PEERS):
    rows = []
    for (task, subject), times in results.items():
        if OURS not in times:
            continue
        ours = times[OURS]
        unit = unit_of(ours)
        others = [times[peer] for peer in peers if peer in times]
        cells = [f"{task}, {subject}", f"{time_text(ours, unit)} {unit}"]
        for peer in peers:
            cells.append(f"{time_text(times[peer], unit)} ({digits(ours / times[peer])})"
                         if peer in times else "–")
        cells.append(digits(ours / min(others)) if others else "–")
        rows.append(cells)
    return table(["Task", OURS, *peers, "ours / best"], rows)


def order_table(results):
    rows = []
    for (task, subject), times in results.items():
        if task.startswith("<"):
            equal = results["==" + task[1:], subject][OURS]
            rows.append([subject, *(f"{digits(t / 1e6)} ms" for t in (equal, times[OURS])),
                         digits(times[OURS] / equal)])
    return table(["Two equal documents", "`==`", "`<`", "`<` / `==`"], rows)


def memory_table(results):
    grouped = {}
    for result in results:
        row = grouped.setdefault((result["task"], result["subject"]), {})
        row[result["contender"]] = result
    rows = []
    for (task, subject), row in sorted(grouped.items(), key=lambda item: in_order(*item[0])):
        cells = [f"{task}, {subject}"]
        for contender in [OURS, *PEERS]:
            if contender not in row:
                cells.append("–")
            elif task == "write to a stream":
                cells.append(f"{row[contender]['peak_bytes']:,.0f} bytes")
            else:
                cells.append(digits(row[contender]["peak_bytes"] / row[contender]["text_bytes"]))
        rows.append(cells)
    return table(["Peak memory / size of the text", OURS, *PEERS], rows)


def growth_table(results):
    tasks, sizes = {}, []
    for (task, subject), rates in results.items():
        tasks.setdefault(task, {})[subject] = f"{digits(1e9 / rates[OURS])} ns"
        if subject not in sizes:
            sizes.append(subject)
    return table(["Time per byte of text", *sizes],
                 [[task.removeprefix("growth of "), *(row[size] for size in sizes)]
                  for task, row in tasks.items()])


def compile_time_table(results):
    ours = [(result["header"], result["seconds"]) for result in results
            if result["contender"] == OURS]
    others = [(f"{result['contender']}: {result['header']}", result["seconds"])
              for result in results if result["contender"] != OURS]
    if not others:
        return table(["An inclusion of", "Time"], [[h, f"{digits(s)} s"] for h, s in ours])
    best = min(seconds for _, seconds in others)
    return table(["An inclusion of", "Time", "Time / that of the best other"],
                 [[header, f"{digits(seconds)} s", digits(seconds / best)]
                  for header, seconds in sorted(ours + others, key=lambda row: row[1])])


# ---- Chart ---------------------------------------------------------------------------------

COLOURS = {"nlohmann": "#4c86c6", "RapidJSON": "#d9822b", "Boost.JSON": "#3f9a56",
           "JsonCpp": "#a070c0"}
LABELS, PLOT, RIGHT, TOP = 340, 520, 70, 84
BAR, GAP = 13, 12
LOWEST, HIGHEST = 1 / 32, 32


def position(ratio):
    """The position of a ratio on the axis, which is logarithmic."""
    ratio = min(max(ratio, LOWEST), HIGHEST)
    return LABELS + PLOT * math.log(ratio / LOWEST) / math.log(HIGHEST / LOWEST)


def chart(results):
    rows = [(f"{task}, {subject}", {peer: times[OURS] / times[peer] for peer in PEERS
                                    if peer in times})
            for (task, subject), times in results.items() if OURS in times]
    rows = [(name, ratios) for name, ratios in rows if ratios]
    height = TOP + sum(len(ratios) * BAR + GAP for _, ratios in rows) + 16
    width = LABELS + PLOT + RIGHT
    out = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
        f'width="{width}" height="{height}" role="img" aria-labelledby="title">',
        f'<title id="title">Time of {OURS} divided by that of other libraries</title>',
        "<style>",
        "text { font: 13px system-ui, sans-serif; fill: #1f2328 }",
        ".value { font-size: 11px } .heading { font-weight: 600; font-size: 15px }",
        ".page { fill: #ffffff } .grid { stroke: #d0d7de } .same { stroke: #1f2328 }",
        "@media (prefers-color-scheme: dark) {",
        "text { fill: #e6edf3 } .page { fill: #0d1117 } .grid { stroke: #30363d }",
        ".same { stroke: #e6edf3 } }",
        "</style>",
        f'<rect class="page" width="{width}" height="{height}"/>',
        f'<text class="heading" x="16" y="26">Time of {OURS} divided by that of another library: '
        "left of 1 it is the shorter</text>",
    ]
    x = 16
    for peer in PEERS:
        out += [f'<rect x="{x}" y="38" width="12" height="12" fill="{COLOURS[peer]}"/>',
                f'<text x="{x + 18}" y="49">{peer}</text>']
        x += 110

    tick = LOWEST
    while tick <= HIGHEST:
        place = position(tick)
        text = digits(tick) if tick >= 1 else f"1/{round(1 / tick)}"
        out += [f'<line class="{"same" if tick == 1 else "grid"}" x1="{place:.1f}" y1="{TOP - 8}" '
                f'x2="{place:.1f}" y2="{height - 12}"/>',
                f'<text class="value" x="{place:.1f}" y="{TOP - 14}" text-anchor="middle">'
                f'{text.removesuffix(".00").removesuffix(".0")}</text>']
        tick *= 2

    y = TOP
    for name, ratios in rows:
        middle = y + len(ratios) * BAR / 2
        out.append(f'<text x="{LABELS - 62}" y="{middle + 4:.1f}" text-anchor="end">'
                   f"{escape(name)}</text>")
        for peer, ratio in ratios.items():
            begin, end = sorted([position(1), position(ratio)])
            out.append(f'<rect x="{begin:.1f}" y="{y + 1}" width="{max(end - begin, 1):.1f}" '
                       f'height="{BAR - 2}" fill="{COLOURS[peer]}"/>')
            after = ratio >= 1
            out.append(f'<text class="value" x="{end + 4 if after else begin - 4:.1f}" '
                       f'y="{y + BAR - 3}" text-anchor="{"start" if after else "end"}">'
                       f"{digits(ratio)}</text>")
            y += BAR
        y += GAP
    return "\n".join([*out, "</svg>", ""])


# ---- Page ----------------------------------------------------------------------------------


def main(arguments):
    if len(arguments) != 2:
        print(__doc__.splitlines()[0], file=sys.stderr)
        return 2
    folder, page = map(Path, arguments)
    picture = page.with_suffix(".svg")

    charted = {}
    for family in CHARTED_FAMILIES:
        charted |= medians(folder / f"{family}.json")
    parsing = medians(folder / "parsing.json")
    reading = medians(folder / "reading.json")
    details = medians(folder / "details.json")
    growth = medians(folder / "growth.json", "bytes_per_second")
    memory = json.loads((folder / "memory.json").read_text())

    lines = [BEGIN, ""]
    lines += [f"- {line}" for line in (folder / "machine.txt").read_text().splitlines()]
    lines += ["", f"![Time of {OURS} divided by that of other libraries]({picture.name})", "",
              "Bars are cut off where the scale ends; the numbers beside them are exact.", "", "### Time", "",
              "A cell holds the other library's time in the row's unit, and in parentheses ours "
              "divided by it: below 1, ours is the shorter.", ""]
    compared = {row: times for row, times in charted.items() if not row[0].startswith("<")}
    lines += time_table(compared) + order_table(charted)
    lines += ["### Parsing", "",
              "Parsing the text of a document, and destroying the value.", ""]
    lines += time_table({row: times for row, times in parsing.items()
                         if not row[0].startswith("growth")})
    lines += ["### Reading", "",
              "Reading the content of every string and every number of a document, found beforehand, by "
              "the functions of each library: `get` here, `std::get`, `get_ref`, `GetString` and "
              "`GetDouble`, which do not look at the kind, `as_string` and `as_double`, `getString` "
              "and `asDouble`.", ""]
    lines += time_table(reading, ["std::variant", *PEERS])
    lines += ["### Values of each kind, one by one", "",
              "Arrays of 10,000 items (of 100 for strings of 10,000 bytes), serialized.", ""]
    lines += time_table(details)
    lines += ["### Memory", "",
              "The most memory allocated at a time beyond the value, with the resulting text.", ""]
    lines += memory_table(memory)
    lines += ["### Growth", ""] + growth_table(growth)
    lines += ["### Compilation", "",
              "Processor time of g++ -O0 for a program that includes the header and is empty.", ""]
    lines += compile_time_table(json.loads((folder / "compile_time.json").read_text()))
    lines.append(END)

    text = page.read_text()
    if text.count(BEGIN) != 1 or text.count(END) != 1:
        fail(f"{page} has no markers {BEGIN} and {END}")
    before, after = text.split(BEGIN)[0], text.split(END)[1]
    drawn = chart(compared)
    page.write_text(before + "\n".join(lines) + after)
    picture.write_text(drawn)
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main(sys.argv[1:]))
    except OSError as error:
        fail(f"{error.filename}: {error.strerror}")
    except ValueError as error:
        fail(f"not the results of benchmarks: {error}")
