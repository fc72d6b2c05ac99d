// SPDX-License-Identifier: MIT
// Attaching, what the image window shows, and where the pointer is in it.
#include "tests/x/iwl/IwlTest.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

using peers::errorsOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Ne;

namespace {

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

} // namespace

TEST_F(Iwl, AttachRefusesWithOneSentence)
{
    writeImage(file);
    writeBytes(folder / "text.tif", "no image");
    FakeViewer viewer(file);
    const int number = viewer.record.windowNumber;
    const struct {
        const char* what;
        int slot, number;
        const char* mode;
        std::function<void(protocol::DisplayRecord&)> change;
    } rows[] = {
        {"no such window", slot, 4711, "ro", [](auto&) {}},
        {"window 0", slot, 0, "ro", [](auto&) {}},
        {"mode", slot, number, "rw", [](auto&) {}},
        {"slot 0", 0, number, "ro", [](auto&) {}},
        {"slot 17", 17, number, "ro", [](auto&) {}},
        {"missing file", slot, number, "ro", [&](auto& r) { r.path = folder / "none.tif"; }},
        {"no image", slot, number, "ro", [&](auto& r) { r.path = folder / "text.tif"; }},
        {"other width", slot, number, "ro", [](auto& r) { r.geometry.imageWidth = 21; }},
        {"other count", slot, number, "ro", [](auto& r) { r.wavelengths.resize(3); }},
        {"beyond z", slot, number, "ro", [](auto& r) { r.z = 3; }},
    };
    const auto good = viewer.record;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        viewer.record = good;
        row.change(viewer.record);
        viewer.publish();
        const std::string said = errorsOf([&] { EXPECT_NE(IWAttachWin(row.slot, row.number, row.mode), 1); });
        EXPECT_THAT(said, HasSubstr("iwl_x_test: "));
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
        EXPECT_EQ(IWRtWID(row.slot), Window{None});
    }
}

TEST_F(Iwl, ADetachedSlotAnswersEveryCallHarmlessly)
{
    int i[5] = {9, 9, 9, 9, 9};
    float f[3] = {9, 9, 9};
    double d = 9;
    char name[IW_FILENAME_SIZE] = "x";
    for (const int s : {slot, 0, -1, 17}) {
        const int display[] = {
            IWDisplay(s),
            IWRtMulDis(s, i, i + 1),
            IWRtMulDisStyle(s),
            IWRtDisSec_ZWTP(s, i, i + 1, i + 2, i + 3),
            IWIsWaveMap(s, 0),
            IWRtImgColor(s, i),
            IWRtScratchSize(s),
            IWRtTopImgLoc(s, 0),
            IWRtFilename(s, 0, name),
            IWDataToTSPos(1, 1, 1, s, f),
            IWGrAddPt2D(s, 2, 7, 1, 1),
            IWGrAddLn2D(s, 2, 0, 7, 1, 1, 2, 2),
            IWGrRmGrID(s, 1),
            IWGrRmAllGrID(s),
        };
        const int image[] = {
            IMRtZWTP(s, i, i + 1, i + 2, i + 3, i + 4),
            IMRtXY(s, i, i + 1),
            IMRtDel(s, f),
            IMRtWav(s, i, f),
            IMRtWavMM(s, 0, f, f + 1),
            IMRtExHdrValueZWTP(s, 0, 0, 0, 0, 1, &d),
            IMPosnZWTP(s, 0, 0, 0, 0),
            IMRdPas(s, f, 1, 1, 0, 0, 0, 0),
        };
        EXPECT_THAT(display, Each(0)) << s;
        EXPECT_THAT(image, Each(Ne(0))) << s;
        IMClose(s);
    }
    EXPECT_THAT(i, Each(9)) << "outputs are untouched";
    EXPECT_THAT(f, Each(9.0F));
}

TEST_F(Iwl, DisplayStateFollowsTheWindow)
{
    auto viewer = show();
    viewer->record.z = 2;
    viewer->record.t = 1;
    viewer->record.scratchSize = 6;
    viewer->record.wavelengths = {{false, 6, false, 0, 0, 0}, {true, 3, true, 5, 900, 4}};
    viewer->record.geometry.style = protocol::TimePanels;
    viewer->record.geometry.columns = 2;
    viewer->publish();
    EXPECT_EQ(handleEvents(), iwl::Change::Display);
    int z, w, t, p, columns, rows, colors[2];
    float min = -1, max = -1;
    EXPECT_EQ(IWRtDisSec_ZWTP(slot, &z, &w, &t, &p), 1);
    EXPECT_THAT(std::vector({z, w, t, p}), ElementsAre(2, 0, 1, 0));
    EXPECT_EQ(IWRtMulDis(slot, &columns, &rows), 1);
    EXPECT_THAT(std::vector({columns, rows, IWRtMulDisStyle(slot)}), ElementsAre(2, 1, 3));
    EXPECT_EQ(IWRtImgColor(slot, colors), 1);
    EXPECT_THAT(colors, ElementsAre(6, 3));
    for (const auto& [wave, mapped] : {std::pair{-1, 0}, std::pair{0, 0}, std::pair{1, 1}, std::pair{2, 0}})
        EXPECT_EQ(IWIsWaveMap(slot, wave), mapped) << wave;
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
    EXPECT_EQ(handleEvents(), iwl::Change::Nothing);
    viewer->publish();
    EXPECT_EQ(handleEvents(), iwl::Change::Nothing) << "the same record again";
    viewer->showSection(1);
    viewer->showSection(2);
    EXPECT_EQ(handleEvents(), iwl::Change::Display);
    EXPECT_EQ(handleEvents(), iwl::Change::Nothing) << "both were read at the first notification";
    viewer->record.wavelengths[0] = {true, 1, true, 0, 10, 0};
    viewer->publish();
    EXPECT_EQ(handleEvents(), iwl::Change::Display);
    viewer->record.wavelengths[0].rangeMax = 11;
    viewer->publish();
    EXPECT_EQ(handleEvents(), iwl::Change::Display) << "a range that grows is a change";
    viewer->destroy();
    EXPECT_EQ(handleEvents(), iwl::Change::Closed);
    EXPECT_EQ(iwl::refresh(viewer->canvas), iwl::Change::Nothing) << "told once";
}

