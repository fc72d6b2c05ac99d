// SPDX-License-Identifier: MIT
// How images get into a window: dropped, pasted, chosen from those opened last; also from sources that lie or
// die.
#include "tests/Folders.h"
#include "tests/x/imagewindow/Viewer.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

using namespace viewertest;
using testing::HasSubstr;

namespace {

// A program that drags, and owns the clipboard; the texts it hands over by the name of their type.
class Peer {
public:
    explicit Peer(std::map<std::string, std::string> texts) : texts(std::move(texts))
    {
        window = XCreateSimpleWindow(screen.x(), screen.root(), 0, 0, 1, 1, 0, 0, 0);
    }

    void own(const char* selection)
    {
        XSetSelectionOwner(screen.x(), atom(selection), window, CurrentTime);
        XSync(screen.x(), False);
    }

    // Enters, moves, waits until the target accepts, and drops.
    void drop(Window target, const char* type)
    {
        own("XdndSelection");
        send(target, "XdndEnter", {5L << 24, static_cast<long>(atom(type)), 0, 0});
        send(target, "XdndPosition", {0, 0, CurrentTime, static_cast<long>(atom("XdndActionCopy"))});
        accepted = next("XdndStatus").data.l[1] & 1;
        send(target, "XdndDrop", {0, CurrentTime, 0, 0});
    }

    bool finishedWell() { return next("XdndFinished").data.l[1] & 1; }

    // Answers while the condition is not met.
    bool serveUntil(const std::function<bool()>& condition)
    {
        return drive::waitUntil([&] {
            serve();
            return condition();
        });
    }

    Atom atom(const char* name) { return XInternAtom(screen.x(), name, False); }
    void send(Window target, const char* type, const std::vector<long>& words)
    {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = target;
        event.xclient.message_type = atom(type);
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(window);
        for (std::size_t i = 0; i < words.size(); ++i)
            event.xclient.data.l[i + 1] = words[i];
        XSendEvent(screen.x(), target, False, NoEventMask, &event);
        XSync(screen.x(), False);
    }

    drive::Screen screen;
    Window window = None;
    bool accepted = false, silent = false;

private:
    void serve()
    {
        while (XPending(screen.x())) {
            XEvent event;
            XNextEvent(screen.x(), &event);
            if (event.type == ClientMessage)
                messages[event.xclient.message_type] = event.xclient;
            else if (event.type == SelectionRequest && !silent)
                answer(event.xselectionrequest);
        }
    }

    void answer(const XSelectionRequestEvent& request)
    {
        XEvent event{};
        event.xselection = {
            SelectionNotify, 0,    False,       screen.x(), request.requestor, request.selection,
            request.target,  None, request.time};
        for (const auto& [type, text] : texts)
            if (request.target == atom(type.c_str())) {
                event.xselection.property = request.property;
                XChangeProperty(screen.x(), request.requestor, request.property, request.target, 8,
                                PropModeReplace, reinterpret_cast<const unsigned char*>(text.data()),
                                static_cast<int>(text.size()));
            }
        XSendEvent(screen.x(), request.requestor, False, NoEventMask, &event);
        XSync(screen.x(), False);
    }

    XClientMessageEvent next(const char* type)
    {
        EXPECT_TRUE(serveUntil([&] { return messages.contains(atom(type)); })) << type;
        const XClientMessageEvent message = messages[atom(type)];
        messages.erase(atom(type));
        return message;
    }

    std::map<std::string, std::string> texts;
    std::map<Atom, XClientMessageEvent> messages;
};

// imagewindow without a file.
struct Empty {
    explicit Empty(const std::string& data = scratchFolder() / "no data")
        : process({BIN_DIR "/imagewindow"}, {{"XDG_CACHE_HOME", scratchFolder() / "cache"},
                                             {"XDG_CONFIG_HOME", scratchFolder() / "config"},
                                             {"XDG_DATA_HOME", data}})
    {
        window = screen.findTitle("Open images");
        XSync(screen.x(), False);
        drive::waitUntil([&] { return !screen.property(window, "XdndAware").empty(); });
    }
    bool shows(const std::string& path)
    {
        return drive::waitUntil([&] { return process.output().find(path + "\n") != std::string::npos; });
    }
    void pressControl(KeySym key)
    {
        screen.clickCentre(window); // between the controls
        support::waitForFocus(screen, window);
        screen.keyWith(XK_Control_L, key);
    }

    drive::Screen screen;
    drive::Process process;
    Window window = None;
};

std::string uriOf(const std::string& path)
{
    return "file://" + path + "\r\n";
}

} // namespace

TEST(EmptyStart, DroppedFilesOpenAndTakeItsPlace)
{
    Empty start;
    Peer peer({{"text/uri-list", uriOf(rgbImage()) + uriOf(stackImage())}});
    peer.drop(start.window, "text/uri-list");
    EXPECT_TRUE(peer.accepted);
    EXPECT_TRUE(peer.finishedWell());
    EXPECT_TRUE(start.shows(rgbImage()));
    EXPECT_TRUE(start.shows(stackImage()));
    EXPECT_TRUE(drive::waitUntil([&] { return start.screen.findTitleNow("Open images") == None; }));
    EXPECT_EQ(start.process.errors(), "");
}

