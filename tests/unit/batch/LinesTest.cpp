// SPDX-License-Identifier: MIT
// Lines from tables, GeoJSON and the tool's spreadsheets; what is wrong with them is said and the rest is
// read.
#include "batch/lines/LineFile.h"
#include "tests/Rows.h"
#include "tests/unit/image/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

using namespace batch;

struct Reading {
    LineList list;
    std::string refusal;
};

Reading readText(const std::string& text)
{
    const TempFolder folder;
    writeBytes(folder / "lines", text);
    Reading reading;
    try {
        readLineFile(folder / "lines", reading.list);
    } catch (const LineFileError& error) {
        reading.refusal = error.what();
    }
    return reading;
}

// "name x,y x,y [z/t/p] [image] [width] [um]" for each line.
std::string described(const LineList& list)
{
    std::string text;
    const auto number = [](double value) {
        char digits[32];
        std::snprintf(digits, sizeof digits, "%g", value);
        return std::string(digits);
    };
    for (const Line& line : list.lines) {
        text += (text.empty() ? "" : "; ") + line.name;
        for (const Point& point : list.pointsOf(line))
            text += " " + number(point.x) + "," + number(point.y);
        if (line.section != SectionChoice{})
            text += " " + std::to_string(line.section.z) + "/" + std::to_string(line.section.t) + "/" +
                    std::to_string(line.section.p);
        if (line.image > 0)
            text += " " + list.images[line.image];
        if (line.width > 0)
            text += " w" + number(double{line.width});
        text += line.microns ? " um" : "";
    }
    return text;
}

struct Case {
    const char* name;
    std::string text;
    std::string lines;        // as described()
    std::size_t problems = 0; // single lines that cannot be measured
    std::string refusal = ""; // of the whole file: words of the sentence
};
class LineFiles : public testing::TestWithParam<Case> {};

TEST_P(LineFiles, giveTheirLines)
{
    const Reading reading = readText(GetParam().text);
    EXPECT_EQ(described(reading.list), GetParam().lines);
    EXPECT_EQ(reading.list.problems.size(), GetParam().problems);
    if (GetParam().refusal.empty())
        EXPECT_EQ(reading.refusal, "");
    else
        EXPECT_NE(reading.refusal.find(GetParam().refusal), std::string::npos) << reading.refusal;
    for (const LineProblem& problem : reading.list.problems)
        EXPECT_TRUE(problem.sentence.ends_with('.')) << problem.sentence;
}

const std::string head = "name,x0_px,y0_px,x1_px,y1_px\n";

INSTANTIATE_TEST_SUITE_P(
    Tables, LineFiles,
    testing::Values(Case{"plain", head + "a,1,2,3,4\nb,5,6,7,8.5\n", "a 1,2 3,4; b 5,6 7,8.5"},
                    Case{"windowsLinesAndMark",
                         "\xef\xbb\xbf"
                         "x0_px,y0_px,x1_px,y1_px,name\r\n1,2,3,4,a\r\n\r\n",
                         "a 1,2 3,4"},
                    Case{"semicolons", "name;x0_px;y0_px;x1_px;y1_px\na;1;2;3;4", "a 1,2 3,4"},
                    Case{"quotes", head + "\"a, \"\"b\"\"\nc\",1,2,\"3\",4\n", "a, \"b\"\nc 1,2 3,4"},
                    Case{"microns", "x0_um,y0_um,x1_um,y1_um\n1,2,3,4\n", "lines:2 1,2 3,4 um"},
                    Case{"pixelsBeforeMicrons",
                         "x0_um,y0_um,x1_um,y1_um,x0_px,y0_px,x1_px,y1_px\n1,2,3,4,5,6,7,8\n",
                         "lines:2 5,6 7,8"},
                    Case{"sectionAndImage",
                         "name,image,z,t,p,width_px,x0_px,y0_px,x1_px,y1_px\na,b.tif,2,3,,4.5,1,2,3,4\n",
                         "a 1,2 3,4 2/3/0 b.tif w4.5"},
                    Case{"notANumber", head + "a,nan,2,3,4\nb,1,2,3,inf\nc,1,2,3,\nd,1,2,3,4 px\ne,1,2,3,4\n",
                         "e 1,2 3,4", 4},
                    Case{"farAway", head + "a,1e300,2,3,4\n", "", 1},
                    Case{"shortRow", head + "a,1,2\n", "", 1},
                    Case{"sectionZero", "z,x0_px,y0_px,x1_px,y1_px\n0,1,2,3,4\n1.5,1,2,3,4\n2,1,2,3,4\n",
                         "lines:4 1,2 3,4 2/0/0", 2},
                    Case{"openQuote", head + "a,1,2,3,4\n\"b,1,2,3,4\nc,1,2,3,4\n", "a 1,2 3,4", 1},
                    Case{"noColumns", "name,x,y\n1,2,3\n", "", 0, "has neither the columns"},
                    Case{"empty", "", "", 0, "is empty"},
                    Case{"binary", std::string("\0\1\2\3", 4), "", 0, "has neither the columns"}),
    RowName());

