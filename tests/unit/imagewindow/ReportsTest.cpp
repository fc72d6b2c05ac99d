// SPDX-License-Identifier: MIT
// Which panels are framed because a tool plots what they show.
#include "platform/imagewindow/state/Reports.h"

#include "tests/Rows.h"
#include "tests/unit/image/TempFolder.h"
#include "tests/unit/image/TestFiles.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

using namespace viewer;
using protocol::OverlayCommand;
using protocol::OverlayKind;

namespace {

struct Case {
    const char* name;
    int style;
    int z, t;       // of the first panel
    float segmentZ; // -1: every section
    bool drawn;
    std::vector<int> plotted;
};

class PlottedPanels : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(PlottedPanels, AreThoseOfTheSectionThatToolsSample)
{
    const Case& row = GetParam();
    const TempFolder folder;
    setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
    setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
    writeTiff(folder / "a.tif", {.pages = 12,
                                 .description = "ImageJ=1.54f\nimages=12\nchannels=2\nslices=3\nframes=2\n"
                                                "hyperstack=true\n"});
    Shown shown(openImage((folder / "a.tif").string()));
    shown.view.style = row.style;
    shown.view.z = row.z;
    shown.view.t = row.t;
    shown.panels = panelContents(shown.info(), shown.view);
    OverlayStore overlays;
    OverlayCommand line{.kind = OverlayKind::AddLine, .client = 1, .id = 1, .panel = 0};
    line.x1 = line.y1 = 20;
    line.z0 = line.z1 = row.segmentZ;
    overlays.apply(line, {.style = row.style, .wavelength = 0});
    if (!row.drawn)
        overlays.apply({.kind = OverlayKind::Remove, .client = 1, .id = 1});
    EXPECT_EQ(plottedPanels(shown, overlays), row.plotted);
    EXPECT_EQ(sceneOf(shown, overlays, 1).plotted, row.plotted);
}

INSTANTIATE_TEST_SUITE_P(
    Panels, PlottedPanels,
    testing::Values(Case{"Single", protocol::SinglePanel, 1, 0, -1, true, {}},
                    Case{"NoSegment", protocol::ZPanels, 0, 0, 1, false, {}},
                    Case{"TheSegmentsSection", protocol::ZPanels, 0, 0, 2, true, {2}},
                    Case{"SectionOutOfSight", protocol::ZPanels, 0, 0, 7, true, {}},
                    Case{"AllWavelengths", protocol::WavelengthPanels, 1, 1, -1, true, {0, 1}},
                    Case{"TheFirstTimePoint", protocol::TimePanels, 1, 0, -1, true, {0}}),
    RowName());
