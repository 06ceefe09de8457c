#!/usr/bin/env python3
"""Makes the plots of docs/performance.md, and the table of the comparison with other libraries in it.

The comparison comes from bench/peers/figures.csv: its table, docs/peers.svg and docs/memory.svg. The other plots draw what the
page's own tables say: docs/order.svg the order in three sizes, docs/families.svg the families of schemas.
"""

import csv
import html
import pathlib
import re
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


def make_bars(rows, series, caption, left=LEFT):
    """Bars of one scale: rows of (name, values), a value for each of the series, None where there is none."""
    most = max(value for _, values in rows for value in values if value is not None)
    scale = (WIDTH - left - RIGHT) / most
    row_height = len(series) * (BAR - 2) + 12
    height = len(rows) * row_height + 44
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height}" '
        'font-family="sans-serif" font-size="12">',
        f'<rect width="{WIDTH}" height="{height}" fill="white"/>',
    ]
    x = left
    for (name, colour) in series:
        parts.append(f'<rect x="{x}" y="8" width="{BAR}" height="{BAR}" fill="{colour}"/>')
        parts.append(f'<text x="{x + BAR + 5}" y="20">{html.escape(name)}</text>')
        x += BAR + 24 + 7 * len(name)
    parts.append(f'<text x="{x}" y="20" fill="#555">{html.escape(caption)}</text>')
    for number, (name, values) in enumerate(rows):
        top = 34 + number * row_height
        middle = top + len(series) * (BAR - 2) / 2 + 4
        parts.append(f'<text x="{left - 8}" y="{middle:.1f}" text-anchor="end">{html.escape(name)}</text>')
        for offset, (value, (_, colour)) in enumerate(zip(values, series)):
            if value is None:
                continue
            y = top + offset * (BAR - 2)
            parts.append(f'<rect x="{left}" y="{y}" width="{value * scale:.1f}" height="{BAR - 3}" fill="{colour}"/>')
            parts.append(f'<text x="{left + value * scale + 6:.1f}" y="{y + BAR - 4}" font-size="10">{value:g}</text>')
    parts.append("</svg>")
    return "\n".join(parts) + "\n"


def read_table(text, heading):
    """The rows of the first table under a heading, without its two first lines."""
    section = text.split(f"## {heading}\n", 1)[1].split("\n## ", 1)[0]
    table = re.search(r"(?:^\|.*\n)+", section, re.MULTILINE).group(0)
    return [[cell.strip(" `") for cell in line.strip("|").split("|")] for line in table.splitlines()[2:]]


def make_order_plot(text):
    """Every step as a multiple of expat's bare read of the same size."""
    steps = read_table(text, "Whole documents")
    milliseconds = [[float(number) * (0.001 if unit == "µs" else 1) for number, unit in map(str.split, row[1:4])] for row in steps]
    rows = [
        (re.sub(r" \(.*", "", row[0]), [round(ms / floor, 2) for ms, floor in zip(times, milliseconds[0])])
        for row, times in zip(steps, milliseconds)
    ]
    series = [("1 KB", "#9bbcd8"), ("1 MB", "#4878a8"), ("20 MB", "#24405c")]
    return make_bars(rows, series, "multiples of expat alone")


def make_families_plot(text):
    rows = [(row[0], [float(row[-2]), float(row[-1])]) for row in read_table(text, "Classes of whole standards")]
    return make_bars(rows, list(COLOURS.items()), "megabytes a second", 110)


def make_memory_plot(peers):
    rows = [(name, [float(tasks["read"]["memory"])]) for name, tasks in peers.items()]
    return make_bars(rows, [("read", COLOURS["read"])], "bytes of memory for each byte of the document")


def main():
    peers = load()
    docs = ROOT / "docs"
    page = docs / "performance.md"
    text = page.read_text(encoding="utf-8")
    plots = {
        "peers": make_plot(peers),
        "memory": make_memory_plot(peers),
        "order": make_order_plot(text),
        "families": make_families_plot(text),
    }
    for name, plot in plots.items():
        (docs / f"{name}.svg").write_text(plot, encoding="utf-8")
    if BEGIN not in text or END not in text:
        sys.exit(f"plot.py: {page} has no place for the table")
    head, rest = text.split(BEGIN, 1)
    tail = rest.split(END, 1)[1]
    page.write_text(f"{head}{BEGIN}\n{make_table(peers)}\n\n![Reading and writing](peers.svg)\n\n![Memory](memory.svg)\n{END}{tail}", encoding="utf-8")


if __name__ == "__main__":
    main()
