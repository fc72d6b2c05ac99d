// A stand-in for the viewer: a canvas that publishes a display record, and small image files with known
// values.
#pragma once

#include "platform/protocol/XProtocol.h"
#include "tests/x/iwl/Peers.h"

#include <filesystem>
#include <string>

// What a test image holds. Pixel (x, y) of a section is 1000 * page + 10 * y + x, pages counted with z
// fastest, then wavelength, then time.
struct TestImage {
    int width = 20, height = 10;
    int sizeZ = 3, sizeW = 2, sizeT = 2;
    int base = 0;                // added to every pixel value
    bool stagePositions = false; // X 100, Y -50, Z 7 + 2.5 z microns, and DeltaT 1.5 t seconds
};

// Writes an OME-TIFF of 16-bit pixels with spacings 0.5, 0.25 and 2 microns and wavelengths 528 and 617 nm.
void writeImage(const std::filesystem::path& path, const TestImage& image);

class FakeViewer {
public:
    // Window number of its own; shows the image file at zoom 1.
    FakeViewer(const std::string& path, const TestImage& image);

    void publish(); // the record as it stands now
    void destroyCanvas();
    std::vector<protocol::OverlayCommand> drain();

    protocol::DisplayRecord record;
    Window canvas = None;

private:
    peers::Connection connection;
};
