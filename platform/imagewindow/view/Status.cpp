// SPDX-License-Identifier: MIT
#include "platform/imagewindow/view/Status.h"

#include <string_view>
#include <utility>

namespace viewer {

namespace {

constexpr std::chrono::seconds noticeTime{5}; // for which a sentence stays when the pointer moves
constexpr const char* longestActivity = "ranges 100 %";

// Leaves out the file's folder: the user knows it, and the line has hardly room for the reason.
std::string withoutFolder(std::string sentence, const std::filesystem::path& file)
{
    const std::string folder = file.parent_path().string() + "/";
    for (std::size_t at; folder.size() > 1 && (at = sentence.find(folder)) != std::string::npos;)
        sentence.erase(at, folder.size());
    return sentence;
}

// The file's remarks: what it holds that the image does not show.
std::string remarkOf(const StatusFacts& facts)
{
    std::string all;
    for (const std::string& sentence : facts.file.info().remarks)
        all += (all.empty() ? "" : " ") + sentence;
    return withoutFolder(all, facts.path);
}

std::vector<std::string> imageItems(const image::ImageInfo& info)
{
    std::string text = std::to_string(info.width) + " x " + std::to_string(info.height);
    const auto add = [&](int count, const char* one) {
        if (count > 1)
            text += ", " + std::to_string(count) + " " + one;
    };
    add(info.sizeW, "wavelengths");
    add(info.sizeZ, "sections");
    add(info.sizeT, "time points");
    add(info.sizeP, "positions");
    return {text, info.format};
}

// What tools sample, where it is not what all panels show.
std::string sampledText(const View& view)
{
    if (view.projection != Projection::Section)
        return "tools sample z " + std::to_string(view.z + 1);
    return view.style == protocol::TimePanels ? "tools sample t " + std::to_string(view.t + 1) : "";
}

std::vector<std::string> stateItems(const StatusFacts& facts, const std::string& activity)
{
    std::vector<std::string> items;
    for (const std::string& text : {activity, uncalibratedText(facts.file.info(), facts.scale)})
        if (!text.empty())
            items.push_back(text);
    if (const std::string sampled = sampledText(facts.view); !sampled.empty())
        items.push_back(sampled);
    items.push_back(zoomText(facts.view.zoom));
    return items;
}

std::string stageOf(const StatusFacts& facts, const PanelContent& panel, double x, double y)
{
    return stageText(facts.file, facts.scale, {panel.z, panel.wavelengths.front(), panel.t, panel.p}, x, y);
}

// A value with as many characters as any of that type.
float widestValue(image::PixelType type)
{
    switch (type) {
    case image::PixelType::Bit:
        return 1;
    case image::PixelType::Int8:
    case image::PixelType::UInt8:
        return -100;
    case image::PixelType::Int16:
    case image::PixelType::UInt16:
        return -10000;
    default:
        return -1.234567e-20F;
    }
}

std::vector<std::string> widestPixel(const image::ImageInfo& info, const PanelContent& panel)
{
    std::vector<WavelengthValue> values;
    for (int w : panel.wavelengths)
        values.push_back({valueName(info, panel, w), widestValue(info.pixelType), panel.labels});
    return pixelItems(panel.caption, info.width, info.height, values);
}

std::size_t lengthOf(const std::string& text)
{
    return text.size();
}

std::size_t lengthOf(const std::vector<std::string>& items)
{
    std::size_t length = 0;
    for (const std::string& item : items)
        length += item.size();
    return length;
}

template<typename Text> void keepLonger(Text& longest, Text other)
{
    if (lengthOf(other) > lengthOf(longest))
        longest = std::move(other);
}

} // namespace

StatusTexts statusTexts(const StatusFacts& facts, const std::string& sentence,
                        const std::optional<PointedPixel>& pointed)
{
    StatusTexts texts{.remark = remarkOf(facts),
                      .sentence = withoutFolder(sentence, facts.path),
                      .pixel = imageItems(facts.file.info()),
                      .stage = {},
                      .state = stateItems(facts, facts.activity)};
    if (!pointed)
        return texts;
    texts.pixel = pixelItems(pointed->panel.caption, static_cast<int>(pointed->x),
                             static_cast<int>(pointed->y), pointed->values);
    texts.stage = stageOf(facts, pointed->panel, pointed->x, pointed->y);
    return texts;
}

StatusTexts widestTexts(const StatusFacts& facts)
{
    const bool longer = facts.activity.size() > std::string_view(longestActivity).size();
    const image::ImageInfo& info = facts.file.info();
    StatusTexts widest{.remark = remarkOf(facts),
                       .sentence = {},
                       .pixel = {},
                       .stage = {},
                       .state = stateItems(facts, longer ? facts.activity : longestActivity)};
    for (const PanelContent& panel : panelContents(info, facts.view)) {
        keepLonger(widest.pixel, widestPixel(info, panel));
        for (const int end : {0, 1})
            keepLonger(widest.stage, stageOf(facts, panel, end * info.width, end * info.height));
    }
    return widest;
}

void Notice::tell(const std::string& sentence, Clock::time_point now)
{
    text = sentence;
    keptUntil = now + noticeTime;
}

void Notice::pointerMoved(Clock::time_point now)
{
    if (now >= keptUntil)
        text.clear();
}

} // namespace viewer
