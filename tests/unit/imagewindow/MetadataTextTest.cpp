// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/MetadataText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace viewer;

namespace {

const image::MetadataTree tree{{-1, "OME", ""},           {0, "Image", "cells"}, {1, "Channel", "DAPI"},
                               {1, "Note", "two\nlines"}, {-1, "TIFF", ""},      {4, "ImageWidth", "512"}};

} // namespace

TEST(MetadataText, RowsComeWithAllBelowThemAndOnce)
{
    const struct {
        const char* name;
        std::vector<int> rows;
        const char* text;
    } cases[] = {
        {"with children", {1}, "Image\tcells\n  Channel\tDAPI\n  Note\ttwo lines\n"},
        {"a leaf", {5}, "ImageWidth\t512\n"},
        {"several, in the order of the file", {5, 2}, "Channel\tDAPI\nImageWidth\t512\n"},
        {"one below another", {2, 1, 3}, "Image\tcells\n  Channel\tDAPI\n  Note\ttwo lines\n"},
        {"below one further up", {0, 3}, "OME\t\n  Image\tcells\n    Channel\tDAPI\n    Note\ttwo lines\n"},
        {"none", {-1, 6}, ""},
    };
    for (const auto& each : cases)
        EXPECT_EQ(rowsText(tree, each.rows), each.text) << each.name;
}

TEST(MetadataText, WhatIsFoundComesWithWhatIsAboveIt)
{
    EXPECT_EQ(foundText(tree, "dapi"), "OME\t\n  Image\tcells\n    Channel\tDAPI\n");
    EXPECT_EQ(foundText(tree, "WIDTH"), "TIFF\t\n  ImageWidth\t512\n");
    EXPECT_EQ(foundText(tree, "nowhere"), "");
    EXPECT_EQ(foundText(tree, ""), rowsText(tree, {0, 4}));
}