TEST_F(Iwl, AClosedWindowLeavesTheLastStateAndTakesNoOverlays)
{
    auto viewer = show();
    const int id = IWGrAddPt2D(slot, 2, 7, 1, 1);
    viewer->destroy();
    EXPECT_EQ(IWDisplay(slot), 1) << "not known yet";
    EXPECT_EQ(IWGrRmGrID(slot, id), 1);
    EXPECT_EQ(iwl::refresh(viewer->canvas), iwl::Change::Closed)
        << "what happened before the selection brings no event";
    EXPECT_EQ(IWGrAddPt2D(slot, 2, 7, 1, 1), 0);
    EXPECT_EQ(IWGrRmAllGrID(slot), 1);
    EXPECT_EQ(IWDisplay(slot), 1);
    EXPECT_EQ(pixel(0, 0, 0, 3, 2), 25);
    int columns, rows;
    EXPECT_EQ(IWRtMulDis(slot, &columns, &rows), 1);
}

TEST_F(Iwl, PointerEventsBecomeDataPositions)
{
    auto viewer = show();
    const Pointed corner = pointAt(pressAt(viewer->canvas, 19, 9));
    EXPECT_EQ(corner.result, 1);
    EXPECT_EQ(corner.window, viewer->record.windowNumber);
    EXPECT_THAT(std::vector({corner.x, corner.y, corner.z}), ElementsAre(19, 9, 0));
    EXPECT_THAT(std::vector({corner.panel, corner.subPanel}), ElementsAre(0, 0));
    XEvent motion = pressAt(viewer->canvas, 4, 0);
    motion.type = MotionNotify;
    EXPECT_EQ(pointAt(motion).x, 4);
    XEvent other = pressAt(viewer->canvas, 4, 0);
    other.type = PropertyNotify;
    for (const XEvent& none :
         {other, pressAt(viewer->canvas, 20, 9), pressAt(DefaultRootWindow(iwl::display()), 5, 5)}) {
        EXPECT_EQ(pointAt(none).result, 0);
        EXPECT_EQ(pointAt(none).panel, -1) << "nothing is filled";
    }
}

TEST_F(Iwl, TheSecondPanelShowsTheNextSection)
{
    auto viewer = show();
    viewer->record.geometry = {20, 10, 2, 4, 1, protocol::ZPanels, 2, 1, 2, 30, 18, 5};
    viewer->showSection(1);
    EXPECT_EQ(handleEvents(), iwl::Change::Display);
    const Pointed p = pointAt(pressAt(viewer->canvas, 36, 3));
    EXPECT_EQ(p.result, 1);
    EXPECT_THAT(std::vector({p.x, p.y, p.z}), ElementsAre(4.5F, 2.5F, 2));
    EXPECT_EQ(p.panel, 1);
}

// The user's own scale counts as it was when the window was attached, or lengths of two scales would mix.
TEST_F(Iwl, AScaleThatTheUserHasSet)
{
    writeImage(file, usualImage + " --no-stage");
    FakeViewer viewer(file);
    viewer.record.spacing = protocol::Spacing{2, 3, 4};
    viewer.publish();
    ASSERT_EQ(IWAttachWin(slot, viewer.record.windowNumber, "ro"), 1);
    XSelectInput(iwl::display(), viewer.canvas, PropertyChangeMask);
    XSync(iwl::display(), False);
    const std::pair<const char*, std::optional<protocol::Spacing>> changes[] = {
        {"the same again", viewer.record.spacing}, {"another", protocol::Spacing{9, 9, 9}}, {"none", {}}};
    for (const auto& [change, spacingNow] : changes) {
        SCOPED_TRACE(change);
        viewer.record.spacing = spacingNow;
        viewer.publish();
        handleEvents();
        std::vector<float> spacing(3), position(3);
        EXPECT_EQ(IMRtDel(slot, spacing.data()), 0);
        EXPECT_THAT(spacing, ElementsAre(2, 3, 4));
        EXPECT_EQ(IWDataToTSPos(5, 6, 1, slot, position.data()), 1);
        EXPECT_THAT(position, ElementsAre(10, 18, 4));
    }
}

TEST_F(Iwl, StagePositions)
{
    const struct {
        bool known; // where the stage was
        float x, y, z;
        std::vector<float> position;
    } rows[] = {
        {true, 0, 0, 0, {12500, -4200, 35}},   {true, 3.5F, 4, 1.75F, {12501.75F, -4199, 35.5F}},
        {true, -2, 0, 99, {12499, -4200, 36}}, {false, 3.5F, 4, 1.5F, {1.75F, 1, 0.75F}},
        {false, 0, 10, -1, {0, 2.5F, -0.5F}},
    };
    for (const auto& row : rows) {
        auto viewer = show(usualImage + (row.known ? "" : " --no-stage"));
        std::vector<float> position(3);
        EXPECT_EQ(IWDataToTSPos(row.x, row.y, row.z, slot, position.data()), 1);
        EXPECT_THAT(position, testing::Pointwise(testing::FloatEq(), row.position)) << row.known << row.x;
        IMClose(slot);
    }
}
