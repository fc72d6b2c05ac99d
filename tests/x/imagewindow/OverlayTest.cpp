// SPDX-License-Identifier: MIT
// Overlay graphics of clients, as they come over the canvas.
#include "tests/x/imagewindow/PropertyReads.h"
#include "tests/x/imagewindow/Viewer.h"
#include "tests/x/iwl/Peers.h"

#include <optional>
#include <string>

using namespace viewertest;
using protocol::OverlayCommand;
using protocol::OverlayKind;

namespace {

constexpr drive::Pixel amber{255, 184, 28};

// A tool on a connection of its own. Its end takes the window with it.
class Client {
public:
    explicit Client(Window canvas) : canvas(canvas) {}
    void send(OverlayCommand command)
    {
        command.client = static_cast<std::uint32_t>(window);
        protocol::appendOverlay(connection, canvas, command);
    }
    void redraw()
    {
        send({.kind = OverlayKind::Redraw});
        XSync(connection, False);
    }
    // A horizontal line in the annotation colour.
    void addLine(int id, float x0, float x1, float y)
    {
        send({.kind = OverlayKind::AddLine, .id = id, .width = 2, .x0 = x0, .y0 = y, .x1 = x1, .y1 = y});
        redraw();
    }

    const peers::Connection connection;

private:
    const Window canvas, window = connection.makeWindow();
};

} // namespace

TEST(Overlay, GoesByCommandAndWithItsClient)
{
    Viewer viewer({rgbImage()});
    Client living(viewer.canvas);
    std::optional<Client> dying(viewer.canvas);
    living.addLine(1, 5, 30, 10);
    living.addLine(2, 5, 30, 15);
    dying->addLine(1, 5, 30, 20);
    for (const int y : {10, 15, 20})
        ASSERT_TRUE(viewer.waitForPixel(20, y, amber)) << y;
    living.send({.kind = OverlayKind::Remove, .id = 1});
    living.send({.kind = OverlayKind::Remove, .id = 1}); // gone already
    living.redraw();
    dying.reset();
    EXPECT_TRUE(viewer.waitForPixel(20, 10, rgbPixel(20, 10)));
    EXPECT_TRUE(viewer.waitForPixel(20, 20, rgbPixel(20, 20)));
    EXPECT_EQ(viewer.pixelAt(20, 15), amber);
    EXPECT_EQ(viewer.process.errors(), "");
}

TEST(Overlay, StaysWithTheDataUnderZoomAndScroll)
{
    Viewer viewer({"--geometry", "420x400+20+20", rgbImage()});
    Client client(viewer.canvas);
    client.addLine(1, 5, 30, 10);
    ASSERT_TRUE(viewer.waitForPixel(20, 10, amber));
    for (int i = 0; i < 8; ++i)
        viewer.screen.click(viewer.canvas, 20, 10, 4);
    const auto record = viewer.waitForRecord([](const auto& r) { return r.geometry.zoom == 16; });
    ASSERT_EQ(record.geometry.zoom, 16);
    for (const double x : {20, 25}) {
        const auto at = protocol::windowFromData(record.geometry, {x, 10, 0});
        EXPECT_TRUE(viewer.waitForPixel(static_cast<int>(at.x), static_cast<int>(at.y), amber)) << x;
    }
}

TEST(Overlay, NonsenseAndFloodsAreSurvived)
{
    Viewer viewer({rgbImage()});
    Client client(viewer.canvas), other(viewer.canvas);
    const std::string nonsense(1000, 'x');
    const Atom overlay = protocol::atoms(client.connection).overlay;
    XChangeProperty(client.connection, viewer.canvas, overlay, overlay, 8, PropModeAppend,
                    reinterpret_cast<const unsigned char*>(nonsense.data()),
                    static_cast<int>(nonsense.size()));
    const OverlayCommand stranger{.kind = OverlayKind::AddLine, .client = 0x7654321, .id = 1};
    protocol::appendOverlay(client.connection, viewer.canvas, stranger); // from a window that does not exist
    for (int id = 1; id <= 11000; ++id)
        client.send({.kind = OverlayKind::AddPoint, .id = id, .x0 = 1e9F, .y0 = -1e9F});
    client.redraw();
    other.addLine(1, 5, 30, 10);
    EXPECT_TRUE(viewer.waitForPixel(20, 10, amber));
    EXPECT_TRUE(viewer.process.running());
    EXPECT_LE(support::lineCount(viewer.process.errors()), 4) << viewer.process.errors();
}

// 256 windows are watched at most; those without graphics make room.
TEST(Overlay, IdleClientsShutNobodyOut)
{
    Viewer viewer({rgbImage()});
    const peers::Connection strangers;
    for (int i = 0; i < 300; ++i) {
        const auto client = static_cast<std::uint32_t>(strangers.makeWindow(1, 1));
        for (const OverlayKind kind : {OverlayKind::AddPoint, OverlayKind::Remove})
            protocol::appendOverlay(strangers, viewer.canvas, {.kind = kind, .client = client, .id = 1});
    }
    XSync(strangers, False);
    Client client(viewer.canvas);
    client.addLine(1, 5, 30, 10);
    EXPECT_TRUE(viewer.waitForPixel(20, 10, amber));
    EXPECT_EQ(viewer.process.errors(), "");
}

TEST(Overlay, ABacklogIsTakenWhole)
{
    Viewer viewer({rgbImage()});
    Client client(viewer.canvas);
    client.addLine(1, 5, 30, 5);
    ASSERT_TRUE(viewer.waitForPixel(20, 5, amber));
    viewer.process.signal(SIGSTOP);
    for (int i = 0; i < 500; ++i)
        client.addLine(2, 5, 30, 15);
    client.addLine(3, 5, 30, 25);
    PropertyReads reads(viewer.canvas);
    viewer.process.signal(SIGCONT);
    ASSERT_TRUE(viewer.waitForPixel(20, 25, amber));
    const int ofBacklog = reads.count();
    EXPECT_GT(ofBacklog, 0);
    EXPECT_LT(ofBacklog, 20); // 501 notifications
    client.addLine(4, 5, 30, 20);
    EXPECT_TRUE(viewer.waitForPixel(20, 20, amber));
}

// The profile is that of the section under the segment: its panel has a frame, which goes along.
TEST(Overlay, ThePanelThatAToolPlotsHasAFrame)
{
    Viewer viewer({"--panels", "z", "--geometry", "600x600", stackImage()});
    const protocol::Geometry g =
        viewer.waitForRecord([](const auto& r) { return r.geometry.panelCount == 4; }).geometry;
    const auto isFramed = [&](int panel) {
        return viewer.pixelAt(panel % g.columns * (g.panelWidth + g.gap) + g.panelWidth / 2,
                              panel / g.columns * (g.panelHeight + g.gap)) == amber;
    };
    Client tool(viewer.canvas);
    for (const int framed : {1, 3}) {
        OverlayCommand line{.kind = OverlayKind::AddLine, .id = 1, .panel = framed, .width = 2};
        line.x0 = 4, line.y0 = 20, line.x1 = 40, line.y1 = 30;
        line.z0 = line.z1 = static_cast<float>(framed);
        tool.send(line);
        tool.redraw();
        EXPECT_TRUE(drive::waitUntil([&] { return isFramed(framed); })) << framed;
        for (int panel = 0; panel < 4; ++panel)
            EXPECT_EQ(isFramed(panel), panel == framed) << panel;
    }
    tool.send({.kind = OverlayKind::Remove, .id = 1});
    tool.redraw();
    EXPECT_TRUE(drive::waitUntil([&] { return !isFramed(3); }));
}
