#include "tests/x/wmenh/Probe.h"

#include "tests/x/iwl/FakeViewer.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <sstream>

namespace fs = std::filesystem;

FakeImageWindow::FakeImageWindow(Display* display, const std::string& imagePath, const drive::Rect& place)
    : display(display)
{
    top = XCreateSimpleWindow(display, DefaultRootWindow(display), place.x, place.y, place.width,
                              place.height, 0, 0, 0x204060);
    canvas = XCreateSimpleWindow(display, top, 0, 0, place.width, place.height, 0, 0, 0x101010);
    XStoreName(display, top, "Fake Image");
    XSizeHints hints{};
    hints.flags = USPosition | USSize;
    hints.x = place.x;
    hints.y = place.y;
    hints.width = place.width;
    hints.height = place.height;
    XSetWMNormalHints(display, top, &hints);
    record.path = imagePath;
    record.geometry.imageWidth = 20;
    record.geometry.imageHeight = 10;
    record.geometry.panelWidth = place.width;
    record.geometry.panelHeight = place.height;
    record.wavelengths.resize(2);
    XMapWindow(display, canvas);
    XMapWindow(display, top);
    number = protocol::claimWindowNumber(display, canvas, record);
    XSync(display, False);
}

FakeImageWindow::~FakeImageWindow()
{
    destroy();
}

void FakeImageWindow::show(int z)
{
    record.z = z;
    protocol::publishDisplay(display, canvas, record);
    XSync(display, False);
}

void FakeImageWindow::destroy()
{
    if (top != None)
        XDestroyWindow(display, top);
    top = None;
    XSync(display, False);
}

ProbeTest::ProbeTest()
{
    std::string name = "/tmp/wmenh-test-XXXXXX";
    folder = mkdtemp(name.data());
    writeImage(folder / "cells.ome.tif", TestImage{});
    showImage({40, 60, 500, 400});
    screen.moveTo(screen.root(), 1590, 1190);
}

ProbeTest::~ProbeTest()
{
    if (HasFailure() && probe)
        std::fprintf(stderr, "%s%s", probe->output().c_str(), probe->errors().c_str());
    probe.reset();
    image.reset();
    fs::remove_all(folder);
}

void ProbeTest::showImage(const drive::Rect& area)
{
    image.reset();
    image = std::make_unique<FakeImageWindow>(screen.x(), (folder / "cells.ome.tif").string(), area);
    drive::waitUntil([this] { return screen.viewable(image->canvas); });
}

void ProbeTest::launch(std::map<std::string, std::string> environment, int windowNumber)
{
    environment.try_emplace("LC_ALL", "C.UTF-8");
    environment["XDG_CONFIG_HOME"] = (folder / "config").string();
    environment["PROBE_DIR"] = folder.string();
    probe = std::make_unique<drive::Process>(
        std::vector<std::string>{PROBE_PROGRAM, std::to_string(windowNumber)}, environment);
}

void ProbeTest::start(std::map<std::string, std::string> environment)
{
    launch(std::move(environment), image->number);
    ASSERT_TRUE(waitFor("ready"));
    ASSERT_TRUE(drive::waitUntil([this] { return screen.viewable(window("shell")); }));
}

std::vector<std::string> ProbeTest::said() const
{
    std::vector<std::string> lines;
    std::istringstream text(probe->output());
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> ProbeTest::said(const std::string& word) const
{
    std::vector<std::string> lines = said();
    std::erase_if(lines,
                  [&](const std::string& line) { return line != word && !line.starts_with(word + " "); });
    return lines;
}

bool ProbeTest::waitFor(const std::string& line)
{
    return drive::waitUntil([&] {
        const auto lines = said();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    });
}

Window ProbeTest::window(const std::string& name) const
{
    const auto lines = said("window " + name);
    return lines.empty() ? None : std::stoul(lines.back().substr(lines.back().rfind(' ') + 1));
}

drive::Rect ProbeTest::place(const std::string& name)
{
    return screen.geometry(window(name));
}

void ProbeTest::press(const std::string& name)
{
    screen.clickCentre(window(name));
}

bool ProbeTest::waitForFocus(Window window)
{
    return drive::waitUntil([&] {
        Window focus = None;
        int revert = 0;
        XGetInputFocus(screen.x(), &focus, &revert);
        return focus == window;
    });
}

void ProbeTest::replaceText(const std::string& text)
{
    screen.keyDown(XK_Control_L);
    screen.key(XK_slash);
    screen.keyUp(XK_Control_L);
    screen.key(XK_Delete);
    screen.type(text);
}

namespace {

std::vector<Window> childrenOf(Display* display, Window window)
{
    Window root = None, parent = None, *list = nullptr;
    unsigned count = 0;
    if (!XQueryTree(display, window, &root, &parent, &list, &count))
        return {};
    const std::vector<Window> children(list, list + count);
    if (list)
        XFree(list);
    return children;
}

// Window managers put up to two windows around a client.
int countBelow(drive::Screen& screen, Window window, const std::string& text, int depth)
{
    int found = 0;
    for (const Window child : childrenOf(screen.x(), window)) {
        if (!screen.viewable(child))
            continue;
        const bool titled = screen.title(child).find(text) != std::string::npos;
        found += titled ? 1 : depth > 0 ? countBelow(screen, child, text, depth - 1) : 0;
    }
    return found;
}

} // namespace

int ProbeTest::countTitled(const std::string& text)
{
    return countBelow(screen, screen.root(), text, 2);
}

int ProbeTest::countTopLevels()
{
    return countBelow(screen, screen.root(), "", 0);
}
