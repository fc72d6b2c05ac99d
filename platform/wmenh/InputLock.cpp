// SPDX-License-Identifier: MIT
// Exclusive input of image windows.
#include "platform/include/WMEnh.h"
#include "platform/iwl/Session.h"
#include "platform/protocol/XProtocol.h"

#include <cstring>
#include <map>

namespace {

struct Lock {
    int windowNumber;
    Window owner;
};

int lastLockId = 0;
std::map<int, Lock> locks; // held, by id

} // namespace

int WMRequestMonitorLock(const char* title, Window imageWindow, int, char** owner)
{
    const int number = iwl::windowNumberOf(imageWindow);
    const protocol::LockResult result =
        number > 0 ? protocol::takeInputLock(iwl::display(), number, title) : protocol::LockResult{};
    if (result.owner == None) {
        *owner = strdup(result.holder.empty() ? "unknown" : result.holder.c_str());
        return -1;
    }
    locks[++lastLockId] = {number, result.owner};
    return lastLockId;
}

void WMReleaseMonitorLock(int lockId)
{
    const auto found = locks.find(lockId);
    if (found == locks.end())
        return;
    protocol::releaseInputLock(iwl::display(), found->second.windowNumber, found->second.owner);
    locks.erase(found);
}
