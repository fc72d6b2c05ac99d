#include <gmock/gmock.h> // before Xlib, whose macros None and Bool it cannot stand
#include <gtest/gtest.h>

#include "platform/iwl/Session.h"
#include "drive/Screen.h"
#include "tests/x/iwl/FakeViewer.h"

#include <IWL.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <limits>

namespace fs = std::filesystem;
using protocol::OverlayCommand;
using protocol::OverlayKind;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

constexpr int slot = 1;

XEvent pressAt(Window window, int x, int y)
{
    XEvent event = {};
    event.xbutton.type = ButtonPress;
    event.xbutton.window = window;
    event.xbutton.x = x;
    event.xbutton.y = y;
    return event;
}

struct Pointed {
    int result = 0, window = 0;
    float x = 0, y = 0, z = 0;
    int subPanel = -1, panel = -1;
};

Pointed pointAt(XEvent event)
{
    Pointed p;
    p.result = IWGetButPressInfo(&event, &p.window, &p.x, &p.y, &p.z, &p.subPanel, &p.panel);
    return p;
}

// A pixel of a section as IMRdPas delivers it, -1 when it does not.
float pixel(int z, int w, int t, int x, int y)
{
    float value = -1;
    if (IMPosnZWTP(slot, z, w, t, 0) != 0 || IMRdPas(slot, &value, 1, 1, x, x, y, y) != 0)
        return -1;
    return value;
}

std::vector<OverlayKind> kinds(const std::vector<OverlayCommand>& commands)
{
    std::vector<OverlayKind> result;
    for (const auto& command : commands)
        result.push_back(command.kind);
    return result;
}

} // namespace

class Iwl : public ::testing::Test {
protected:
    Iwl() : folder(fs::path(::testing::TempDir()) / ("iwl" + std::to_string(getpid())))
    {
        fs::create_directories(folder);
        file = folder / "cells.ome.tif";
        static char name[] = "/usr/bin/iwl_x_test";
        static char* arguments[] = {name, nullptr};
        IWAttach(1, arguments);
    }
    ~Iwl() override
    {
        IMClose(slot);
        XSync(iwlDisplay(), True);
        fs::remove_all(folder);
    }

    // A viewer that shows the image, attached as the slot with its events selected.
    std::unique_ptr<FakeViewer> show(const TestImage& image = {})
    {
        writeImage(file, image);
        auto viewer = std::make_unique<FakeViewer>(file, image);
        EXPECT_EQ(IWAttachWin(slot, viewer->record.windowNumber, "ro"), 1);
        XSelectInput(iwlDisplay(), viewer->canvas, PropertyChangeMask | StructureNotifyMask);
        XSync(iwlDisplay(), False);
        return viewer;
    }

    // The first change that the events bring; Nothing after all events that are on their way.
    static Change handleEvents()
    {
        XSync(iwlDisplay(), False);
        while (XPending(iwlDisplay())) {
            XEvent event;
            XNextEvent(iwlDisplay(), &event);
            const Change change = iwlHandleEvent(event);
            if (change != Change::Nothing)
                return change;
        }
        return Change::Nothing;
    }

    fs::path folder, file;
};

TEST_F(Iwl, AttachRefusesWithOneSentence)
{
    writeImage(file, {});
    std::ofstream(folder / "text.tif") << "no image";
    FakeViewer viewer(file, {});
    const int number = viewer.record.windowNumber;
    const struct {
        const char* what;
        int slot, number;
        const char* mode;
        std::function<void(protocol::DisplayRecord&)> change;
    } rows[] = {
        {"no such window", slot, 4711,   "ro", [](auto&) {}                                  },
        {"window 0",       slot, 0,      "ro", [](auto&) {}                                  },
        {"mode",           slot, number, "rw", [](auto&) {}                                  },
        {"slot 0",         0,    number, "ro", [](auto&) {}                                  },
        {"slot 17",        17,   number, "ro", [](auto&) {}                                  },
        {"missing file",   slot, number, "ro", [&](auto& r) { r.path = folder / "none.tif"; }},
        {"no image",       slot, number, "ro", [&](auto& r) { r.path = folder / "text.tif"; }},
        {"other width",    slot, number, "ro", [](auto& r) { r.geometry.imageWidth = 21; }   },
        {"other count",    slot, number, "ro", [](auto& r) { r.wavelengths.resize(3); }      },
        {"beyond z",       slot, number, "ro", [](auto& r) { r.z = 3; }                      },
    };
    const auto good = viewer.record;
    for (const auto& row : rows) {
        viewer.record = good;
        row.change(viewer.record);
        viewer.publish();
        ::testing::internal::CaptureStderr();
        EXPECT_NE(IWAttachWin(row.slot, row.number, row.mode), 1) << row.what;
        const std::string said = ::testing::internal::GetCapturedStderr();
        EXPECT_THAT(said, HasSubstr("iwl_x_test: ")) << row.what;
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << row.what << ": " << said;
        EXPECT_EQ(IWRtWID(row.slot), None) << row.what;
    }
}

