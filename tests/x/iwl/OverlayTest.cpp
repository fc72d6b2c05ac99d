// SPDX-License-Identifier: MIT
// Overlay graphics on their way to the viewer, which may be busy or stopped.
#include "tests/x/iwl/IwlTest.h"

#include <limits>
#include <vector>

using protocol::OverlayCommand;
using protocol::OverlayKind;
using testing::ElementsAre;

namespace {

std::vector<OverlayKind> kinds(const std::vector<OverlayCommand>& commands)
{
    std::vector<OverlayKind> result;
    for (const auto& command : commands)
        result.push_back(command.kind);
    return result;
}

} // namespace

TEST_F(Iwl, OverlayCommandsReachTheViewerInOrder)
{
    auto viewer = show();
    const int point = IWGrAddPt2D(slot, 2, 7, 1.5F, 2.5F);
    const int line = IWGrAddLn5D(slot, 1, 3, 2, 0, 99, 1, 2, -1, 3, 4, 0);
    EXPECT_GT(point, 0);
    EXPECT_GT(line, point);
    for (const int id : {point, point, 0})
        EXPECT_EQ(IWGrRmGrID(slot, id), 1);
    EXPECT_EQ(IWGrAddPt2D(slot, 2, 7, std::numeric_limits<float>::quiet_NaN(), 0), 0);
    EXPECT_EQ(IWGrRmAllGrID(slot), 1);
    EXPECT_EQ(IWDisplay(slot), 1);
    XSync(iwl::display(), False);
    const auto commands = viewer->drain();
    ASSERT_THAT(kinds(commands), ElementsAre(OverlayKind::AddPoint, OverlayKind::AddLine, OverlayKind::Remove,
                                             OverlayKind::RemoveAll, OverlayKind::Redraw));
    const auto client = static_cast<std::uint32_t>(iwl::clientWindow());
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
    EXPECT_LE(protocol::pendingOverlayBytes(iwl::display(), viewer->canvas), 1UL << 18);
    viewer->drain();
    handleEvents();
    XSync(iwl::display(), False);
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
    XSync(iwl::display(), False);
    const auto commands = viewer->drain();
    ASSERT_THAT(kinds(commands), ElementsAre(OverlayKind::RemoveAll, OverlayKind::AddPoint));
    EXPECT_EQ(commands[1].id, id);
}
