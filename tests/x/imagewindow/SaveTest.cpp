// SPDX-License-Identifier: MIT
// The view as a file and on the clipboard.
#include "tests/x/imagewindow/Viewer.h"
#include "tests/x/iwl/Peers.h"

#include "drive/Pair.h"
#include "widgets/picture/Picture.h"

#include <X11/Xatom.h>
#include <X11/keysym.h>

#include <cstring>
#include <span>
#include <string>
#include <vector>

using namespace viewertest;

namespace {

// What the canvas shows without the pointer.
drive::Picture shownBy(Viewer& viewer)
{
    viewer.screen.moveTo(viewer.screen.root(), 1, 1);
    drive::waitUntilCalm(viewer.screen);
    return viewer.screen.capture(viewer.canvas);
}

bool same(const picture::Picture& saved, const drive::Picture& shown)
{
    if (saved.width != shown.width || saved.height != shown.height)
        return false;
    for (int y = 0; y < saved.height; ++y)
        for (int x = 0; x < saved.width; ++x) {
            const std::uint8_t* pixel = saved.at(x, y);
            if (drive::Pixel{pixel[0], pixel[1], pixel[2]} != shown.at(x, y))
                return false;
        }
    return true;
}

// Whose picture is larger than what the server takes at once.
std::string largeImage()
{
    return madeOnce("large.ome.tif", "--size 1000x800 --z 1 --channels 3 --time 1");
}

// A program that asks for selections, and may be a clipboard manager.
class Peer {
public:
    Atom atom(const char* name) const { return XInternAtom(connection, name, False); }

    void ask(Atom selection, const char* target)
    {
        XDeleteProperty(connection, window, place());
        XConvertSelection(connection, selection, atom(target), place(), window, CurrentTime);
        XFlush(connection);
    }
    // The answer to ask(), with its parts; empty when there is none.
    std::string answer()
    {
        XEvent event{};
        if (!await(SelectionNotify, event) || event.xselection.property == None)
            return {};
        while (XCheckTypedEvent(connection, PropertyNotify, &event)) // of the answer itself
            ;
        Atom type = None;
        std::string bytes = take(type);
        if (type != atom("INCR"))
            return bytes;
        parts = 0;
        for (bytes.clear(); awaitNewProperty(); ++parts) {
            const std::string part = take(type);
            if (part.empty())
                return bytes;
            bytes += part;
        }
        return {};
    }
    bool await(int type, XEvent& event)
    {
        return drive::waitUntil([&] { return XCheckTypedEvent(connection, type, &event) != 0; });
    }
    void own(const char* selection)
    {
        XSetSelectionOwner(connection, atom(selection), window, CurrentTime);
        XSync(connection, False);
    }

    peers::Connection connection;
    const Window window = made();
    int parts = 0;

private:
    Window made() const
    {
        const Window made = connection.makeWindow(1, 1);
        XSelectInput(connection, made, PropertyChangeMask);
        return made;
    }
    Atom place() const { return atom("_PEER_PLACE"); }
    bool awaitNewProperty()
    {
        XEvent event{};
        while (await(PropertyNotify, event))
            if (event.xproperty.atom == place() && event.xproperty.state == PropertyNewValue)
                return true;
        return false;
    }
    // Taking a part asks for the next one.
    std::string take(Atom& type)
    {
        int format = 0;
        unsigned long count = 0, left = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(connection, window, place(), 0, 1L << 24, True, AnyPropertyType, &type, &format,
                           &count, &left, &data);
        const std::size_t unit = format == 32 ? sizeof(long) : 1;
        const std::string bytes(reinterpret_cast<const char*>(data), data ? count * unit : 0);
        if (data)
            XFree(data);
        return bytes;
    }
};

picture::Picture decoded(const std::string& png)
{
    return picture::decode(std::as_bytes(std::span(png.data(), png.size())));
}

// The window that has the keyboard.
Window focused(Viewer& viewer)
{
    Window window = None;
    int revert = 0;
    XGetInputFocus(viewer.screen.x(), &window, &revert);
    return viewer.screen.toplevel(window);
}

// Types a name into the dialogue that Control+S opens, and presses Return.
void saveAs(Viewer& viewer, const std::string& name)
{
    viewer.control(XK_s);
    const Window dialogue = viewer.screen.findTitle("Save picture");
    ASSERT_TRUE(support::waitForFocus(viewer.screen, dialogue));
    viewer.screen.replaceText(name);
    viewer.screen.key(XK_Return);
}

} // namespace

