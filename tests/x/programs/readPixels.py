#!/usr/bin/env python3
# Prints what another reader finds in an image, for comparison: with tifffile, no code of ours.
#   readPixels.py IMAGE values Z T X Y [X Y]...   one line per pixel: the value of every channel
#   readPixels.py IMAGE metadata Z T              OME: spacing, offset, time and stage position of the section
#                                                 (channel 0), then the emission wavelengths
# Exit status 77 when tifffile is not installed.
import sys
import xml.etree.ElementTree as ElementTree

try:
    import tifffile
except ImportError:
    sys.exit(77)


def values(image, z, t, points):
    with tifffile.TiffFile(image) as tiff:
        series = tiff.series[0]
        data, axes = series.asarray(), series.axes
    for axis, index in (("Z", z), ("T", t)):
        if axis in axes:
            data = data.take(index, axis=axes.index(axis))
            axes = axes.replace(axis, "")
    channel = next((a for a in axes if a in "CS"), None)
    if channel is None:
        data, axes, channel = data[None], "C" + axes, "C"
    data = data.transpose([axes.index(a) for a in (channel, "Y", "X")])
    for x, y in points:
        print(*(float(v) for v in data[:, y, x]))


def metadata(image, z, t):
    with tifffile.TiffFile(image) as tiff:
        root = ElementTree.fromstring(tiff.ome_metadata)
    name = {"o": root.tag[1:].split("}")[0]}
    pixels = root.find("o:Image/o:Pixels", name)
    channels = pixels.findall("o:Channel", name)
    plane = next(p for p in pixels.findall("o:Plane", name)
                 if (p.get("TheZ"), p.get("TheT"), p.get("TheC")) == (str(z), str(t), "0"))
    offset = channels[0].find("o:DetectorSettings", name).get("Offset")
    print(pixels.get("PhysicalSizeX"), offset, plane.get("DeltaT"), plane.get("PositionX"), plane.get("PositionY"))
    print(*(c.get("EmissionWavelength") for c in channels))


image, what, z, t, *rest = sys.argv[1:]
if what == "values":
    coordinates = [int(v) for v in rest]
    values(image, int(z), int(t), list(zip(coordinates[::2], coordinates[1::2])))
else:
    metadata(image, int(z), int(t))
