// Overlay graphics of clients, and what the viewer leaves to them.
// The test library comes before X, whose macros clash with it.
#include <gtest/gtest.h>

#include "tests/x/imagewindow/Viewer.h"

#include <algorithm>
#include <cmath>

using namespace viewertest;
using protocol::OverlayCommand;
using protocol::OverlayKind;

namespace {

constexpr drive::Pixel amber{255, 184, 28};

// A tool on a connection of its own. Its end takes the window with it.
class Client {
public:
    Client()
        : display(XOpenDisplay(nullptr)),
          window(XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0))
    {
    }
    ~Client() { end(); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    void end()
    {
        if (display)
            XCloseDisplay(display);
        display = nullptr;
    }
    void send(Window canvas, OverlayCommand command)
    {
        command.client = static_cast<std::uint32_t>(window);
        protocol::appendOverlay(display, canvas, command);
    }
    void redraw(Window canvas)
    {
        send(canvas, {.kind = OverlayKind::Redraw});
        XSync(display, False);
    }
    // A horizontal line in the annotation colour.
    void addLine(Window canvas, int id, float x0, float x1, float y)
    {
        send(canvas,
             {.kind = OverlayKind::AddLine, .id = id, .width = 2, .x0 = x0, .y0 = y, .x1 = x1, .y1 = y});
        redraw(canvas);
    }

    Display* display;
    Window window;
};

bool amberAt(Viewer& viewer, const protocol::Geometry& geometry, double x, double y, int panel = 0)
{
    const auto at = protocol::windowFromData(geometry, {x, y, panel});
    return viewer.waitForPixel(static_cast<int>(at.x), static_cast<int>(at.y), amber);
}

} // namespace

TEST(Overlay, LinesComeAndGo)
{
    Viewer viewer({rgbImage()});
    Client client;
    client.addLine(viewer.canvas, 1, 5, 30, 10);
    EXPECT_TRUE(viewer.waitForPixel(20, 10, amber));
    client.send(viewer.canvas, {.kind = OverlayKind::Remove, .id = 1});
    client.send(viewer.canvas, {.kind = OverlayKind::Remove, .id = 1}); // gone already
    client.redraw(viewer.canvas);
    EXPECT_TRUE(viewer.waitForPixel(20, 10, rgbPixel(20, 10)));
    const drive::Picture picture = viewer.screen.capture(viewer.canvas);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(picture.at(x, y), rgbPixel(x, y)) << "left over at " << x << "," << y;
    EXPECT_EQ(viewer.process.errors(), "");
}

TEST(Overlay, StaysWithTheDataUnderZoomAndScroll)
{
    Viewer viewer({"--geometry", "420x400+20+20", rgbImage()});
    Client client;
    client.addLine(viewer.canvas, 1, 5, 30, 10);
    ASSERT_TRUE(viewer.waitForPixel(20, 10, amber));
    for (int i = 0; i < 8; ++i)
        viewer.screen.click(viewer.canvas, 20, 10, 4);
    const auto record = viewer.waitForRecord([](const auto& r) { return r.geometry.zoom == 16; });
    ASSERT_EQ(record.geometry.zoom, 16);
    EXPECT_TRUE(amberAt(viewer, record.geometry, 20, 10));
    EXPECT_TRUE(amberAt(viewer, record.geometry, 25, 10));
}

TEST(Overlay, VanishesWithItsClient)
{
    Viewer viewer({rgbImage()});
    Client dying, living;
    dying.addLine(viewer.canvas, 1, 5, 30, 10);
    living.addLine(viewer.canvas, 1, 5, 30, 20);
    ASSERT_TRUE(viewer.waitForPixel(20, 10, amber));
    ASSERT_TRUE(viewer.waitForPixel(20, 20, amber));
    dying.end();
    EXPECT_TRUE(viewer.waitForPixel(20, 10, rgbPixel(20, 10)));
    EXPECT_EQ(viewer.pixelAt(20, 20), amber);
}

