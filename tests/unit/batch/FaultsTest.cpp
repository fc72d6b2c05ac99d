// SPDX-License-Identifier: MIT
// Wrong command lines and bad input: a sentence each, the rest is measured, nothing is lost. And what the
// program is linked with.
#include "tests/Rows.h"
#include "tests/unit/batch/BatchRun.h"

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

namespace {

using namespace batchtest;

struct Wrong {
    const char* name;
    const char* options;
    int status;
    const char* sentence;
};
class WrongCommand : public BatchTest, public testing::WithParamInterface<Wrong> {};

TEST_P(WrongCommand, isASentence)
{
    write("lines.csv", lineHead + "a,1,2,3,4\n");
    const Outcome outcome = batch(GetParam().options);
    EXPECT_EQ(outcome.status, GetParam().status) << outcome.output;
    EXPECT_NE(outcome.output.find(GetParam().sentence), std::string::npos) << outcome.output;
    EXPECT_EQ(std::count(outcome.output.begin(), outcome.output.end(), '\n'), 1) << outcome.output;
}

INSTANTIATE_TEST_SUITE_P(
    Commands, WrongCommand,
    testing::Values(Wrong{"noLines", "a.tif", 2, "There are no lines"},
                    Wrong{"noImages", "--lines lines.csv", 2, "There are no images"},
                    Wrong{"unknownOption", "--lines lines.csv --fast a.tif", 2, "--fast"},
                    Wrong{"backwards", "--lines lines.csv --z 3-1 a.tif", 2, "runs backwards"},
                    Wrong{"noShard", "--lines lines.csv --shard 4/3 a.tif", 2, "is no shard"},
                    Wrong{"noWidth", "--lines lines.csv --line band --width -2 a.tif", 2, "--width"},
                    Wrong{"noSuchLines", "--lines none.csv a.tif", 1, "cannot be read"},
                    Wrong{"noFolder", "--lines lines.csv --out /proc/none/r a.tif", 1, "cannot be made"},
                    Wrong{"nothingToMerge", "merge --out r", 1, "no shards"}),
    RowName());

class BadInput : public BatchTest {};

TEST_F(BadInput, isARowAndTheRunGoesOn)
{
    sample("--size 100x80 --channels 2 --z 1 --time 1 good.ome.tif");
    write("empty.tif", "");
    write("text.tif", "hello");
    write("cut.ome.tif", read("good.ome.tif").substr(0, 3000));
    write("lines.csv", lineHead + "fine,1,2,90,70\nnan,1,nan,3,4\nout,1,2,3,400\npoint,5,5,5.5,5.5\n");
    const Outcome run =
        batch("--lines lines.csv --out r empty.tif text.tif good.ome.tif cut.ome.tif none.tif");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(table("r.summary.csv").size() % 2, 0U);
    EXPECT_EQ(table("r.summary.csv")[0]["line"], "fine");
    std::map<std::string, int> rows;
    for (auto& row : table("r.errors.csv")) {
        EXPECT_TRUE(row["problem"].ends_with('.')) << row["problem"];
        ++rows[row["image"] + ":" + row["line"]];
    }
    EXPECT_EQ(rows["empty.tif:"], 1);
    EXPECT_EQ(rows["text.tif:"], 1);
    EXPECT_EQ(rows["none.tif:"], 1);
    EXPECT_EQ(rows[":nan"], 1);
    EXPECT_EQ(rows["good.ome.tif:out"], 2);
    EXPECT_EQ(rows["good.ome.tif:point"], 2);
    EXPECT_GE(rows["cut.ome.tif:"] + rows["cut.ome.tif:fine"], 1);
}

TEST_F(BadInput, ofSectionsThatAreNotThereIsARowEach)
{
    sample("--size 100x80 --channels 2 --z 2 --time 1 good.ome.tif");
    write("lines.csv", lineHead + "fine,1,2,90,70\nother,1,2,60,70\n");
    EXPECT_EQ(batch("--lines lines.csv --channels 2-3 --z 2,5 --out r good.ome.tif").status, 2);
    EXPECT_EQ(table("r.summary.csv").size(), 2U);
    EXPECT_EQ(table("r.errors.csv").size(), 3U);
}

TEST_F(BadInput, ofAFullDiskEndsTheRunWithoutResults)
{
    sample("--size 100x80 --channels 2 --z 2 --time 1 good.ome.tif");
    write("lines.csv", lineHead + "fine,1,2,90,70\n");
    write("r.summary.csv", "precious");
    const Outcome outcome =
        shell("ulimit -f 1; " BIN_DIR "/batchprofile --samples csv --lines lines.csv --out r good.ome.tif");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.output.find("cannot be written"), std::string::npos) << outcome.output;
    EXPECT_EQ(read("r.summary.csv"), "precious");
}

