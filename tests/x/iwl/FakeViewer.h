// SPDX-License-Identifier: MIT
// A stand-in for the image window: a canvas that publishes a display record, and small image files with known
// values.
#pragma once

#include "tests/x/iwl/Peers.h"

#include "platform/protocol/XProtocol.h"
#include "tests/x/support/Support.h"

#include <filesystem>
#include <string>
#include <vector>

// Writes an OME-TIFF with makesample: 3 sections and 2 time points of pixels of 0.5 x 0.25 microns. Pixel (x,
// y) of the pattern ramp is x + 11 y + 101 z + 1009 w + 10007 t.
const std::string usualImage = "--pattern ramp --size 20x10 --channels 2";
void writeImage(const std::filesystem::path& path, const std::string& options = usualImage);

// On a connection of its own, which takes the windows along when it ends.
class FakeViewer {
public:
    // Has a window number; shows an image of 20 x 10 pixels with two wavelengths at zoom 1. place is on the
    // screen; without one it stays unmapped.
    explicit FakeViewer(const std::string& path, const drive::Rect& place = {});

    void publish(); // the record as it stands now
    void showSection(int z);
    void destroy();
    std::vector<protocol::OverlayCommand> drain();

    protocol::DisplayRecord record;
    Window top = None, canvas = None;

private:
    peers::Connection connection;
};