TEST(EmptyStart, WhatIsNoImageIsToldAndTheWindowStays)
{
    Empty start;
    const std::string notes = scratchFolder() / "notes.txt";
    writeBytes(notes, "These are notes.");
    for (const std::string& path : {notes, scratchFolder().path.string(), std::string("/nowhere.tif")}) {
        Peer peer({{"text/uri-list", uriOf(path)}});
        peer.drop(start.window, "text/uri-list");
        EXPECT_TRUE(peer.finishedWell());
        const Window dialogue = start.screen.findTitle("Cannot open image");
        ASSERT_NE(dialogue, Window{None}) << path;
        drive::waitUntilCalm(start.screen);
        start.screen.key(XK_Return);
        EXPECT_TRUE(drive::waitUntil([&] { return !start.screen.viewable(dialogue); })) << path;
    }
    EXPECT_TRUE(start.screen.viewable(start.window));
}

TEST(EmptyStart, SourcesThatLieOrAreSilentDoNotBlock)
{
    Empty start;
    Peer silent({});
    silent.silent = true;
    silent.drop(start.window, "text/uri-list");
    EXPECT_FALSE(silent.finishedWell()); // after three seconds
    EXPECT_NE(start.screen.findTitle("Cannot open image"), Window{None});
    Peer other({{"text/uri-list", std::string(1 << 20, '/')}, {"image/png", "x"}});
    other.drop(start.window, "image/png");
    EXPECT_FALSE(other.accepted);
    other.drop(start.window, "text/uri-list"); // too long
    EXPECT_TRUE(other.accepted);
    // Forged messages: a drop without an enter before it, a window that does not exist, words without sense.
    other.send(start.window, "XdndDrop", {0, 0, 0, 0});
    other.send(start.window, "XdndEnter", {-1, -1, -1, -1});
    other.send(start.window, "XdndPosition", {-1, -1, -1, -1});
    Peer good({{"text/plain", stackImage()}});
    good.drop(start.window, "text/plain");
    EXPECT_TRUE(good.finishedWell());
    EXPECT_TRUE(start.shows(stackImage()));
    EXPECT_EQ(start.process.errors(), "");
}

TEST(EmptyStart, PastedPathsOpen)
{
    for (const std::string selection : {"CLIPBOARD", "PRIMARY"}) {
        SCOPED_TRACE(selection);
        Empty start;
        Peer peer({{"UTF8_STRING", rgbImage() + "\n"}});
        peer.own("CLIPBOARD");
        if (selection == "PRIMARY")
            XSetSelectionOwner(peer.screen.x(), peer.atom("CLIPBOARD"), None, CurrentTime);
        peer.own(selection.c_str());
        start.pressControl(XK_v);
        EXPECT_TRUE(
            peer.serveUntil([&] { return start.process.output().find(rgbImage()) != std::string::npos; }));
    }
}

TEST(EmptyStart, ImagesOpenedLastAreListedAndClosingEndsTheProgram)
{
    const TempFolder data;
    {
        Empty first(data.path);
        Peer peer({{"text/uri-list", uriOf(rgbImage())}});
        peer.drop(first.window, "text/uri-list");
        EXPECT_TRUE(peer.finishedWell());
        EXPECT_TRUE(first.shows(rgbImage()));
    }
    Empty second(data.path);
    const std::vector<Window> leaves = second.screen.leaves(second.window);
    second.screen.clickCentre(leaves.back());
    EXPECT_TRUE(second.shows(rgbImage()));
    Empty third(data.path);
    third.screen.requestClose(third.window);
    EXPECT_EQ(third.process.wait(), 0);
}

TEST(Intake, TheFileDialogueOpensSeveralFiles)
{
    const TempFolder folder;
    for (const char* name : {"a.tif", "b.tif", "c.png"})
        fs::copy_file(rgbImage(), folder / name);
    Viewer viewer({folder / "a.tif"});
    viewer.control(XK_o);
    const Window dialogue = viewer.screen.findTitle("Open images");
    ASSERT_NE(dialogue, Window{None});
    drive::waitUntilCalm(viewer.screen);
    const drive::Rect whole = viewer.screen.geometry(dialogue);
    Window list = None; // the tall one on the right
    for (const Window leaf : viewer.screen.leaves(dialogue)) {
        const drive::Rect place = viewer.screen.geometry(leaf);
        if (place.x > whole.x + whole.width / 2 && place.height > 80)
            list = leaf;
    }
    ASSERT_NE(list, Window{None});
    viewer.screen.drag(list, 20, 10, 20, 48);
    viewer.screen.click(dialogue, 40, whole.height - 32); // OK
    EXPECT_TRUE(drive::waitUntil([&] { return support::lineCount(viewer.process.output()) == 4; }))
        << viewer.process.output();
    EXPECT_THAT(viewer.process.output(), HasSubstr("c.png"));
    EXPECT_TRUE(drive::waitUntil([&] { return !viewer.screen.viewable(dialogue); }));
}

TEST(Intake, TheFileMenuListsTheImagesOpenedLast)
{
    Viewer viewer({stackImage()});
    const Window window = viewer.screen.findTitle("Image window 1");
    viewer.screen.click(window, 20, 14);
    const Window menu = viewer.waitForMenu();
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.clickCentre(viewer.screen.leaves(menu).at(1));
    drive::waitUntilCalm(viewer.screen);
    viewer.screen.key(XK_Return); // the one that was opened last
    EXPECT_TRUE(drive::waitUntil([&] {
        return viewer.process.output().find("window 2: " + stackImage()) != std::string::npos;
    })) << viewer.process.output();
}

TEST(Intake, AnImageWindowTakesDropsAndKeepsItsOwn)
{
    Viewer viewer({rgbImage()});
    Peer peer({{"text/uri-list", uriOf(stackImage())}});
    peer.drop(viewer.screen.findTitle("Image window 1"), "text/uri-list");
    EXPECT_TRUE(peer.finishedWell());
    EXPECT_NE(viewer.screen.findImageWindow(2), Window{None});
    EXPECT_EQ(viewer.screen.findImageWindow(1), viewer.canvas);
}
