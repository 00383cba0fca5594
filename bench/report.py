"""Usage: report.py RESULTS PAGE

Writes the results of the benchmarks, the files of the folder RESULTS, between the markers of PAGE,
a Markdown file, and draws charts of them next to it: SVG files that are named like the page, with
_writing, _reading or _others added.
"""

import json
import math
import re
import statistics
import sys
from pathlib import Path

from charts import chart

OURS = "foundation::json"
PEERS = ["nlohmann", "RapidJSON", "Boost.JSON", "JsonCpp"]
BEGIN, END = "<!-- results: begin -->", "<!-- results: end -->"
TASKS = ["serialize", "serialize scattered", "pretty_print", "message",
         "write", "write indented", "write by hand", "number to text",
         "write to a stream", "write to std::ostringstream",
         "write to std::ofstream", "parse and destroy", "tokens", "lines", "lines by parse",
         "walk", "walk scattered",
         "copy and destroy", "==", "<",
         "read strings", "read numbers", "push", "insert all keys", "1,000 lookups", "to structs",
         "to structs by hand", "from structs", "text to structs", "text to structs by value",
         "structs to text", "structs to text by value",
         "patch", "diff", "words", "numbers", "strings", "containers"]
CHECKED, STANDARD = "RapidJSON, checked", "std::variant"
READ_ONLY, TO_CHARS = "simdjson", "std::to_chars"
WALKS = ["walk", "walk scattered"]
WRITING = ["text", "messages", "writing", "scattered", "streams"]
OTHERS = ["values", "arrays", "objects", "conversion", "patches"]


# ---- Results -------------------------------------------------------------------------------


def medians(folder, family, field="cpu_time"):
    """The results of one family: {(task, subject): {contender: median}}. Not all have each field."""
    rows = {}
    for file in folder.glob(f"{family}.*.json"):
        # A library that has none of the tasks leaves an empty file.
        for run in json.loads(file.read_text() or '{"benchmarks": []}')["benchmarks"]:
            if run.get("error_occurred"):
                sys.exit(f"{run['name']}: {run['error_message']}")
            task, subject, contender = run["run_name"].split("/")
            row = rows.setdefault((task, subject), {})
            if run["run_type"] == "iteration" and field in run:
                row.setdefault(contender, []).append(run[field])
    # The benchmarks ran in random order.
    return {key: {contender: statistics.median(times) for contender, times in row.items()}
            for key, row in sorted(rows.items(), key=lambda item: in_order(*item[0]))}


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


def duration(nanoseconds):
    unit = unit_of(nanoseconds)
    return f"{time_text(nanoseconds, unit)} {unit}"


def best_peer(times, rivals=PEERS):
    """The fastest of the others. Where a row has RapidJSON with a test of the kind, that counts and not
    the one without, since all others test the kind."""
    candidates = [peer for peer in [*rivals, CHECKED] if peer in times]
    if CHECKED in candidates:
        candidates.remove("RapidJSON")
    return min(candidates, key=times.get, default=None)


def time_table(results, peers=PEERS, rivals=PEERS):
    rows = []
    for (task, subject), times in results.items():
        if OURS not in times:
            continue
        ours = times[OURS]
        unit = unit_of(ours)
        best = best_peer(times, rivals)
        cells = [f"{task}, {subject}", f"{time_text(ours, unit)} {unit}"]
        for peer in peers:
            cells.append(f"{time_text(times[peer], unit)} ({digits(ours / times[peer])})"
                         if peer in times else "–")
        cells.append(digits(ours / times[best]) if best else "–")
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
        if result["task"] not in ("serialize", "pretty_print", "write to a stream"):
            continue
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


# ---- Bounds --------------------------------------------------------------------------------

READING_TASKS = ["==", "diff", "1,000 lookups", "read strings", "read numbers"]
ALLOCATING_TASKS = ["parse and destroy", "copy and destroy", "push", "insert all keys",
                    "to structs", "from structs", "text to structs", "structs to text", "patch"]


