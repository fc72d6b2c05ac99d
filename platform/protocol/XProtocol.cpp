// SPDX-License-Identifier: MIT
#include "platform/protocol/XProtocol.h"

#include "platform/protocol/PropertyBytes.h"

#include <cstdio>
#include <memory>
#include <span>

namespace protocol {
namespace {

constexpr std::size_t maxRecordBytes = 1 << 20;

struct XFreeDeleter {
    void operator()(unsigned char* data) const { XFree(data); }
};

} // namespace

PropertyBytes readProperty(Display* display, Window window, Atom property, Atom type, int format,
                           std::size_t limit, bool remove)
{
    ErrorTrap trap(display);
    Atom actualType = None;
    int actualFormat = 0;
    unsigned long count = 0, left = 0;
    unsigned char* data = nullptr;
    const int status = XGetWindowProperty(display, window, property, 0, static_cast<long>(limit / 4), remove,
                                          AnyPropertyType, &actualType, &actualFormat, &count, &left, &data);
    const std::unique_ptr<unsigned char, XFreeDeleter> owned(data);
    PropertyBytes result;
    result.exists = status == Success && actualType != None;
    result.good = result.exists && actualType == type && actualFormat == format && left == 0;
    if (result.good) {
        const std::size_t item = format == 32 ? sizeof(long) : static_cast<std::size_t>(format) / 8;
        const auto* first = reinterpret_cast<const std::byte*>(data);
        result.bytes.assign(first, first + count * item);
    }
    return result;
}

void writeBytes(Display* display, Window window, Atom property, Atom type, int mode,
                std::span<const std::byte> bytes)
{
    XChangeProperty(display, window, property, type, 8, mode,
                    reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
}

void publishDisplay(Display* display, Window canvas, const DisplayRecord& record)
{
    const auto bytes = encodeDisplay(record);
    if (!decodeDisplay(bytes)) {
        std::fprintf(stderr, "image window %d: a display record with values out of range was not published\n",
                     record.windowNumber);
        return;
    }
    const Atom name = atoms(display).display;
    writeBytes(display, canvas, name, name, PropModeReplace, bytes);
    XFlush(display);
}

std::optional<DisplayRecord> readDisplay(Display* display, Window canvas)
{
    const Atom name = atoms(display).display;
    const PropertyBytes property = readProperty(display, canvas, name, name, 8, maxRecordBytes);
    auto record = property.good ? decodeDisplay(property.bytes) : std::nullopt;
    if (property.exists && !record)
        std::fprintf(stderr,
                     "image window 0x%lx: its display record is damaged or of another version, ignored\n",
                     canvas);
    return record;
}

void appendOverlay(Display* display, Window canvas, const OverlayCommand& command)
{
    const Atom name = atoms(display).overlay;
    writeBytes(display, canvas, name, name, PropModeAppend, encodeOverlay(command));
}

unsigned long pendingOverlayBytes(Display* display, Window canvas)
{
    ErrorTrap trap(display);
    const Atom name = atoms(display).overlay;
    Atom type = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char* data = nullptr;
    const int status =
        XGetWindowProperty(display, canvas, name, 0, 0, False, name, &type, &format, &count, &left, &data);
    const std::unique_ptr<unsigned char, XFreeDeleter> owned(data);
    return status == Success ? left : 0;
}

std::vector<OverlayCommand> drainOverlays(Display* display, Window canvas)
{
    const Atom name = atoms(display).overlay;
    const PropertyBytes property = readProperty(display, canvas, name, name, 8, maxOverlayBytes, true);
    if (property.exists && !property.good) {
        // Too large, or not ours: the server has kept it.
        ErrorTrap trap(display);
        XDeleteProperty(display, canvas, name);
        std::fprintf(stderr,
                     "image window 0x%lx: overlay commands beyond %d bytes or of a foreign type dropped\n",
                     canvas, maxOverlayBytes);
    }
    int bad = 0;
    auto commands = decodeOverlays(property.bytes, bad);
    if (bad > 0)
        std::fprintf(stderr, "image window 0x%lx: %d damaged overlay commands ignored\n", canvas, bad);
    return commands;
}

} // namespace protocol
