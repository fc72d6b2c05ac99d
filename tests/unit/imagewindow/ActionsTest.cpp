// SPDX-License-Identifier: MIT
// What each action of the user leaves to be drawn and told, and where a section that is followed stays.
#include "platform/imagewindow/state/Actions.h"

#include "platform/imagewindow/state/LabelProposal.h"
#include "tests/Rows.h"
#include "tests/unit/image/TempFolder.h"
#include "tests/unit/image/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <tiffio.h>
#include <vector>

using namespace viewer;

namespace {

// One letter for each part that is stale, in the order of the parts.
std::string staleParts(const Shown& shown)
{
    std::string letters;
    for (const auto& [part, letter] :
         {std::pair(Part::Layout, 'L'), std::pair(Part::Image, 'I'), std::pair(Part::Overlays, 'O'),
          std::pair(Part::Pointer, 'P'), std::pair(Part::Readout, 'R'), std::pair(Part::Record, 'C')})
        if (shown.stale.has(part))
            letters += letter;
    return letters;
}

void takeAll(Shown& shown)
{
    for (const Part part :
         {Part::Layout, Part::Image, Part::Overlays, Part::Pointer, Part::Readout, Part::Record})
        shown.stale.take(part);
}

struct Case {
    const char* name;
    void (*act)(Shown&, Actions&);
    const char* stale;
};

class StaleTest : public testing::TestWithParam<Case> {};

ImageSource stackOf(const TempFolder& folder, int pages)
{
    setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
    setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
    TiffSpec spec;
    spec.pages = pages;
    writeTiff(folder / "stack.tif", spec);
    return openImage((folder / "stack.tif").string());
}

} // namespace

TEST_P(StaleTest, FollowsFromTheAction)
{
    const TempFolder folder;
    Shown shown(stackOf(folder, 3));
    Actions actions(shown);
    shown.area = {400, 300};
    shown.arrangeNow();
    EXPECT_EQ(staleParts(shown), "LIPRC"); // nothing has been drawn yet
    takeAll(shown);
    GetParam().act(shown, actions);
    EXPECT_EQ(staleParts(shown), GetParam().stale);
}

INSTANTIATE_TEST_SUITE_P(
    Actions, StaleTest,
    testing::Values(Case{"Nothing", [](Shown&, Actions&) {}, ""},
                    Case{"Section", [](Shown&, Actions& a) { a.stepZ(1); }, "LIPRC"},
                    Case{"Zoom", [](Shown&, Actions& a) { a.zoomSteps(1); }, "LIPRC"},
                    Case{"Contrast",
                         [](Shown&, Actions& a) {
                             a.setContrast(0, {1, 2});
                         },
                         "IR"},
                    Case{"Gamma", [](Shown&, Actions& a) { a.setGamma(0, 0.5F); }, "IR"},
                    Case{"FullRange", [](Shown&, Actions& a) { a.setFullRange(0); }, "IR"},
                    Case{"Look",
                         [](Shown&, Actions& a) {
                             a.setLook(0, {3, ContrastLimits{1, 2}, 0.5F});
                         },
                         "LIPRC"},
                    Case{"Grey", [](Shown&, Actions& a) { a.setGrey(true); }, "LIPRC"},
                    Case{"Labels", [](Shown&, Actions& a) { a.setLabels(true); }, "LIPRC"},
                    Case{"SidePanel", [](Shown&, Actions& a) { a.toggleSidePanel(); }, "LIPRC"},
                    Case{"ScaleBar", [](Shown&, Actions& a) { a.toggleScaleBar(); }, "LIPRC"},
                    Case{"BarStyle", [](Shown&, Actions& a) { a.setBarStyle({20}); }, "LIPRC"},
                    Case{"Overview", [](Shown&, Actions& a) { a.toggleOverview(); }, "LIPRC"},
                    Case{"Refusal", [](Shown&, Actions& a) { a.refuse("No."); }, "R"},
                    Case{"AutomaticContrast", [](Shown&, Actions& a) { a.setAutomaticContrast(); }, "IR"},
                    Case{"Notice", [](Shown& s, Actions&) { s.tell("A tool has come."); }, "R"},
                    Case{"Graphics", [](Shown& s, Actions&) { s.stale.mark(Part::Overlays); }, "OPR"}),
    RowName{});