TEST(Save, WritesWhatTheCanvasShows)
{
    Viewer viewer({"--panels", "z", stackImage()});
    const drive::Picture shown = shownBy(viewer);
    const fs::path path = scratchFolder() / "panels.png";
    saveAs(viewer, path);
    ASSERT_TRUE(drive::waitUntil([&] { return fs::exists(path); }));
    EXPECT_TRUE(same(picture::read(path), shown));
    EXPECT_TRUE(drive::waitUntil([&] { return !viewer.screen.findTitleNow("Save picture"); }));
}

TEST(Save, ProposesANameBesideTheImageAndAsksBeforeReplacing)
{
    Viewer viewer({rgbImage()});
    const fs::path path = scratchFolder() / "rgb.png";
    writeBytes(path, "precious");
    saveAs(viewer, path);
    ASSERT_TRUE(drive::waitUntil([&] { return viewer.screen.title(focused(viewer)) == "Save"; }));
    viewer.screen.key(XK_Escape);
    EXPECT_EQ(readBytes(path), "precious");
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(XK_Escape);
    ASSERT_TRUE(drive::waitUntil([&] { return !viewer.screen.findTitleNow("Save picture"); }));
    viewer.control(XK_s);
    ASSERT_TRUE(support::waitForFocus(viewer.screen, viewer.screen.findTitle("Save picture")));
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(XK_Return);
    const fs::path free = scratchFolder() / "rgb-2.png";
    ASSERT_TRUE(drive::waitUntil([&] { return fs::exists(free); }));
    EXPECT_EQ(picture::read(free).width, 40);
}

TEST(Save, AFailureIsASentenceAndTheDialogueStays)
{
    Viewer viewer({rgbImage()});
    saveAs(viewer, scratchFolder() / "picture.bmp");
    ASSERT_NE(viewer.screen.findTitle("Cannot save"), Window{None});
    EXPECT_NE(viewer.screen.findTitleNow("Save picture"), Window{None});
    EXPECT_FALSE(fs::exists(scratchFolder() / "picture.bmp"));
}

// With the numbers beside it on request; a table that is there already is not lost without a question.
TEST(Save, AFigureShowsTheProfileAlongTheSegmentOfATool)
{
    Viewer viewer({stackImage()});
    viewer.control(XK_g);
    drive::waitUntilCalm(viewer.screen);
    EXPECT_EQ(viewer.screen.findTitleNow("Save figure"), Window{None}); // there is no segment
    const Peer tool;
    protocol::OverlayCommand line{
        .kind = protocol::OverlayKind::AddLine, .client = static_cast<std::uint32_t>(tool.window), .id = 1};
    line.x0 = 10, line.y0 = 20, line.x1 = 40, line.y1 = 20;
    protocol::appendOverlay(tool.connection, viewer.canvas, line);
    protocol::appendOverlay(tool.connection, viewer.canvas,
                            {.kind = protocol::OverlayKind::Redraw, .client = line.client});
    XSync(tool.connection, False);
    ASSERT_TRUE(viewer.waitForPixel(25, 20, {255, 184, 28}));
    const fs::path figure = scratchFolder() / "figure.svg", table = scratchFolder() / "figure.csv";
    writeBytes(table, "precious");
    viewer.control(XK_g);
    const Window dialogue = viewer.screen.findTitle("Save figure");
    ASSERT_TRUE(support::waitForFocus(viewer.screen, dialogue));
    viewer.screen.replaceText(figure);
    viewer.screen.keyDown(XK_Shift_L); // from the name back to the switch
    viewer.screen.key(XK_Tab);
    viewer.screen.keyUp(XK_Shift_L);
    viewer.screen.key(XK_space);
    viewer.screen.key(XK_Return);
    EXPECT_TRUE(drive::waitUntil([&] { return viewer.screen.title(focused(viewer)) == "Save"; }));
    EXPECT_FALSE(fs::exists(figure));
    EXPECT_EQ(readBytes(table), "precious");
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(XK_Left); // from Cancel to Replace
    viewer.screen.key(XK_space);
    ASSERT_TRUE(drive::waitUntil([&] { return fs::exists(figure) && readBytes(table) != "precious"; }));
    EXPECT_THAT(readBytes(figure), testing::HasSubstr("<svg"));
    EXPECT_EQ(support::lineCount(readBytes(table)), 32); // names and 31 samples
    EXPECT_THAT(readBytes(table), testing::HasSubstr("\r\n10,20,0,"));
}

