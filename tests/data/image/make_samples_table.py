#!/usr/bin/python3
"""Writes samples.txt: figures of the sample images as tifffile reads them.

Usage: make_samples_table.py SAMPLES_DIR > samples.txt
JPEG needs a decoder that tifffile does not bring along: such a file is first copied with `tiffcp -c none`.
Planes are listed by hand (file, page) because this table must not depend on our own idea of the metadata.
"""
import os
import subprocess
import sys
import tempfile

import numpy
import tifffile

COMPANION = "multifile-companion/multifile-Z%d.ome.tiff"
CELLS = "181003_multi_pos_time_course_1_MMStack.ome.tif"

# opened file: width height z w t p, spacing x y z (microns, 1 when unknown), calibrated, display colour indices
IMAGES = [
    ("neuron-4Ch.tiff", "502 623 1 4 1 1", "0.1241 0.1241 1", 1, "5 1 2 4"),
    ("xyc_16bit__cell_dna_mts_actin.tif", "350 350 1 3 1 1", "0.132492 0.132492 0.5", 1, "6 5 3"),
    ("xyzct-mitosis.tif", "171 196 5 2 3 1", "0.0885 0.0885 1", 1, "1 2"),
    (CELLS, "256 256 1 1 10 2", "5.2304 5.2304 1", 1, "0"),
    ("tubhiswt-2D/tubhiswt_C0.ome.tif", "512 512 1 2 1 1", "1 1 1", 0, "0 0"),
    ("tubhiswt-2D/tubhiswt_C1.ome.tif", "512 512 1 2 1 1", "1 1 1", 0, "0 0"),
    (COMPANION % 1, "18 24 5 1 1 1", "1 1 1", 0, "1"),
    (COMPANION % 4, "18 24 5 1 1 1", "1 1 1", 0, "1"),
    ("multifile-companion/multifile.companion.ome", "18 24 5 1 1 1", "1 1 1", 0, "1"),
    ("multi-channel-z-series.ome.tiff", "439 167 5 3 1 1", "1 1 1", 0, "2 5 6"),
    ("HE_example.tif", "1380 1484 1 3 1 1", "0.50008 0.50008 1", 1, "1 2 4"),
]

# opened file, (z, w, t, p), file that holds the plane, its page, sample
SECTIONS = (
    [("neuron-4Ch.tiff", (0, w, 0, 0), "neuron-4Ch.tiff", w, 0) for w in range(4)]
    + [(IMAGES[1][0], (0, w, 0, 0), IMAGES[1][0], w, 0) for w in range(3)]
    + [("xyzct-mitosis.tif", (z, w, t, 0), "xyzct-mitosis.tif", (t * 5 + z) * 2 + w, 0)
       for z, w, t in ((0, 0, 0), (0, 1, 0), (3, 0, 0), (4, 1, 1), (2, 0, 2))]
    + [(CELLS, (0, 0, t, p), CELLS, 2 * t + p, 0) for t, p in ((0, 0), (0, 1), (4, 0), (9, 1))]
    + [("tubhiswt-2D/tubhiswt_C%d.ome.tif" % o, (0, w, 0, 0), "tubhiswt-2D/tubhiswt_C%d.ome.tif" % w, 0, 0)
       for o in (0, 1) for w in (0, 1)]
    + [(o, (z, 0, 0, 0), COMPANION % (z + 1), 0, 0)
       for o in (COMPANION % 1, COMPANION % 4, "multifile-companion/multifile.companion.ome") for z in (0, 2, 4)]
    + [(IMAGES[9][0], (z, w, 0, 0), IMAGES[9][0], w * 5 + z, 0) for z, w in ((0, 0), (1, 0), (0, 1), (4, 2))]
    + [("HE_example.tif", (0, w, 0, 0), "HE_example.tif", 0, w) for w in range(3)]
)


def page(path, index):
    with tifffile.TiffFile(path, is_ome=False) as file:
        if file.pages[index].compression != 7:
            return file.pages[index].asarray()
    with tempfile.TemporaryDirectory() as folder:
        plain = os.path.join(folder, "plain.tif")
        subprocess.run(["tiffcp", "-c", "none", path, plain], check=True)
        return tifffile.TiffFile(plain).pages[index].asarray()


def main():
    samples = sys.argv[1]
    print("# Made by make_samples_table.py with tifffile.")
    print("# image FILE width height z w t p spacing-x spacing-y spacing-z calibrated colours...")
    for name, sizes, spacing, calibrated, colors in IMAGES:
        print("image", name, sizes, spacing, calibrated, colors)
    print("# section FILE z w t p min max sum  x y value  x y value  x y value")
    for opened, section, name, index, sample in SECTIONS:
        data = page(os.path.join(samples, name), index)
        data = (data if data.ndim == 2 else data[:, :, sample]).astype(numpy.float64)
        height, width = data.shape
        points = [(0, 0), (width // 3, height // 2), (width - 1, height - 1)]
        values = "  ".join("%d %d %g" % (x, y, data[y, x]) for x, y in points)
        print("section", opened, *section, "%g %g %.0f " % (data.min(), data.max(), data.sum()), values)


main()
