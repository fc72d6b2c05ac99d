// SPDX-License-Identifier: MIT
// The texts of the status line. Pure.
#pragma once

#include "platform/image/ImageFile.h"
#include "platform/imagewindow/files/Scale.h"
#include "platform/imagewindow/view/View.h"

#include <optional>
#include <string>
#include <vector>

namespace viewer {

struct WavelengthValue {
    std::string name;
    std::optional<float> value; // nothing: could not be read
    bool label = false;         // it is the number of an object
};

// "AF647", else "525 nm", else "w 2".
std::string wavelengthName(const image::ImageInfo& info, int wavelength);

// The name before a value: none before the labels of the only wavelength.
std::string valueName(const image::ImageInfo& info, const PanelContent& panel, int wavelength);

// "x 120  y 85", "AF647 1450", "DAPI 87", "label 12"; caption (of a panel) goes in front. Long names are
// shortened, values never.
std::vector<std::string> pixelItems(const std::string& caption, int x, int y,
                                    const std::vector<WavelengthValue>& values);

// "stage 1234.56, 78.90, 3.50 µm   12.5 s": place and time of data position (x, y) on a section, as far as
// file and scale tell; "position ..." when it has no stage position, empty when the scale is not known.
std::string stageText(const image::ImageFile& file, const Scale& scale, const image::SectionIndex& section,
                      double x, double y);

// "uncalibrated: 1 pixel counts as 1 µm" and the like; empty when the scale is known.
std::string uncalibratedText(const image::ImageInfo& info, const Scale& scale);

// A file's name where a line is a message: control characters and the backslash as "\\n" or "\\x1b", as
// printf of a shell reads them.
std::string onOneLine(const std::string& name);

} // namespace viewer
