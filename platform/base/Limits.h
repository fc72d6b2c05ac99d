// SPDX-License-Identifier: MIT
// Limits that files, records and programs share.
#pragma once

namespace base {

constexpr int maxWavelengths = 1024; // of an image; a file with more is refused

} // namespace base
