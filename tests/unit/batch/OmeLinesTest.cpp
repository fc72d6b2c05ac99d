// SPDX-License-Identifier: MIT
#include "batch/lines/OmeLines.h"
#include "tests/unit/image/TempFolder.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using namespace batch;

constexpr const char* document = R"(<?xml version="1.0"?>
<OME xmlns="http://www.openmicroscopy.org/Schemas/OME/2016-06">
<Image ID="Image:0"><Pixels ID="Pixels:0" DimensionOrder="XYCZT" Type="uint8" SizeX="9" SizeY="9" SizeC="1" SizeZ="1"
 SizeT="1"><Channel ID="Channel:0:0"/></Pixels><ROIRef ID="ROI:1"/></Image>
<Image ID="Image:1"><Pixels ID="Pixels:1" DimensionOrder="XYCZT" Type="uint8" SizeX="9" SizeY="9" SizeC="1" SizeZ="1"
 SizeT="1"><Channel ID="Channel:1:0"/></Pixels></Image>
<ROI ID="ROI:0" Name="both"><Union><Line ID="Shape:0" X1="1" Y1="2" X2="3.5" Y2="4" TheZ="0" TheT="2"/>
 <Rectangle ID="Shape:1" X="0" Y="0" Width="1" Height="1"/>
 <Polyline ID="Shape:2" Points="1,2 3,4, 5,6" StrokeWidth="3"/></Union></ROI>
<ROI ID="ROI:1"><Union><Line ID="Shape:3" X1="5" Y1="6" X2="7" Y2="8"/>
 <Line ID="Shape:4" X1="oops" Y1="6" X2="7" Y2="8"/></Union></ROI></OME>)";

TEST(OmeLines, areTheLinesOfTheRegions)
{
    const TempFolder folder;
    writeBytes(folder / "a.companion.ome", document);
    LineList list;
    readOmeLines(folder / "a.companion.ome", list);
    ASSERT_EQ(list.lines.size(), 3U);
    EXPECT_EQ(list.lines[0].name, "both");
    EXPECT_EQ(list.lines[0].section, (SectionChoice{1, 3, 0}));
    EXPECT_EQ(list.lines[1].name, "both.2");
    EXPECT_EQ(list.lines[1].width, 3);
    EXPECT_EQ(list.lines[1].pointCount, 3U);
    EXPECT_EQ(list.lines[2].name, "ROI:1");
    EXPECT_EQ(list.lines[2].section, (SectionChoice{0, 0, 1})) << "of the one position that refers to it";
    EXPECT_EQ(list.problems.size(), 1U);
}

TEST(OmeLines, ofDamagedMetadataAreASentence)
{
    const TempFolder folder;
    writeBytes(folder / "a.companion.ome", std::string(document).substr(0, 700));
    LineList list;
    EXPECT_THROW(readOmeLines(folder / "a.companion.ome", list), std::runtime_error);
}

} // namespace
