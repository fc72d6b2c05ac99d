// SPDX-License-Identifier: MIT
// The same bytes whatever the number of jobs and shards, and after a run was broken off and went on.
#include "drive/Process.h"
#include "tests/unit/batch/BatchRun.h"

#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace batchtest;

class SameResults : public BatchTest {
protected:
    void SetUp() override
    {
        for (const char* name : {"a", "b", "c"})
            sample("--size 200x150 --channels 2 --z 3 --time 2 --seed " + std::to_string(name[0]) + " " +
                   name + ".ome.tif");
        write("broken.tif", "II*\0broken");
        write("lines.csv", lineHead + "one,10,20,150,100\ntwo,150.5,5,20,140\nout,10,10,300,10\n");
    }
    static constexpr const char* run = "--lines lines.csv --samples csv --out ";
    static constexpr const char* images = " a.ome.tif broken.tif b.ome.tif c.ome.tif";

    void expectSame(const std::string& prefix, const std::string& other)
    {
        for (const char* ending : {".summary.csv", ".samples.csv", ".errors.csv"}) {
            EXPECT_GT(read(prefix + ending).size(), 100U);
            EXPECT_TRUE(read(prefix + ending) == read(other + ending)) << ending;
        }
    }
};

TEST_F(SameResults, whateverTheNumberOfJobs)
{
    EXPECT_EQ(batch(std::string("--jobs 1 ") + run + "one" + images).status, 2);
    EXPECT_EQ(table("one.summary.csv").size(), 3U * 12 * 2);
    EXPECT_EQ(table("one.errors.csv").size(), 1U + 3 * 12);
    EXPECT_EQ(batch(std::string("--jobs 7 ") + run + "many" + images).status, 2);
    expectSame("one", "many");
}

TEST_F(SameResults, ofShardsInAnyOrder)
{
    ASSERT_EQ(batch(std::string(run) + "whole" + images).status, 2);
    for (const int shard : {2, 5, 1, 4, 3})
        batch("--shard " + std::to_string(shard) + "/5 " + run + "parts" + images);
    EXPECT_EQ(batch("merge --out parts").status, 2);
    expectSame("whole", "parts");
    std::filesystem::remove_all(folder / "parts.3-of-5.parts");
    const Outcome missing = batch("merge --out parts");
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.output.find("3-of-5"), std::string::npos) << missing.output;
}

TEST_F(SameResults, ofShardsThatBelongTogetherOnly)
{
    batch(std::string("--shard 1/2 ") + run + "parts" + images);
    batch(std::string("--shard 2/2 --channels 1 ") + run + "parts" + images);
    const Outcome outcome = batch("merge --out parts");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.output.find("other images, lines or options"), std::string::npos) << outcome.output;
    EXPECT_FALSE(has("parts.summary.csv"));
}

TEST_F(SameResults, whenABadImageWasMended)
{
    ASSERT_EQ(batch(std::string(run) + "r" + images).status, 2);
    const auto partBytes = std::filesystem::file_size(folder / "r.parts/summary.csv");
    std::filesystem::copy_file(folder / "a.ome.tif", folder / "broken.tif",
                               std::filesystem::copy_options::overwrite_existing);
    batch(std::string("--resume ") + run + "r" + images);
    batch(std::string(run) + "fresh" + images);
    expectSame("fresh", "r");
    // What has no problems was not measured again: the sections of the mended image, and those with the bad
    // line.
    EXPECT_GT(std::filesystem::file_size(folder / "r.parts/summary.csv"), partBytes);
}

TEST_F(SameResults, whenAllIsThereAlready)
{
    write("lines.csv", lineHead + "one,10,20,150,100\n");
    ASSERT_EQ(batch(std::string(run) + "r a.ome.tif b.ome.tif").status, 0);
    const auto before = std::filesystem::last_write_time(folder / "r.summary.csv");
    const Outcome again = batch(std::string("--resume ") + run + "r a.ome.tif b.ome.tif");
    EXPECT_EQ(again.output, "All of it is there already.\n");
    EXPECT_EQ(std::filesystem::last_write_time(folder / "r.summary.csv"), before);
    std::filesystem::copy_file(folder / "c.ome.tif", folder / "b.ome.tif",
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_NE(batch(std::string("--resume ") + run + "r a.ome.tif b.ome.tif").output, again.output);
    ASSERT_EQ(batch(std::string(run) + "fresh a.ome.tif b.ome.tif").status, 0);
    EXPECT_TRUE(read("fresh.summary.csv") == read("r.summary.csv"));
}

TEST_F(SameResults, whenOtherOptionsAskForAnotherRun)
{
    batch(std::string(run) + "r" + images);
    const Outcome other = batch(std::string("--resume --channels 1 ") + run + "r" + images);
    EXPECT_EQ(other.status, 1);
    EXPECT_NE(other.output.find("other images, lines or options"), std::string::npos);
}

// Ends a run in the midst of it, by each signal, and goes on.
class BrokenOff : public BatchTest, public testing::WithParamInterface<int> {};

TEST_P(BrokenOff, goesOnWithWhatWasFinished)
{
    sample("--size 400x400 --channels 4 --z 10 --time 5 --compression none --pattern ramp big.ome.tif");
    std::string lines = lineHead;
    for (int i = 0; i < 200; ++i)
        lines += std::to_string(i) + "," + std::to_string(i) + ",0,399," + std::to_string(399 - i) + "\n";
    write("lines.csv", lines);
    const std::vector<std::string> arguments = {"--lines",
                                                (folder / "lines.csv").string(),
                                                "--jobs",
                                                "2",
                                                "--out",
                                                (folder / "r").string(),
                                                (folder / "big.ome.tif").string()};
    std::vector<std::string> command = {BIN_DIR "/batchprofile"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    drive::Process process(command);
    const auto begun = [&] { return read("r.parts/journal").find("unit ") != std::string::npos; };
    ASSERT_TRUE(drive::waitUntil(begun));
    process.signal(GetParam());
    const std::optional<int> status = process.wait();
    ASSERT_TRUE(status.has_value());
    EXPECT_EQ(*status, GetParam() == SIGKILL ? 128 + SIGKILL : 130);
    EXPECT_FALSE(has("r.summary.csv")) << "results are whole or not there";
    const std::string journal = read("r.parts/journal");
    const auto finished = static_cast<std::size_t>(std::count(journal.begin(), journal.end(), '\n'));
    EXPECT_GT(finished, 3U);
    EXPECT_LT(finished, 200U);
    // From another folder with the same words.
    std::string words;
    for (const std::string& word : arguments)
        words += " " + word;
    ASSERT_EQ(batch("--resume" + words).status, 0);
    ASSERT_EQ(batch("--jobs 1 --lines lines.csv --out fresh " + (folder / "big.ome.tif").string()).status, 0);
    EXPECT_TRUE(read("fresh.summary.csv") == read("r.summary.csv"));
}

INSTANTIATE_TEST_SUITE_P(Signals, BrokenOff, testing::Values(SIGTERM, SIGINT, SIGKILL),
                         [](const auto& info) { return "Signal" + std::to_string(info.param); });

} // namespace
