"""Usage: compare.py RESULTS

Prints the time of every benchmark here divided by its time in another revision. The folder RESULTS
has the results of several rounds, in files such as here.1.text.json and revision.1.text.json.
"""

import json
import statistics
import sys
from pathlib import Path

from report import in_order, time_text, unit_of


def times(file):
    """The results of one family in one round: {(task, subject): nanoseconds}."""
    rows = {}
    for run in json.loads(file.read_text())["benchmarks"]:
        if run.get("error_occurred"):
            sys.exit(f"{run['name']}: {run['error_message']}")
        task, subject, _ = run["run_name"].split("/")
        rows[task, subject] = run["cpu_time"]
    return rows


def rounds_of(folder):
    """The results of each round: those here and those of the revision."""
    rounds = {}
    for file in sorted(folder.glob("*.json")):
        side, number, _, _ = file.name.split(".")
        rounds.setdefault(number, {"here": {}, "revision": {}})[side] |= times(file)
    return [(both["here"], both["revision"]) for both in rounds.values()]


def verdict(low, high):
    """The verdict, given that all rounds but two lie between these ratios."""
    return "slower" if low > 1.02 else "faster" if high < 0.98 else ""


def main(folder):
    rounds = rounds_of(folder)
    print(f"{'':52}{'here':>10}{'ratio':>8}   spread")
    for task, subject in sorted(rounds[0][0], key=lambda row: in_order(*row)):
        key = task, subject
        here = statistics.median(ours[key] for ours, _ in rounds)
        ratios = [ours[key] / other[key] for ours, other in rounds]
        # All rounds but the extreme ones, which depend on the load of the machine.
        low, *_, high = sorted(ratios)[1:-1]
        middle = statistics.median(ratios)
        unit = unit_of(here)
        print(f"{task + ', ' + subject:52}{time_text(here, unit) + ' ' + unit:>10}"
              f"{middle:8.3f}   {low:.3f} to {high:.3f}  {verdict(low, high)}".rstrip())


main(Path(sys.argv[1]))
