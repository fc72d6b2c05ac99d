// SPDX-License-Identifier: MIT
// Runs batchprofile and makesample in a folder of their own, as a shell would.
#pragma once

#include "batch/lines/Csv.h"
#include "tests/Folders.h"
#include "tests/unit/image/TempFolder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace batchtest {

struct Outcome {
    int status = -1;
    std::string output; // both streams
};

class BatchTest : public testing::Test {
protected:
    Outcome shell(const std::string& command)
    {
        const TempFolder scratch;
        const std::string all =
            "cd " + folder.path.string() + " && (" + command + ") >" + (scratch / "out").string() + " 2>&1";
        const int status = std::system(all.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), readBytes(scratch / "out")};
    }
    Outcome batch(const std::string& options) { return shell(BIN_DIR "/batchprofile " + options); }
    void sample(const std::string& options)
    {
        const Outcome outcome = shell(BIN_DIR "/makesample " + options);
        ASSERT_EQ(outcome.status, 0) << outcome.output;
    }
    void write(const std::string& name, const std::string& text) { writeBytes(folder / name, text); }
    std::string read(const std::string& name) { return readBytes(folder / name); }
    bool has(const std::string& name) { return std::filesystem::exists(folder / name); }
    // The rows of a table, fields by the names of their columns.
    using TableRow = std::map<std::string, std::string>;
    std::vector<TableRow> table(const std::string& name)
    {
        const std::string text = read(name);
        ::batch::CsvReader reader(text);
        std::vector<std::string> header, fields;
        std::vector<TableRow> rows;
        for (reader.next(header); reader.next(fields);) {
            EXPECT_EQ(fields.size(), header.size()) << name << ", line " << reader.line();
            TableRow& row = rows.emplace_back();
            for (std::size_t i = 0; i < std::min(fields.size(), header.size()); ++i)
                row[header[i]] = fields[i];
        }
        return rows;
    }

    TempFolder folder;
};

inline const std::string lineHead = "name,x0_px,y0_px,x1_px,y1_px\n";

} // namespace batchtest
