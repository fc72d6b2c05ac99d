// SPDX-License-Identifier: MIT
// libIWL, recorded.
#include "tests/recording/Note.h"

#include <IWL.h>

#include <algorithm>
#include <cstdio>
#include <tuple>

using namespace recording;

namespace {

// Stores each value behind the pointer that stands before it.
int answer(int result)
{
    return result;
}
template<typename Value, typename... More> int answer(int result, Value* target, Value value, More... more)
{
    *target = value;
    return answer(result, more...);
}

int waveCount()
{
    return static_cast<int>(script.waves.size());
}

} // namespace

RECORDED(int, IWAttach, (int argc, char** argv), 1, argc, argv[0])
RECORDED(int, IWAttachWin, (int slot, int number, const char* mode), number == imageWindowNumber, slot,
         number, mode)
RECORDED(Window, IWRtWID, (int slot), 0x123, slot)
RECORDED(int, IWDisplay, (int slot), 1, slot)
RECORDED(int, IWRtMulDisStyle, (int slot), script.style, slot)
RECORDED(int, IWIsWaveMap, (int slot, int w), script.displayed.at(static_cast<size_t>(w)), slot, w)
RECORDED(int, IWRtScratchSize, (int slot), script.scratchSize, slot)
RECORDED(int, IWRtTopImgLoc, (int slot, int w), script.topImage.at(static_cast<size_t>(w)), slot, w)

RECORDED(int, IWRtMulDis, (int slot, int* columns, int* rows),
         answer(1, columns, script.columns, rows, script.rows), slot)
RECORDED(int, IWRtDisSec_ZWTP, (int slot, int* z, int* w, int* t, int* p),
         answer(1, z, script.z, w, script.w, t, script.t, p, 0), slot)

RECORDED(int, IWGrAddPt2D, (int slot, int width, int color, float x, float y), state.nextGraphic++, slot,
         width, color, x, y)
RECORDED(int, IWGrAddPt5D,
         (int slot, int timePoint, int panel, int width, int color, float x, float y, float z),
         state.nextGraphic++, slot, timePoint, panel, width, color, x, y, z)
RECORDED(int, IWGrAddLn2D, (int slot, int width, int dash, int color, float x0, float y0, float x1, float y1),
         state.nextGraphic++, slot, width, dash, color, x0, y0, x1, y1)
RECORDED(int, IWGrAddLn5D,
         (int slot, int timePoint, int panel, int width, int dash, int color, float x0, float y0, float z0,
          float x1, float y1, float z1),
         state.nextGraphic++, slot, timePoint, panel, width, dash, color, x0, y0, z0, x1, y1, z1)
RECORDED(int, IWGrRmGrID, (int slot, int id), 1, slot, id)
RECORDED(int, IWGrRmAllGrID, (int slot), 1, slot)

RECORDED(void, IWSetConfigBoolean, (const char* key, int value), , key, value)
RECORDED(int, IWSaveUserConfig, (void), 1)

RECORDED(int, IMAlCon, (int slot, int convert), 0, slot, convert)
RECORDED(int, IMRtXY, (int slot, int* nx, int* ny), answer(0, nx, imageWidth, ny, imageHeight), slot)
RECORDED(int, IMRtZWTP, (int slot, int* nz, int* nw, int* nt, int* np, int* total),
         answer(0, nz, 1, nw, waveCount(), nt, script.nt, np, 1, total, waveCount() * script.nt), slot)
RECORDED(void, IMClose, (int slot), , slot)

int IWGetButPressInfo(XEvent* event, int* window, float* x, float* y, float* z, int* subPanel, int* panel)
{
    note("IWGetButPressInfo", event->xbutton.x, event->xbutton.y);
    if (!script.onImage)
        return 0;
    *window = imageWindowNumber;
    *x = static_cast<float>(event->xbutton.x) + script.fraction;
    *y = static_cast<float>(event->xbutton.y) + script.fraction;
    *z = script.pressZ;
    *subPanel = script.subPanel;
    *panel = script.panel;
    return 1;
}

int IWRtImgColor(int slot, int* colors)
{
    note("IWRtImgColor", slot);
    std::ranges::copy(script.colors, colors);
    return 1;
}

int IWRtFilename(int slot, int what, char* name)
{
    note("IWRtFilename", slot, what);
    std::snprintf(name, IW_FILENAME_SIZE, "%s", script.filename.c_str());
    return !script.filename.empty();
}

int IWDataToTSPos(float x, float y, float z, int slot, float* stage)
{
    note("IWDataToTSPos", x, y, z, slot);
    const float data[3] = {x, y, z};
    for (int i = 0; i < 3; i++)
        stage[i] = script.stageOrigin[i] + data[i] * script.spacing[i];
    return 1;
}

const char* IWGetConfig(const char* key)
{
    note("IWGetConfig", key);
    auto found = script.config.find(key);
    return found == script.config.end() ? nullptr : found->second.c_str();
}

int IWGetConfigBoolean(const char* key, int* value)
{
    note("IWGetConfigBoolean", key);
    auto found = script.config.find(key);
    if (found == script.config.end())
        return 0;
    *value = found->second == "true";
    return 1;
}

int IMRtDel(int slot, float* spacing)
{
    note("IMRtDel", slot);
    std::ranges::copy(script.spacing, spacing);
    return 0;
}

int IMRtWav(int slot, int* count, float* waves)
{
    note("IMRtWav", slot);
    *count = waveCount();
    std::ranges::copy(script.waves, waves);
    return 0;
}

int IMRtWavMM(int slot, int w, float* min, float* max)
{
    note("IMRtWavMM", slot, w);
    auto found = script.ranges.find(w);
    if (found == script.ranges.end())
        return -1;
    std::tie(*min, *max) = found->second;
    return 0;
}

int IMRtExHdrValueZWTP(int slot, int z, int w, int t, int p, int field, double* value)
{
    note("IMRtExHdrValueZWTP", slot, z, w, t, p, field);
    auto found = script.header.find(field);
    if (found == script.header.end())
        return -1;
    *value = found->second;
    return 0;
}

int IMPosnZWTP(int slot, int z, int w, int t, int p)
{
    note("IMPosnZWTP", slot, z, w, t, p);
    state.positionedZ = z;
    state.positionedW = w;
    return script.unpositionable.contains(w) ? -1 : 0;
}

int IMRdPas(int slot, float* buffer, int nx, int ny, int xFirst, int xLast, int yFirst, int yLast)
{
    note("IMRdPas", slot, nx, ny, xFirst, xLast, yFirst, yLast);
    if (script.readFails(state.reads++))
        return -1;
    for (int y = yFirst; y <= yLast; y++)
        for (int x = xFirst; x <= xLast; x++)
            *buffer++ = script.pixel(x, y, state.positionedZ, state.positionedW);
    return 0;
}
