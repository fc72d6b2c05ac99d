// SPDX-License-Identifier: MIT
// The OME metadata that goes with the pixels.
#include "tests/unit/samples/SampleRun.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

using namespace sampletest;

namespace {

const std::string tiny = "--size 16x8 --pattern planes a.ome.tif ";

class Metadata : public testing::Test {
protected:
    pugi::xml_node make(const std::string& options)
    {
        const Outcome made = makeSample(folder, tiny + options);
        EXPECT_EQ(made.status, 0) << made.errors;
        return parseOme(readDescription(folder / "a.ome.tif"), document);
    }

    TempFolder folder;
    pugi::xml_document document;
};

} // namespace

TEST_F(Metadata, TellsEverythingByDefault)
{
    const pugi::xml_node ome = make("");
    const std::pair<const char*, const char*> rows[] = {
        {"//Pixels/@PhysicalSizeX", "0.1083333333"},
        {"//Pixels/@PhysicalSizeZ", "0.5"},
        {"//Pixels/@PhysicalSizeXUnit", "µm"},
        {"//Image/AcquisitionDate", "2024-03-05T10:15:00"},
        {"//Channel[1]/@Name", "DAPI"},
        {"//Channel[1]/@EmissionWavelength", "461"},
        {"//Channel[2]/@ExcitationWavelength", "488"},
        {"//Channel[2]/@Color", "16711935"},
        {"//Channel[3]/@Color", "-16776961"}, // red is negative: the sign bit belongs to it
        {"//Channel[4]/DetectorSettings/@Offset", "100"},
        {"//Plane[@TheZ=2 and @TheC=1 and @TheT=1]/@DeltaT", "32.25"},
        {"//Plane[@TheZ=2 and @TheC=1 and @TheT=1]/@ExposureTime", "0.1"},
        {"//Plane[@TheZ=2 and @TheC=1 and @TheT=1]/@PositionX", "12500"},
        {"//Plane[@TheZ=2 and @TheC=1 and @TheT=1]/@PositionY", "-4200"},
        {"//Plane[@TheZ=2 and @TheC=1 and @TheT=1]/@PositionZ", "36"},
    };
    for (const auto& [path, value] : rows) {
        const pugi::xpath_node node = ome.select_node(path);
        EXPECT_STREQ(node.attribute() ? node.attribute().value() : node.node().text().get(), value) << path;
    }
    EXPECT_EQ(ome.select_nodes("//TiffData").size(), 60u);
    EXPECT_EQ(ome.select_nodes("//Plane").size(), 60u);
    EXPECT_EQ(ome.select_nodes("//DetectorSettings[@ID=//Instrument/Detector/@ID]").size(), 4u);
}

TEST_F(Metadata, UnitsScaleTheNumbers)
{
    const pugi::xml_node pixels = make("--length-unit nm --time-unit ms").child("Image").child("Pixels");
    EXPECT_STREQ(pixels.attribute("PhysicalSizeZ").value(), "500");
    EXPECT_STREQ(pixels.attribute("PhysicalSizeZUnit").value(), "nm");
    const pugi::xml_node last = pixels.find_child_by_attribute("Plane", "TheT", "2");
    EXPECT_STREQ(last.attribute("DeltaT").value(), "60000");
    EXPECT_STREQ(last.attribute("DeltaTUnit").value(), "ms");
    EXPECT_STREQ(last.attribute("PositionZ").value(), "35000");
}

TEST_F(Metadata, OmissionsLeaveOutJustThat)
{
    const std::pair<const char*, const char*> rows[] = {
        {"--no-calibration", "//@PhysicalSizeX | //@PhysicalSizeZ | //@PhysicalSizeXUnit"},
        {"--no-wavelengths", "//@EmissionWavelength | //@ExcitationWavelength"},
        {"--no-names", "//Channel/@Name"},
        {"--no-colors", "//@Color"},
        {"--no-date", "//AcquisitionDate"},
        {"--no-offset", "//DetectorSettings"},
        {"--no-times", "//@DeltaT | //@TimeIncrement"},
        {"--no-exposure", "//@ExposureTime"},
        {"--no-stage", "//@PositionX | //@PositionZ"},
        {"--no-planes", "//Plane"},
        {"--no-tiffdata", "//TiffData/@IFD"},
    };
    const pugi::xml_node complete = make("");
    std::map<std::string, std::size_t> all;
    for (const auto& [option, path] : rows)
        all[option] = complete.select_nodes(path).size();
    for (const auto& [option, path] : rows) {
        const pugi::xml_node ome = make(option);
        EXPECT_GT(all[option], 0u) << option;
        EXPECT_EQ(ome.select_nodes(path).size(), 0u) << option;
        for (const auto& [other, otherPath] : rows) {
            if (other != option && option != std::string("--no-planes")) {
                EXPECT_EQ(ome.select_nodes(otherPath).size(), all[other]) << option << " and " << other;
            }
        }
    }
}

TEST_F(Metadata, BinaryOnlyFilesPointToTheCompanion)
{
    const pugi::xml_node only = make("--companion").child("BinaryOnly");
    EXPECT_STREQ(only.attribute("MetadataFile").value(), "a.companion.ome");
    pugi::xml_document companion;
    const pugi::xml_node ome = parseOme(readBytes(folder / "a.companion.ome"), companion);
    EXPECT_STREQ(ome.attribute("UUID").value(), only.attribute("UUID").value());
    EXPECT_STREQ(ome.select_node("//TiffData/UUID").node().text().get(),
                 document.child("OME").attribute("UUID").value());
}

TEST_F(Metadata, EachFileOfASetHasItsOwnIdAndTheSameImages)
{
    ASSERT_EQ(makeSample(folder, tiny + "--split channel").status, 0);
    std::set<std::string> ids;
    for (const std::string& name : namesIn(folder)) {
        pugi::xml_document own;
        const pugi::xml_node ome = parseOme(readDescription(folder / name), own);
        const std::string id = ome.attribute("UUID").value();
        EXPECT_EQ(ome.select_nodes("//TiffData").size(), 60u);
        const std::string itself = "//UUID[@FileName='" + name + "']";
        EXPECT_EQ(ome.select_node(itself.c_str()).node().text().get(), id);
        ids.insert(id);
    }
    EXPECT_EQ(ids.size(), 4u);
}
