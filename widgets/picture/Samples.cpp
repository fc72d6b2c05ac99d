// SPDX-License-Identifier: MIT
#include "widgets/picture/Samples.h"

#include <algorithm>
#include <string>

namespace picture {

void allot(Samples& samples, std::uint64_t width, std::uint64_t height)
{
    checkSize(width, height);
    const std::uint64_t size =
        width * height * static_cast<std::uint64_t>(samples.perPixel) * samples.bytesPerValue();
    if (size > maxSampleBytes)
        throw FormatError("has " + std::to_string(width) + " x " + std::to_string(height) +
                          " pixels, more than can be measured in");
    samples.width = static_cast<int>(width);
    samples.height = static_cast<int>(height);
    samples.bytes.resize(static_cast<std::size_t>(size));
}

void reduceGrey(Samples& samples)
{
    std::vector<std::byte>& bytes = samples.bytes;
    if (samples.perPixel != 3 || samples.bits > 8)
        return;
    for (std::size_t i = 0; i < bytes.size(); i += 3)
        if (bytes[i] != bytes[i + 1] || bytes[i] != bytes[i + 2])
            return;
    for (std::size_t i = 0; i < bytes.size(); i += 3)
        bytes[i / 3] = bytes[i];
    bytes.resize(bytes.size() / 3);
    bytes.shrink_to_fit();
    samples.perPixel = 1;
}

Samples samplesOfGif(Bytes bytes)
{
    const Picture picture = decodeGif(bytes);
    Samples samples;
    samples.perPixel = 3;
    allot(samples, static_cast<std::uint64_t>(picture.width), static_cast<std::uint64_t>(picture.height));
    for (std::size_t i = 0; i < picture.pixelCount(); ++i)
        for (std::size_t part = 0; part < 3; ++part)
            samples.bytes[3 * i + part] = std::byte{picture.rgba[4 * i + part]};
    reduceGrey(samples);
    return samples;
}

} // namespace picture
