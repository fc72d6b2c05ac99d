// SPDX-License-Identifier: MIT
// The image file vanishes, shrinks or becomes another one while a segment is dragged.
#include "tests/x/programs/Programs.h"

#include <X11/keysym.h>

#include <functional>
#include <string>
#include <vector>

using drive::Pair;

namespace programs {

class Faults : public ProgramsTest {
protected:
    const Point from{20, 30};
    fs::path makeImage(const std::string& name, const std::string& compression)
    {
        return sample(name, "--pattern ramp --size 400x300 --z 2 --time 1 --channels 4 --compression " +
                                compression);
    }
    // Moves to and fro, so that the file is read again and again; ends at the point.
    void dragOn(Pair& pair, Point to)
    {
        for (int i = 0; i < 20; ++i)
            screen.moveTo(pair.canvas, to.x - 20 + i, to.y - 40 + 2 * i);
        screen.moveTo(pair.canvas, to.x, to.y);
    }
    // The tool may warn of what it cannot read. A warning that is closed must not come back at once.
    void closeWarnings()
    {
        constexpr int most = 3;
        drive::waitUntilCalm(screen);
        for (int i = 0; i < most && screen.findTitleNow("Warning") != None; ++i) {
            screen.requestClose(screen.findTitleNow("Warning"));
            drive::waitUntilCalm(screen);
        }
        EXPECT_EQ(screen.findTitleNow("Warning"), None);
    }
    // The plot is empty or shows whole curves: of the wavelengths that can still be read.
    void expectWholeCurves(Pair& pair, Point to)
    {
        const drive::Picture plot = screen.capture(pair.plot);
        bool good = blank(plot);
        for (unsigned readable = 1; readable < 16 && !good; ++readable) {
            std::vector<int> channels;
            for (const int c : {0, 1, 2, 3})
                if (readable & 1U << c)
                    channels.push_back(c);
            const std::vector<Curve> curves = rampCurves(from, to, channels);
            good = plotProblem(screen, plot, curves, rangeOf(curves)).empty();
        }
        EXPECT_TRUE(good);
    }
    // Both answer, and end in order: the line is measured whatever the values are.
    void expectAlive(Pair& pair)
    {
        EXPECT_TRUE(pair.tool->running());
        EXPECT_TRUE(pair.viewer.running());
        EXPECT_TRUE(pair.message().starts_with("Line length ")) << pair.message();
        expectDone(pair);
    }
};

TEST_F(Faults, TheFileChangesDuringADrag)
{
    const struct {
        const char* name;
        std::function<void(const fs::path&)> change;
    } rows[] = {
        {"deleted", [](const fs::path& image) { fs::remove(image); }},
        {"truncated", [](const fs::path& image) { fs::resize_file(image, 5000); }},
        {"emptied", [](const fs::path& image) { fs::resize_file(image, 0); }},
        {"replaced", [&](const fs::path& image) { fs::rename(makeImage("other.ome.tif", "none"), image); }},
        {"garbage", [](const fs::path& image) { writeBytes(image, std::string(9000, 'x')); }},
    };
    for (const char* compression : {"none", "deflate"})
        for (const auto& row : rows) {
            SCOPED_TRACE(std::string(compression) + " " + row.name);
            const fs::path image = makeImage("image.ome.tif", compression);
            Pair pair = open({image});
            screen.moveTo(pair.canvas, from.x, from.y);
            screen.press();
            dragOn(pair, {200, 100});
            expectPlot(pair, rampCurves(from, {200, 100}));
            row.change(image);
            dragOn(pair, {380, 290});
            screen.release();
            closeWarnings();
            expectWholeCurves(pair, {380, 290});
            expectAlive(pair);
        }
}

TEST_F(Faults, AnUnreadableSectionIsToldAndEmptiesThePlot)
{
    const fs::path image = makeImage("image.ome.tif", "none");
    Pair pair = open({image});
    drawSegment(pair, from, {300, 200});
    // The first section stays, the other is gone.
    fs::resize_file(image, 4 * 400 * 300 * 2 + 1000);
    support::turnWheelWith(screen, XK_Shift_L, pair.canvas);
    EXPECT_TRUE(drive::waitUntil([&] { return pair.display().z == 1; }));
    screen.moveTo(pair.canvas, from.x, from.y);
    screen.press();
    dragOn(pair, {300, 200});
    screen.release();
    EXPECT_NE(screen.findTitle("Warning"), None);
    closeWarnings();
    EXPECT_TRUE(blank(screen.capture(pair.plot)));
    expectAlive(pair);
}

} // namespace programs
