// SPDX-License-Identifier: MIT
#include "shell/InputLock.h"

#include "segment/Segment.h"

#include <IWL.h>
#include <WMEnh.h>

#include <cstdio>
#include <cstdlib>

// Module state: the lock, the name of its other holder after a refusal (malloc'ed, ours to free), and whether
// the user has been told.
int32_t lockId = 0;

namespace {

char* lockOwner = nullptr;
int32_t lockRefusalShown = 0;

// The identity under which the suite's tools know this lock; its spelling is part of it.
constexpr const char* lockTitle = "Arbitray Line Profile";
constexpr int pointerInput = 12;

// The holder chose its own name: its length is bounded here, and the text is never used as a format.
void showRefusal()
{
    const char* owner = lockOwner ? lockOwner : "unknown";
    char text[1024];
    std::snprintf(text, sizeof text,
                  "Error from the \"Arbitrary Profile\" tool:\n\n"
                  "The \"%.300s\" tool has control of input from this window.\n"
                  "To look at profiles in this window, you will need to close\n"
                  "the \"%.300s\" tool.",
                  owner, owner);
    WMConfirmError("%s", text);
}

} // namespace

int acquireInputLock()
{
    if (lockId == 0)
        lockId = WMRequestMonitorLock(lockTitle, IWRtWID(imageSlot), pointerInput, &lockOwner);
    if (lockId > 0) {
        lockRefusalShown = 0;
        return 1;
    }
    if (!lockRefusalShown) {
        showRefusal();
        lockRefusalShown = 1;
    }
    std::free(lockOwner);
    lockOwner = nullptr;
    return 0;
}
