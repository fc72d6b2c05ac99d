// SPDX-License-Identifier: MIT
#include "platform/iwl/Session.h"

#include "platform/base/DisplayColors.h"
#include "platform/base/Limits.h"
#include "platform/iwl/Slots.h"
#include "platform/protocol/XProtocol.h"

#include <IWL.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <unistd.h>

namespace {

using SlotTable = std::array<std::unique_ptr<iwl::Slot>, IW_MAX_SLOTS + 1>;

// The session: one connection and the attached windows, for the life of the process. Entry 0 is unused. The
// table is never destroyed: a program that calls exit() with images open must not close them after the image
// code's own thread-local data has gone.
Display* connection = nullptr;
Window ownWindow = None;
SlotTable& slots = *std::make_unique<SlotTable>().release();

// What a tool prints when its only argument is this option; empty when the argument is no option, but the
// number of an image window that every tool takes.
std::string answerTo(std::string_view option)
{
    const std::string name = program_invocation_short_name;
    if (option == "--version")
        return name + " " PROJECT_VERSION "\n";
    if (option != "--help")
        return {};
    return "Usage: " + name +
           " window_number\n\n"
           "Starts the tool on an image window. imagewindow prints the numbers of its windows.\n\n"
           "  --help     prints this text\n"
           "  --version  prints the version\n";
}

// Throws std::runtime_error with one sentence when the window cannot be attached.
std::unique_ptr<iwl::Slot> attach(int windowNumber)
{
    const Window canvas = protocol::findImageWindow(connection, windowNumber);
    if (canvas == None)
        throw std::runtime_error("there is no image window " + std::to_string(windowNumber));
    auto record = protocol::readDisplay(connection, canvas);
    if (!record)
        throw std::runtime_error("image window " + std::to_string(windowNumber) +
                                 " does not tell what it shows");
    iwl::SlotImage image(*record);
    const std::optional<protocol::Spacing> spacing = record->spacing;
    return std::make_unique<iwl::Slot>(iwl::Slot{
        windowNumber, canvas, false, std::move(*record), std::move(image), spacing, {}, {}, 0, false});
}

bool canvasExists(Window canvas)
{
    protocol::ErrorTrap trap(connection);
    Window root;
    int x, y;
    unsigned width, height, border, depth;
    return XGetGeometry(connection, canvas, &root, &x, &y, &width, &height, &border, &depth) != 0;
}

iwl::Change applyRecord(iwl::Slot& slot, const protocol::DisplayRecord& record)
{
    if (record == slot.record)
        return iwl::Change::Nothing;
    slot.record = record;
    slot.stageOrigin.reset();
    slot.image.follow(record);
    return iwl::Change::Display;
}

template<class Action> void forSlotsOf(Window canvas, Action action)
{
    for (auto& slot : slots)
        if (slot && slot->canvas == canvas && !slot->closed)
            action(*slot);
}

iwl::Change canvasClosed(Window canvas)
{
    iwl::Change change = iwl::Change::Nothing;
    forSlotsOf(canvas, [&](iwl::Slot& slot) {
        slot.closed = true;
        change = iwl::Change::Closed;
    });
    return change;
}

} // namespace

namespace iwl {

// The numbers that IWL.h repeats: the length of the tool's arrays, the colours.
static_assert(IW_MAX_WAVES == base::maxWavelengths);
static_assert(base::White == 0 && base::Red == 1 && base::Green == 2 && base::Yellow == 3 &&
              base::Blue == 4 && base::Magenta == 5 && base::Cyan == 6 && base::annotationColor == 7);

Slot* slotAt(int slot)
{
    return slot >= 1 && slot <= IW_MAX_SLOTS ? slots[slot].get() : nullptr;
}

void detach(int slot)
{
    if (slotAt(slot))
        slots[slot].reset();
}

} // namespace iwl

Display* iwl::display()
{
    return connection;
}

std::string iwl::programName()
{
    return program_invocation_short_name;
}

