// The image file vanishes, shrinks or becomes another one while a segment is dragged.
#include "tests/x/programs/Programs.h"

#include <X11/keysym.h>

#include <fstream>

using drive::Pair;

namespace programs {

namespace {

const Point from{20, 30};
const std::vector<int> allChannels{0, 1, 2, 3};

} // namespace

class Faults : public ProgramsTest {
protected:
    fs::path makeImage(const std::string& name, const std::string& compression)
    {
        return sample(name, {"--pattern", "ramp", "--size", "400x300", "--z", "3", "--time", "1",
                             "--channels", "4", "--compression", compression});
    }
    // Moves to and fro, so that the file is read again and again; ends at (x, y).
    void dragOn(int x, int y, Pair& pair)
    {
        for (int i = 0; i < 20; ++i)
            screen.moveTo(pair.canvas, x - 20 + i, y - 40 + 2 * i);
        screen.moveTo(pair.canvas, x, y);
    }
    // The plot is empty or shows whole curves: of the wavelengths that can still be read.
    void expectWholeCurves(Pair& pair, Point to)
    {
        ASSERT_TRUE(drive::waitUntilCalm(screen));
        const drive::Picture plot = screen.capture(pair.plot);
        bool good = blank(plot);
        for (unsigned readable = 1; readable < 16 && !good; ++readable) {
            std::vector<int> channels;
            for (const int c : allChannels)
                if (readable & 1U << c)
                    channels.push_back(c);
            const std::vector<Curve> curves = rampCurves(from, to, channels);
            good = plotProblem(plot, curves, rangeOf(curves)).empty();
        }
        EXPECT_TRUE(good);
    }
    void expectAlive(Pair& pair)
    {
        EXPECT_TRUE(pair.tool->running());
        EXPECT_TRUE(pair.viewer.running());
        // It answers: the line is measured whatever the values are.
        const std::string message = pair.message();
        EXPECT_EQ(message.find("Line length "), 0U) << message;
    }
    void confirmAllWarnings()
    {
        while (screen.findTitleNow("Warning") != None)
            ASSERT_TRUE(confirm("Warning"));
    }
};

TEST_F(Faults, TheFileChangesDuringADrag)
{
    const fs::path other = makeImage("other.ome.tif", "none");
    const struct {
        const char* name;
        std::function<void(const fs::path&)> change;
    } rows[] = {
        {"deleted",   [](const fs::path& image) { fs::remove(image); }                             },
        {"truncated", [](const fs::path& image) { fs::resize_file(image, 5000); }                  },
        {"emptied",   [](const fs::path& image) { fs::resize_file(image, 0); }                     },
        {"replaced",
         [&](const fs::path& image) {
             fs::copy_file(other, folder / "new");
             fs::rename(folder / "new", image);
         }                                                                                         },
        {"garbage",   [](const fs::path& image) { std::ofstream(image) << std::string(9000, 'x'); }}
    };
    for (const char* compression : {"none", "deflate"})
        for (const auto& row : rows) {
            SCOPED_TRACE(std::string(compression) + " " + row.name);
            const fs::path image = makeImage("image.ome.tif", compression);
            Pair pair = open({image});
            screen.moveTo(pair.canvas, from.x, from.y);
            screen.press();
            dragOn(200, 100, pair);
            expectPlot(pair, rampCurves(from, {200, 100}, allChannels));
            row.change(image);
            dragOn(380, 290, pair);
            screen.release();
            expectWholeCurves(pair, {380, 290});
            confirmAllWarnings();
            expectAlive(pair);
            expectDone(pair);
        }
}

TEST_F(Faults, AnUnreadableSectionIsToldOnce)
{
    const fs::path image = makeImage("image.ome.tif", "none");
    Pair pair = open({image});
    pair.dragSegment(from.x, from.y, 300, 200);
    expectPlot(pair, rampCurves(from, {300, 200}, allChannels));
    // The first section stays, the others are gone.
    fs::resize_file(image, 4 * 400 * 300 * 2 + 1000);
    screen.keyDown(XK_Shift_L);
    screen.click(pair.canvas, 10, 10, 4);
    screen.keyUp(XK_Shift_L);
    EXPECT_TRUE(drive::waitUntil([&] { return pair.display().z == 1; }));
    screen.moveTo(pair.canvas, from.x, from.y);
    screen.press();
    dragOn(300, 200, pair);
    screen.release();
    EXPECT_TRUE(drive::waitUntil([&] { return blank(screen.capture(pair.plot)); }));
    confirmAllWarnings();
    expectAlive(pair);
    expectDone(pair);
}

} // namespace programs
