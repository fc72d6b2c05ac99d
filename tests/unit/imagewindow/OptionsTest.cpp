// SPDX-License-Identifier: MIT
#include "platform/imagewindow/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace viewer;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(Options, ReadsEveryOption)
{
    const ParsedOptions parsed =
        parseOptions({"--zoom", "1/4", "--section", "3,2", "--wavelengths", "1,3", "--geometry",
                      "640x480+10-20", "--panels", "time", "--canvas", "x11", "a.tif", "b.tif"});
    ASSERT_TRUE(parsed.options) << parsed.text;
    const Options& options = *parsed.options;
    EXPECT_THAT(options.files, ElementsAre("a.tif", "b.tif"));
    EXPECT_DOUBLE_EQ(options.zoom.value(), 0.25);
    EXPECT_EQ(options.z, 2);
    EXPECT_EQ(options.t, 1);
    EXPECT_THAT(options.wavelengths, ElementsAre(0, 2));
    EXPECT_EQ(options.geometry, "640x480+10-20");
    EXPECT_EQ(options.panels, protocol::TimePanels);
    EXPECT_EQ(options.canvas, CanvasKind::Plain);
    EXPECT_FALSE(options.scratch || options.fit);
}

TEST(Options, AListEndsBeforeTheFile)
{
    for (const char* file : {"7", "cells.tif"}) {
        const ParsedOptions parsed =
            parseOptions({"--wavelengths", "2", "--colors", "cyan", "--section", "3", file, "b.tif"});
        ASSERT_TRUE(parsed.options) << parsed.text;
        EXPECT_THAT(parsed.options->files, ElementsAre(file, "b.tif"));
        EXPECT_THAT(parsed.options->colors, ElementsAre(6));
        EXPECT_EQ(parsed.options->z, 2);
        EXPECT_EQ(parsed.options->t, 0);
        EXPECT_THAT(parsed.options->wavelengths, ElementsAre(1));
    }
}

TEST(Options, Zooms)
{
    const std::pair<const char*, double> rows[] = {{"2", 2},     {"0.5", 0.5}, {".5", 0.5}, {"1/16", 0.0625},
                                                   {"3/2", 1.5}, {"50%", 0.5}, {"32", 32}};
    for (const auto& [text, zoom] : rows) {
        const ParsedOptions parsed = parseOptions({"--zoom", text, "a.tif"});
        ASSERT_TRUE(parsed.options) << text << ": " << parsed.text;
        EXPECT_DOUBLE_EQ(parsed.options->zoom.value_or(0), zoom);
    }
    const ParsedOptions fit = parseOptions({"--zoom=fit", "a.tif"});
    EXPECT_TRUE(fit.options->fit);
    EXPECT_FALSE(fit.options->zoom);
}

TEST(Options, RefusesWithOneSentence)
{
    const struct {
        std::vector<std::string> arguments;
        const char* part;
    } rows[] = {
        {{"--scratch"}, "exactly one file"},
        {{"--zoom", "0", "a.tif"}, "zoom"},
        {{"--zoom", "33", "a.tif"}, "33"},
        {{"--zoom", "1/0", "a.tif"}, "1/0"},
        {{"--zoom", "twice", "a.tif"}, "twice"},
        {{"--section", "0", "a.tif"}, "section"},
        {{"--section", "x", "a.tif"}, "section"},
        {{"--section", "1,2,3", "a.tif"}, "section"},
        {{"--wavelengths", "1,2,3,4,5,6", "a.tif"}, "wavelengths"},
        {{"--panels", "sideways", "a.tif"}, "sideways"},
        {{"--geometry", "large", "a.tif"}, "large"},
        {{"--bogus", "a.tif"}, "--bogus"},
        {{"--scratch", "a.tif", "b.tif"}, "--scratch"},
    };
    for (const auto& row : rows) {
        const ParsedOptions parsed = parseOptions(row.arguments);
        EXPECT_FALSE(parsed.options) << row.part;
        EXPECT_EQ(parsed.status, 2) << row.part;
        EXPECT_THAT(parsed.text, HasSubstr(row.part));
        EXPECT_EQ(std::count(parsed.text.begin(), parsed.text.end(), '\n'), 1) << parsed.text;
    }
}

TEST(Options, HelpAndVersionEndWithStatusZero)
{
    for (const char* option : {"--help", "--version"}) {
        const ParsedOptions parsed = parseOptions({option});
        EXPECT_FALSE(parsed.options);
        EXPECT_EQ(parsed.status, 0);
        EXPECT_THAT(parsed.text, HasSubstr("imagewindow"));
    }
}