TEST_F(BadInput, isCountedByADryRun)
{
    sample("--size 100x80 --channels 3 --z 2 --time 2 good.ome.tif");
    write("lines.csv", lineHead + "a,1,2,90,70\nb,1,2,9,7\nnan,nan,2,9,7\n");
    const Outcome outcome = batch("--dry-run --channels 1,3 --lines lines.csv --out r good.ome.tif");
    EXPECT_EQ(outcome.output, "1 image, 8 sections, 16 profiles, 1 problem\n");
    EXPECT_FALSE(has("r.parts"));
}

TEST_F(BadInput, doesNotKeepAnImageFromItsOwnLines)
{
    sample("--size 100x80 --channels 1 --z 1 --time 1 one.ome.tif");
    sample("--size 100x80 --channels 1 --z 1 --time 1 two.ome.tif");
    write("lines.csv", "image,x0_px,y0_px,x1_px,y1_px,name\none.ome.tif,1,2,9,9,first\n" +
                           (folder / "two.ome.tif").string() +
                           ",1,2,9,9,second\nthree.ome.tif,1,2,9,9,third\n,1,2,9,9,all\n");
    EXPECT_EQ(batch("--lines lines.csv --out r one.ome.tif two.ome.tif").status, 2);
    std::string rows;
    for (auto& row : table("r.summary.csv"))
        rows += row["image"] + ":" + row["line"] + " ";
    EXPECT_EQ(rows, "one.ome.tif:first one.ome.tif:all two.ome.tif:second two.ome.tif:all ");
    EXPECT_EQ(table("r.errors.csv")[0]["line"], "third");
}

TEST_F(BadInput, ofLinesInMetadataIsReadWithTheImage)
{
    sample("--size 100x80 --channels 1 --z 1 --time 1 --companion one.ome.tif");
    std::string companion;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path))
        if (entry.path().string().ends_with(".companion.ome"))
            companion = entry.path().filename().string();
    ASSERT_NE(companion, "");
    std::string text = read(companion);
    text.insert(text.rfind("</"),
                R"(<ROI ID="ROI:0" Name="axon"><Union><Line ID="Shape:0" X1="1" Y1="2" X2="50" Y2="60"/>
        <Line ID="Shape:1" X1="1" Y1="2" X2="nan" Y2="60"/></Union></ROI>)");
    write(companion, text);
    const Outcome run = batch("--lines image --out r one.ome.tif");
    EXPECT_EQ(run.status, 2) << run.output;
    ASSERT_EQ(table("r.summary.csv").size(), 1U);
    EXPECT_EQ(table("r.summary.csv")[0]["line"], "axon");
    ASSERT_EQ(table("r.errors.csv").size(), 1U);
    EXPECT_EQ(table("r.errors.csv")[0]["line"], "axon.2");
}

TEST(Batchprofile, needsNoLibraryOfTheWindowSystem)
{
    const TempFolder scratch;
    const std::string list = (scratch / "list").string();
    ASSERT_EQ(std::system(("ldd " BIN_DIR "/batchprofile >" + list).c_str()), 0);
    const std::string libraries = readBytes(list);
    EXPECT_NE(libraries.find("libtiff"), std::string::npos);
    for (const char* library : {"libX11", "libXt", "libXm", "libxcb"})
        EXPECT_EQ(libraries.find(library), std::string::npos) << libraries;
}

} // namespace
