// SPDX-License-Identifier: MIT
// A stream of binary PGM and PPM images, one after another, as programs that acquire images write them to a
// pipe: every image is one section. Pure; fed with whatever has arrived.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace viewer {

struct StreamFormat {
    int width = 0, height = 0;
    int samples = 1;       // 1 grey, 3 red, green, blue
    int bytesPerValue = 1; // 2: most significant byte first
    std::size_t bytes() const
    {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
               static_cast<std::size_t>(samples * bytesPerValue);
    }
    friend bool operator==(const StreamFormat&, const StreamFormat&) = default;
};

// Thrown with one sentence when the stream is no such stream, or its images differ in size or kind.
struct StreamError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

constexpr std::size_t maxStreamImage = std::size_t{1} << 30; // bytes of one image; more is refused

class NetpbmStream {
public:
    // Takes the bytes that have arrived. Throws StreamError; images that were complete before stay available.
    void feed(std::span<const std::byte> bytes);
    // The next complete image, its values as they came; nothing when it has not arrived yet.
    std::optional<std::vector<std::byte>> next();
    // Of all images, once the first header has arrived.
    const std::optional<StreamFormat>& format() const { return first; }
    // Whether an image has begun that is not complete.
    bool insideImage() const { return current.has_value() || !header.empty(); }

private:
    void takeHeaderByte(char byte);
    void startImage();

    std::optional<StreamFormat> first;
    std::optional<StreamFormat> current; // whose values arrive now
    std::string header;                  // of the next image, as far as it has arrived
    std::vector<std::byte> values;
    std::deque<std::vector<std::byte>> complete;
};

} // namespace viewer