TEST_F(Iwl, ADetachedSlotAnswersEveryCallHarmlessly)
{
    int a = 9, b = 9, c = 9, d = 9, e = 9;
    float f[3] = {9, 9, 9};
    double value = 9;
    char name[IW_FILENAME_SIZE] = "x";
    for (int detached : {slot, 0, -1, 17}) {
        EXPECT_EQ(IWDisplay(detached), 0);
        EXPECT_EQ(IWRtMulDis(detached, &a, &b), 0);
        EXPECT_EQ(IWRtMulDisStyle(detached), 0);
        EXPECT_EQ(IWRtDisSec_ZWTP(detached, &a, &b, &c, &d), 0);
        EXPECT_EQ(IWIsWaveMap(detached, 0), 0);
        EXPECT_EQ(IWRtImgColor(detached, &a), 0);
        EXPECT_EQ(IWRtScratchSize(detached), 0);
        EXPECT_EQ(IWRtTopImgLoc(detached, 0), 0);
        EXPECT_EQ(IWRtFilename(detached, 0, name), 0);
        EXPECT_EQ(IWDataToTSPos(1, 1, 1, detached, f), 0);
        EXPECT_EQ(IWGrAddPt2D(detached, 2, 7, 1, 1), 0);
        EXPECT_EQ(IWGrAddLn2D(detached, 2, 0, 7, 1, 1, 2, 2), 0);
        EXPECT_EQ(IWGrRmGrID(detached, 1), 0);
        EXPECT_EQ(IWGrRmAllGrID(detached), 0);
        EXPECT_NE(IMRtZWTP(detached, &a, &b, &c, &d, &e), 0);
        EXPECT_NE(IMRtXY(detached, &a, &b), 0);
        EXPECT_NE(IMRtDel(detached, f), 0);
        EXPECT_NE(IMRtWav(detached, &a, f), 0);
        EXPECT_NE(IMRtWavMM(detached, 0, f, f + 1), 0);
        EXPECT_NE(IMRtExHdrValueZWTP(detached, 0, 0, 0, 0, 1, &value), 0);
        EXPECT_NE(IMPosnZWTP(detached, 0, 0, 0, 0), 0);
        EXPECT_NE(IMRdPas(detached, f, 1, 1, 0, 0, 0, 0), 0);
        IMClose(detached);
    }
    EXPECT_THAT(std::vector({a, b, c, d, e}), ::testing::Each(9)) << "outputs are untouched";
    EXPECT_THAT(f, ::testing::Each(9.0F));
}