std::string feature(const std::string& geometry, const std::string& properties)
{
    return R"({"type":"Feature","properties":)" + properties + R"(,"geometry":)" + geometry + "}";
}
std::string collection(const std::string& features)
{
    return R"({"type":"FeatureCollection","features":[)" + features + "]}";
}
const std::string string3 = R"({"type":"LineString","coordinates":[[1,2],[3,4],[5.5,6,9]]})";
const std::string multi = R"({"type":"MultiLineString","coordinates":[[[1,2],[3,4]],[[5,6],[7,8]]]})";
const std::string area = R"({"type":"Polygon","coordinates":[[[1,2],[3,4],[5,6],[1,2]]]})";
constexpr std::size_t million = 1'000'000;

INSTANTIATE_TEST_SUITE_P(
    GeoJson, LineFiles,
    testing::Values(
        Case{"collection",
             collection(feature(string3, R"({"name":"a","z":2})") + "," + feature(multi, "null")),
             "a 1,2 3,4 5.5,6 2/0/0; lines:2.1 1,2 3,4; lines:2.2 5,6 7,8"},
        Case{"properties", feature(string3, R"({"name":7,"image":"b.tif","t":1,"p":3,"width_px":2.5})"),
             "7 1,2 3,4 5.5,6 0/1/3 b.tif w2.5"},
        Case{"geometryAlone", " \n" + multi, "lines:1.1 1,2 3,4; lines:1.2 5,6 7,8"},
        Case{"areasAreNoLines", collection(feature(area, "{}") + "," + feature(string3, R"({"name":"a"})")),
             "a 1,2 3,4 5.5,6", 1},
        Case{"wrongCoordinates",
             collection(feature(R"({"type":"LineString","coordinates":[["1",2],[3,4]]})", "{}") + "," +
                        feature(R"({"type":"LineString","coordinates":7})", "{}") + "," +
                        feature(R"({"type":"LineString","coordinates":{"a":1}})", "{}") + "," +
                        feature("null", "[]")),
             "", 4},
        Case{"cutOff", collection(feature(string3, "{}")).substr(0, 120), "", 0, "is damaged JSON"},
        Case{"otherJson", R"({"a":[1,2]})", "", 0, "holds no feature"},
        Case{"deepArrays", R"({"a":)" + std::string(million, '['), "", 0, "nests deeper"},
        Case{"deepObjects",
             [] {
                 std::string text;
                 for (std::size_t i = 0; i < million; ++i)
                     text += R"({"a":)";
                 return text;
             }(),
             "", 0, "nests deeper"}),
    RowName());

const std::string sheet =
    "ID;PKelvora Line Profile\nB;Y20;X8\n"
    "C;X1;Y1;K\"/a/b.tif\"\nC;X1;Y2;K\"Mon\"\nC;X1;Y3;K\"Segment\"\nC;X2;Y3;K\"Z Section\"\n"
    "C;X1;Y4;K\"1\"\nC;X2;Y4;K\"3\"\nC;X3;Y4;K\"2\"\n"
    "C;X1;Y6;K\"Channel 525\"\nC;X2;Y6;K\"X (pixel)\"\nC;X3;Y6;K\"Y (pixel)\"\n"
    "C;X1;Y7;K\"9.0\"\nC;X2;Y7;K\"10\"\nC;X3;Y7;K\"20\"\n"
    "C;X1;Y8;K\"9.5\"\nC;X2;Y8;K\"11\"\nC;X3;Y8;K\"20\"\n"
    "C;X1;Y9;K\"9.5\"\nC;X2;Y9;K\"12\"\nC;X3;Y9;K\"21\"\n";

INSTANTIATE_TEST_SUITE_P(
    Sheets, LineFiles,
    testing::Values(Case{"oneBlock", sheet + "E\n", "lines:1 10,20 12,21 3/2/0 /a/b.tif"},
                    Case{"cutInTheSamples", sheet.substr(0, sheet.size() - 5),
                         "lines:1 10,20 11,20 3/2/0 /a/b.tif"},
                    Case{"cutBeforeTheSamples", sheet.substr(0, sheet.find("C;X1;Y7")), "", 1},
                    Case{"otherSheet", "ID;PSomething\nC;X1;Y1;K\"a\"\nE\n", "", 0, "holds no profile"}),
    RowName());

TEST(LineFile, isRefusedWhereItCannotBeRead)
{
    LineList list;
    EXPECT_THROW(readLineFile("/no/such/file", list), LineFileError);
    EXPECT_THROW(readLineFile("/", list), LineFileError);
    EXPECT_THROW(readLineFile("/dev/zero", list), LineFileError);
}

} // namespace
