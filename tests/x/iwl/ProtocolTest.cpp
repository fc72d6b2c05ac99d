// SPDX-License-Identifier: MIT
#include "tests/x/iwl/Peers.h"

#include "drive/Process.h"
#include "platform/protocol/XProtocol.h"

#include <X11/Xatom.h>

#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <sys/mman.h>
#include <vector>

using namespace peers;
using drive::waitUntil;
using protocol::OverlayCommand;
using protocol::OverlayKind;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

// Counters that parent and children see.
struct Shared {
    std::atomic<int> holders, taken, violations, refused;
};

Shared* makeShared()
{
    void* memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return new (memory) Shared();
}

protocol::DisplayRecord record()
{
    protocol::DisplayRecord record;
    record.windowNumber = 1;
    record.path = "/tmp/image.tif";
    record.geometry.imageWidth = record.geometry.imageHeight = 64;
    record.wavelengths.resize(1);
    return record;
}

OverlayCommand point(std::uint32_t client, int id)
{
    return {.kind = OverlayKind::AddPoint, .client = client, .id = id};
}

void putBytes(Display* display, Window window, Atom name, Atom type, const std::vector<std::byte>& bytes)
{
    XChangeProperty(display, window, name, type, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
    XSync(display, False);
}

// Takes and gives back the lock of window 1, checking that nobody else is inside.
int raceForLock(Shared& shared, int attempts)
{
    const Connection connection;
    for (int i = 0; i < attempts; ++i) {
        const auto lock = protocol::takeInputLock(connection, 1, "racer");
        if (lock.owner == None) {
            ++shared.refused;
            continue;
        }
        if (++shared.holders != 1)
            ++shared.violations;
        ++shared.taken;
        usleep(200);
        --shared.holders;
        protocol::releaseInputLock(connection, 1, lock.owner);
    }
    return 0;
}

} // namespace

class Protocol : public testing::Test {
protected:
    // Waits until the server has noticed that the connections of the test before are closed.
    void SetUp() override
    {
        protocol::installErrorHandler("protocol_x_test");
        const Connection connection;
        for (const char* name : {"IMAGE_WINDOW_1", "IMAGE_WINDOW_2", "IMAGE_WINDOW_1_INPUT"}) {
            const Atom selection = XInternAtom(connection, name, False);
            ASSERT_TRUE(waitUntil([&] { return XGetSelectionOwner(connection, selection) == None; }));
        }
    }
};

TEST_F(Protocol, NumbersAreTheLowestFree)
{
    const Connection first, second;
    const Window windows[] = {first.makeWindow(), second.makeWindow(), first.makeWindow(),
                              second.makeWindow()};
    EXPECT_EQ(protocol::claimWindowNumber(first, windows[0]), 1);
    EXPECT_EQ(protocol::claimWindowNumber(second, windows[1]), 2);
    EXPECT_EQ(protocol::claimWindowNumber(first, windows[2]), 3);
    EXPECT_EQ(protocol::findImageWindow(first, 2), windows[1]);
    XDestroyWindow(second, windows[1]);
    XSync(second, False);
    EXPECT_EQ(protocol::findImageWindow(first, 2), None);
    EXPECT_EQ(protocol::claimWindowNumber(second, windows[3]), 2);
    for (int number : {-1, 0, 4, 9999, 10000})
        EXPECT_EQ(protocol::findImageWindow(first, number), None) << number;
    EXPECT_EQ(protocol::claimWindowNumber(first, 0x1), 0) << "no window";
}

TEST_F(Protocol, ANumberThatCanBeFoundHasARecord)
{
    const Connection viewer, client;
    const Window other = viewer.makeWindow(), canvas = viewer.makeWindow();
    EXPECT_EQ(protocol::claimWindowNumber(viewer, other), 1);
    auto shown = record();
    EXPECT_EQ(protocol::claimWindowNumber(viewer, canvas, shown), 2);
    const auto read = protocol::readDisplay(client, protocol::findImageWindow(client, 2));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->windowNumber, 2);
    EXPECT_EQ(*read, shown);
}

TEST_F(Protocol, LockIsExclusivePerWindowAndSharedWithinAConnection)
{
    const Connection first, second;
    const auto held = protocol::takeInputLock(first, 1, "First");
    ASSERT_NE(held.owner, None);
    EXPECT_EQ(protocol::takeInputLock(first, 1, "First again").owner, held.owner);
    const auto refused = protocol::takeInputLock(second, 1, "Second");
    EXPECT_EQ(refused.owner, None);
    EXPECT_EQ(refused.holder, "First");
    EXPECT_NE(protocol::takeInputLock(second, 2, "Second").owner, None) << "another window";
    EXPECT_TRUE(protocol::holdsInputLock(second, 1, held.owner));
    protocol::releaseInputLock(second, 1, held.owner);
    EXPECT_TRUE(protocol::holdsInputLock(first, 1, held.owner)) << "only the holder releases";
    protocol::releaseInputLock(first, 1, held.owner);
    EXPECT_FALSE(protocol::holdsInputLock(first, 1, held.owner));
    EXPECT_NE(protocol::takeInputLock(second, 1, "Second").owner, None);
}

