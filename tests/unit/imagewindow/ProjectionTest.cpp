// SPDX-License-Identifier: MIT
// Projections against a plain loop, and how a window comes to show them.
#include "platform/imagewindow/render/Projections.h"

#include "drive/Process.h"
#include "platform/imagewindow/render/Renderer.h"
#include "tests/Rows.h"
#include "tests/unit/imagewindow/FakeImage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <mutex>
#include <string>
#include <vector>

using namespace viewer;
using viewertest::FakeImage;

namespace {

constexpr int width = 37, height = 23, sections = 5;

// Differs from section to section in which pixels are bright.
float valueAt(const image::SectionIndex& section, int x, int y)
{
    return static_cast<float>((x * 7 + y * 13 + section.z * section.z * 31 + section.w * 5 + section.t * 3) %
                              101);
}

struct Stack : FakeImage {
    Stack() : FakeImage(width, height, 2)
    {
        description.sizeZ = sections;
        description.sizeT = 2;
        value = valueAt;
    }
};

struct Case {
    const char* name;
    Projection kind;
    double (*join)(const std::vector<double>& values);
};

class ProjectionTest : public testing::TestWithParam<Case> {};

const auto always = [](double) { return true; };

} // namespace

TEST_P(ProjectionTest, IsThatOfAPlainLoop)
{
    Stack file;
    std::string error;
    const std::vector<float> projected = project(file, {GetParam().kind, 1, 1, 0}, always, error);
    ASSERT_EQ(projected.size(), static_cast<std::size_t>(width * height));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            std::vector<double> values;
            for (int z = 0; z < sections; ++z)
                values.push_back(valueAt({z, 1, 1, 0}, x, y));
            EXPECT_FLOAT_EQ(projected[static_cast<std::size_t>(y * width + x)],
                            static_cast<float>(GetParam().join(values)));
        }
}

INSTANTIATE_TEST_SUITE_P(Kinds, ProjectionTest,
                         testing::Values(Case{"Maximum", Projection::Maximum,
                                              [](const std::vector<double>& v) {
                                                  return *std::max_element(v.begin(), v.end());
                                              }},
                                         Case{"Mean", Projection::Mean,
                                              [](const std::vector<double>& v) {
                                                  double sum = 0;
                                                  for (const double each : v)
                                                      sum += each;
                                                  return sum / static_cast<double>(v.size());
                                              }},
                                         Case{"Sum", Projection::Sum,
                                              [](const std::vector<double>& v) {
                                                  double sum = 0;
                                                  for (const double each : v)
                                                      sum += each;
                                                  return sum;
                                              }}),
                         RowName());

TEST(Projection, SumsOfManySectionsKeepTheirLastDigit)
{
    SectionFold sum(Projection::Sum, 1);
    constexpr float large = 1 << 24;
    const float first[] = {large}, more[] = {1};
    sum.add(0, first);
    for (int i = 0; i < 100; ++i)
        sum.add(0, more);
    EXPECT_EQ(sum.result(101)[0], large + 100);
}

TEST(Projection, WhatIsNoNumberIsNeverTheLargest)
{
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    const float values[] = {none, -3, none};
    SectionFold maximum(Projection::Maximum, 1), mean(Projection::Mean, 1);
    for (const float& value : values) {
        maximum.add(0, {&value, 1});
        mean.add(0, {&value, 1});
    }
    EXPECT_EQ(maximum.result(3)[0], -3);
    EXPECT_TRUE(std::isnan(mean.result(3)[0]));
}

TEST(Projection, EndsWhenToldToOrWhenASectionCannotBeRead)
{
    Stack file;
    std::string error;
    double reached = 0;
    const auto half = [&](double share) {
        reached = share;
        return share < 0.5;
    };
    EXPECT_TRUE(project(file, {Projection::Mean, 0, 0, 0}, half, error).empty());
    EXPECT_EQ(error, "");
    EXPECT_GE(reached, 0.5);
    EXPECT_LE(reached, 0.9);
    file.broken = true;
    EXPECT_TRUE(project(file, {Projection::Mean, 0, 0, 0}, always, error).empty());
    EXPECT_EQ(error, "it is broken");
}

