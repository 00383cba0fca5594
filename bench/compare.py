"""Usage: compare.py RESULTS

Prints the time of every benchmark here divided by its time in another revision. The folder RESULTS
has the results of several rounds, in here.1.json and revision.1.json, here.2.json and so on.
"""

import json
import statistics
import sys
from pathlib import Path

from report import in_order, time_text, unit_of


def fail(message):
    sys.exit(f"compare.py: {message}")


def times(file):
    """The results of one round: {(task, subject): nanoseconds}."""
    rows = {}
    for run in json.loads(file.read_text())["benchmarks"]:
        if run.get("error_occurred"):
            fail(f"{run['name']}: {run['error_message']}")
        task, subject, _ = run["run_name"].split("/")
        rows[task, subject] = run["cpu_time"]
    return rows


def verdict(low, high):
    """What can be said where half of the rounds lie between two ratios."""
    return "slower" if low > 1.02 else "faster" if high < 0.98 else ""


def main(arguments):
    if len(arguments) != 1:
        print(__doc__.splitlines()[0], file=sys.stderr)
        return 2
    folder = Path(arguments[0])
    rounds = [(times(file), times(file.with_name(file.name.replace("here", "revision", 1))))
              for file in sorted(folder.glob("here.*.json"))]
    if len(rounds) < 2:
        fail(f"no results of two rounds in {folder}")
    print(f"{'':52}{'here':>10}{'ratio':>8}   middle half")
    for task, subject in sorted(rounds[0][0], key=lambda row: in_order(*row)):
        key = task, subject
        here = statistics.median(ours[key] for ours, _ in rounds)
        ratios = [ours[key] / other[key] for ours, other in rounds]
        low, middle, high = statistics.quantiles(ratios, n=4, method="inclusive")
        unit = unit_of(here)
        print(f"{task + ', ' + subject:52}{time_text(here, unit) + ' ' + unit:>10}"
              f"{middle:8.3f}   {low:.3f} to {high:.3f}  {verdict(low, high)}".rstrip())
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
