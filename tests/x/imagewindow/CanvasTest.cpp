// SPDX-License-Identifier: MIT
// The kinds of canvas: shared memory, images through the connection, OpenGL.
#include "tests/Rows.h"
#include "tests/x/imagewindow/Viewer.h"
#include "tests/x/iwl/Peers.h"

#include "drive/Pair.h"
#include "tests/Folders.h"

#include <X11/Xutil.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

using namespace viewertest;
using protocol::OverlayCommand;
using protocol::OverlayKind;

namespace {

constexpr drive::Pixel amber{255, 184, 28};

OverlayCommand lineOf(Window client, float x0, float y0, float x1, float y1)
{
    OverlayCommand line{
        .kind = OverlayKind::AddLine, .client = static_cast<std::uint32_t>(client), .id = 1, .width = 3};
    line.x0 = x0, line.y0 = y0, line.x1 = x1, line.y1 = y1;
    return line;
}

void draw(Display* display, Window canvas, const OverlayCommand& line)
{
    protocol::appendOverlay(display, canvas, line);
    protocol::appendOverlay(display, canvas, {.kind = OverlayKind::Redraw, .client = line.client});
    XSync(display, False);
}

int greatestDifference(const drive::Picture& a, const drive::Picture& b)
{
    if (a.width != b.width || a.height != b.height)
        return 256;
    int most = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i)
        for (const int one :
             {std::abs(a.pixels[i].red - b.pixels[i].red), std::abs(a.pixels[i].green - b.pixels[i].green),
              std::abs(a.pixels[i].blue - b.pixels[i].blue)})
            most = std::max(most, one);
    return most;
}

std::string cells()
{
    return madeOnce("cells.ome.tif", "--size 400x300 --z 3 --channels 3 --time 1");
}

// All that the canvas goes through: panels with captions, a tool's line that moves, zoom, scroll, another
// size of the window, another window over it.
std::vector<drive::Picture> life(const char* kind)
{
    Viewer viewer({"--canvas", kind, "--panels", "z", "--geometry", "700x500+20+20", cells()});
    EXPECT_EQ(viewer.process.errors(), "") << kind;
    std::vector<drive::Picture> pictures;
    const auto look = [&] {
        drive::waitUntilCalm(viewer.screen);
        pictures.push_back(viewer.screen.capture(viewer.canvas));
    };
    look();
    const peers::Connection tool;
    const Window client = tool.makeWindow(1, 1);
    draw(tool, viewer.canvas, lineOf(client, 10, 10, 100, 90));
    draw(tool, viewer.canvas, lineOf(client, 30, 250, 350, 40));
    look();
    viewer.screen.click(viewer.canvas, 100, 100, 4);
    look();
    viewer.screen.drag(viewer.canvas, 150, 150, 100, 120, 5, 2);
    look();
    const int before = viewer.record()->geometry.panelWidth;
    XResizeWindow(viewer.screen.x(), viewer.screen.toplevel(viewer.canvas), 500, 420);
    XSync(viewer.screen.x(), False);
    EXPECT_LT(viewer.waitForRecord([&](const auto& r) { return r.geometry.panelWidth < before; })
                  .geometry.panelWidth,
              before);
    look();
    {
        const peers::Connection other;
        const Window cover = other.makeWindow(400, 400);
        XSetWindowAttributes attributes{};
        attributes.override_redirect = True;
        XChangeWindowAttributes(other, cover, CWOverrideRedirect, &attributes);
        XMapRaised(other, cover);
        drive::waitUntilCalm(viewer.screen);
    }
    look();
    return pictures;
}

} // namespace