TEST(Overlay, IsBoundToItsPanelAndSection)
{
    Viewer viewer({"--panels", "z", stackImage()});
    const protocol::Geometry geometry = viewer.record()->geometry;
    Client client;
    client.send(viewer.canvas, {.kind = OverlayKind::AddLine,
                                .id = 1,
                                .panel = 1,
                                .width = 2,
                                .x0 = 5,
                                .y0 = 10,
                                .x1 = 60,
                                .y1 = 10});
    client.send(viewer.canvas, {.kind = OverlayKind::AddLine,
                                .id = 2,
                                .width = 2,
                                .x0 = 5,
                                .y0 = 30,
                                .z0 = 2,
                                .x1 = 60,
                                .y1 = 30,
                                .z1 = 2});
    client.redraw(viewer.canvas);
    ASSERT_TRUE(amberAt(viewer, geometry, 30, 10, 1));
    ASSERT_TRUE(amberAt(viewer, geometry, 30, 30, 2));
    const drive::Picture picture = viewer.screen.capture(viewer.canvas);
    for (int panel = 0; panel < 4; ++panel)
        for (const double y : {10.0, 30.0}) {
            const auto at = protocol::windowFromData(geometry, {30, y, panel});
            const bool expected = (panel == 1 && y == 10) || (panel == 2 && y == 30);
            EXPECT_EQ(picture.at(static_cast<int>(at.x), static_cast<int>(at.y)) == amber, expected)
                << panel << " " << y;
        }
}

TEST(Overlay, NonsenseAndFloodsAreSurvived)
{
    Viewer viewer({rgbImage()});
    Client client;
    Display* display = client.display;
    const std::string nonsense(1000, 'x');
    const Atom overlay = protocol::atoms(display).overlay;
    XChangeProperty(display, viewer.canvas, overlay, overlay, 8, PropModeAppend,
                    reinterpret_cast<const unsigned char*>(nonsense.data()),
                    static_cast<int>(nonsense.size()));
    OverlayCommand stranger{.kind = OverlayKind::AddLine, .client = 0x7654321, .id = 1};
    protocol::appendOverlay(display, viewer.canvas, stranger); // from a window that does not exist
    for (int id = 1; id <= 11000; ++id)
        client.send(viewer.canvas, {.kind = OverlayKind::AddPoint, .id = id, .x0 = 1e9F, .y0 = -1e9F});
    client.redraw(viewer.canvas);
    Client other;
    other.addLine(viewer.canvas, 1, 5, 30, 10);
    EXPECT_TRUE(viewer.waitForPixel(20, 10, amber));
    EXPECT_TRUE(viewer.process.running());
    const std::string errors = viewer.process.errors();
    EXPECT_LE(std::count(errors.begin(), errors.end(), '\n'), 4) << errors;
}

// A tool must be able to take the buttons: the server lets one client only select presses.
TEST(Overlay, LeavesButtonPressesToATool)
{
    Viewer viewer({rgbImage()});
    Display* display = viewer.screen.x();
    protocol::ErrorTrap trap(display);
    XSelectInput(display, viewer.canvas, ButtonPressMask | ButtonReleaseMask | PointerMotionMask);
    EXPECT_EQ(trap.error(), 0);
    viewer.screen.click(viewer.canvas, 7, 9);
    XEvent event{};
    EXPECT_TRUE(drive::waitUntil(
        [&] { return XCheckTypedWindowEvent(display, viewer.canvas, ButtonPress, &event) != 0; }));
    EXPECT_EQ(event.xbutton.x, 7);
    EXPECT_EQ(event.xbutton.y, 9);
    const double zoom = viewer.record()->geometry.zoom;
    viewer.screen.click(viewer.canvas, 7, 9, 4); // the wheel stays with the viewer
    EXPECT_GT(viewer.waitForRecord([&](const auto& r) { return r.geometry.zoom > zoom; }).geometry.zoom,
              zoom);
}
