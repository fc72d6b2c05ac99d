// SPDX-License-Identifier: MIT
// All that a file tells about its image, as rows: nothing is lost, and no file makes it large or slow.
#include "platform/image/MetadataTree.h"

#include "tests/unit/image/TestFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <string>

using namespace image;
using testing::HasSubstr;

namespace {

// "name=value" of a row and those above it, the topmost first; empty when no row has that name.
std::string pathOf(const MetadataTree& tree, const std::string& name)
{
    for (const MetadataRow& found : tree) {
        if (found.name != name)
            continue;
        std::string path = found.name + "=" + found.value;
        for (int row = found.parent; row >= 0; row = tree[static_cast<std::size_t>(row)].parent)
            path = tree[static_cast<std::size_t>(row)].name + "/" + path;
        return path;
    }
    return "";
}

MetadataTree treeOf(const std::string& description)
{
    const TempFolder folder;
    writeTiff(folder / "test.tif", {.description = description});
    return readMetadata(folder / "test.tif");
}

std::string ome(const std::string& content)
{
    return "<?xml version='1.0'?><ome:OME xmlns:ome='http://www.openmicroscopy.org/Schemas/OME/2016-06'>" +
           content + "</ome:OME>";
}

} // namespace

TEST(MetadataTree, TellsElementsAttributesTextsAndTags)
{
    const struct {
        const char* what;
        std::string description, name, path;
    } rows[] = {
        {"attribute", ome("<ome:Image ID='Image:0' Name='cells'/>"), "Name", "OME/Image/Name=cells"},
        {"name beside an element", ome("<ome:Image Name='cells'/>"), "Image", "OME/Image=cells"},
        {"text", ome("<Image><Description> two\nlines </Description></Image>"), "Description",
         "OME/Image/Description=two\nlines"},
        {"ImageJ", "ImageJ=1.54f\nslices=3\nunit=micron\n", "unit", "ImageJ/unit=micron"},
        {"lines", "exposure: 20 ms\r\ngain=2\n", "exposure", "ImageDescription/exposure=20 ms"},
        {"line without a name", "scanned by hand", "", "ImageDescription/=scanned by hand"},
        {"tag", "", "ImageWidth", "TIFF/ImageWidth=37"},
        {"tag beside OME", ome("<Image/>"), "ImageLength", "TIFF/ImageLength=29"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(pathOf(treeOf(row.description), row.name), row.path) << row.what;
}

TEST(MetadataTree, ReadsTheCompanionThatHoldsTheMetadata)
{
    const TempFolder folder;
    writeTiff(folder / "a.tif", {.description = ome("<BinaryOnly MetadataFile='all.companion.ome'/>")});
    writeBytes(folder / "all.companion.ome", ome("<Image Name='from the companion'/>"));
    EXPECT_EQ(pathOf(readMetadata(folder / "a.tif"), "Name"), "OME/Image/Name=from the companion");
    EXPECT_EQ(pathOf(readMetadata(folder / "all.companion.ome"), "Name"),
              "OME/Image/Name=from the companion");
}

TEST(MetadataTree, IsBounded)
{
    std::string wide, deep, end;
    for (int i = 0; i < 70000; ++i)
        wide += "<Plane TheZ='" + std::to_string(i) + "'/>";
    for (int i = 0; i < 20000; ++i) {
        deep += "<a n='" + std::to_string(i) + "'>";
        end += "</a>";
    }
    const struct {
        const char* what;
        std::string description;
    } rows[] = {{"wide", ome(wide)},
                {"deep", ome(deep + end)},
                {"long", ome("<Image Name='" + std::string(1 << 20, 'x') + "'/>")},
                {"lines", std::string(200000, '\n') + std::string("a=b\n") + std::string(200000, 'c')}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const std::clock_t start = std::clock();
        const MetadataTree tree = treeOf(row.description);
        EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 2);
        EXPECT_LE(tree.size(), maxMetadataRows + 1);
        for (std::size_t i = 0; i < tree.size(); ++i) {
            ASSERT_LT(tree[i].parent, static_cast<int>(i));
            ASSERT_LE(tree[i].value.size(), maxMetadataValue + 3);
        }
        std::size_t depth = 0;
        for (int at = static_cast<int>(tree.size()) - 1; at >= 0;
             at = tree[static_cast<std::size_t>(at)].parent)
            ++depth;
        EXPECT_LE(depth, maxMetadataDepth + 2);
    }
    EXPECT_EQ(treeOf(rows[0].description).back().name, "...");
}

TEST(MetadataTree, RefusesWithASentence)
{
    const TempFolder folder;
    writeBytes(folder / "a.png", "\x89PNG and so on");
    EXPECT_EQ(readMetadata(folder / "a.png").at(0).name, "Picture");
    writeBytes(folder / "no.tif", "no image");
    const struct {
        const char* file;
        const char* part;
    } rows[] = {{"no.tif", "not a TIFF file"}, {"gone.tif", "gone.tif"}};
    for (const auto& row : rows)
        try {
            readMetadata(folder / row.file);
            ADD_FAILURE() << row.file;
        } catch (const ImageError& error) {
            EXPECT_THAT(error.what(), HasSubstr(row.part));
        }
}
