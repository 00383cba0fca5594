#!/usr/bin/env python3
"""Tests the tables and charts that bench/report.py makes of invented results."""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

REPORT = pathlib.Path(__file__).resolve().parents[2] / "bench" / "report.py"
SVG = "{http://www.w3.org/2000/svg}"
OURS = "foundation::json"
BLUE, ORANGE, GREEN = "#4c86c6", "#cf7a22", "#3f9a56"  # nlohmann, RapidJSON, Boost.JSON
LONG_NAME = "a_document_with_a_name_that_is_longer_than_any_column"

# In nanoseconds: all the files that report.py needs, with only a few rows.
TIMES = {
    "text": {("serialize", "doc"): {OURS: 2e6, "nlohmann": 8e6, "RapidJSON": 1e6}},
    "messages": {("message", "a & b < c"): {OURS: 100.0, "nlohmann": 200.0, "Boost.JSON": 6400.0}},
    "scattered": {("serialize scattered", "a & b < c"): {OURS: 30.0, "JsonCpp": 40.0},
                  ("serialize scattered", "doc"): {OURS: 60.0, "JsonCpp": 20.0},
                  ("walk scattered", "doc"): {OURS: 48.0, "JsonCpp": 5.0}},
    "streams": {("write to std::ostringstream", LONG_NAME): {OURS: 10.0, "JsonCpp": 20.0}},
    "parsing": {("parse and destroy", "doc"): {OURS: 300.0, "RapidJSON": 200.0}},
    "reading": {("read numbers", "doc"): {OURS: 30.0, "std::variant": 15.0, "nlohmann": 40.0,
                                          "RapidJSON": 10.0, "RapidJSON, checked": 20.0}},
    "values": {("walk", "doc"): {OURS: 12.0, "RapidJSON": 4.0},
               ("copy and destroy", "doc"): {OURS: 120.0, "RapidJSON": 60.0, "std::variant": 90.0},
               ("==, equal documents", "doc"): {OURS: 50.0, "RapidJSON": 40.0},
               ("<, equal documents", "doc"): {OURS: 55.0}},
    "arrays": {("push", "1,000,000 doubles"): {OURS: 10.02, "nlohmann": 10.0}},
    "objects": {("1,000 lookups", "10 keys"): {OURS: 1.0, "RapidJSON": 64.0}},
    "conversion": {("to structs", "doc"): {OURS: 10.0, "nlohmann": 20.0}},
    "patches": {("diff", "doc"): {OURS: 5.0, "nlohmann": 10.0}},
    "details": {("numbers", "doubles, whole"): {OURS: 30.0, "nlohmann": 60.0}},
    "growth": {("growth of serialize", "1 MB"): {OURS: 10.0}},
    "growth_of_parsing": {("growth of parse and destroy", "1 MB"): {OURS: 10.0}},
}


def operation(task, contender, **counts):
    return {"task": task, "subject": "doc", "contender": contender, "text_bytes": 100,
            "peak_bytes": 150, "kept_bytes": 0, "allocations": 0, "allocated_bytes": 0, **counts}


MEMORY = {
    "operations": [
        operation("serialize", OURS, allocations=1), operation("serialize", "RapidJSON", allocations=5),
        operation("copy and destroy", OURS, allocations=6, allocated_bytes=2_000, kept_bytes=1_000),
        operation("copy and destroy", "std::variant", allocations=3_000),
        operation("copy and destroy", "RapidJSON", allocations=2, allocated_bytes=900, kept_bytes=400),
    ],
    "value_bytes": {OURS: 40, "RapidJSON": 16, "std::variant": 56},
}


def benchmarks(rows):
    runs = []
    for (task, subject), times in rows.items():
        for contender, nanoseconds in times.items():
            # Texts of 200 bytes here, of 100 elsewhere; the reading is of 1,000 values.
            run = {"run_name": f"{task}/{subject}/{contender}", "name": "", "cpu_time": nanoseconds,
                   "bytes_per_second": (200e9 if contender == OURS else 100e9) / nanoseconds}
            if task.startswith("read "):
                run["values"] = 1000
            runs += [{**run, "cpu_time": 1.0, "aggregate_name": "mean"},
                     {**run, "aggregate_name": "median"}]
    return {"benchmarks": runs}


