// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/MetadataText.h"

#include <gtest/gtest.h>

#include <string>

using namespace viewer;

namespace {

const image::MetadataTree tree{{-1, "OME", ""},           {0, "Image", "cells"}, {1, "Channel", "DAPI"},
                               {1, "Note", "two\nlines"}, {-1, "TIFF", ""},      {4, "ImageWidth", "512"}};

} // namespace

TEST(MetadataText, ARowComesWithAllBelowIt)
{
    EXPECT_EQ(rowText(tree, 1), "Image\tcells\n  Channel\tDAPI\n  Note\ttwo lines\n");
    EXPECT_EQ(rowText(tree, 5), "ImageWidth\t512\n");
    EXPECT_EQ(rowText(tree, -1), "");
    EXPECT_EQ(rowText(tree, 6), "");
}

TEST(MetadataText, WhatIsFoundComesWithWhatIsAboveIt)
{
    EXPECT_EQ(foundText(tree, "dapi"), "OME\t\n  Image\tcells\n    Channel\tDAPI\n");
    EXPECT_EQ(foundText(tree, "WIDTH"), "TIFF\t\n  ImageWidth\t512\n");
    EXPECT_EQ(foundText(tree, "nowhere"), "");
    EXPECT_EQ(foundText(tree, ""), rowText(tree, 0) + rowText(tree, 4));
}