TEST(CanvasKinds, ShowTheSamePicture)
{
    const std::vector<drive::Picture> expected = life("shm");
    EXPECT_GT(std::count(expected[1].pixels.begin(), expected[1].pixels.end(), amber), 100);
    EXPECT_NE(expected[1].pixels, expected[2].pixels);
    EXPECT_NE(expected[2].pixels, expected[3].pixels);
    EXPECT_EQ(expected[4].pixels, expected[5].pixels);
    for (const char* kind : {"x11", "gl"}) {
        const std::vector<drive::Picture> pictures = life(kind);
        ASSERT_EQ(pictures.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_LE(greatestDifference(pictures[i], expected[i]), 1) << kind << " " << i;
    }
}

// One client only may select presses, and that is a tool.
TEST(CanvasKinds, LeaveThePressesToTools)
{
    for (const char* kind : {"shm", "x11", "gl"}) {
        Viewer viewer({"--canvas", kind, rgbImage()});
        XWindowAttributes attributes{};
        ASSERT_TRUE(XGetWindowAttributes(viewer.screen.x(), viewer.canvas, &attributes)) << kind;
        EXPECT_EQ(attributes.all_event_masks & (ButtonPressMask | KeyPressMask), 0) << kind;
        const peers::Connection tool;
        XSelectInput(tool, viewer.canvas, ButtonPressMask | ButtonReleaseMask);
        XSync(tool, False);
        viewer.screen.click(viewer.canvas, 10, 10);
        XEvent event{};
        EXPECT_TRUE(drive::waitUntil([&] {
            return XCheckTypedWindowEvent(tool, viewer.canvas, ButtonPress, &event) != 0;
        })) << kind;
        EXPECT_EQ(event.xbutton.x, 10) << kind;
    }
}

namespace {

// A server of one's own, with other extensions than the one of the tests.
class Server {
public:
    explicit Server(std::vector<std::string> options) : process(command(std::move(options)))
    {
        drive::waitUntil([&] { return !process.output().empty() || !process.running(); });
        name = ":" + std::to_string(std::atoi(process.output().c_str()));
    }
    std::string name;

private:
    static std::vector<std::string> command(std::vector<std::string> options)
    {
        std::vector<std::string> words{"Xvfb",       "-displayfd", "1",   "-screen", "0",
                                       "800x600x24", "-nolisten",  "tcp", "-noreset"};
        words.insert(words.end(), options.begin(), options.end());
        return words;
    }
    drive::Process process;
};

struct Row {
    const char *name, *extension, *kind, *sentence;
};

} // namespace

class CanvasWithout : public testing::TestWithParam<Row> {};

TEST_P(CanvasWithout, ShowsTheImageAndSaysWhatItDoesWithout)
{
    const auto [name, extension, kind, sentence] = GetParam();
    const Server server({"-extension", extension});
    drive::Process viewer(
        {BIN_DIR "/imagewindow", "--display", server.name, "--canvas", kind, "--zoom", "1", rgbImage()},
        {{"XDG_CACHE_HOME", scratchFolder() / "cache"}});
    ASSERT_TRUE(
        drive::waitUntil([&] { return viewer.output().starts_with("window 1:") || !viewer.running(); }));
    ASSERT_TRUE(viewer.running()) << viewer.errors();
    EXPECT_THAT(viewer.errors(), testing::HasSubstr(sentence));
    EXPECT_LE(support::lineCount(viewer.errors()), *sentence ? 1 : 0) << viewer.errors();
    Display* display = XOpenDisplay(server.name.c_str());
    ASSERT_NE(display, nullptr);
    const Window canvas = protocol::findImageWindow(display, 1);
    const drive::Pixel expected = rgbPixel(20, 10);
    const unsigned long packed =
        static_cast<unsigned long>(expected.red << 16 | expected.green << 8 | expected.blue);
    EXPECT_TRUE(drive::waitUntil([&] {
        XImage* image = XGetImage(display, canvas, 20, 10, 1, 1, AllPlanes, ZPixmap);
        const unsigned long pixel = image ? XGetPixel(image, 0, 0) & 0xFFFFFF : 0;
        if (image)
            XDestroyImage(image);
        return pixel == packed;
    }));
    XCloseDisplay(display);
}

INSTANTIATE_TEST_SUITE_P(All, CanvasWithout,
                         testing::Values(Row{"OpenGlAskedFor", "GLX", "gl",
                                             "OpenGL does not work on this display"},
                                         Row{"OpenGl", "GLX", "auto", ""},
                                         Row{"SharedMemoryAskedFor", "MIT-SHM", "shm", "shares no memory"},
                                         Row{"SharedMemory", "MIT-SHM", "auto", ""}),
                         RowName{});