TEST_F(Iwl, DisplayStateFollowsTheWindow)
{
    auto viewer = show();
    viewer->record.z = 2;
    viewer->record.t = 1;
    viewer->record.scratchSize = 6;
    viewer->record.wavelengths = {
        {false, 6, false, 0, 0,   0},
        {true,  3, true,  5, 900, 4}
    };
    viewer->record.geometry.style = protocol::TimePanels;
    viewer->record.geometry.columns = 2;
    viewer->publish();
    EXPECT_EQ(handleEvents(), Change::Display);
    int z, w, t, p, columns, rows, colors[2];
    float min = -1, max = -1;
    EXPECT_EQ(IWRtDisSec_ZWTP(slot, &z, &w, &t, &p), 1);
    EXPECT_THAT(std::vector({z, w, t, p}), ElementsAre(2, 0, 1, 0));
    EXPECT_EQ(IWRtMulDis(slot, &columns, &rows), 1);
    EXPECT_THAT(std::vector({columns, rows, IWRtMulDisStyle(slot)}), ElementsAre(2, 1, 3));
    EXPECT_EQ(IWRtImgColor(slot, colors), 1);
    EXPECT_THAT(colors, ElementsAre(6, 3));
    EXPECT_THAT(std::vector({IWIsWaveMap(slot, -1), IWIsWaveMap(slot, 0), IWIsWaveMap(slot, 1),
                             IWIsWaveMap(slot, 2)}),
                ElementsAre(0, 0, 1, 0));
    EXPECT_EQ(IWRtScratchSize(slot), 6);
    EXPECT_EQ(IWRtTopImgLoc(slot, 1), 4);
    EXPECT_EQ(IMRtWavMM(slot, 0, &min, &max), -1);
    EXPECT_EQ(min, -1) << "an unknown range leaves the outputs alone";
    EXPECT_EQ(IMRtWavMM(slot, 1, &min, &max), 0);
    EXPECT_THAT(std::vector({min, max}), ElementsAre(5, 900));
}

TEST_F(Iwl, ChangesAreToldOnceAndOnlyWhenSomethingIsDifferent)
{
    auto viewer = show();
    EXPECT_EQ(handleEvents(), Change::Nothing);
    viewer->publish();
    EXPECT_EQ(handleEvents(), Change::Nothing) << "the same record again";
    viewer->record.z = 1;
    viewer->publish();
    viewer->record.z = 2;
    viewer->publish();
    EXPECT_EQ(handleEvents(), Change::Display);
    EXPECT_EQ(handleEvents(), Change::Nothing) << "both were read at the first notification";
    viewer->record.wavelengths[0] = {true, 1, true, 0, 10, 0};
    viewer->publish();
    EXPECT_EQ(handleEvents(), Change::Display);
    viewer->record.wavelengths[0].rangeMax = 11;
    viewer->publish();
    EXPECT_EQ(handleEvents(), Change::Display) << "a range that grows is a change";
    viewer->destroyCanvas();
    EXPECT_EQ(handleEvents(), Change::Closed);
    EXPECT_EQ(iwlRefresh(viewer->canvas), Change::Nothing) << "told once";
}

TEST_F(Iwl, AClosedWindowLeavesTheLastStateAndTakesNoOverlays)
{
    auto viewer = show();
    const int id = IWGrAddPt2D(slot, 2, 7, 1, 1);
    viewer->destroyCanvas();
    EXPECT_EQ(IWDisplay(slot), 1) << "not known yet";
    EXPECT_EQ(IWGrRmGrID(slot, id), 1);
    EXPECT_EQ(iwlRefresh(viewer->canvas), Change::Closed)
        << "what happened before the selection brings no event";
    EXPECT_EQ(IWGrAddPt2D(slot, 2, 7, 1, 1), 0);
    EXPECT_EQ(IWGrRmAllGrID(slot), 1);
    EXPECT_EQ(IWDisplay(slot), 1);
    EXPECT_EQ(pixel(0, 0, 0, 3, 2), 23);
    int columns, rows;
    EXPECT_EQ(IWRtMulDis(slot, &columns, &rows), 1);
    EXPECT_EQ(iwlSlotOf(viewer->canvas), slot);
}