Window iwl::clientWindow()
{
    return ownWindow;
}

std::vector<iwl::AttachedWindow> iwl::attachedWindows()
{
    std::vector<iwl::AttachedWindow> windows;
    for (int slot = 1; slot <= IW_MAX_SLOTS; ++slot)
        if (slots[slot])
            windows.push_back({slot, slots[slot]->windowNumber, slots[slot]->canvas});
    return windows;
}

iwl::Slot* iwl::slotShowing(Window canvas)
{
    const auto found =
        std::ranges::find_if(slots, [canvas](const auto& slot) { return slot && slot->canvas == canvas; });
    return found == slots.end() ? nullptr : found->get();
}

int iwl::windowNumberOf(Window canvas)
{
    const iwl::Slot* const slot = iwl::slotShowing(canvas);
    return slot ? slot->windowNumber : 0;
}

iwl::Change iwl::refresh(Window canvas)
{
    if (!iwl::slotShowing(canvas))
        return iwl::Change::Nothing;
    const auto record = protocol::readDisplay(connection, canvas);
    if (!record)
        return canvasExists(canvas) ? iwl::Change::Nothing : canvasClosed(canvas);
    iwl::Change change = iwl::Change::Nothing;
    forSlotsOf(canvas, [&](iwl::Slot& slot) { change = std::max(change, applyRecord(slot, *record)); });
    return change;
}

iwl::Change iwl::handleEvent(const XEvent& event)
{
    if (event.type == DestroyNotify)
        return canvasClosed(event.xdestroywindow.window);
    if (event.type != PropertyNotify)
        return iwl::Change::Nothing;
    const XPropertyEvent& property = event.xproperty;
    const protocol::Atoms& atoms = protocol::atoms(connection);
    if (property.atom == atoms.overlay && property.state == PropertyDelete)
        forSlotsOf(property.window, iwl::overlaysTaken);
    const bool published = property.atom == atoms.display && property.state == PropertyNewValue;
    return published ? iwl::refresh(property.window) : iwl::Change::Nothing;
}

int IWAttach(int argc, char** argv)
{
    if (connection)
        return 1;
    if (argc > 0 && argv && argv[0] && *argv[0]) {
        const char* slash = std::strrchr(argv[0], '/');
        program_invocation_short_name = slash ? argv[0] + (slash - argv[0]) + 1 : argv[0];
    }
    if (const std::string answer = argc == 2 && argv ? answerTo(argv[1]) : ""; !answer.empty()) {
        std::fputs(answer.c_str(), stdout);
        std::exit(std::fflush(stdout) == 0 ? 0 : 1);
    }
    connection = XOpenDisplay(nullptr);
    if (!connection) {
        std::fprintf(stderr, "%s: cannot open the X display \"%s\"\n", program_invocation_short_name,
                     XDisplayName(nullptr));
        std::exit(-1);
    }
    protocol::installErrorHandler(program_invocation_short_name);
    ownWindow = protocol::makeHiddenWindow(connection);
    // The server throws away requests of a client that has hung up before it read them: what the program
    // asked for last, such as its graphics to go, would be lost. A forked child must not talk on its parent's
    // connection.
    static const pid_t attachedProcess = getpid();
    std::atexit([] {
        if (getpid() == attachedProcess)
            XSync(connection, False);
    });
    return 1;
}

int IWAttachWin(int slot, int windowNumber, const char* mode)
{
    try {
        if (!connection || slot < 1 || slot > IW_MAX_SLOTS || slots[slot])
            throw std::runtime_error("slot " + std::to_string(slot) + " cannot take an image window");
        if (!mode || std::strcmp(mode, "ro") != 0)
            throw std::runtime_error("image windows can only be attached with mode \"ro\"");
        slots[slot] = attach(windowNumber);
        return 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, error.what());
        return 0;
    }
}

Window IWRtWID(int slot)
{
    const iwl::Slot* attached = iwl::slotAt(slot);
    return attached ? attached->canvas : None;
}
