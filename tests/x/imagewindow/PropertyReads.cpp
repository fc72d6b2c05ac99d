// SPDX-License-Identifier: MIT
#include "tests/x/imagewindow/PropertyReads.h"

#include <X11/Xproto.h>

#include <stdexcept>

namespace viewertest {

namespace {

void requestSeen(XPointer counter, XRecordInterceptData* seen)
{
    if (seen->category == XRecordFromClient && seen->data_len > 0 && seen->data[0] == X_GetProperty)
        ++*reinterpret_cast<int*>(counter);
    XRecordFreeData(seen);
}

} // namespace

PropertyReads::PropertyReads(Window ofClient)
{
    int major = 0, minor = 0;
    if (!XRecordQueryVersion(control, &major, &minor))
        throw std::runtime_error("the server records no requests");
    XRecordRange* const range = XRecordAllocRange();
    range->core_requests = {X_GetProperty, X_GetProperty};
    XRecordClientSpec client = ofClient;
    context = XRecordCreateContext(control, 0, &client, 1, const_cast<XRecordRange**>(&range), 1);
    XFree(range);
    XSync(control, False);
    XRecordEnableContextAsync(data, context, requestSeen, reinterpret_cast<XPointer>(&reads));
    XSync(control, False);
}

PropertyReads::~PropertyReads()
{
    XRecordDisableContext(control, context);
    XRecordFreeContext(control, context);
    XSync(control, False);
}

// What has been recorded is on its way to the connection before the server answers another one.
int PropertyReads::count()
{
    XSync(control, False);
    XRecordProcessReplies(data);
    return reads;
}

} // namespace viewertest
