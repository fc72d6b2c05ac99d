// SPDX-License-Identifier: MIT
// Splits a large read over the cores. The threads are started by the first large read and then kept.
#pragma once

#include <functional>

namespace image {

// Calls work(0) ... work(count - 1), several at once; returns when all are done. The caller works too. While
// another thread's job runs on the pool the caller does all of its own work itself. The first exception is
// thrown again here; items that were not begun by then are dropped.
void parallelFor(int count, const std::function<void(int)>& work);

} // namespace image