TEST_F(Iwl, PointerEventsBecomeDataPositions)
{
    auto viewer = show();
    Pointed p = pointAt(pressAt(viewer->canvas, 19, 9));
    EXPECT_EQ(p.result, 1);
    EXPECT_EQ(p.window, viewer->record.windowNumber);
    EXPECT_THAT(std::vector({p.x, p.y, p.z}), ElementsAre(19, 9, 0));
    EXPECT_THAT(std::vector({p.panel, p.subPanel}), ElementsAre(0, 0));
    p = pointAt(pressAt(viewer->canvas, 20, 9));
    EXPECT_EQ(p.result, 0);
    EXPECT_EQ(p.panel, -1) << "nothing is filled";
    EXPECT_EQ(pointAt(pressAt(DefaultRootWindow(iwlDisplay()), 5, 5)).result, 0);
    XEvent motion = {};
    motion.xmotion.type = MotionNotify;
    motion.xmotion.window = viewer->canvas;
    motion.xmotion.x = 4;
    EXPECT_EQ(pointAt(motion).x, 4);
    XEvent other = {};
    other.xproperty.type = PropertyNotify;
    other.xproperty.window = viewer->canvas;
    EXPECT_EQ(pointAt(other).result, 0);

    viewer->record.z = 1;
    viewer->record.geometry = {20, 10, 2, 4, 1, protocol::ZPanels, 2, 1, 2, 30, 18, 5};
    viewer->publish();
    EXPECT_EQ(handleEvents(), Change::Display);
    p = pointAt(pressAt(viewer->canvas, 36, 3));
    EXPECT_EQ(p.result, 1);
    EXPECT_THAT(std::vector({p.x, p.y, p.z}), ElementsAre(4.5F, 2.5F, 2))
        << "the second panel shows the next section";
    EXPECT_EQ(p.panel, 1);
}

TEST_F(Iwl, StagePositions)
{
    const struct {
        bool stagePositions;
        float x, y, z;
        std::vector<float> stage;
    } rows[] = {
        {true,  0,    0,  0,     {100, -50, 7}       },
        {true,  3.5F, 4,  1.75F, {101.75F, -49, 9.5F}},
        {true,  -2,   0,  99,    {99, -50, 12}       },
        {false, 3.5F, 4,  1.5F,  {1.75F, 1, 3}       },
        {false, 0,    10, -1,    {0, 2.5F, -2}       },
    };
    for (const auto& row : rows) {
        TestImage image;
        image.stagePositions = row.stagePositions;
        auto viewer = show(image);
        std::vector<float> stage(3);
        EXPECT_EQ(IWDataToTSPos(row.x, row.y, row.z, slot, stage.data()), 1);
        EXPECT_THAT(stage, ::testing::Pointwise(::testing::FloatEq(), row.stage))
            << row.stagePositions << row.x;
        IMClose(slot);
    }
}

TEST_F(Iwl, ImageFacts)
{
    TestImage image;
    image.stagePositions = true;
    auto viewer = show(image);
    int z, w, t, p, total, nx, ny, count;
    float spacing[3], waves[IW_MAX_WAVES];
    double value = 0;
    char name[IW_FILENAME_SIZE];
    EXPECT_EQ(IMAlCon(slot, 1), 0);
    EXPECT_EQ(IMRtZWTP(slot, &z, &w, &t, &p, &total), 0);
    EXPECT_THAT(std::vector({z, w, t, p, total}), ElementsAre(3, 2, 2, 1, 12));
    EXPECT_EQ(IMRtXY(slot, &nx, &ny), 0);
    EXPECT_THAT(std::vector({nx, ny}), ElementsAre(20, 10));
    EXPECT_EQ(IMRtDel(slot, spacing), 0);
    EXPECT_THAT(spacing, ElementsAre(0.5F, 0.25F, 2.0F));
    EXPECT_EQ(IMRtWav(slot, &count, waves), 0);
    EXPECT_THAT(std::vector(waves, waves + count), ElementsAre(528, 617));
    EXPECT_EQ(IMRtExHdrValueZWTP(slot, 1, 1, 1, 0, 1, &value), 0);
    EXPECT_EQ(value, 1.5);
    EXPECT_EQ(IMRtExHdrValueZWTP(slot, 1, 1, 1, 0, 14, &value), -1) << "the file gives no bias";
    EXPECT_EQ(IMRtExHdrValueZWTP(slot, 3, 1, 1, 0, 1, &value), -1) << "no such section";
    EXPECT_EQ(value, 1.5);
    EXPECT_EQ(IWRtFilename(slot, 0, name), 1);
    EXPECT_EQ(name, file.string());
}

