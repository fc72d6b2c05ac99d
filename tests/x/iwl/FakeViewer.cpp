// SPDX-License-Identifier: MIT
#include "tests/x/iwl/FakeViewer.h"

#include <X11/Xutil.h>

#include <filesystem>
#include <string>
#include <vector>

void writeImage(const std::filesystem::path& path, const std::string& options)
{
    support::makeSample(path, options + " --z 3 --time 2 --compression none");
    std::string bytes = readBytes(path);
    for (const std::string spacing : {"PhysicalSizeX=\"0.5000000000\"", "PhysicalSizeY=\"0.2500000000\""})
        bytes.replace(bytes.find(spacing.substr(0, 13)), spacing.size(), spacing);
    writeBytes(path, bytes);
}

namespace {

Window makeTop(Display* display, const drive::Rect& place)
{
    const Window top = XCreateSimpleWindow(display, DefaultRootWindow(display), place.x, place.y, place.width,
                                           place.height, 0, 0, 0x204060);
    XStoreName(display, top, "Fake Image");
    XSizeHints hints{};
    hints.flags = USPosition | USSize;
    hints.x = place.x;
    hints.y = place.y;
    hints.width = place.width;
    hints.height = place.height;
    XSetWMNormalHints(display, top, &hints);
    return top;
}

} // namespace

FakeViewer::FakeViewer(const std::string& path, const drive::Rect& place)
{
    constexpr int width = 20, height = 10;
    const bool shown = place.width > 0;
    const drive::Rect area = shown ? place : drive::Rect{0, 0, width, height};
    top = makeTop(connection, area);
    canvas = XCreateSimpleWindow(connection, top, 0, 0, area.width, area.height, 0, 0, 0x101010);
    record.path = path;
    record.geometry.imageWidth = width;
    record.geometry.imageHeight = height;
    record.geometry.panelWidth = area.width;
    record.geometry.panelHeight = area.height;
    record.wavelengths.resize(2);
    XMapWindow(connection, canvas);
    if (shown)
        XMapWindow(connection, top);
    protocol::claimWindowNumber(connection, canvas, record);
    XSync(connection, False);
}

void FakeViewer::publish()
{
    protocol::publishDisplay(connection, canvas, record);
    XSync(connection, False);
}

void FakeViewer::showSection(int z)
{
    record.z = z;
    publish();
}

void FakeViewer::destroy()
{
    XDestroyWindow(connection, top);
    XSync(connection, False);
}

std::vector<protocol::OverlayCommand> FakeViewer::drain()
{
    return protocol::drainOverlays(connection, canvas);
}