TEST(Clipboard, OffersThePictureInPartsAndSurvivesAPeerThatDoesNotRead)
{
    Viewer viewer({"--zoom", "2", largeImage()});
    viewer.focus();
    viewer.screen.key(XK_o); // the overview is in no picture
    drive::waitUntilCalm(viewer.screen);
    const drive::Picture shown = shownBy(viewer);
    viewer.screen.key(XK_o);
    drive::waitUntilCalm(viewer.screen);
    ASSERT_NE(shownBy(viewer).pixels, shown.pixels);
    viewer.control(XK_c);
    Peer lazy, peer;
    const Atom clipboard = peer.atom("CLIPBOARD");
    ASSERT_TRUE(drive::waitUntil([&] { return XGetSelectionOwner(peer.connection, clipboard) != None; }));
    peer.ask(clipboard, "TARGETS");
    const std::string targets = peer.answer();
    std::vector<Atom> offered(targets.size() / sizeof(Atom));
    std::memcpy(offered.data(), targets.data(), offered.size() * sizeof(Atom));
    EXPECT_THAT(offered, testing::IsSupersetOf({peer.atom("image/png"), peer.atom("TIMESTAMP"),
                                                peer.atom("TARGETS"), peer.atom("SAVE_TARGETS")}));
    lazy.ask(clipboard, "image/png"); // and never takes it
    peer.ask(clipboard, "image/png");
    EXPECT_TRUE(same(decoded(peer.answer()), shown));
    EXPECT_GT(peer.parts, 1);
    peer.ask(clipboard, "TIMESTAMP");
    EXPECT_FALSE(peer.answer().empty());
    peer.ask(clipboard, "STRING");
    EXPECT_EQ(peer.answer(), "");
    viewer.screen.click(viewer.canvas, 20, 20, 4); // the window works on
    EXPECT_GT(viewer.waitForRecord([](const auto& r) { return r.geometry.zoom > 1; }).geometry.zoom, 1);
    peer.own("CLIPBOARD");
    drive::waitUntilCalm(viewer.screen);
    EXPECT_TRUE(viewer.process.running());
    EXPECT_EQ(viewer.process.errors(), "");
}

TEST(Clipboard, IsHandedToAManagerAtTheEnd)
{
    Peer manager;
    manager.own("CLIPBOARD_MANAGER");
    Viewer viewer({rgbImage()});
    viewer.control(XK_c);
    ASSERT_TRUE(drive::waitUntil(
        [&] { return XGetSelectionOwner(manager.connection, manager.atom("CLIPBOARD")) != None; }));
    viewer.screen.requestClose(viewer.screen.toplevel(viewer.canvas));
    XEvent event{};
    ASSERT_TRUE(manager.await(SelectionRequest, event));
    const XSelectionRequestEvent request = event.xselectionrequest;
    EXPECT_EQ(request.target, manager.atom("SAVE_TARGETS"));
    manager.ask(manager.atom("CLIPBOARD"), "image/png");
    const picture::Picture taken = decoded(manager.answer());
    EXPECT_EQ(taken.width, 40);
    XEvent done{};
    done.xselection = {.type = SelectionNotify,
                       .serial = 0,
                       .send_event = True,
                       .display = manager.connection,
                       .requestor = request.requestor,
                       .selection = request.selection,
                       .target = request.target,
                       .property = request.property,
                       .time = request.time};
    XSendEvent(manager.connection, request.requestor, False, NoEventMask, &done);
    XFlush(manager.connection);
    EXPECT_EQ(viewer.process.wait(), 0);
}

TEST(Clipboard, AManagerThatIsSilentDelaysTheEndALittle)
{
    Peer manager;
    manager.own("CLIPBOARD_MANAGER");
    Viewer viewer({rgbImage()});
    viewer.control(XK_c);
    ASSERT_TRUE(drive::waitUntil(
        [&] { return XGetSelectionOwner(manager.connection, manager.atom("CLIPBOARD")) != None; }));
    viewer.screen.requestClose(viewer.screen.toplevel(viewer.canvas));
    EXPECT_EQ(viewer.process.wait(), 0);
}
