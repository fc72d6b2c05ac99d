// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/Readout.h"
#include "tests/unit/imagewindow/FakeImage.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

using namespace viewer;
using viewertest::FakeImage;

TEST(Readout, PixelAndValues)
{
    using Items = std::vector<std::string>;
    EXPECT_EQ(pixelItems("", 12, 0, {{"DAPI", 1450.0F}, {"w 2", 0.125F}}),
              (Items{"x 12  y 0", "DAPI 1450", "w 2 0.125"}));
    EXPECT_EQ(pixelItems("z 3", 1, 2, {{"DAPI", std::nullopt}}), (Items{"z 3", "x 1  y 2", "DAPI -"}));
    EXPECT_EQ(pixelItems("", 0, 0, {{"a", 16777215.0F}, {"b", -3.0F}}),
              (Items{"x 0  y 0", "a 1.677722e+07", "b -3"}));
    EXPECT_EQ(
        pixelItems("", 0, 0, {{"", 16777215.0F, true}, {"nuclei", 3.0F, true}, {"", std::nullopt, true}}),
        (Items{"x 0  y 0", "label 16777215", "nuclei label 3", "label -"}));
    EXPECT_EQ(pixelItems("", 0, 0, {{std::string(270000, 'n'), 65535.0F}}).back(),
              "nnnnnnnnnnnnnnnnnnnnn... 65535");
}

TEST(Readout, NamesOfWavelengths)
{
    FakeImage file(4, 4, 3);
    file.description.wavelengths[0].name = "AF647";
    file.description.wavelengths[1].nanometres = 525;
    EXPECT_EQ(wavelengthName(file.info(), 0), "AF647");
    EXPECT_EQ(wavelengthName(file.info(), 1), "525 nm");
    EXPECT_EQ(wavelengthName(file.info(), 2), "w 3");
}

TEST(Readout, StagePositionAndTime)
{
    FakeImage file(4, 4);
    image::ImageInfo& info = file.description;
    EXPECT_EQ(stageText(file, scaleOf(info, {}), {}, 1, 1), ""); // uncalibrated
    info.calibrated = true;
    info.spacing[0] = 0.5F;
    info.spacing[1] = 0.25F;
    info.spacing[2] = 2;
    info.zCalibrated = true;
    EXPECT_EQ(stageText(file, scaleOf(info, {}), {}, 10, 10), "position 5.00, 2.50 µm");
    info.sizeZ = 4;
    EXPECT_EQ(stageText(file, scaleOf(info, {}), {.z = 3}, 10, 10), "position 5.00, 2.50, 6.00 µm");
    file.header = [](int field) -> std::optional<double> { return field == 1 ? 12.5 : field * 1000.0; };
    EXPECT_EQ(stageText(file, scaleOf(info, {}), {.z = 3}, 10, 10), "stage 2005.00, 3002.50, 4000.00 µm");
    info.sizeT = 9;
    EXPECT_EQ(stageText(file, scaleOf(info, {}), {.z = 3}, 10, 10),
              "stage 2005.00, 3002.50, 4000.00 µm   12.5 s");
}

TEST(Readout, ANameIsOneLineWhateverItHolds)
{
    const std::pair<std::string, std::string> cases[] = {
        {"/data/cells \xc2\xb5m.tif", "/data/cells \xc2\xb5m.tif"},
        {"a\nwindow 7: b", "a\\nwindow 7: b"},
        {"\x1b[2J\t\x7f", "\\x1b[2J\\x09\\x7f"},
        {"a\\nb", "a\\\\nb"},
    };
    for (const auto& [name, line] : cases)
        EXPECT_EQ(onOneLine(name), line);
}
