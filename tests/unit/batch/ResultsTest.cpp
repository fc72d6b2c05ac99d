// SPDX-License-Identifier: MIT
// Pictures, kymographs and HDF5 files, read back by other means, and the same from shards.
#include "platform/image/ImageFile.h"
#include "tests/Rows.h"
#include "tests/unit/batch/BatchRun.h"

#include <cmath>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace batchtest;

class Results : public BatchTest {
protected:
    void SetUp() override
    {
        sample("--size 120x90 --channels 2 --z 2 --time 3 a.ome.tif");
        write("lines.csv", lineHead + "up / down,10,20,100,70\nother,5,80,60.5,10\n");
    }
    // The values of a line's samples, by the rest of their keys.
    std::map<std::string, std::vector<double>> samplesOf(const std::string& name)
    {
        std::map<std::string, std::vector<double>> values;
        for (auto& row : table(name))
            values[row["line"] + " z" + row["z"] + " t" + row["t"] + " c" + row["channel"]].push_back(
                std::stod(row["value"]));
        return values;
    }
};

struct Picture {
    const char* name;
    const char* options;
    const char* beginning;
    const char* read; // writes the texts of the file $1
    const char* text; // that is in them; empty: not to be read
};
class Pictures : public Results, public testing::WithParamInterface<Picture> {};

TEST_P(Pictures, areThereForEachLineAndSection)
{
    const Picture& row = GetParam();
    const Outcome run = batch(std::string("--lines lines.csv --time 2 --out r a.ome.tif ") + row.options);
    ASSERT_EQ(run.status, 0) << run.output;
    const std::string first =
        "r.plots/1-a.ome.tif_1-up___down_p1_t2_z1." + std::string(row.options).substr(8, 3);
    ASSERT_TRUE(has(first));
    EXPECT_TRUE(has("r.plots/1-a.ome.tif_2-other_p1_t2_z2." + std::string(row.options).substr(8, 3)));
    EXPECT_TRUE(read(first).starts_with(row.beginning));
    if (*row.read == 0)
        return;
    const Outcome texts = shell(row.read + (" " + first) + " -");
    EXPECT_NE(texts.output.find(row.text), std::string::npos) << texts.output;
    EXPECT_NE(texts.output.find("Distance (\u00b5m)"), std::string::npos) << texts.output;
}

INSTANTIATE_TEST_SUITE_P(Formats, Pictures,
                         testing::Values(Picture{"svg", "--plots svg", "<?xml", "", ""},
                                         Picture{"png", "--plots png", "\x89PNG", "", ""},
                                         Picture{"pdf", "--plots pdf", "%PDF", "pdftotext", "Tubulin"},
                                         Picture{"logarithmic", "--plots pdf --log", "%PDF", "pdftotext",
                                                 "1000"}),
                         RowName());

struct Axis {
    const char* name;
    const char* axis;
    int rows;
};
class Kymographs : public Results, public testing::WithParamInterface<Axis> {};

TEST_P(Kymographs, haveTheSamplesInTheirRows)
{
    const std::string axis = GetParam().axis;
    const Outcome run = batch("--lines lines.csv --samples csv --kymograph " + axis + " --out r a.ome.tif");
    ASSERT_EQ(run.status, 0) << run.output;
    const auto samples = samplesOf("r.samples.csv");
    const std::string fixed = axis == "t" ? "z" : "t";
    const auto file =
        image::ImageFile::open(folder / ("r.kymographs/1-a.ome.tif_1-up___down_p1_" + fixed + "2_c1.tif"));
    EXPECT_EQ(file->info().height, GetParam().rows);
    std::vector<float> row(static_cast<std::size_t>(file->info().width));
    for (int i = 0; i < file->info().height; ++i) {
        ASSERT_TRUE(file->read({}, {0, i, file->info().width - 1, i}, row));
        const std::string at = std::to_string(i + 1);
        const auto found =
            samples.find(axis == "t" ? "up / down z2 t" + at + " c1" : "up / down z" + at + " t2 c1");
        ASSERT_NE(found, samples.end());
        EXPECT_EQ(std::vector<double>(row.begin(), row.end()), found->second);
    }
    const double length = std::stod(table("r.summary.csv")[0]["length_um"]);
    EXPECT_NEAR(file->info().spacing[0], length / file->info().width, 1e-4);
}

INSTANTIATE_TEST_SUITE_P(Axes, Kymographs, testing::Values(Axis{"time", "t", 3}, Axis{"z", "z", 2}),
                         RowName());

TEST_F(Results, areInHdf5AsInTheTable)
{
    for (const char* how : {"--line digital", "--line band --width 3"}) {
        ASSERT_EQ(batch(std::string("--lines lines.csv --samples csv --out c a.ome.tif ") + how).status, 0);
        ASSERT_EQ(batch(std::string("--lines lines.csv --samples hdf5 --out h a.ome.tif ") + how).status, 0);
        write("read.py", "import sys\ntry:\n  import h5py, csv\nexcept ImportError:\n  sys.exit(77)\n"
                         "f = h5py.File('h.samples.h5')\nrows = list(csv.DictReader(open('c.samples.csv')))\n"
                         "p, s = f['profiles'], f['samples']\n"
                         "assert sum(p['samples'][:]) == len(rows) == len(s['value'])\n"
                         "at = [i for i, n in enumerate(p['samples'][:]) for _ in range(n)]\n"
                         "keys = {k: p[k][:] for k in ('line', 'z', 't', 'channel')}\nvalue = s['value'][:]\n"
                         "for i, row in enumerate(rows):\n"
                         "  assert keys['line'][at[i]].decode() == row['line']\n"
                         "  assert all(keys[k][at[i]] == int(row[k]) for k in ('z', 't', 'channel'))\n"
                         "  assert (str(value[i]) == 'nan') == (row['value'] == '')\n"
                         "  assert row['value'] == '' or value[i] == float(row['value']), (i, row)\n"
                         "  assert s['pixels'][i] == int(row['pixels']) if i % 500 == 0 else True\n");
        const Outcome other = shell("/usr/bin/python3 read.py");
        if (other.status == 77)
            GTEST_SKIP() << "h5py is not installed";
        EXPECT_EQ(other.status, 0) << other.output;
    }
}

TEST_F(Results, areTheSameBytesFromShards)
{
    const std::string run = "--lines lines.csv --samples hdf5 --kymograph t --plots svg a.ome.tif --out ";
    ASSERT_EQ(batch(run + "whole").status, 0);
    for (const char* shard : {"2/3", "1/3", "3/3"})
        ASSERT_EQ(batch(std::string("--shard ") + shard + " " + run + "parts").status, 0);
    ASSERT_EQ(batch("merge --out parts").status, 0);
    EXPECT_TRUE(read("whole.samples.h5") == read("parts.samples.h5"));
    int files = 0;
    for (const char* results : {".kymographs", ".plots"})
        for (const auto& entry :
             std::filesystem::directory_iterator(folder / (std::string("whole") + results))) {
            ++files;
            EXPECT_TRUE(read("parts" + std::string(results) + "/" + entry.path().filename().string()) ==
                        readBytes(entry.path()))
                << entry.path();
        }
    EXPECT_EQ(files, 2 * 2 * 2 + 2 * 3 * 2);
}

} // namespace