TEST_F(Protocol, HolderNamesAreFitToShow)
{
    const std::string x200(200, 'x'), x199(199, 'x');
    const struct {
        std::string title, shown;
    } rows[] = {
        {"Arbitray Line Profile", "Arbitray Line Profile"},
        {"two\nlines\tand \x1b[0m", "two lines and  [0m"},
        {"K\xC3\xB6rner", "K\xC3\xB6rner"},
        {"", "unnamed"},
        {x200 + "x", x200},
        {x199 + "\xC3\xB6", x199},
    };
    const Connection holder, other;
    for (const auto& row : rows) {
        const auto lock = protocol::takeInputLock(holder, 1, row.title);
        EXPECT_EQ(protocol::takeInputLock(other, 1, "other").holder, row.shown);
        protocol::releaseInputLock(holder, 1, lock.owner);
    }
}

TEST_F(Protocol, LockRaceHasNoTwoHolders)
{
    Shared* shared = makeShared();
    {
        std::vector<std::unique_ptr<Child>> racers;
        for (int i = 0; i < 4; ++i)
            racers.push_back(std::make_unique<Child>([&] { return raceForLock(*shared, 150); }));
        for (auto& racer : racers)
            EXPECT_EQ(racer->wait(), 0);
    }
    EXPECT_EQ(shared->violations, 0);
    EXPECT_GT(shared->taken, 0);
    EXPECT_GT(shared->refused, 0) << "there was no race";
    munmap(shared, sizeof *shared);
}

TEST_F(Protocol, OverlaysOfThreeWritersArriveWholeAndInOrder)
{
    constexpr int count = 2000;
    const Connection viewer;
    const Window canvas = viewer.makeWindow();
    std::vector<std::unique_ptr<Child>> writers;
    for (std::uint32_t client = 1; client <= 3; ++client)
        writers.push_back(std::make_unique<Child>([=] {
            const Connection connection;
            for (int id = 1; id <= count; ++id) {
                protocol::appendOverlay(connection, canvas, point(client, id));
                XFlush(connection);
            }
            XSync(connection, False);
            return 0;
        }));
    std::map<std::uint32_t, int> lastOf;
    int received = 0, outOfOrder = 0;
    waitUntil([&] {
        for (const auto& command : protocol::drainOverlays(viewer, canvas)) {
            outOfOrder += command.id != ++lastOf[command.client];
            ++received;
        }
        return received >= 3 * count;
    });
    EXPECT_EQ(received, 3 * count);
    EXPECT_EQ(outOfOrder, 0);
    EXPECT_EQ(protocol::pendingOverlayBytes(viewer, canvas), 0U);
}

TEST_F(Protocol, HostileOverlayPropertiesAreDroppedAndDrainingGoesOn)
{
    const Connection viewer;
    const Window canvas = viewer.makeWindow();
    const Atom overlay = protocol::atoms(viewer).overlay;
    auto mixed = std::vector<std::byte>(protocol::overlayRecordSize, std::byte{0x55});
    const auto good = protocol::encodeOverlay(point(7, 1));
    mixed.insert(mixed.end(), good.begin(), good.end());
    mixed.push_back(std::byte{1});
    const std::vector<std::byte> backlog(protocol::maxOverlayBytes + protocol::overlayRecordSize);
    const struct {
        const char* what;
        Atom type;
        std::vector<std::byte> bytes;
        std::size_t commands;
        const char* message;
    } rows[] = {
        {"too large", overlay, backlog, 0, "dropped"},
        {"foreign type", XA_STRING, good, 0, "dropped"},
        {"damaged", overlay, mixed, 1, "2 damaged"},
    };
    for (const auto& row : rows) {
        putBytes(viewer, canvas, overlay, row.type, row.bytes);
        const auto drain = [&] {
            EXPECT_EQ(protocol::drainOverlays(viewer, canvas).size(), row.commands) << row.what;
        };
        EXPECT_THAT(errorsOf(drain), HasSubstr(row.message)) << row.what;
        protocol::appendOverlay(viewer, canvas, point(7, 2));
        EXPECT_THAT(protocol::drainOverlays(viewer, canvas), ElementsAre(point(7, 2))) << row.what;
    }
    EXPECT_TRUE(protocol::drainOverlays(viewer, 0x1).empty()) << "no window";
}

