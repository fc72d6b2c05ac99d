// libIWL, recorded.
#include "tests/recording/Note.h"

#include <IWL.h>

#include <algorithm>
#include <cstdio>
#include <tuple>

using namespace recording;

int IWAttach(int argc, char** argv)
{
    note("IWAttach", argc, argv[0]);
    return 1;
}

int IWAttachWin(int slot, int windowNumber, const char* mode)
{
    note("IWAttachWin", slot, windowNumber, mode);
    return windowNumber == script.window ? 1 : 0;
}

Window IWRtWID(int slot)
{
    note("IWRtWID", slot);
    return 0x123;
}

int IWDisplay(int slot)
{
    note("IWDisplay", slot);
    return 1;
}

int IWGetButPressInfo(XEvent* event, int* window, float* x, float* y, float* z, int* subPanel, int* panel)
{
    note("IWGetButPressInfo", event->xbutton.x, event->xbutton.y);
    if (!script.onImage)
        return 0;
    *window = script.window;
    *x = static_cast<float>(event->xbutton.x) + script.fraction;
    *y = static_cast<float>(event->xbutton.y) + script.fraction;
    *z = script.pressZ;
    *subPanel = script.subPanel;
    *panel = script.panel;
    return 1;
}

int IWRtMulDis(int slot, int* columns, int* rows)
{
    note("IWRtMulDis", slot);
    *columns = script.columns;
    *rows = script.rows;
    return 1;
}

int IWRtMulDisStyle(int slot)
{
    note("IWRtMulDisStyle", slot);
    return script.style;
}

int IWRtDisSec_ZWTP(int slot, int* z, int* w, int* t, int* p)
{
    note("IWRtDisSec_ZWTP", slot);
    *z = script.z;
    *w = script.w;
    *t = script.t;
    *p = script.p;
    return 1;
}

int IWIsWaveMap(int slot, int w)
{
    note("IWIsWaveMap", slot, w);
    return script.displayed.at(static_cast<size_t>(w));
}

int IWRtImgColor(int slot, int* colors)
{
    note("IWRtImgColor", slot);
    std::ranges::copy(script.colors, colors);
    return 1;
}

int IWRtScratchSize(int slot)
{
    note("IWRtScratchSize", slot);
    return script.scratchSize;
}

int IWRtTopImgLoc(int slot, int w)
{
    note("IWRtTopImgLoc", slot, w);
    return script.topImage.at(static_cast<size_t>(w));
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

int IWGrAddPt2D(int slot, int width, int color, float x, float y)
{
    note("IWGrAddPt2D", slot, width, color, x, y);
    return state.nextGraphic++;
}

int IWGrAddPt5D(int slot, int timePoint, int panel, int width, int color, float x, float y, float z)
{
    note("IWGrAddPt5D", slot, timePoint, panel, width, color, x, y, z);
    return state.nextGraphic++;
}

int IWGrAddLn2D(int slot, int width, int dash, int color, float x0, float y0, float x1, float y1)
{
    note("IWGrAddLn2D", slot, width, dash, color, x0, y0, x1, y1);
    return state.nextGraphic++;
}

int IWGrAddLn5D(int slot, int timePoint, int panel, int width, int dash, int color, float x0, float y0,
                float z0, float x1, float y1, float z1)
{
    note("IWGrAddLn5D", slot, timePoint, panel, width, dash, color, x0, y0, z0, x1, y1, z1);
    return state.nextGraphic++;
}

int IWGrRmGrID(int slot, int id)
{
    note("IWGrRmGrID", slot, id);
    return 1;
}

int IWGrRmAllGrID(int slot)
{
    note("IWGrRmAllGrID", slot);
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

void IWSetConfig(const char* key, const char* value)
{
    note("IWSetConfig", key, value);
    script.config[key] = value;
}

void IWSetConfigBoolean(const char* key, int value)
{
    note("IWSetConfigBoolean", key, value);
    script.config[key] = value ? "true" : "false";
}

int IWSaveUserConfig(void)
{
    note("IWSaveUserConfig");
    return 1;
}

int IMAlCon(int slot, int convert)
{
    note("IMAlCon", slot, convert);
    return 0;
}

int IMRtZWTP(int slot, int* nz, int* nw, int* nt, int* np, int* total)
{
    note("IMRtZWTP", slot);
    *nz = script.nz;
    *nw = static_cast<int>(script.waves.size());
    *nt = script.nt;
    *np = script.np;
    *total = *nz * *nw * *nt * *np;
    return 0;
}

int IMRtXY(int slot, int* nx, int* ny)
{
    note("IMRtXY", slot);
    *nx = script.nx;
    *ny = script.ny;
    return 0;
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
    *count = static_cast<int>(script.waves.size());
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
    int read = state.reads++;
    if (script.unreadable.contains(state.positionedW) || (script.readFails && script.readFails(read)))
        return -1;
    for (int y = yFirst; y <= yLast; y++)
        for (int x = xFirst; x <= xLast; x++)
            *buffer++ = script.pixel(x, y, state.positionedZ, state.positionedW);
    return 0;
}

void IMClose(int slot)
{
    note("IMClose", slot);
}
