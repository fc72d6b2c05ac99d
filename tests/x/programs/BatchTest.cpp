// SPDX-License-Identifier: MIT
// Segments drawn in the real tool and written by it, against batchprofile on the same segments and on the
// tool's file.
#include "tests/Folders.h"
#include "tests/x/programs/Sheet.h"

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace programs {

class Batch : public SheetTest {
protected:
    std::string problemOf(const std::string& options)
    {
        return support::problemOf(
            {"/bin/sh", "-c",
             "cd " + folder.path.string() + " && " BIN_DIR "/batchprofile --quiet " + options});
    }
    // All cells but the times of saving, the second row of a block.
    static std::string cellsOf(const fs::path& path)
    {
        std::ifstream file(path);
        std::string text, last;
        for (std::string line; std::getline(file, line); last = line)
            if (last.find("cells.ome.tif\"") == std::string::npos)
                text += line + "\n";
        return text;
    }
};

TEST_F(Batch, WritesTheFileOfTheTool)
{
    const fs::path image = sample("cells.ome.tif", "--size 300x200 --z 1 --time 1 --channels 3");
    const std::vector<std::pair<Point, Point>> segments = {
        {{30, 40}, {270, 160}}, {{200, 180}, {120, 20}}, {{5, 190}, {290, 190}}, {{150, 10}, {150, 15}},
        {{280, 20}, {20, 30}},  {{99, 100}, {60, 61}},   {{10, 10}, {190, 190}}, {{250, 5}, {255, 195}}};
    drive::Pair pair = open({"--zoom", "1", image});
    screen.clickCentre(pair.setting(drive::Pair::FwhmToggle));
    std::ofstream lines(folder / "lines.csv");
    lines << "name,x0_px,y0_px,x1_px,y1_px\n";
    int count = 0;
    for (const auto& [from, to] : segments) {
        pair.dragSegment(from.x, from.y, to.x, to.y);
        save(pair, std::to_string(++count));
        lines << count << ',' << from.x << ',' << from.y << ',' << to.x << ',' << to.y << '\n';
    }
    lines.close();
    write(pair, folder / "tool.slk");
    expectDone(pair);
    ASSERT_EQ(problemOf("--lines lines.csv --samples slk --out own " + image.string()), "");
    EXPECT_GT(cellsOf(folder / "tool.slk").size(), 50000U);
    EXPECT_EQ(cellsOf(folder / "own.samples.slk"), cellsOf(folder / "tool.slk"));
    // And again from the file that the tool has written, which names the image.
    ASSERT_EQ(problemOf("--lines tool.slk --samples slk --out again"), "");
    EXPECT_EQ(cellsOf(folder / "again.samples.slk"), cellsOf(folder / "tool.slk"));
}

} // namespace programs
