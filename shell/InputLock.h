// SPDX-License-Identifier: MIT
// Exclusive control of the image window's pointer input.
#pragma once

#include <cstdint>

// 0 = not requested, greater than 0 = held, other = refused. Released by the shutdown.
extern int32_t lockId;

// 1 when this tool holds the image window's input, else 0. The first call requests the lock; a refusal is
// final and is told to the user once, in a dialogue that names the holder.
int acquireInputLock();
