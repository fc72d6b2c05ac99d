// What the tool takes of the machine beside large images. The times are told, not judged: they are the
// machine's.
#include "tests/x/programs/Programs.h"

#include <cstdio>
#include <sstream>

using drive::Pair;

namespace programs {

class Resources : public ProgramsTest {
protected:
    // Resident memory in MB, from the kernel's account of the process.
    static double residentMegabytes(pid_t pid)
    {
        std::istringstream lines(readText("/proc/" + std::to_string(pid) + "/status"));
        long kilobytes = 0;
        for (std::string line; std::getline(lines, line);)
            if (std::sscanf(line.c_str(), "VmRSS: %ld kB", &kilobytes) == 1)
                break;
        return static_cast<double>(kilobytes) / 1024;
    }
};

TEST_F(Resources, TheToolStaysSmallUntilThereIsASegment)
{
    const struct {
        const char* name;
        std::vector<std::string> options;
    } rows[] = {
        {"large.ome.tif", {"--size", "2048x2048", "--z", "1", "--time", "1", "--channels", "5"}},
        {"many.ome.tif",  {"--size", "64x64", "--z", "500", "--time", "20", "--channels", "2"} }
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::vector<std::string> options = row.options;
        options.insert(options.end(), {"--pattern", "ramp", "--compression", "none"});
        Pair pair = open({sample(row.name, options)});
        const double before = residentMegabytes(pair.tool->pid());
        EXPECT_GT(before, 1);
        EXPECT_LT(before, 40);
        const protocol::Geometry geometry = pair.display().geometry;
        pair.dragSegment(geometry.originX + 5, geometry.originY + 5, geometry.originX + 60,
                         geometry.originY + 50);
        EXPECT_TRUE(drive::waitUntil([&] { return !blank(screen.capture(pair.plot)); }));
        std::printf("%s: %.1f MB resident, %.1f MB with a segment\n", row.name, before,
                    residentMegabytes(pair.tool->pid()));
        expectDone(pair);
    }
}

TEST_F(Resources, TheTimeToStartIsTold)
{
    Pair pair = open({sample("large.ome.tif", {"--pattern", "ramp", "--size", "2048x2048", "--z", "1",
                                               "--time", "1", "--channels", "5"})});
    std::string times;
    for (int i = 0; i < 5; ++i) {
        screen.clickCentre(pair.button(Pair::Done));
        ASSERT_EQ(pair.tool->wait(), 0);
        const auto start = std::chrono::steady_clock::now();
        pair.tool = startTool({std::to_string(pair.number)});
        ASSERT_TRUE(drive::waitUntil(
            [&] { return (pair.toolWindow = screen.findTitleNow("Arbitrary Line Profile")) != None; }));
        const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
        times += " " + std::to_string(static_cast<int>(took.count()));
        drive::waitUntilCalm(screen);
    }
    std::printf("tool window up after (ms):%s\n", times.c_str());
    expectDone(pair);
}

} // namespace programs