def size_text(size):
    for unit, name in ((1e6, "MB"), (1e3, "kB")):
        if size >= unit:
            return f"{digits(size / unit)} {name}"
    return f"{size:,.0f} bytes"


def pair(text, ours, theirs):
    """"4.07 MB / 1.13 MB": a measurement of this library, and of the one beside it."""
    if ours is None and theirs is None:
        return "–"
    return " / ".join("–" if value is None else text(value) for value in (ours, theirs))


class Bounds:
    """Measurements other than the time, for the rows in which another library is faster."""

    def __init__(self, rows, texts, counts, memory):
        self.rows = rows
        self.texts = texts
        self.counts = counts
        self.value_bytes = memory["value_bytes"]
        self.memory = {(result["task"], result["subject"], result["contender"]): result
                       for result in memory["operations"]}

    def above_1(self):
        """(task, subject, the faster library, our time / its time)."""
        for (task, subject), times in self.rows.items():
            best = best_peer(times)
            if task not in WALKS and best is not None and OURS in times:
                ratio = times[OURS] / times[best]
                if ratio > 1 and digits(ratio) != "1.00":
                    yield task, subject, best, ratio

    def of_memory(self, task, subject, contender, field):
        return self.memory.get((task, subject, contender), {}).get(field)

    def memory_pair(self, text, task, subject, best, field):
        return pair(text, *(self.of_memory(task, subject, contender, field)
                            for contender in (OURS, best)))

    def time_beside(self, task, subject, times, contender=OURS):
        """Another row's time, and its share of this row's."""
        other = self.rows.get((task, subject), {}).get(contender)
        if other is None:
            return "–"
        return f"{duration(other)} ({100 * other / times[OURS]:.0f} %)"

    def bare_work(self, task, subject, times):
        if task == "parse and destroy":
            return "copy and destroy: " + self.time_beside("copy and destroy", subject, times)
        time = self.time_beside(task, subject, times, STANDARD)
        calls = self.of_memory(task, subject, STANDARD, "allocations")
        return f"{time}, {calls:,} allocations" if calls else time

    def walk(self, task, subject, times, best):
        walk = "walk scattered" if task == "serialize scattered" else "walk"
        walks = self.rows.get((walk, subject), {})
        if OURS not in walks:
            return "–"
        theirs = duration(walks[best]) if best in walks else "–"
        return f"{self.time_beside(walk, subject, times)} / {theirs}"

    def bytes_read(self, task, subject, contender):
        """The bytes of the values that a task reads, at least."""
        if task.startswith("read "):
            values = self.counts.get((task, subject), {}).get(contender)
            size = self.value_bytes.get(contender.removesuffix(", checked"))
            return values * size if values and size else None
        source, times = (("copy and destroy", 2) if task.startswith(("==", "diff")) else
                         ("insert all keys", 1))
        kept = self.of_memory(source, subject, contender, "kept_bytes")
        return None if kept is None else times * kept

    def text_bytes(self, subject, contender, task):
        for row in ((task, subject), ("serialize", subject)):
            if contender in self.texts.get(row, {}):
                return self.texts[row][contender] * self.rows[row][contender] / 1e9
        return None

    def tables(self):
        allocating, reading, writing = [], [], []
        for task, subject, best, ratio in self.above_1():
            times = self.rows[task, subject]
            cells = [f"{task}, {subject}", f"{digits(ratio)} ({best})"]
            if task in ALLOCATING_TASKS:
                calls = self.of_memory(task, subject, OURS, "allocations")
                allocating.append([
                    *cells,
                    self.memory_pair("{:,}".format, task, subject, best, "allocations"),
                    duration(times[OURS] / calls) if calls else "–",
                    self.memory_pair(size_text, task, subject, best, "allocated_bytes"),
                    self.memory_pair(size_text, task, subject, best, "kept_bytes"),
                    self.walk(task, subject, times, best), self.bare_work(task, subject, times)])
            elif task.split(", ")[0] in READING_TASKS:
                size = [self.bytes_read(task, subject, contender) for contender in (OURS, best)]
                walk = self.walk(task, subject, times, best) if task.startswith("==") else "–"
                reading.append([*cells, pair(size_text, *size), walk,
                                self.bare_work(task, subject, times)])
            else:
                size = [self.text_bytes(subject, contender, task) for contender in (OURS, best)]
                each = [time / bytes_ if bytes_ else None
                        for time, bytes_ in zip((times[OURS], times[best]), size)]
                writing.append([*cells, pair(size_text, *size), pair(duration, *each),
                                self.memory_pair("{:,}".format, task, subject, best, "allocations"),
                                self.walk(task, subject, times, best)])
        return self.text(allocating, reading, writing)

    def text(self, allocating, reading, writing):
        sizes = ", ".join(f"{size} bytes in {name}" for name, size in
                          sorted(self.value_bytes.items(), key=lambda item: item[1]))
        lines = ["What was counted or measured beside each row above 1. Of two figures, the first is "
                 "of foundation::json, the second of the library in parentheses, the best of that "
                 "row; a percentage is a part of our time for the row. The walk goes to every value "
                 "and looks at its kind and at the length of strings.", "",
                 f"A value by itself, without what it points to: {sizes}.", ""]
        if allocating:
            lines += ["Rows that allocate. The bare work is that of values of `std::variant`, "
                      "`std::vector`, `std::map` and `std::string` alone; for parsing, it is to "
                      "copy and destroy the value that is read.", ""]
            lines += table(["Row", "ours / best", "Allocations", "Our time for each",
                            "Bytes allocated in all", "Bytes of the result",
                            "Walk over the value", "Bare work"], allocating)
        if reading:
            lines += ["Rows that access values and allocate nothing. The bytes are those of the values "
                      "that the work goes to.", ""]
            lines += table(["Row", "ours / best", "Bytes of the values", "Walk over the document",
                            "Bare work"], reading)
        if writing:
            lines += ["Rows that serialize.", ""]
            lines += table(["Row", "ours / best", "Text", "Time per byte of text", "Allocations",
                            "Walk over the value"], writing)
        return lines