TEST(Actions, ZoomsBeforeTheNextDrawingGoOnFromEachOther)
{
    const TempFolder folder;
    Shown shown(stackOf(folder, 1));
    Actions actions(shown);
    shown.area = {40, 30};
    shown.arrangeNow();
    for (int step = 0; step < 3; ++step)
        actions.zoomStepsAt(1, 30, 20);
    const protocol::Geometry before = shown.arrangement.geometry;
    const auto held = protocol::dataFromWindow(before, 20, 10);
    actions.zoomStepsAt(1, 20, 10);
    const auto still = protocol::dataFromWindow(shown.arrangement.geometry, 20, 10);
    ASSERT_TRUE(held && still);
    EXPECT_GT(shown.arrangement.geometry.zoom, before.zoom);
    EXPECT_NEAR(still->x, held->x, 1 / before.zoom);
    EXPECT_NEAR(still->y, held->y, 1 / before.zoom);
}

TEST(Actions, WhatIsRefusedIsSaidUntilTheNextAction)
{
    const TempFolder folder;
    Shown shown(stackOf(folder, 2));
    Actions actions(shown);
    actions.setWavelengthShown(0, false);
    EXPECT_EQ(shown.notice.sentence(), "One wavelength has to stay.");
    EXPECT_TRUE(shown.view.displayed[0]);
    actions.stepZ(1);
    EXPECT_EQ(shown.notice.sentence(), "");
    actions.toggleScaleBar();
    EXPECT_EQ(shown.notice.sentence(), "The image has no scale for a bar: View, Set scale... sets one.");
    actions.setBarStyle({20});
    EXPECT_FALSE(shown.scaleBar);
    actions.setScale({0.5F, 0.5F, {}}, true);
    EXPECT_NE(shown.notice.sentence().find("keep the scale"), std::string::npos);
    EXPECT_TRUE(shown.scaleBar);
    actions.removeScale(false);
    EXPECT_EQ(shown.notice.sentence(), "");
    EXPECT_FALSE(shown.scaleBar);
}

TEST(Actions, PlayingEndsWithAStepByHand)
{
    struct {
        const char* name;
        void (*act)(Shown&, Actions&);
        bool goesOn;
    } const rows[] = {
        {"Step", [](Shown&, Actions& a) { a.stepZ(1); }, false},
        {"Panels", [](Shown&, Actions& a) { a.setPanels(protocol::ZPanels); }, false},
        {"Reset", [](Shown&, Actions& a) { a.resetView(); }, false},
        {"Toggle", [](Shown&, Actions& a) { a.togglePlay(); }, false},
        {"Due", [](Shown& s, Actions& a) { a.playOn(s.playback.due()); }, true},
        {"Zoom", [](Shown&, Actions& a) { a.zoomSteps(1); }, true},
        {"Contrast", [](Shown&, Actions& a) { a.setAutomaticContrast(); }, true},
        {"Rate",
         [](Shown&, Actions& a) {
             a.setPlay({PlayAxis::Z, PlayEnd::Bounce, 25});
         },
         true},
    };
    const TempFolder folder;
    Shown shown(stackOf(folder, 5));
    Actions actions(shown);
    shown.area = {400, 300};
    shown.arrangeNow();
    for (const auto& row : rows) {
        actions.setPanels(protocol::SinglePanel);
        actions.togglePlay();
        ASSERT_TRUE(shown.playback.running()) << row.name;
        row.act(shown, actions);
        EXPECT_EQ(shown.playback.running(), row.goesOn) << row.name;
    }
    EXPECT_EQ(loadPlay(), (PlaySettings{PlayAxis::Z, PlayEnd::Bounce, 25}));
}

