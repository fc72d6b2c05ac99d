// SPDX-License-Identifier: MIT
#include "platform/image/Colors.h"

#include "platform/image/Dyes.h"

#include <algorithm>
#include <memory>
#include <string_view>

namespace image {

using base::Blue, base::Cyan, base::Green, base::Magenta, base::Red, base::White, base::Yellow;
using base::displayColors;

std::optional<int> nearestColor(Rgb color)
{
    const int brightest = std::max({color.red, color.green, color.blue});
    if (brightest == 0)
        return std::nullopt;
    const auto distance = [&](const Rgb& other) {
        const auto part = [&](int a, int b) { return (a * 255 / brightest - b) * (a * 255 / brightest - b); };
        return part(color.red, other.red) + part(color.green, other.green) + part(color.blue, other.blue);
    };
    const auto nearest = std::min_element(displayColors.begin(), displayColors.end(), [&](auto& a, auto& b) {
        return distance(a.rgb) < distance(b.rgb);
    });
    return static_cast<int>(nearest - displayColors.begin());
}

std::optional<int> colorOfNanometres(double nanometres)
{
    struct Band {
        double below;
        int color;
    };
    static constexpr Band bands[] = {{470, Blue}, {500, Cyan}, {535, Green}, {585, Yellow}, {650, Red}};
    if (!(nanometres > 0))
        return std::nullopt;
    for (const Band& band : bands)
        if (nanometres < band.below)
            return band.color;
    return Magenta;
}

std::optional<int> colorOfDye(std::string_view channelName)
{
    const Dye* const dye = dyeOf(channelName);
    if (!dye)
        return std::nullopt;
    return dye->color ? dye->color : colorOfNanometres(static_cast<double>(dye->emission));
}

namespace {

std::optional<int> hintedColor(const Wavelength& wavelength, const ColorHint& hint)
{
    constexpr double typicalStokesShift = 25; // nm between excitation and emission
    std::optional<int> color = hint.color ? nearestColor(*hint.color) : std::nullopt;
    if (!color && hint.emission)
        color = colorOfNanometres(*hint.emission);
    if (!color && hint.excitation)
        color = colorOfNanometres(*hint.excitation + typicalStokesShift);
    return color ? color : colorOfDye(wavelength.name);
}

int nextFreeColor(std::span<const Wavelength> wavelengths, std::span<const bool> done, std::size_t turn)
{
    static constexpr int order[] = {Green, Magenta, Cyan, Yellow, Red, Blue, White};
    for (const int color : order) {
        bool used = false;
        for (std::size_t i = 0; i < wavelengths.size(); ++i)
            used |= done[i] && wavelengths[i].colorIndex == color;
        if (!used)
            return color;
    }
    return order[turn % std::size(order)];
}

void setColor(Wavelength& wavelength, int index, std::optional<Rgb> own)
{
    const Rgb color = own.value_or(displayColors[static_cast<std::size_t>(index)].rgb);
    wavelength.colorIndex = index;
    wavelength.red = color.red;
    wavelength.green = color.green;
    wavelength.blue = color.blue;
}

} // namespace

void assignColors(std::span<Wavelength> wavelengths, std::span<const ColorHint> hints)
{
    const auto done = std::make_unique<bool[]>(wavelengths.size());
    const std::span<const bool> doneFlags(done.get(), wavelengths.size());
    for (std::size_t i = 0; i < wavelengths.size(); ++i)
        if (const auto color = hintedColor(wavelengths[i], hints[i])) {
            const bool own = hints[i].color && nearestColor(*hints[i].color);
            setColor(wavelengths[i], *color, own ? hints[i].color : std::nullopt);
            done[i] = true;
        }
    for (std::size_t i = 0; i < wavelengths.size(); ++i)
        if (!done[i]) {
            setColor(wavelengths[i],
                     wavelengths.size() == 1 ? White : nextFreeColor(wavelengths, doneFlags, i), {});
            done[i] = true;
        }
}

} // namespace image
