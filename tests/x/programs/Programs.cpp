#include "tests/x/programs/Programs.h"

#include <X11/keysym.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <sstream>

namespace programs {

std::vector<Point> pixelsBetween(Point from, Point to)
{
    const int dx = to.x - from.x, dy = to.y - from.y;
    const int length = std::max(std::abs(dx), std::abs(dy));
    const auto step = [length](int k, int side) {
        const int steps = length == 0 ? 0 : (2 * k * std::abs(side) + length) / (2 * length);
        return side < 0 ? -steps : steps;
    };
    std::vector<Point> pixels;
    for (int k = 0; k <= length; ++k)
        pixels.push_back({from.x + step(k, dx), from.y + step(k, dy)});
    return pixels;
}

float rampValue(Point pixel, int c, Section section)
{
    const int value = pixel.x + 11 * pixel.y + 101 * section.z + 1009 * c + 10007 * section.t;
    return static_cast<float>(value % 65536);
}

std::vector<Curve> rampCurves(Point from, Point to, const std::vector<int>& channels, Section section)
{
    // Blue, green, red and white, as the plot shows them.
    constexpr drive::Pixel colors[] = {
        {0x66, 0x66, 0xff},
        {0,    255,  0   },
        {255,  0,    0   },
        {255,  255,  255 }
    };
    std::vector<Curve> curves;
    for (const int c : channels) {
        Curve curve{colors[c], {}};
        for (const Point& pixel : pixelsBetween(from, to))
            curve.samples.push_back(rampValue(pixel, c, section));
        curves.push_back(std::move(curve));
    }
    return curves;
}

std::pair<float, float> rangeOf(const std::vector<Curve>& curves)
{
    std::pair range{std::numeric_limits<float>::max(), -std::numeric_limits<float>::max()};
    for (const Curve& curve : curves)
        for (const float value : curve.samples)
            range = {std::min(range.first, value), std::max(range.second, value)};
    return range;
}

namespace {

// Rows that a polyline may touch in every column, a pixel of tolerance included.
struct Band {
    int top = std::numeric_limits<int>::max(), bottom = std::numeric_limits<int>::min();
    void include(int row)
    {
        top = std::min(top, row - 1);
        bottom = std::max(bottom, row + 1);
    }
    bool contains(int row) const { return row >= top && row <= bottom; }
};

Point plotPoint(const Curve& curve, size_t i, const drive::Picture& plot, std::pair<float, float> range)
{
    const float scale = static_cast<float>(plot.height) / (range.second - range.first);
    const int x = static_cast<int>(i) * plot.width / static_cast<int>(curve.samples.size());
    const int y =
        static_cast<int>(range.first * scale) + plot.height - static_cast<int>(scale * curve.samples[i]);
    return {x, y};
}

std::vector<Band> bandsOf(const Curve& curve, const drive::Picture& plot, std::pair<float, float> range)
{
    std::vector<Band> bands(static_cast<size_t>(plot.width));
    for (size_t i = 0; i + 1 < curve.samples.size(); ++i) {
        const Point a = plotPoint(curve, i, plot, range), b = plotPoint(curve, i + 1, plot, range);
        const int between = std::max(1, b.x - a.x);
        for (int x = a.x; x <= b.x; ++x) {
            Band& band = bands[static_cast<size_t>(x)];
            // A pixel's column sees the line half a column before and after its middle.
            for (const double at : {x - a.x - 0.5, x - a.x + 0.5})
                band.include(
                    static_cast<int>(std::lround(a.y + (b.y - a.y) * std::clamp(at / between, 0.0, 1.0))));
            if (a.x == b.x) {
                band.include(a.y);
                band.include(b.y);
            }
        }
    }
    return bands;
}

bool laterColor(const drive::Pixel& pixel, const std::vector<Curve>& curves, size_t first)
{
    return std::any_of(curves.begin() + static_cast<long>(first), curves.end(),
                       [&](const Curve& curve) { return curve.color == pixel; });
}

std::string curveProblem(const drive::Picture& plot, const std::vector<Curve>& curves, size_t c,
                         std::pair<float, float> range)
{
    const std::vector<Band> bands = bandsOf(curves[c], plot, range);
    const auto problem = [c](int x, const std::string& what) {
        return "curve " + std::to_string(c) + ", column " + std::to_string(x) + ": " + what;
    };
    const int last = plotPoint(curves[c], curves[c].samples.size() - 1, plot, range).x;
    for (int x = 0; x < plot.width; ++x) {
        const Band& band = bands[static_cast<size_t>(x)];
        // Butt caps may leave the outermost columns out.
        bool drawn = x == 0 || x >= last || band.top + 1 >= plot.height || band.bottom - 1 < 0;
        for (int y = 0; y < plot.height; ++y) {
            const drive::Pixel& pixel = plot.at(x, y);
            if (pixel == curves[c].color && !band.contains(y))
                return problem(x, "drawn in row " + std::to_string(y));
            // A later curve may cover this one.
            drawn = drawn || (band.contains(y) && laterColor(pixel, curves, c));
        }
        if (!drawn)
            return problem(x, "not drawn in row " + std::to_string(band.top + 1));
    }
    return {};
}

} // namespace

std::string plotProblem(const drive::Picture& plot, const std::vector<Curve>& curves,
                        std::pair<float, float> range)
{
    if (plot.width < 2 || plot.height < 2)
        return "there is no plot";
    for (size_t c = 0; c < curves.size(); ++c)
        if (std::string problem = curveProblem(plot, curves, c, range); !problem.empty())
            return problem;
    const auto foreign = std::find_if(plot.pixels.begin(), plot.pixels.end(), [&](const drive::Pixel& pixel) {
        return pixel != plotBackground && !laterColor(pixel, curves, 0);
    });
    return foreign == plot.pixels.end() ? "" : "the plot shows something besides the curves";
}

int count(const drive::Picture& picture, const drive::Pixel& color)
{
    return static_cast<int>(std::count(picture.pixels.begin(), picture.pixels.end(), color));
}

bool blank(const drive::Picture& plot)
{
    return plot.width > 0 && count(plot, plotBackground) == plot.width * plot.height;
}

std::string readText(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string problemOf(const std::vector<std::string>& command,
                      const std::map<std::string, std::string>& environment)
{
    constexpr drive::Milliseconds longRun{90000};
    drive::Process process(command, environment);
    const std::optional<int> status = process.wait(longRun);
    if (status == 0)
        return {};
    return command.front() + (status ? " ended with " + std::to_string(*status) : " does not end") + ": " +
           process.errors() + process.output();
}

ProgramsTest::ProgramsTest()
{
    std::string name = fs::temp_directory_path() / "programs-XXXXXX";
    if (!mkdtemp(name.data()))
        throw std::runtime_error("cannot make a temporary folder");
    folder = name;
    environment = {
        {"HOME",            folder           },
        {"XDG_CONFIG_HOME", folder / "config"},
        {"XDG_CACHE_HOME",  folder / "cache" }
    };
}

ProgramsTest::~ProgramsTest()
{
    std::error_code error;
    fs::remove_all(folder, error);
}

fs::path ProgramsTest::sample(const std::string& name, const std::vector<std::string>& options)
{
    std::vector<std::string> command{std::string(BIN_DIR) + "/makesample"};
    command.insert(command.end(), options.begin(), options.end());
    command.push_back(folder / name);
    const std::string problem = problemOf(command);
    if (!problem.empty())
        throw std::runtime_error(problem);
    return folder / name;
}

fs::path ProgramsTest::ramp()
{
    return sample("ramp.ome.tif",
                  {"--pattern", "ramp", "--size", "400x300", "--z", "3", "--channels", "4", "--time", "2"});
}

drive::Pair ProgramsTest::open(std::vector<std::string> viewerArguments)
{
    return drive::Pair(screen, BIN_DIR, {std::move(viewerArguments), environment});
}

void ProgramsTest::writeConfig(const std::string& lines)
{
    fs::create_directories(configFile().parent_path());
    std::ofstream(configFile()) << lines;
}

std::unique_ptr<drive::Process> ProgramsTest::startTool(const std::vector<std::string>& arguments)
{
    std::vector<std::string> command{std::string(BIN_DIR) + "/lineprofile"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return std::make_unique<drive::Process>(command, environment);
}

void ProgramsTest::expectPlot(drive::Pair& pair, const std::vector<Curve>& curves)
{
    expectPlot(pair, curves, rangeOf(curves));
}

void ProgramsTest::expectPlot(drive::Pair& pair, const std::vector<Curve>& curves,
                              std::pair<float, float> range)
{
    std::string problem;
    drive::waitUntil([&] {
        problem = plotProblem(screen.capture(pair.plot), curves, range);
        return problem.empty();
    });
    EXPECT_EQ(problem, "");
}

bool ProgramsTest::waitForOverlays(drive::Pair& pair, bool shown)
{
    return drive::waitUntil([&] {
        const drive::Picture canvas = screen.capture(pair.canvas);
        return canvas.width > 0 && (count(canvas, annotation) > 0) == shown;
    });
}

bool ProgramsTest::confirm(const std::string& title)
{
    if (screen.findTitle(title) == None || !drive::waitUntilCalm(screen))
        return false;
    screen.key(XK_Return);
    return drive::waitUntil([&] { return screen.findTitleNow(title) == None; });
}

void ProgramsTest::expectDone(drive::Pair& pair)
{
    screen.clickCentre(pair.button(drive::Pair::Done));
    EXPECT_EQ(pair.tool->wait(), 0) << pair.tool->errors();
    pair.closeImageWindows();
    EXPECT_EQ(pair.viewer.wait(), 0) << pair.viewer.errors();
}

} // namespace programs