class Report(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        for family, rows in TIMES.items():
            self.write(family, benchmarks(rows))
        self.write("memory", MEMORY)
        self.write("compile_time", [{"contender": OURS, "header": "json.hpp", "seconds": 0.5}])
        (self.folder / "machine.txt").write_text("Processor: none\n")
        self.page = self.folder / "page.md"
        self.page.write_text("before\n<!-- results: begin -->\nold\n<!-- results: end -->\nafter\n")

    def write(self, name, content):
        (self.folder / f"{name}.json").write_text(json.dumps(content))

    def run_report(self):
        return subprocess.run([sys.executable, REPORT, self.folder, self.page],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, universal_newlines=True,
                              check=False)

    def lines(self):
        result = self.run_report()
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return self.page.read_text().splitlines()

    def chart(self, name):
        self.lines()
        return ElementTree.parse(self.folder / f"page_{name}.svg").getroot()

    def bars(self, name, colour):
        """Where the bars of a colour begin and end; the first is that of the legend."""
        return [(float(bar.get("x")), float(bar.get("x")) + float(bar.get("width")))
                for bar in self.chart(name).iter(SVG + "rect") if bar.get("fill") == colour][1:]

    def middle(self, name):
        line, = (line for line in self.chart(name).iter(SVG + "line") if line.get("class") == "same")
        return float(line.get("x1"))

    def texts(self, name):
        return [text.text for text in self.chart(name).iter(SVG + "text")]

    # ---- Tables ----------------------------------------------------------------------------

    def ACellHasTheTimeAndTheRatio(self):
        self.assertIn("| serialize, doc | 2.00 ms | 8.00 (0.250) | 1.00 (2.00) | – | – | 2.00 |",
                      self.lines())

    def TheBestReaderIsOneThatLooksAtTheKind(self):
        self.assertIn("| read numbers, doc | 30.0 ns | 15.0 (2.00) | 40.0 (0.750) | 10.0 (3.00) | "
                      "20.0 (1.50) | – | – | 1.50 |", self.lines())

    def WordsAroundTheResultsStay(self):
        lines = self.lines()
        self.assertEqual((lines[0], lines[-1]), ("before", "after"))
        self.assertNotIn("old", lines)

    def ThePageShowsTheThreeCharts(self):
        self.assertEqual([line.split("(")[1] for line in self.lines() if line.startswith("![")],
                         ["page_writing.svg)", "page_reading.svg)", "page_others.svg)"])

    def GrowthIsTimePerByte(self):
        lines = self.lines()
        self.assertIn("| serialize | 0.0500 ns |", lines)
        self.assertIn("| parse and destroy | 0.0500 ns |", lines)

    def RowsThatAllocateHaveTheirAllocations(self):
        self.assertIn("| copy and destroy, doc | 2.00 (RapidJSON) | 6 / 2 | 20.0 ns | "
                      "2.00 kB / 900 bytes | 1.00 kB / 400 bytes | 12.0 ns (10 %) / 4.00 ns | "
                      "90.0 ns (75 %), 3,000 allocations |", self.lines())

    def RowsThatParseHaveTheTimeOfACopy(self):
        self.assertIn("| parse and destroy, doc | 1.50 (RapidJSON) | – | – | – | – | "
                      "12.0 ns (4 %) / 4.00 ns | copy and destroy: 120 ns (40 %) |", self.lines())

    def RowsThatReadHaveTheBytesOfTheValues(self):
        lines = self.lines()
        self.assertIn("| ==, equal documents, doc | 1.25 (RapidJSON) | 2.00 kB / 800 bytes | "
                      "12.0 ns (24 %) / 4.00 ns | – |", lines)
        self.assertIn("| read numbers, doc | 1.50 (RapidJSON, checked) | 40.0 kB / 16.0 kB | – | "
                      "15.0 ns (50 %) |", lines)

    def RowsThatWriteHaveTheBytesOfTheText(self):
        self.assertIn("| serialize, doc | 2.00 (RapidJSON) | 200 bytes / 100 bytes | "
                      "10.0 µs / 10.0 µs | 1 / 5 | 12.0 ns (0 %) / 4.00 ns |", self.lines())

    def ScatteredRowsHaveTheWalkOverTheScatteredValue(self):
        lines = [line for line in self.lines() if line.startswith("| serialize scattered, doc | 3.00")]
        self.assertEqual(len(lines), 1)
        self.assertIn("| 48.0 ns (80 %) / 5.00 ns |", lines[0])

    def RowsAtOrBelow1HaveNoBounds(self):
        lines = self.lines()
        for row in ("message, a & b < c", "to structs, doc", "push, 1,000,000 doubles",
                    "numbers, doubles, whole"):
            self.assertEqual(len([line for line in lines if line.startswith(f"| {row} |")]), 1, row)
        self.assertEqual([line for line in lines if line.startswith("| walk")], [])

    # ---- Charts ----------------------------------------------------------------------------

    def BarsLieLeftOf1WhereOursIsTheShorter(self):
        (begin, end), _ = self.bars("writing", BLUE)  # 1/4 and 1/2
        self.assertAlmostEqual(end, self.middle("writing"), 0)
        self.assertLess(begin, end - 20)

    def BarsLieRightOf1WhereOursIsTheLonger(self):
        (begin, end), = self.bars("writing", ORANGE)  # 2
        self.assertAlmostEqual(begin, self.middle("writing"), 0)
        self.assertGreater(end, begin + 10)

    def AQuarterIsTwiceAsFarFrom1AsAHalf(self):
        quarter, half = (end - begin for begin, end in self.bars("writing", BLUE))
        self.assertAlmostEqual(quarter, 2 * half, delta=0.2)

    def ABarBeyondTheScaleEndsThereWithATip(self):
        (begin, _), = self.bars("writing", GREEN)  # 1/64
        self.assertAlmostEqual(begin, 136, 0)
        tips = [path.get("fill") for path in self.chart("writing").iter(SVG + "path")]
        self.assertEqual(tips, [GREEN])

    def TheNumberOfARowIsTheRatioToTheFastest(self):
        texts = self.texts("writing")
        self.assertEqual(texts[texts.index("doc") + 1], "2.00")

    def TheChartOfReadingComparesWithTheLookAtTheKind(self):
        texts = self.texts("reading")
        self.assertEqual(texts[texts.index("read numbers") + 2], "1.50")

    def OnlyTasksThatOthersHaveAreDrawn(self):
        tasks = [text.text for text in self.chart("others").iter(SVG + "text")
                 if text.get("class") == "task"]
        self.assertEqual(tasks, ["copy and destroy", "==", "push", "1,000 lookups", "to structs", "diff"])

    def TheAxisHas1AndItsPowers(self):
        self.assertEqual([text for text in self.texts("writing") if text in ("1/16", "1/4", "1", "4")],
                         ["1/16", "1/4", "1", "4"])

    def ChartsSayWhatLeftOf1Means(self):
        for name in ("writing", "reading", "others"):
            self.assertIn("Left of 1: foundation::json takes less time.", self.texts(name))

    def NamesAreEscaped(self):
        self.assertIn("a & b < c", self.texts("writing"))

    def LongNamesAreCut(self):
        texts = self.texts("writing")
        first = texts.index("a_document_with_")
        self.assertEqual(texts[first + 1], "a_name_that_is_…")

    def NoTextReachesBeyondTheChartOrItsColumn(self):
        for name in ("writing", "reading", "others"):
            root = self.chart(name)
            width = float(root.get("viewBox").split()[2])
            for text in root.iter(SVG + "text"):
                size = 15 if text.get("class") == "title" else 12
                length, x = 0.6 * size * len(text.text), float(text.get("x"))
                begin = x - {"end": length, "middle": length / 2}.get(text.get("text-anchor"), 0)
                self.assertGreaterEqual(begin, 0, text.text)
                self.assertLessEqual(begin + length, width, text.text)

    def NoLabelReachesTheBars(self):
        labels = [text for text in self.chart("writing").iter(SVG + "text") if text.get("x") == "14"]
        self.assertEqual(len(labels), 6)
        for label in labels:
            self.assertLess(14 + 0.6 * 12 * len(label.text), 131, label.text)

    def TextIsLargeEnoughInANarrowColumn(self):
        width = float(self.chart("writing").get("viewBox").split()[2])
        self.assertGreaterEqual(12 * 360 / width, 11)
        style = self.chart("writing").find(SVG + "style").text
        self.assertIn("font: 12px", style)

    def ColoursFollowTheScheme(self):
        self.assertIn("@media (prefers-color-scheme: dark)",
                      self.chart("others").find(SVG + "style").text)

    # ---- Refusals --------------------------------------------------------------------------

    def refuses(self, message):
        before = self.page.read_text()
        result = self.run_report()
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn(message, result.stderr)
        self.assertEqual(result.stderr.count("\n"), 1)
        self.assertEqual(self.page.read_text(), before)
        self.assertEqual(list(self.folder.glob("*.svg")), [])

    def APageWithoutMarkersStays(self):
        self.page.write_text("no markers\n")
        self.refuses("has no markers")

    def ResultsWithoutMemoryAreRefused(self):
        self.write("memory", {"operations": []})
        self.refuses("not the results of benchmarks: KeyError('value_bytes')")

    def AFailedBenchmarkIsRefused(self):
        self.write("text", {"benchmarks": [{"name": "serialize/doc/x", "error_occurred": True,
                                            "error_message": "went wrong"}]})
        self.refuses("serialize/doc/x: went wrong")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *(f"Report.{name}" for name in sys.argv[1:])])
