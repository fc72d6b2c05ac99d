#include "tests/x/iwl/FakeViewer.h"

#include <memory>
#include <sstream>
#include <stdexcept>
#include <tiffio.h>

namespace {

std::string planeXml(int z, int w, int t)
{
    std::ostringstream xml;
    xml << "<Plane TheZ=\"" << z << "\" TheC=\"" << w << "\" TheT=\"" << t << "\" DeltaT=\"" << 1.5 * t
        << "\" PositionX=\"100\" PositionY=\"-50\" PositionZ=\"" << 7 + 2.5 * z
        << "\" PositionXUnit=\"&#181;m\" "
        << "PositionYUnit=\"&#181;m\" PositionZUnit=\"&#181;m\"/>";
    return xml.str();
}

std::string omeXml(const TestImage& image)
{
    std::ostringstream xml;
    xml << R"(<?xml version="1.0" encoding="UTF-8"?><OME xmlns="http://www.openmicroscopy.org/Schemas/OME/2016-06">)"
        << R"(<Image ID="Image:0"><Pixels ID="Pixels:0" DimensionOrder="XYZCT" Type="uint16" SizeX=")"
        << image.width << "\" SizeY=\"" << image.height << "\" SizeZ=\"" << image.sizeZ << "\" SizeC=\""
        << image.sizeW << "\" SizeT=\"" << image.sizeT
        << R"(" PhysicalSizeX="0.5" PhysicalSizeY="0.25" PhysicalSizeZ="2">)";
    for (int w = 0; w < image.sizeW; ++w)
        xml << "<Channel ID=\"Channel:0:" << w << "\" EmissionWavelength=\"" << 528 + 89 * w << "\"/>";
    xml << "<TiffData/>";
    for (int t = 0; image.stagePositions && t < image.sizeT; ++t)
        for (int w = 0; w < image.sizeW; ++w)
            for (int z = 0; z < image.sizeZ; ++z)
                xml << planeXml(z, w, t);
    xml << "</Pixels></Image></OME>";
    return xml.str();
}

void writePage(TIFF* file, const TestImage& image, int page)
{
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, image.width);
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, image.height);
    TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, 16);
    TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, image.height);
    TIFFSetField(file, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(file, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    if (page == 0)
        TIFFSetField(file, TIFFTAG_IMAGEDESCRIPTION, omeXml(image).c_str());
    std::vector<std::uint16_t> row(image.width);
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x)
            row[x] = static_cast<std::uint16_t>(image.base + 1000 * page + 10 * y + x);
        TIFFWriteScanline(file, row.data(), y, 0);
    }
    TIFFWriteDirectory(file);
}

} // namespace

void writeImage(const std::filesystem::path& path, const TestImage& image)
{
    const std::unique_ptr<TIFF, void (*)(TIFF*)> file(TIFFOpen(path.c_str(), "w"), TIFFClose);
    if (!file)
        throw std::runtime_error("cannot write " + path.string());
    for (int page = 0; page < image.sizeZ * image.sizeW * image.sizeT; ++page)
        writePage(file.get(), image, page);
}

FakeViewer::FakeViewer(const std::string& path, const TestImage& image)
{
    record.path = path;
    record.geometry.imageWidth = image.width;
    record.geometry.imageHeight = image.height;
    record.geometry.panelWidth = image.width;
    record.geometry.panelHeight = image.height;
    record.wavelengths.resize(image.sizeW);
    for (int w = 0; w < image.sizeW; ++w)
        record.wavelengths[w].colorIndex = 2 * w + 1;
    canvas = connection.makeWindow();
    protocol::claimWindowNumber(connection, canvas, record);
}

void FakeViewer::publish()
{
    protocol::publishDisplay(connection, canvas, record);
    XSync(connection, False);
}

void FakeViewer::destroyCanvas()
{
    XDestroyWindow(connection, canvas);
    XSync(connection, False);
}

std::vector<protocol::OverlayCommand> FakeViewer::drain()
{
    return protocol::drainOverlays(connection, canvas);
}