TEST(Actions, ProjectionsAndPanelsOfZGiveWayToEachOther)
{
    const TempFolder folder;
    Shown shown(stackOf(folder, 5));
    Actions actions(shown);
    actions.setPanels(protocol::ZPanels);
    actions.setProjection(Projection::Maximum);
    EXPECT_EQ(shown.view.style, protocol::SinglePanel);
    EXPECT_EQ(shown.view.projection, Projection::Maximum);
    actions.setPanels(protocol::ZPanels);
    EXPECT_EQ(shown.view.projection, Projection::Section);
    actions.setProjection(Projection::Sum);
    actions.resetView();
    EXPECT_EQ(shown.view.projection, Projection::Section);
}

TEST(Actions, AMontageStaysUntilOtherPanelsAreChosen)
{
    const TempFolder folder;
    Shown shown(stackOf(folder, 7));
    Actions actions(shown);
    shown.area = {400, 300};
    shown.arrangeNow();
    EXPECT_NE(actions.setMontage(protocol::ZPanels, {0, 2}), "");
    EXPECT_EQ(shown.view.style, protocol::SinglePanel);
    EXPECT_EQ(actions.setMontage(protocol::ZPanels, {2, 2}), "");
    EXPECT_EQ(shown.view.style, protocol::ZPanels);
    EXPECT_EQ(panelCount(shown.info(), shown.view), 4);
    actions.setPanels(protocol::ZPanels);
    EXPECT_EQ(panelCount(shown.info(), shown.view), 7);
}

TEST(Actions, WhatIsPlayedIsWhatThereIs)
{
    const TempFolder folder;
    Shown stack(stackOf(folder, 5)); // over z
    Actions actions(stack);
    actions.setPlay({PlayAxis::Time, PlayEnd::Loop, 10});
    actions.showSection(3, 0, 0);
    actions.togglePlay();
    actions.playOn(stack.playback.due());
    EXPECT_EQ(stack.view.z, 4);
    actions.playOn(stack.playback.due());
    EXPECT_EQ(stack.view.z, 0);
    Shown single(stackOf(folder, 1));
    Actions(single).togglePlay();
    EXPECT_FALSE(single.playback.running());
}

TEST(Actions, ALookIsReadAsItWasSet)
{
    const TempFolder folder;
    Shown shown(stackOf(folder, 2));
    Actions actions(shown);
    EXPECT_EQ(shown.look(0), (Look{shown.view.colors[0], std::nullopt, 1}));
    const Look looks[] = {
        {4, ContrastLimits{10, 20}, 0.5F}, {2, std::nullopt, 2}, {0, ContrastLimits{1, 2}, 1}};
    for (const Look& look : looks) {
        actions.setLook(0, look);
        EXPECT_EQ(shown.look(0), look);
    }
    actions.setGamma(0, 0.7F);
    actions.setContrast(0, {3, 4});
    actions.setAutomaticContrast(0);
    EXPECT_EQ(shown.look(0), (Look{0, std::nullopt, 0.7F}));
}

TEST(Actions, LinkedLimitsAreThoseOfAll)
{
    const TempFolder folder;
    setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
    writeTiff(folder / "rgb.tif", {.samples = 3});
    Shown shown(openImage((folder / "rgb.tif").string()));
    Actions actions(shown);
    actions.setContrast(1, {1, 2});
    EXPECT_FALSE(shown.look(0).limits);
    actions.setContrastLinked(true);
    actions.setContrast(2, {5, 9});
    for (int w = 0; w < 3; ++w)
        EXPECT_EQ(shown.look(w).limits, (ContrastLimits{5, 9})) << w;
}