TEST_F(Iwl, AFileNameThatDoesNotFitIsRefused)
{
    file = folder / std::string(120, 'a') / std::string(120, 'b') / "cells.ome.tif";
    fs::create_directories(file.parent_path());
    auto viewer = show();
    char name[IW_FILENAME_SIZE] = "before";
    EXPECT_EQ(IWRtFilename(slot, 0, name), 0);
    EXPECT_STREQ(name, "");
}

TEST_F(Iwl, RectanglesAreReadRowByRowAndBadOnesRefused)
{
    auto viewer = show();
    float buffer[6];
    EXPECT_NE(IMRdPas(slot, buffer, 1, 1, 0, 0, 0, 0), 0) << "no section chosen yet";
    ASSERT_EQ(IMPosnZWTP(slot, 2, 1, 1, 0), 0);
    ASSERT_EQ(IMRdPas(slot, buffer, 3, 2, 17, 19, 8, 9), 0);
    EXPECT_THAT(buffer, ElementsAre(11097, 11098, 11099, 11107, 11108, 11109));
    const int bad[][6] = {
        {3,  2, 18, 20, 8,  9 },
        {3,  2, 17, 19, 9,  10},
        {1,  1, -1, -1, 0,  0 },
        {1,  1, 0,  0,  -1, -1},
        {0,  0, 1,  0,  1,  0 },
        {2,  2, 17, 19, 8,  9 },
        {3,  1, 17, 19, 8,  9 },
        {-3, 2, 19, 17, 8,  9 }
    };
    for (const auto& r : bad)
        EXPECT_EQ(IMRdPas(slot, buffer, r[0], r[1], r[2], r[3], r[4], r[5]), -1) << r[2] << ' ' << r[4];
    for (const auto& s : {
             std::array{3,  0, 0, 0},
             {0,  2, 0, 0},
             {0,  0, 2, 0},
             {0,  0, 0, 1},
             {-1, 0, 0, 0}
    })
        EXPECT_EQ(IMPosnZWTP(slot, s[0], s[1], s[2], s[3]), -1);
    EXPECT_EQ(IMRdPas(slot, buffer, 1, 1, 0, 0, 0, 0), -1) << "a refused section is not the one before";
}

TEST_F(Iwl, AProgramMayExitWithTheImageOpen)
{
    auto viewer = show();
    EXPECT_EQ(pixel(0, 0, 0, 3, 2), 23);
    peers::Child program([]() -> int { std::exit(0); });
    EXPECT_EQ(program.wait(), 0);
}

TEST_F(Iwl, AFileThatIsReplacedIsReadAnewWhenItFits)
{
    auto viewer = show();
    EXPECT_EQ(pixel(0, 0, 0, 3, 2), 23);
    const auto replace = [&](const TestImage& image) {
        writeImage(folder / "next", image);
        fs::rename(folder / "next", file);
    };
    TestImage brighter, larger;
    brighter.base = 500;
    larger.width = 30;
    replace(brighter);
    EXPECT_EQ(pixel(0, 0, 0, 3, 2), 523);
    ::testing::internal::CaptureStderr();
    replace(larger);
    EXPECT_EQ(pixel(0, 0, 0, 3, 2), -1);
    EXPECT_EQ(pixel(0, 0, 0, 3, 2), -1);
    const std::string said = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << "told once: " << said;
    int nx = 0, ny = 0;
    EXPECT_EQ(IMRtXY(slot, &nx, &ny), 0);
    EXPECT_EQ(nx, 20) << "still what the window shows";
    replace({});
    EXPECT_EQ(pixel(0, 0, 0, 3, 2), 23);
    fs::remove(file);
    EXPECT_EQ(pixel(1, 0, 0, 3, 2), 1023) << "the open file is still there";
}