# ---- Page ----------------------------------------------------------------------------------


def charted(results):
    """The rows of a chart: tasks that other libraries have, too."""
    rows = []
    for (task, subject), times in results.items():
        others = dict(times)
        if CHECKED in others:
            others["RapidJSON"] = others[CHECKED]
        ratios = {peer: times[OURS] / others[peer] for peer in PEERS
                  if peer in others and OURS in times}
        if ratios:
            rows.append((task.split(", ")[0], subject, ratios))
    return rows


def read_families(folder, names, field="cpu_time"):
    results = {}
    for name in names:
        results |= medians(folder, name, field)
    return results


def picture(page, name):
    return page.with_name(f"{page.stem}_{name}.svg")


def section(title, page, name):
    return [f"### {title}", "", f"![{title}: time of {OURS} divided by that of other libraries]"
            f"({picture(page, name).name})", ""]


def main(folder, page):
    written = read_families(folder, WRITING)
    parsing = read_families(folder, ["parsing", "parsing_in_used_heap"])
    tokens = medians(folder, "tokens")
    reading = medians(folder, "reading")
    others = read_families(folder, OTHERS)
    details = medians(folder, "details")
    growth = read_families(folder, ["growth", "growth_of_parsing"], "bytes_per_second")
    memory = json.loads((folder / "memory.json").read_text())
    compared = {row: times for row, times in others.items()
                if not row[0].startswith("<") and row[0] not in WALKS}
    walks = {row: times for row, times in (written | others).items() if row[0] in WALKS}
    writing = {row: times for row, times in written.items() if row[0] not in WALKS}
    bounds = Bounds(writing | parsing | reading | compared | walks | details,
                    read_families(folder, [*WRITING, "details"], "bytes_per_second"),
                    medians(folder, "reading", "values"), memory)

    lines = [BEGIN, ""]
    lines += ["A bar of a chart goes from 1 to our time divided by that of another library. A bar "
              "with a tip continues beyond the scale.", "",
              "A cell of a table holds the other library's time in the row's unit, and in parentheses "
              "ours divided by it: below 1, ours is the shorter.", ""]
    lines += section("Serializing", page, "writing") + time_table(writing)
    lines += section("Parsing and access", page, "reading")
    lines += ["Parsing a document in memory, and destroying the value. In the rows \"used heap\", the process "
              "has allocated and freed much else before, so new blocks do not lie next to each other. "
              "A document of simdjson cannot be changed; the last column compares with the others.", ""]
    lines += time_table(parsing, [*PEERS, READ_ONLY])
    lines += ["Walking over the tokens of a document, without a value: `Reader` here, On-Demand in simdjson, SAX "
              "elsewhere, with full checks but for On-Demand. And making a value of each line of a stream: by `Records` here; elsewhere, and in the last "
              "row, line by line with the function that parses a string.", ""]
    lines += time_table(tokens, [*PEERS, READ_ONLY])
    lines += ["Access to the content of every string and every number of a document, found beforehand, by "
              "the functions of each library: `get` here, `std::get`, `get_ref`, `GetString` and "
              "`GetDouble`, `as_string` and `as_double`, `getString` and `asDouble`. All test the "
              "kind first, except those of RapidJSON. In a second column for it, `IsString` and "
              "`IsDouble` come first; the chart and the last column compare with that one.", ""]
    lines += time_table(reading, [STANDARD, "nlohmann", "RapidJSON", CHECKED, "Boost.JSON",
                                  "JsonCpp"])
    lines += section("Everything else", page, "others") + time_table(compared)
    lines += order_table(others)
    lines += ["Types of the caller, from a text and to a text: by `read` and `write` here, and \"by value\" by `parse` and "
              "`to`, and `from` and `serialize`; in nlohmann and Boost.JSON by way of their values; by hand with "
              "On-Demand in simdjson, which does not look at what it skips.", ""]
    lines += time_table(medians(folder, "own_types"), [*PEERS, READ_ONLY], [*PEERS, READ_ONLY])
    lines += ["### Measured beside the rows above 1", ""] + bounds.tables()
    lines += ["### Values of each kind, one by one", "",
              "Arrays of 10,000 items (of 100 for strings of 10,000 bytes), serialized.", ""]
    lines += time_table(details)
    lines += ["The text of 10,000 doubles each, by the function that `write` uses, and by the standard library's:", ""]
    lines += time_table(medians(folder, "number_text"), [TO_CHARS])
    lines += ["### Memory", "",
              "The most memory allocated at a time beyond the value, the output included.", ""]
    lines += memory_table(memory["operations"])
    lines += ["### Growth", ""] + growth_table(growth)
    lines += ["### Compilation", "",
              "Processor time of g++ -O0 for a program that includes the header and is empty.", ""]
    lines += compile_time_table(json.loads((folder / "compile_time.json").read_text()))
    lines += ["### Machine and versions", ""]
    lines += [f"- {line}" for line in (folder / "machine.txt").read_text().splitlines()]
    lines += ["", END]

    text = page.read_text()
    if text.count(BEGIN) != 1 or text.count(END) != 1:
        sys.exit(f"{page} has no markers {BEGIN} and {END}")
    before, after = text.split(BEGIN)[0], text.split(END)[1]
    drawn = {name: chart(title, charted(results))
             for name, title, results in (("writing", "Serializing", writing),
                                          ("reading", "Parsing and access", parsing | tokens | reading),
                                          ("others", "Everything else", compared))}
    page.write_text(before + "\n".join(lines) + after)
    for name, content in drawn.items():
        picture(page, name).write_text(content)


if __name__ == "__main__":
    main(*map(Path, sys.argv[1:]))
