#!/usr/bin/env python3
"""Another reading of bands, for comparison: pixels by tifffile, everything else in whole numbers of hundredths of a
pixel, no code of ours.

  readBands.py IMAGE LINES.csv WIDTH REDUCE SAMPLES.csv

LINES.csv has columns name and points ("x,y x,y ..."), WIDTH is in whole pixels. Prints what differs; the exit status is
1 then, and 77 when tifffile is not installed.
"""
import csv
import math
import statistics
import sys
from fractions import Fraction

try:
    import tifffile
except ImportError:
    sys.exit(77)

SCALE = 100
HALF = SCALE // 2


def candidates(points, width, x, y):
    """(distance squared in pixels, distance along in pixels) of each place of the line that the pixel lies beside."""
    along = 0.0
    reach2 = (width * SCALE) ** 2
    before = None
    for (ax, ay), (bx, by) in zip(points, points[1:]):
        dx, dy = bx - ax, by - ay
        px, py = x * SCALE + HALF - ax, y * SCALE + HALF - ay
        dot, cross, length2 = px * dx + py * dy, py * dx - px * dy, dx * dx + dy * dy
        if before is not None:
            beyond, right = before(x, y)
            distance2 = px * px + py * py
            inside = 4 * distance2 < reach2 or (4 * distance2 == reach2 and (right or cross > 0))
            if beyond and dot < 0 and inside:
                yield Fraction(distance2, SCALE * SCALE), along
        side = 4 * cross * cross - reach2 * length2
        if 0 <= dot < length2 and (side < 0 or (side == 0 and cross > 0)):
            whole = math.isqrt(dot * dot // (length2 * SCALE * SCALE))
            exact = dot / math.sqrt(length2) / SCALE
            yield Fraction(cross * cross, length2 * SCALE * SCALE), (whole if along == 0 else along + exact)
        along += math.sqrt(length2) / SCALE

        def before(x, y, a=(ax, ay), d=(dx, dy)):
            # Against the end of this piece.
            px, py = x * SCALE + HALF - a[0] - d[0], y * SCALE + HALF - a[1] - d[1]
            return px * d[0] + py * d[1] >= 0, py * d[0] - px * d[1] > 0


REDUCE = {"mean": lambda v: math.fsum(v) / len(v), "sum": math.fsum, "max": max, "median": statistics.median}


def band(data, points, width, reduce):
    length = sum(math.dist(a, b) for a, b in zip(points, points[1:])) / SCALE
    bins = [[] for _ in range(math.ceil(length))]
    for y in range(data.shape[0]):
        for x in range(data.shape[1]):
            places = list(candidates(points, width, x, y))
            if places:
                nearest = min(range(len(places)), key=lambda i: (places[i][0], i))
                bins[min(int(places[nearest][1]), len(bins) - 1)].append(float(data[y, x]))
    return [(len(values), REDUCE[reduce](values) if values else None) for values in bins]


def main():
    image, lines, width, reduce, samples = sys.argv[1:]
    data = tifffile.imread(image)
    found = {}
    with open(samples, newline="", encoding="utf-8") as file:
        for row in csv.DictReader(file):
            found.setdefault(row["line"], []).append(
                (int(row["pixels"]), float(row["value"]) if row["value"] else None))
    problems = 0
    with open(lines, newline="", encoding="utf-8") as file:
        for row in csv.DictReader(file):
            points = [tuple(round(float(v) * SCALE) for v in pair.split(",")) for pair in row["points"].split()]
            expected = band(data, points, int(width), reduce)
            same = len(expected) == len(found.get(row["name"], [])) and all(
                a[0] == b[0] and (a[1] is b[1] or math.isclose(a[1], b[1], rel_tol=1e-14))
                for a, b in zip(expected, found[row["name"]]))
            if not same:
                problems += 1
                print("line", row["name"], "differs")
    print(len(found), "lines compared")
    sys.exit(1 if problems else 0)


main()
