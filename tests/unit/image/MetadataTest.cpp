// SPDX-License-Identifier: MIT
// Units and colours.
#include "platform/base/DisplayColors.h"
#include "platform/image/Colors.h"
#include "platform/image/Dyes.h"
#include "platform/image/Units.h"

#include <gtest/gtest.h>
#include <vector>

using namespace image;

struct UnitRow {
    const char* unit;
    double value;
};

TEST(Units, LengthsInMicrons)
{
    static constexpr UnitRow rows[] = {
        {"m", 1e6},     {"mm", 1e3},     {"cm", 1e4},    {"\u00b5m", 1},       {"\u03bcm", 1},
        {"\xb5m", 1},   {"\\u00B5m", 1}, {"um", 1},      {"nm", 1e-3},         {"pm", 1e-6},
        {"Mm", 1e12},   {"km", 1e9},     {"dam", 1e7},   {"in", 25400},        {"inch", 25400},
        {"ft", 304800}, {"yd", 914400},  {"thou", 25.4}, {"pt", 25400.0 / 72}, {"\u00c5", 1e-4},
        {" um ", 1},    {"micron", 1},
    };
    for (const UnitRow& row : rows)
        EXPECT_NEAR(micronsPer(row.unit).value_or(-1), row.value, 1e-9 * row.value) << row.unit;
    for (const char* const none : {"pixel", "reference frame", "", "s", "xm", "\u00b5"})
        EXPECT_FALSE(micronsPer(none)) << none;
}

TEST(Units, TimesInSeconds)
{
    static constexpr UnitRow rows[] = {{"s", 1},    {"ms", 1e-3}, {"\u00b5s", 1e-6},
                                       {"min", 60}, {"h", 3600},  {"d", 86400}};
    for (const UnitRow& row : rows)
        EXPECT_DOUBLE_EQ(secondsPer(row.unit).value_or(-1), row.value) << row.unit;
    EXPECT_FALSE(secondsPer("m"));
}

TEST(Dyes, EmissionByTheChannelsName)
{
    static constexpr UnitRow rows[] = {
        {"DAPI", 461},
        {"Hoechst 33342", 461},
        {"AF647", 665},
        {"AF-568", 603},
        {"Alexa Fluor 488", 519},
        {"ALEXA 405", 421},
        {"A568", 603},
        {"actin (A 594)", -1},
        {"EGFP", 509},
        {"mCherry", 610},
        {"iRFP670", 713},
        {"TagRFP-T", 584},
        {"Cy3", 570},
        {"Cy5.5", 694},
        {"cy5", 670},
        {"Texas Red", 615},
        {"tdTomato", 581},
        {"mKate2", 633},
        {"SiR-DNA", 674},
        {"SiR", 674},
        {"desired", -1},
        {"TRITC", 572},
        {"FITC tubulin", 519},
        {"ATTO 647N", 667},
        {"Area 488", -1},
        {"DIC", -1},
        {"", -1},
        {"Far red", -1},
    };
    for (const UnitRow& row : rows)
        EXPECT_EQ(dyeEmission(row.unit).value_or(-1), row.value) << row.unit;
}

TEST(Colors, NearestByHue)
{
    static constexpr Rgb nearTo[] = {{255, 255, 255}, {128, 0, 0},    {30, 200, 40}, {255, 200, 0},
                                     {60, 60, 255},   {200, 10, 190}, {0, 120, 120}};
    for (int index = 0; index < 7; ++index)
        EXPECT_EQ(nearestColor(nearTo[index]), index);
    EXPECT_FALSE(nearestColor({0, 0, 0}));
}

// As the documentation promises: no red beside green before the fifth, whatever the file has no word about.
TEST(Colors, DefaultsAreSafeForColourBlindEyes)
{
    using base::Blue, base::Cyan, base::Green, base::Magenta, base::Red, base::White, base::Yellow;
    const std::vector<int> turn{Green, Magenta, Cyan, Yellow, Red, Blue, White, Green, Magenta};
    for (std::size_t count = 1; count <= turn.size(); ++count) {
        std::vector<Wavelength> wavelengths(count);
        assignColors(wavelengths, std::vector<ColorHint>(count));
        std::vector<int> colors;
        for (const Wavelength& wavelength : wavelengths)
            colors.push_back(wavelength.colorIndex);
        const std::vector<int> expected(turn.begin(), turn.begin() + static_cast<std::ptrdiff_t>(count));
        EXPECT_EQ(colors, count == 1 ? std::vector<int>{White} : expected) << count;
    }
}

TEST(Colors, OwnColourThenWavelengthThenDyeThenInTurn)
{
    ColorHint none, red, emits461, emits668, excites488, black;
    red.color = Rgb{200, 0, 0};
    emits461.emission = 461;
    emits668.emission = 668;
    excites488.excitation = 488;
    black.color = Rgb{0, 0, 0};
    const struct {
        std::vector<const char*> names;
        std::vector<ColorHint> hints;
        std::vector<int> colors;
    } rows[] = {
        {{""}, {none}, {0}},
        {{"", "", ""}, {none, none, none}, {2, 5, 6}},
        {{"", "", "", ""}, {red, emits461, emits668, excites488}, {1, 4, 5, 2}},
        {{"AF 647", "mCherry", "EGFP", "Hoechst 33342"}, {none, none, none, none}, {5, 1, 2, 4}},
        {{"", ""}, {black, none}, {2, 5}},
        {{"GFP", "", ""}, {none, none, none}, {2, 5, 6}},
    };
    for (const auto& row : rows) {
        std::vector<Wavelength> wavelengths(row.names.size());
        for (std::size_t i = 0; i < row.names.size(); ++i)
            wavelengths[i].name = row.names[i];
        assignColors(wavelengths, row.hints);
        std::vector<int> colors;
        for (const Wavelength& wavelength : wavelengths)
            colors.push_back(wavelength.colorIndex);
        EXPECT_EQ(colors, row.colors) << "first name \"" << row.names[0] << '"';
    }
}