TEST_F(Iwl, TheWindowMayShowAnotherFile)
{
    auto viewer = show();
    TestImage other;
    other.width = 8;
    other.sizeW = 1;
    writeImage(folder / "other.tif", other);
    viewer->record.path = folder / "other.tif";
    viewer->record.geometry.imageWidth = 8;
    viewer->record.wavelengths.resize(1);
    viewer->publish();
    EXPECT_EQ(handleEvents(), Change::Display);
    int nx = 0, ny = 0;
    EXPECT_EQ(IMRtXY(slot, &nx, &ny), 0);
    EXPECT_EQ(nx, 8);
    EXPECT_EQ(pixel(0, 0, 1, 7, 2), 3027);
    viewer->record.path = folder / "missing.tif";
    viewer->publish();
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(handleEvents(), Change::Display);
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), HasSubstr("missing.tif"));
    EXPECT_EQ(pixel(0, 0, 0, 0, 0), -1);
}

TEST_F(Iwl, OverlayCommandsReachTheViewerInOrder)
{
    auto viewer = show();
    const int point = IWGrAddPt2D(slot, 2, 7, 1.5F, 2.5F);
    const int line = IWGrAddLn5D(slot, 1, 3, 2, 0, 99, 1, 2, -1, 3, 4, 0);
    EXPECT_GT(point, 0);
    EXPECT_GT(line, point);
    EXPECT_EQ(IWGrRmGrID(slot, point), 1);
    EXPECT_EQ(IWGrRmGrID(slot, point), 1) << "removed a second time";
    EXPECT_EQ(IWGrRmGrID(slot, 0), 1);
    EXPECT_EQ(IWGrAddPt2D(slot, 2, 7, std::numeric_limits<float>::quiet_NaN(), 0), 0);
    EXPECT_EQ(IWGrRmAllGrID(slot), 1);
    EXPECT_EQ(IWDisplay(slot), 1);
    XSync(iwlDisplay(), False);
    const auto commands = viewer->drain();
    ASSERT_THAT(kinds(commands), ElementsAre(OverlayKind::AddPoint, OverlayKind::AddLine, OverlayKind::Remove,
                                             OverlayKind::RemoveAll, OverlayKind::Redraw));
    const auto client = static_cast<std::uint32_t>(iwlClientWindow());
    const OverlayCommand marker{
        OverlayKind::AddPoint, client, point, -1, -1, 2, 0, 7, 1.5F, 2.5F, -1, 1.5F, 2.5F, -1};
    EXPECT_EQ(commands[0], marker);
    const OverlayCommand drawn{OverlayKind::AddLine, client, line, 1, 3, 2, 0, 7, 1, 2, -1, 3, 4, 0};
    EXPECT_EQ(commands[1], drawn) << "an unknown colour is the annotation colour";
    EXPECT_EQ(commands[2].id, point);
}

// A stopped viewer costs a bounded backlog, and gets the present state when it goes on.
TEST_F(Iwl, AViewerThatStopsGetsThePresentStateLater)
{
    auto viewer = show();
    const int kept = IWGrAddPt2D(slot, 2, 7, 1, 1);
    int line = 0;
    for (int i = 0; i < 10000; ++i) {
        IWGrRmGrID(slot, line);
        line = IWGrAddLn2D(slot, 2, 0, 7, 0, 0, 5, 5);
        IWDisplay(slot);
    }
    EXPECT_LE(protocol::pendingOverlayBytes(iwlDisplay(), viewer->canvas), 1UL << 18);
    viewer->drain();
    handleEvents();
    XSync(iwlDisplay(), False);
    const auto commands = viewer->drain();
    ASSERT_THAT(kinds(commands), ElementsAre(OverlayKind::RemoveAll, OverlayKind::AddPoint,
                                             OverlayKind::AddLine, OverlayKind::Redraw));
    EXPECT_EQ(commands[1].id, kept);
    EXPECT_EQ(commands[2].id, line);
}

// A program without an event loop of its own finds out at its next command.
TEST_F(Iwl, AStoppedViewerIsNoticedWithoutEvents)
{
    auto viewer = show();
    for (int i = 0; i < 5000; ++i)
        IWDisplay(slot);
    viewer->drain();
    const int id = IWGrAddPt2D(slot, 2, 7, 1, 1);
    XSync(iwlDisplay(), False);
    const auto commands = viewer->drain();
    ASSERT_THAT(kinds(commands), ElementsAre(OverlayKind::RemoveAll, OverlayKind::AddPoint));
    EXPECT_EQ(commands[1].id, id);
}
