#!/usr/bin/env python3
"""Makes the table and the plot of the comparison with other libraries from bench/peers/figures.csv, and puts them into
docs/performance.md and docs/peers.svg."""

import csv
import html
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BEGIN = "<!-- peers: made by bench/plot.py -->"
END = "<!-- peers end -->"

BAR = 14
GAP = 5
ROW = 2 * BAR + GAP + 12
LEFT = 170
RIGHT = 130
WIDTH = 820
COLOURS = {"read": "#4878a8", "write": "#e0903c"}


def load():
    """The figures by name, in the order of the file: {name: {task: row}}."""
    peers = {}
    with open(ROOT / "bench" / "peers" / "figures.csv", newline="", encoding="utf-8") as file:
        for row in csv.DictReader(file):
            peers.setdefault(row["name"], {})[row["task"]] = row
    return peers


def make_table(peers):
    first = next(iter(peers["expat alone"].values()))
    megabytes = int(first["bytes"]) / 1e6
    lines = [
        f"A document of {megabytes:.0f} MB, {first['rounds']} rounds, medians; in brackets the least and the most.",
        "",
        "| | gives | read, ms | against expat | write, ms | against expat | memory when read, bytes a byte |",
        "|---|---|---:|---:|---:|---:|---:|",
    ]
    for name, tasks in peers.items():
        cells = [name, next(iter(tasks.values()))["gives"]]
        for task in ("read", "write"):
            row = tasks.get(task)
            cells.append(f"{row['median_ms']} ({row['least_ms']}-{row['most_ms']})" if row else "")
            cells.append(row["times_expat"] if row else "")
        cells.append(tasks["read"]["memory"])
        lines.append("| " + " | ".join(cells) + " |")
    return "\n".join(lines)


def make_plot(peers):
    most = max(float(row["most_ms"]) for tasks in peers.values() for row in tasks.values())
    floor = float(peers["expat alone"]["read"]["median_ms"])
    scale = (WIDTH - LEFT - RIGHT) / most
    height = len(peers) * ROW + 50
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height}" '
        'font-family="sans-serif" font-size="12">',
        f'<rect width="{WIDTH}" height="{height}" fill="white"/>',
    ]
    x = LEFT + floor * scale
    parts.append(f'<line x1="{x:.1f}" x2="{x:.1f}" y1="30" y2="{height - 10}" stroke="gray" stroke-dasharray="4 3"/>')
    for number, (task, colour) in enumerate(COLOURS.items()):
        x = LEFT + number * 80
        parts.append(f'<rect x="{x}" y="8" width="{BAR}" height="{BAR}" fill="{colour}"/>')
        parts.append(f'<text x="{x + BAR + 5}" y="20">{task}</text>')
    parts.append(f'<text x="{LEFT + 180}" y="20">processor time; the thin line is the spread; the dashes are expat</text>')
    for number, (name, tasks) in enumerate(peers.items()):
        top = 36 + number * ROW
        parts.append(f'<text x="{LEFT - 8}" y="{top + BAR + 4}" text-anchor="end">{html.escape(name)}</text>')
        for offset, task in enumerate(COLOURS):
            row = tasks.get(task)
            if not row:
                continue
            y = top + offset * (BAR + GAP)
            median, least, most_ms = (float(row[key]) for key in ("median_ms", "least_ms", "most_ms"))
            parts.append(
                f'<rect x="{LEFT}" y="{y}" width="{median * scale:.1f}" height="{BAR}" fill="{COLOURS[task]}"/>'
            )
            parts.append(
                f'<line x1="{LEFT + least * scale:.1f}" x2="{LEFT + most_ms * scale:.1f}" '
                f'y1="{y + BAR / 2}" y2="{y + BAR / 2}" stroke="black"/>'
            )
            parts.append(
                f'<text x="{LEFT + most_ms * scale + 6:.1f}" y="{y + BAR - 3}">'
                f'{median:.0f} ms, {row["times_expat"]}</text>'
            )
    parts.append("</svg>")
    return "\n".join(parts) + "\n"


def main():
    peers = load()
    (ROOT / "docs" / "peers.svg").write_text(make_plot(peers), encoding="utf-8")
    page = ROOT / "docs" / "performance.md"
    text = page.read_text(encoding="utf-8")
    if BEGIN not in text or END not in text:
        sys.exit(f"plot.py: {page} has no place for the table")
    head, rest = text.split(BEGIN, 1)
    tail = rest.split(END, 1)[1]
    page.write_text(f"{head}{BEGIN}\n{make_table(peers)}\n\n![Reading and writing](peers.svg)\n{END}{tail}", encoding="utf-8")


if __name__ == "__main__":
    main()
