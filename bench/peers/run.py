#!/usr/bin/env python3
"""Runs the programs of the comparison in turn, several rounds of them, and writes the figures to figures.csv beside this
script: bench/peers/run.py BUILD_DIRECTORY [--rounds N] [--bytes N]. scripts/bench.sh --peers calls it."""

import argparse
import csv
import pathlib
import platform
import statistics
import subprocess
import sys

# Program, name in the table, what it gives, tasks.
PEERS = [
    ("expat", "expat alone", "events", ["read"]),
    ("pugixml", "pugixml", "tree", ["read", "write"]),
    ("libxml2", "libxml2", "tree", ["read", "write"]),
    ("xerces", "Xerces-C", "tree", ["read", "write"]),
    ("quiver_tree", "Quiver, tree alone", "tree", ["read"]),
    ("gsoap", "gSOAP, strict", "typed", ["read", "write"]),
    ("xsd", "xsdcxx, validating", "typed", ["read", "write"]),
    ("quiver", "Quiver, text", "typed", ["read", "write"]),
    ("quiver_fi", "Quiver, Fast Infoset", "typed", ["read", "write"]),
]
TIMES_A_RUN = 3


def run(directory, program, task, size):
    """One run: the median of its times in milliseconds, and bytes of memory for each byte of the document."""
    command = [str(directory / f"{program}_peer"), task, str(size), str(TIMES_A_RUN)]
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if result.returncode != 0:
        sys.exit(f"run.py: {' '.join(command)} failed: {result.stderr.strip()}")
    milliseconds, memory = result.stdout.split()
    return float(milliseconds), float(memory)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=pathlib.Path, help="the build directory")
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("--bytes", type=int, default=20000000)
    arguments = parser.parse_args()

    directory = arguments.build / "bench" / "peers"
    samples = {}
    for number in range(arguments.rounds):
        print(f"round {number + 1} of {arguments.rounds}", file=sys.stderr)
        for program, _, _, tasks in PEERS:
            for task in tasks:
                samples.setdefault((program, task), []).append(run(directory, program, task, arguments.bytes))

    floor = statistics.median(time for time, _ in samples["expat", "read"])
    with open(pathlib.Path(__file__).parent / "figures.csv", "w", newline="", encoding="utf-8") as out:
        writer = csv.writer(out, lineterminator="\n")
        writer.writerow(
            ["name", "gives", "task", "median_ms", "least_ms", "most_ms", "times_expat", "memory", "rounds", "bytes", "machine"]
        )
        for program, name, gives, tasks in PEERS:
            for task in tasks:
                times = [time for time, _ in samples[program, task]]
                memory = statistics.median(memory for _, memory in samples[program, task])
                median = statistics.median(times)
                writer.writerow(
                    [name, gives, task, f"{median:.1f}", f"{min(times):.1f}", f"{max(times):.1f}"]
                    + [f"{median / floor:.2f}", f"{memory:.1f}", arguments.rounds, arguments.bytes, platform.machine()]
                )


if __name__ == "__main__":
    main()
