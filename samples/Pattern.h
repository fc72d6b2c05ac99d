// SPDX-License-Identifier: MIT
// Pixel values of one plane, and their bytes in a pixel type.
#pragma once

#include "samples/Field.h"
#include "samples/Options.h"

#include <cstddef>
#include <span>
#include <vector>

namespace sample {

class Pattern {
public:
    explicit Pattern(const Options& options);
    // The width * height values of a plane as they are to be stored, row by row.
    std::vector<double> values(const Plane& plane);
    // The same of a level of a pyramid: (width >> level) * (height >> level) values.
    std::vector<double> reduced(const std::vector<double>& full, int level) const;
    PixelLine segment() { return field.brightLine(options.channels); }

private:
    const Options& options;
    Field field;
};

// Appends one row in the machine's byte order; bits are packed, most significant first.
void encodeRow(std::span<const double> values, PixelType type, std::vector<std::byte>& out);

} // namespace sample
