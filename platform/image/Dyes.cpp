// SPDX-License-Identifier: MIT
#include "platform/image/Dyes.h"

#include "platform/base/DisplayColors.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

namespace image {

namespace {

using base::Magenta, base::Red, base::Yellow;

// Found anywhere in the name: the longer name stands before one that it contains. Emission maxima as the
// makers and fpbase.org list them, of antibody conjugates in water.
constexpr Dye parts[] = {
    {"dapi", 461, 0},
    {"hoechst", 461, 0},
    {"mtagbfp", 456, 0},
    {"ebfp", 448, 0},
    {"bfp", 448, 0},
    {"turquoise", 474, 0},
    {"cerulean", 475, 0},
    {"cfp", 475, 0},
    {"neongreen", 517, 0},
    {"gfp", 509, 0},
    {"emerald", 509, 0},
    {"clover", 515, 0},
    {"yfp", 527, Yellow},
    {"venus", 528, Yellow},
    {"citrine", 529, Yellow},
    {"kusabira", 561, 0},
    {"morange", 562, 0},
    {"tomato", 581, Red},
    {"dsred", 583, Red},
    {"irfp", 713, 0},
    {"tagrfp", 584, Red},
    {"rfp", 607, 0},
    {"cherry", 610, 0},
    {"scarlet", 594, 0},
    {"mruby", 600, 0},
    {"mkate", 633, 0},
    {"katushka", 633, 0},
    {"mplum", 649, 0},
    {"fitc", 519, 0},
    {"fluorescein", 519, 0},
    {"calcein", 515, 0},
    {"bodipyfl", 512, 0},
    {"fluo4", 506, 0},
    {"oregongreen", 524, 0},
    {"tritc", 572, 0},
    {"rhodaminered", 590, 0},
    {"rhodamine", 576, 0},
    {"texasred", 615, 0},
    {"txred", 615, 0},
    {"propidium", 617, 0},
    {"draq5", 681, 0},
    {"topro3", 661, 0},
    {"sytoxgreen", 523, 0},
    {"sytoxorange", 570, 0},
    {"mitotrackergreen", 516, 0},
    {"mitotrackerred", 599, 0},
    {"mitotrackerdeepred", 665, 0},
    {"siliconrhodamine", 674, 0},
    {"sirdna", 674, 0},
    {"siractin", 674, 0},
    {"sirtubulin", 674, 0},
    {"janelia549", 571, 0},
    {"janeliafluor549", 571, 0},
    {"janelia646", 664, 0},
    {"janeliafluor646", 664, 0},
    {"cy35", 596, 0},
    {"cy55", 694, 0},
    {"cy2", 506, 0},
    {"cy3", 570, 0},
    {"cy5", 670, 0},
    {"cy7", 773, 0},
    {"farred", 0, Magenta},
};

// Found as a word of their own: too short to be looked for inside others.
constexpr Dye words[] = {
    {"sir", 674, 0}, {"dii", 565, 0}, {"dio", 501, 0}, {"jf549", 571, 0}, {"jf646", 664, 0},
};

// Dyes that are named by the number of their excitation.
constexpr struct {
    std::string_view series[5]; // spellings in front of the number
    struct {
        int number;
        float emission;
    } members[20];
} numbered[] = {
    {{"alexafluor", "alexa", "fluor", "af", "a"},
     {{350, 442},
      {405, 421},
      {430, 541},
      {488, 519},
      {514, 540},
      {532, 553},
      {546, 573},
      {555, 565},
      {568, 603},
      {594, 617},
      {610, 628},
      {633, 647},
      {635, 647},
      {647, 665},
      {660, 690},
      {680, 702},
      {700, 723},
      {750, 775},
      {790, 805}}},
    {{"atto"},
     {{425, 484},
      {488, 520},
      {532, 552},
      {550, 576},
      {565, 590},
      {594, 622},
      {633, 651},
      {647, 667},
      {655, 680}}},
    {{"dylight"},
     {{350, 432},
      {405, 420},
      {488, 518},
      {550, 576},
      {594, 618},
      {633, 658},
      {649, 670},
      {650, 672},
      {680, 712},
      {755, 776},
      {800, 794}}},
};

// Numbered dyes as rows of their own: "alexa488" and the like are parts, "a488" is a word.
struct Numbered {
    std::string name;
    Dye dye;
};

std::vector<Numbered> spelledOut()
{
    std::vector<Numbered> result;
    for (const auto& family : numbered)
        for (const std::string_view series : family.series)
            for (const auto& member : family.members)
                if (!series.empty() && member.number > 0)
                    result.push_back(
                        {std::string(series) + std::to_string(member.number), {"", member.emission, 0}});
    return result;
}

bool isWordCharacter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

std::string letters(std::string_view text)
{
    std::string result;
    for (const char c : text)
        if (isWordCharacter(c))
            result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

bool hasWord(std::string_view text, std::string_view word)
{
    for (std::size_t at = 0; at < text.size();) {
        const auto start =
            std::find_if(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), isWordCharacter);
        const auto end = std::find_if_not(start, text.end(), isWordCharacter);
        if (letters({start, end}) == word)
            return true;
        at = static_cast<std::size_t>(end - text.begin());
    }
    return false;
}

} // namespace

const Dye* dyeOf(std::string_view channelName)
{
    static const std::vector<Numbered> numberedDyes = spelledOut();
    const std::string all = letters(channelName);
    const auto inside = [&](std::string_view name) { return all.find(name) != std::string::npos; };
    for (const Numbered& row : numberedDyes)
        if (row.name.size() > 4 ? inside(row.name) : hasWord(channelName, row.name))
            return &row.dye;
    for (const Dye& dye : parts)
        if (inside(dye.name))
            return &dye;
    for (const Dye& dye : words)
        if (hasWord(channelName, dye.name))
            return &dye;
    return nullptr;
}

std::optional<double> dyeEmission(std::string_view channelName)
{
    const Dye* const dye = dyeOf(channelName);
    return dye && dye->emission > 0 ? std::optional<double>(dye->emission) : std::nullopt;
}

} // namespace image
