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

NEURON, CELL, MITOSIS = "neuron-4Ch.tiff", "xyc_16bit__cell_dna_mts_actin.tif", "xyzct-mitosis.tif"
POSITIONS, SERIES = "181003_multi_pos_time_course_1_MMStack.ome.tif", "multi-channel-z-series.ome.tiff"
TUBULIN, COMPANION = "tubhiswt-2D/tubhiswt_C%d.ome.tif", "multifile-companion/multifile-Z%d.ome.tiff"
OPENED = (COMPANION % 1, COMPANION % 4, "multifile-companion/multifile.companion.ome")

# opened file, (z, w, t, p), file that holds the plane, its page, sample
SECTIONS = (
    [(NEURON, (0, w, 0, 0), NEURON, w, 0) for w in range(4)]
    + [(CELL, (0, w, 0, 0), CELL, w, 0) for w in range(3)]
    + [(MITOSIS, (z, w, t, 0), MITOSIS, (t * 5 + z) * 2 + w, 0)
       for z, w, t in ((0, 0, 0), (0, 1, 0), (3, 0, 0), (4, 1, 1), (2, 0, 2))]
    + [(POSITIONS, (0, 0, t, p), POSITIONS, 2 * t + p, 0) for t, p in ((0, 0), (0, 1), (4, 0), (9, 1))]
    + [(TUBULIN % o, (0, w, 0, 0), TUBULIN % w, 0, 0) for o in (0, 1) for w in (0, 1)]
    + [(o, (z, 0, 0, 0), COMPANION % (z + 1), 0, 0) for o in OPENED for z in (0, 2, 4)]
    + [(SERIES, (z, w, 0, 0), SERIES, w * 5 + z, 0) for z, w in ((0, 0), (1, 0), (0, 1), (4, 2))]
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


print("# Made by make_samples_table.py with tifffile.")
print("# FILE z w t p min max sum  x y value  x y value  x y value")
for opened, section, name, index, sample in SECTIONS:
    data = page(os.path.join(sys.argv[1], name), index)
    data = (data if data.ndim == 2 else data[:, :, sample]).astype(numpy.float64)
    height, width = data.shape
    points = [(0, 0), (width // 3, height // 2), (width - 1, height - 1)]
    values = "  ".join("%d %d %g" % (x, y, data[y, x]) for x, y in points)
    print(opened, *section, "%g %g %.0f " % (data.min(), data.max(), data.sum()), values)
