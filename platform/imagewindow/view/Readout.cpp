// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/Readout.h"

#include "platform/imagewindow/view/TextFlow.h"
#include "platform/text/Utf8.h"

#include <cstdio>

namespace viewer {

namespace {

template<typename... Values> std::string format(const char* pattern, Values... values)
{
    char text[256];
    std::snprintf(text, sizeof text, pattern, values...);
    return text;
}

} // namespace

std::string wavelengthName(const image::ImageInfo& info, int wavelength)
{
    const image::Wavelength& wave = info.wavelengths[static_cast<std::size_t>(wavelength)];
    if (!wave.name.empty())
        return wave.name;
    return wave.nanometres > 0 ? format("%g nm", static_cast<double>(wave.nanometres))
                               : format("w %d", wavelength + 1);
}

std::string valueName(const image::ImageInfo& info, const PanelContent& panel, int wavelength)
{
    return panel.labels && info.sizeW == 1 ? "" : wavelengthName(info, wavelength);
}

std::vector<std::string> pixelItems(const std::string& caption, int x, int y,
                                    const std::vector<WavelengthValue>& values)
{
    std::vector<std::string> items;
    if (!caption.empty())
        items.push_back(text::shortened(caption, maxNameLength));
    items.push_back(format("x %d  y %d", x, y));
    for (const WavelengthValue& entry : values) {
        std::string item = text::shortened(entry.name, maxNameLength);
        item += entry.label ? (item.empty() ? "label " : " label ") : " ";
        const char* const pattern = entry.label ? "%.0f" : "%.7g";
        items.push_back(item + (entry.value ? format(pattern, static_cast<double>(*entry.value)) : "-"));
    }
    return items;
}

std::string stageText(const image::ImageFile& file, const Scale& scale, const image::SectionIndex& section,
                      double x, double y)
{
    const image::ImageInfo& info = file.info();
    if (!scale.known)
        return "";
    const auto header = [&](int field) { return file.extendedHeader(section, field); };
    const auto stageX = header(image::StageXMicrons), stageY = header(image::StageYMicrons);
    std::string text =
        format("%s %.2f, %.2f", stageX && stageY ? "stage" : "position",
               stageX.value_or(0) + x * scale.spacing[0], stageY.value_or(0) + y * scale.spacing[1]);
    if (const auto z = header(image::StageZMicrons))
        text += format(", %.2f", *z);
    else if (info.sizeZ > 1 && scale.zKnown)
        text += format(", %.2f", section.z * static_cast<double>(scale.spacing[2]));
    text += " µm";
    if (const auto time = header(image::TimeStampSeconds); time && info.sizeT > 1)
        text += format("   %.7g s", *time);
    return text;
}

std::string uncalibratedText(const image::ImageInfo& info, const Scale& scale)
{
    if (!scale.known)
        return "uncalibrated: 1 pixel counts as 1 µm";
    return scale.zKnown || info.sizeZ < 2 ? "" : "uncalibrated in z: 1 section counts as 1 µm";
}

std::string onOneLine(const std::string& name)
{
    std::string line;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        char code[8];
        std::snprintf(code, sizeof code, "\\x%02x", byte);
        if (c == '\n')
            line += "\\n";
        else if (c == '\\')
            line += "\\\\";
        else if (byte < 32 || byte == 127)
            line += code;
        else
            line += c;
    }
    return line;
}

} // namespace viewer
