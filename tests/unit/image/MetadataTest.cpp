// Units and colours.
#include "platform/image/Colors.h"
#include "platform/image/Units.h"

#include <gtest/gtest.h>
#include <vector>

using namespace image;

TEST(Units, Lengths)
{
    struct Row {
        const char* unit;
        double microns;
    };
    static constexpr Row rows[] = {
        {"m", 1e6},   {"mm", 1e3},      {"cm", 1e4},   {"\u00b5m", 1}, {"\u03bcm", 1}, {"nm", 1e-3},
        {"pm", 1e-6}, {"\u00c5", 1e-4}, {"in", 25400}, {"ft", 304800}, {"thou", 25.4}, {"pt", 25400.0 / 72},
        {"Mm", 1e12}, {"km", 1e9},      {"dam", 1e7},  {"yd", 914400}, {" um ", 1},    {"micron", 1},
    };
    for (const Row& row : rows)
        EXPECT_NEAR(micronsPer(row.unit).value_or(-1), row.microns, 1e-9 * row.microns) << row.unit;
    for (const char* const none : {"pixel", "reference frame", "", "s", "xm", "\u00b5"})
        EXPECT_FALSE(micronsPer(none)) << none;
}

TEST(Units, Times)
{
    EXPECT_DOUBLE_EQ(secondsPer("s").value(), 1);
    EXPECT_DOUBLE_EQ(secondsPer("ms").value(), 1e-3);
    EXPECT_DOUBLE_EQ(secondsPer("\u00b5s").value(), 1e-6);
    EXPECT_DOUBLE_EQ(secondsPer("min").value(), 60);
    EXPECT_DOUBLE_EQ(secondsPer("h").value(), 3600);
    EXPECT_DOUBLE_EQ(secondsPer("d").value(), 86400);
    EXPECT_FALSE(secondsPer("m"));
}

TEST(Colors, NearestByHue)
{
    EXPECT_EQ(nearestColor({255, 255, 255}), 0);
    EXPECT_EQ(nearestColor({128, 0, 0}), 1);
    EXPECT_EQ(nearestColor({30, 200, 40}), 2);
    EXPECT_EQ(nearestColor({255, 200, 0}), 3);
    EXPECT_EQ(nearestColor({60, 60, 255}), 4);
    EXPECT_EQ(nearestColor({200, 10, 190}), 5);
    EXPECT_EQ(nearestColor({0, 120, 120}), 6);
    EXPECT_FALSE(nearestColor({0, 0, 0}));
}

static std::vector<int> assigned(std::vector<std::string> names, std::vector<ColorHint> hints)
{
    std::vector<Wavelength> wavelengths(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        wavelengths[i].name = names[i];
    assignColors(wavelengths, hints);
    std::vector<int> result;
    for (const Wavelength& wavelength : wavelengths)
        result.push_back(wavelength.colorIndex);
    return result;
}

TEST(Colors, OwnColourThenWavelengthThenDyeThenInTurn)
{
    using Indices = std::vector<int>;
    ColorHint red, emits461, emits668, excites488, black;
    red.color = Rgb{200, 0, 0};
    emits461.emission = 461;
    emits668.emission = 668;
    excites488.excitation = 488;
    black.color = Rgb{0, 0, 0};
    EXPECT_EQ(assigned({""}, {{}}), (Indices{0}));
    EXPECT_EQ(assigned({"", "", ""}, {{}, {}, {}}), (Indices{2, 5, 6}));
    EXPECT_EQ(assigned({"", "", "", ""}, {red, emits461, emits668, excites488}), (Indices{1, 4, 5, 2}));
    EXPECT_EQ(assigned({"AF 647", "mCherry", "EGFP", "Hoechst 33342"}, {{}, {}, {}, {}}),
              (Indices{5, 1, 2, 4}));
    EXPECT_EQ(assigned({"", ""}, {black, {}}), (Indices{2, 5}));
    EXPECT_EQ(assigned({"GFP", "", ""}, {{}, {}, {}}), (Indices{2, 5, 6}));
}
