// SPDX-License-Identifier: MIT
#include "platform/base/HashName.h"

#include <cstdint>
#include <cstdio>

namespace base {

std::string hashName(std::string_view text)
{
    std::uint64_t value = 0xcbf29ce484222325u;
    for (const char c : text)
        value = (value ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(value));
    return digits;
}

} // namespace base