TEST(Projections, WhatIsNoLongerWantedIsGivenUp)
{
    Stack file;
    std::mutex gate;
    std::atomic<int> lastWavelength = -1;
    file.value = [&](const image::SectionIndex& section, int x, int y) {
        lastWavelength = section.w;
        if (section.w == 0 && section.z == 1 && x == 0 && y == 0)
            const std::lock_guard wait(gate);
        return valueAt(section, x, y);
    };
    Projections projections(file);
    const ProjectionKey first{Projection::Sum, 0, 0, 0}, second{Projection::Sum, 1, 0, 0};
    {
        const std::lock_guard shut(gate);
        EXPECT_EQ(projections.want({first}), "");
        EXPECT_TRUE(drive::waitUntil([&] { return projections.progress() > 0.1; }));
        EXPECT_TRUE(projections.working());
        projections.want({second});
    }
    EXPECT_TRUE(drive::waitUntil([&] { return projections.find(second) != nullptr; }));
    EXPECT_EQ(projections.find(first), nullptr);
    EXPECT_FALSE(projections.working());
    EXPECT_EQ(projections.progress(), 1);
    projections.want({});
    EXPECT_FALSE(projections.working());
}

TEST(Projections, AnImageThatIsTooLargeIsRefused)
{
    FakeImage file(20000, 20000);
    file.description.sizeZ = 3;
    Projections projections(file);
    EXPECT_NE(projections.want({{Projection::Maximum, 0, 0, 0}}).find("too large"), std::string::npos);
    EXPECT_FALSE(projections.working());
    EXPECT_EQ(file.reads, 0);
}

namespace {

// What a window of a projection draws.
struct Window {
    Stack file;
    Renderer renderer{file};
    View view = initialView(file.info());

    std::string load()
    {
        view.displayed = {true, false};
        const Arrangement arrangement = arrange(file.info(), view, {100, 100}, 15);
        return renderer.load(arrangement.geometry, panelContents(file.info(), view));
    }
    // Until it is there.
    void project(Projection projection)
    {
        view.projection = projection;
        load();
        ASSERT_TRUE(drive::waitUntil([&] { return !renderer.projecting() || renderer.projectingEnded(); }));
        EXPECT_EQ(load(), "");
        EXPECT_FALSE(renderer.projecting());
    }
};

} // namespace

TEST(Projections, TheSectionIsShownUntilTheProjectionIsThere)
{
    Window window;
    window.view.z = 2;
    window.load();
    const auto section = window.renderer.valueAt(0, 0, 3, 4);
    EXPECT_EQ(section, valueAt({2, 0, 0, 0}, 3, 4));
    window.view.projection = Projection::Maximum;
    window.load();
    if (window.renderer.projecting()) {
        EXPECT_EQ(window.renderer.valueAt(0, 0, 3, 4), section);
    }
    window.project(Projection::Maximum);
    EXPECT_EQ(window.renderer.projection(), Projection::Maximum);
    float largest = 0;
    for (int z = 0; z < sections; ++z)
        largest = std::max(largest, valueAt({z, 0, 0, 0}, 3, 4));
    EXPECT_EQ(window.renderer.valueAt(0, 0, 3, 4), largest);
    window.project(Projection::Section);
    EXPECT_EQ(window.renderer.valueAt(0, 0, 3, 4), section);
}

TEST(Projections, EachHasLimitsOfItsOwn)
{
    Window window;
    window.load();
    window.renderer.setLimits(0, {1, 2});
    window.project(Projection::Sum);
    const ContrastLimits sum = window.renderer.limits(0);
    EXPECT_GT(sum.high, 101); // more than any section has
    EXPECT_FALSE(window.renderer.limitsByHand(0));
    EXPECT_GT(window.renderer.sample(0)->range.high, 101);
    window.renderer.setLimits(0, {300, 400});
    window.project(Projection::Section);
    EXPECT_EQ(window.renderer.limits(0), (ContrastLimits{1, 2}));
    window.project(Projection::Sum);
    EXPECT_EQ(window.renderer.limits(0), (ContrastLimits{300, 400}));
    window.renderer.forgetLimits();
    EXPECT_EQ(window.renderer.limits(0), sum);
    EXPECT_FALSE(window.renderer.limitsByHand(0, Projection::Section));
}

TEST(Projections, WhatWasShownStaysUntilTheNextOneIsThere)
{
    Window window;
    window.project(Projection::Maximum);
    const auto before = window.renderer.valueAt(0, 0, 3, 4);
    window.view.t = 1;
    window.load();
    EXPECT_EQ(window.renderer.projection(), Projection::Maximum);
    if (window.renderer.projecting()) {
        EXPECT_EQ(window.renderer.valueAt(0, 0, 3, 4), before);
    }
    window.project(Projection::Maximum);
    EXPECT_NE(window.renderer.valueAt(0, 0, 3, 4), before);
}

TEST(Projections, AFailureIsToldAndTheSectionShown)
{
    Window window;
    window.load();
    window.file.broken = true;
    window.view.projection = Projection::Mean;
    window.load();
    ASSERT_TRUE(drive::waitUntil([&] { return window.renderer.projectingEnded(); }));
    EXPECT_EQ(window.load(), "it is broken");
    EXPECT_EQ(window.renderer.projection(), Projection::Section);
}
