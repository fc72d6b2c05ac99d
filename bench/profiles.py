#!/usr/bin/env python3
"""Profiles per CPU second of batchprofile and of two Python libraries, on the same lines of the same image in one run.

Usage: profiles.py BATCHPROFILE IMAGE      (2048 x 2048 pixels of 16 bits)
A library that is not installed (python3-silx, python3-skimage) is left out and named. Figures of batchprofile are of
the whole program: start, reading the lines and the image, writing the summary.
"""
import os
import random
import resource
import subprocess
import sys
import tempfile
import time

SIDE, LINES = 2048, 40000


def make_lines(count):
    """Ends anywhere in the image: 1068 pixels long on average."""
    draw = random.Random(1)
    return [tuple(round(draw.uniform(0, SIDE - 1), 2) for _ in range(4)) for _ in range(count)]


def batch_rate(program, image, lines, width, jobs=1):
    """Profiles a CPU second, and a second."""
    with tempfile.TemporaryDirectory() as folder:
        table = os.path.join(folder, "lines.csv")
        with open(table, "w", encoding="ascii") as file:
            file.write("x0_px,y0_px,x1_px,y1_px\n")
            file.writelines("%.2f,%.2f,%.2f,%.2f\n" % line for line in lines)
        how = ["--line", "digital"] if width == 1 else ["--line", "band", "--width", str(width)]
        before, began = resource.getrusage(resource.RUSAGE_CHILDREN), time.monotonic()
        subprocess.run([program, "--quiet", "--jobs", str(jobs), "--lines", table, "--out",
                        os.path.join(folder, "r"), *how, image], check=True)
        wall, after = time.monotonic() - began, resource.getrusage(resource.RUSAGE_CHILDREN)
    cpu = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
    return len(lines) / cpu, len(lines) / wall


def rate_of(measure, lines):
    began = time.process_time()
    for line in lines:
        measure(*line)
    return len(lines) / (time.process_time() - began)


def libraries(image):
    """(name, function of width giving a measuring function, lines that take about a second)."""
    found = []
    try:
        import tifffile
        pixels = tifffile.imread(image).reshape(SIDE, SIDE)
    except ImportError:
        print("  python3-tifffile is not installed: nothing to compare with")
        return found
    try:
        from silx.image.bilinear import BilinearImage
        bilinear = BilinearImage(pixels)
        found.append(("silx", lambda width: lambda x0, y0, x1, y1: bilinear.profile_line((y0, x0), (y1, x1), width),
                      10000))
    except ImportError:
        print("  python3-silx is not installed: left out")
    try:
        from skimage.measure import profile_line
        found.append(("skimage", lambda width: lambda x0, y0, x1, y1: profile_line(
            pixels, (y0, x0), (y1, x1), linewidth=width), 50))
    except ImportError:
        print("  python3-skimage is not installed: left out")
    return found


def main():
    program, image = sys.argv[1:]
    lines = make_lines(LINES)
    others = libraries(image)
    for width in (1, 5):
        own, _ = batch_rate(program, image, lines, width)
        print("  width %d: batchprofile %8.0f profiles a CPU second" % (width, own))
        for name, make, count in others:
            rate = rate_of(make(width), lines[:count])
            print("           %-12s %8.0f, ratio %6.1f" % (name, rate, own / rate))
    _, one = batch_rate(program, image, lines, 1, 1)
    _, two = batch_rate(program, image, lines, 1, 2)
    print("  two jobs: %.2f times one job's profiles a second" % (two / one))
    began = time.monotonic()
    for _ in range(20):
        subprocess.run([program, "--version"], check=True, stdout=subprocess.DEVNULL)
    print("  start-up: %.1f ms" % ((time.monotonic() - began) / 20 * 1000))


main()