TEST(Actions, MessagesAreKeptInTheirOrderUpToALimit)
{
    const TempFolder folder;
    Shown shown(stackOf(folder, 2));
    Actions actions(shown);
    actions.setWavelengthShown(0, false);
    shown.tell("A tool has come.");
    shown.log.follow("The file is gone.", 1);
    shown.log.follow("The file is gone.", 2); // still
    shown.log.follow("", 3);
    shown.log.follow("The file is gone.", 4); // again
    std::vector<std::string> texts;
    for (const MessageLog::Message& message : shown.log.messages())
        texts.push_back(message.text);
    EXPECT_EQ(texts, (std::vector<std::string>{"One wavelength has to stay.", "A tool has come.",
                                               "The file is gone.", "The file is gone."}));
    for (int i = 0; i < 2000; ++i)
        actions.note(std::string(5000, 'x'));
    EXPECT_EQ(shown.log.messages().size(), maxMessages);
    EXPECT_LE(shown.log.messages().back().text.size(), maxMessageLength + 8);
    EXPECT_EQ(shown.log.version(), 2004U);
}

TEST(Actions, LabelsAreWholeNumbersOfOneWavelength)
{
    const struct {
        const char* name;
        PixelKind kind;
        int samples;
        const char* refusal;
    } rows[] = {
        {"whole", wordKind, 1, ""},
        {"fractions", floatKind, 1, "Labels are whole numbers: the values of this image have fractions."},
        {"several", byteKind, 3,
         "Labels are shown for one wavelength: hide the others, or show wavelength panels."},
    };
    for (const auto& row : rows) {
        const TempFolder folder;
        setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
        writeTiff(folder / "a.tif", {.kind = row.kind, .samples = row.samples});
        Shown shown(openImage((folder / "a.tif").string()));
        Actions(shown).setLabels(true);
        EXPECT_EQ(shown.notice.sentence(), row.refusal) << row.name;
        EXPECT_EQ(shown.view.labels, *row.refusal == '\0') << row.name;
        if (row.samples > 1) {
            shown.view.style = protocol::WavelengthPanels;
            Actions(shown).setLabels(true);
            for (const PanelContent& panel : panelContents(shown.info(), shown.view))
                EXPECT_TRUE(panel.labels);
        }
    }
}

namespace {

// 8 bit, 12 x 2; a digit for each pixel.
void writeDigits(const std::filesystem::path& path, const char* digits)
{
    constexpr std::uint32_t width = 12, height = 2;
    const std::unique_ptr<TIFF, decltype(&TIFFClose)> file(TIFFOpen(path.c_str(), "w"), TIFFClose);
    TIFFSetField(file.get(), TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(file.get(), TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(file.get(), TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(file.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    for (std::uint32_t y = 0; y < height; ++y) {
        std::array<std::uint8_t, width> row{};
        std::transform(digits + y * width, digits + (y + 1) * width, row.begin(),
                       [](char digit) { return static_cast<std::uint8_t>(digit - '0'); });
        TIFFWriteScanline(file.get(), row.data(), y, 0);
    }
}

} // namespace

// Both have to say so, the name and the values.
TEST(Actions, LabelsAreProposedWhereTheyAreCertain)
{
    const struct {
        const char *file, *pixels;
        bool labels;
    } rows[] = {
        {"cells_labels.tif", "111111000222111111000222", true},
        {"cells.tif", "111111000222111111000222", false},
        {"one_label.tif", "111111000111111111000111", false},
        {"labels.tif", "123456789876543212345678", false},
    };
    for (const auto& row : rows) {
        const TempFolder folder;
        writeDigits(folder / row.file, row.pixels);
        Shown shown(openImage((folder / row.file).string()));
        proposeLabels(shown);
        EXPECT_EQ(shown.view.labels, row.labels) << row.file;
        EXPECT_NE(shown.notice.sentence().empty(), row.labels) << row.file;
    }
}