TEST_F(Protocol, BadDisplayPropertiesAreIgnoredWithALine)
{
    const Connection viewer, client;
    const Window canvas = viewer.makeWindow();
    const Atom display = protocol::atoms(viewer).display;
    auto cut = protocol::encodeDisplay(record());
    cut.pop_back();
    const std::vector<std::byte> huge(3 << 20), empty;
    EXPECT_FALSE(protocol::readDisplay(client, canvas)) << "none yet";
    const struct {
        const char* what;
        Atom type;
        std::vector<std::byte> bytes;
    } rows[] = {
        {"foreign type", XA_STRING, protocol::encodeDisplay(record())},
        {"truncated", display, cut},
        {"empty", display, empty},
        {"huge", display, huge},
    };
    for (const auto& row : rows) {
        putBytes(viewer, canvas, display, row.type, row.bytes);
        const auto read = [&] { EXPECT_FALSE(protocol::readDisplay(client, canvas)) << row.what; };
        EXPECT_THAT(errorsOf(read), HasSubstr("ignored")) << row.what;
    }
    auto unfit = record();
    unfit.geometry.zoom = 0;
    protocol::publishDisplay(viewer, canvas, record());
    protocol::publishDisplay(viewer, canvas, unfit);
    XSync(viewer, False);
    EXPECT_EQ(protocol::readDisplay(client, canvas), record()) << "an unfit record is not published";
    XDestroyWindow(viewer, canvas);
    XSync(viewer, False);
    EXPECT_FALSE(protocol::readDisplay(client, canvas));
}

TEST_F(Protocol, ToolsAreListedWhileTheyLiveAndAskedToQuit)
{
    const Connection viewer, tool;
    const Window canvas = viewer.makeWindow(), shell = tool.makeWindow();
    auto dying = std::make_unique<Connection>();
    protocol::announceTool(*dying, canvas, dying->makeWindow(), "Dying");
    protocol::announceTool(tool, canvas, shell, "Line Profile");
    protocol::announceTool(tool, canvas, shell, "Line Profile");
    EXPECT_EQ(protocol::announcedTools(viewer, canvas).size(), 2U);
    dying.reset();
    ASSERT_TRUE(waitUntil([&] { return protocol::announcedTools(viewer, canvas).size() == 1; }));
    const auto tools = protocol::announcedTools(viewer, canvas);
    EXPECT_EQ(tools[0].shell, shell);
    EXPECT_EQ(tools[0].title, "Line Profile");
    protocol::requestQuit(viewer, shell);
    XEvent event;
    ASSERT_TRUE(
        waitUntil([&] { return XCheckTypedWindowEvent(tool, shell, ClientMessage, &event) == True; }));
    EXPECT_EQ(event.xclient.message_type, protocol::atoms(tool).quit);
}

TEST_F(Protocol, ErrorTrapsCatchTheirOwnErrorsOnly)
{
    const Connection connection;
    protocol::ErrorTrap outer(connection);
    XMapWindow(connection, 0x1);
    {
        protocol::ErrorTrap inner(connection);
        EXPECT_EQ(inner.error(), 0) << "the error before belongs to the outer trap";
        XFreePixmap(connection, 0x1);
        EXPECT_EQ(inner.error(), BadPixmap);
    }
    EXPECT_EQ(outer.error(), BadWindow);
}

TEST_F(Protocol, UntrappedErrorsAreSwallowedOrReportedAndNeverEndTheProcess)
{
    const Connection connection;
    const auto mapNothing = [&] {
        XMapWindow(connection, 0x1);
        XSync(connection, False);
    };
    const auto freeNothing = [&] {
        XFreePixmap(connection, 0x1);
        XSync(connection, False);
    };
    EXPECT_EQ(errorsOf(mapNothing), "") << "a peer that has died";
    EXPECT_THAT(errorsOf(freeNothing), HasSubstr("protocol_x_test: X error: BadPixmap"));
}

TEST_F(Protocol, ALostServerEndsTheProcessWithStatusOne)
{
    const Connection killer;
    Child victim([] {
        if (!freopen("/dev/null", "w", stderr))
            return 2;
        const Connection connection;
        protocol::claimWindowNumber(connection, connection.makeWindow());
        XEvent event;
        for (;;)
            XNextEvent(connection, &event);
    });
    ASSERT_TRUE(waitUntil([&] { return protocol::findImageWindow(killer, 1) != None; }));
    XKillClient(killer, protocol::findImageWindow(killer, 1));
    XFlush(killer);
    EXPECT_EQ(victim.wait(), 1);
}
