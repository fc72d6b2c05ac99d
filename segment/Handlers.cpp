// SPDX-License-Identifier: MIT
#include "segment/Handlers.h"

#include "gauge/XrtGauge.h"
#include "segment/Geometry.h"
#include "segment/Segment.h"
#include "shell/Message.h"

#include <IWL.h>
#include <WMEnh.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>

// Module state: the one Segment, its flags, and the links that the shell sets.
Segment segment;
int32_t dragging = 0;
int32_t segmentDefined = 0;
PanelIndex startPanel = {-1, -1};
PanelIndex endPanel = {-1, -1};
SegmentPlot segmentPlot;

namespace {

// Drawing attributes of the overlays: width, dash and annotation colour.
constexpr int overlayWidth = 2, overlaySolid = 0, overlayColor = 7;

// Where a pointer event lies in the image: data coordinates and panel.
struct ImagePosition {
    float x, y, z;
    PanelIndex panel;
};

// Which panel and sections an overlay is bound to; -1 is any.
struct PanelBinding {
    int panel;
    float z0, z1;
};

bool locate(XEvent* event, ImagePosition* position)
{
    int window = 0;
    return IWGetButPressInfo(event, &window, &position->x, &position->y, &position->z,
                             &position->panel.subPanel, &position->panel.panel) != 0;
}

// True in a display of several panels; style receives what they differ in.
bool multiPanel(int* style)
{
    int columns = 1, rows = 1;
    IWRtMulDis(imageSlot, &columns, &rows);
    *style = IWRtMulDisStyle(imageSlot);
    return columns > 1 || rows > 1;
}

// Wavelength panels (style 2) differ by panel, z panels (style 1) by section; in others an overlay shows
// everywhere.
PanelBinding bindToPanel(int style, int panel, float z0, float z1)
{
    if (style == 2)
        return {panel, -1.0f, -1.0f};
    if (style == 1)
        return {-1, z0, z1};
    return {-1, -1.0f, -1.0f};
}

int32_t addStartMarker(const ImagePosition& at)
{
    int style = 0;
    if (!multiPanel(&style))
        return IWGrAddPt2D(imageSlot, overlayWidth, overlayColor, at.x, at.y);
    PanelBinding binding = bindToPanel(style, at.panel.panel, at.z, at.z);
    return IWGrAddPt5D(imageSlot, -1, binding.panel, overlayWidth, overlayColor, at.x, at.y, binding.z0);
}

int32_t addLine(const SegmentPoint& from, const ImagePosition& to, bool multi, int style)
{
    if (!multi)
        return IWGrAddLn2D(imageSlot, overlayWidth, overlaySolid, overlayColor, from.x, from.y, to.x, to.y);
    PanelBinding binding = bindToPanel(style, to.panel.panel, from.z, to.z);
    return IWGrAddLn5D(imageSlot, -1, binding.panel, overlayWidth, overlaySolid, overlayColor, from.x, from.y,
                       binding.z0, to.x, to.y, binding.z1);
}

// lineId keeps the removed id: the first motion removes it once more, which the image window ignores.
void removePreviousOverlays()
{
    bool removed = false;
    if (segment.start.markerId > 0) {
        IWGrRmGrID(imageSlot, segment.start.markerId);
        removed = true;
    }
    if (segment.lineId > 0) {
        IWGrRmGrID(imageSlot, segment.lineId);
        removed = true;
    }
    if (removed)
        IWDisplay(imageSlot);
}

bool insideImage(const ImagePosition& position)
{
    int nx = 0, ny = 0;
    IMRtXY(imageSlot, &nx, &ny);
    return !(position.x < 0 || position.x > static_cast<float>(nx - 1) || position.y < 0 ||
             position.y > static_cast<float>(ny - 1));
}

} // namespace

int segmentPress(XEvent* event, void*)
{
    if (event->xbutton.button != Button1)
        return 0;
    ImagePosition at = {};
    if (!locate(event, &at) || !insideImage(at))
        return 0;
    WMAddEventHandler(imageSlot, PointerMotionMask, segmentMotion, nullptr);
    WMAddEventHandler(imageSlot, ButtonReleaseMask, segmentRelease, nullptr);
    if (dragging == 1)
        return 0;
    removePreviousOverlays();
    segment.start.markerId = addStartMarker(at);
    IWDisplay(imageSlot);
    dragging = 1;
    segmentDefined = 0;
    segment.start.x = at.x;
    segment.start.y = at.y;
    segment.start.z = at.z;
    startPanel = at.panel;
    return 0;
}

namespace {

// Motion goes on outside the window while the button is held: pin such positions to its edge. False
// when the window is gone.
bool clampToWindow(XMotionEvent* motion)
{
    Window root = None;
    int x = 0, y = 0;
    unsigned width = 0, height = 0, border = 0, depth = 0;
    if (!XGetGeometry(XtDisplay(segmentPlot.plotArea), motion->window, &root, &x, &y, &width, &height,
                      &border, &depth))
        return false;
    motion->x = std::max(0, std::min(motion->x, static_cast<int>(width) - 1));
    motion->y = std::max(0, std::min(motion->y, static_cast<int>(height) - 1));
    return true;
}

void clampToImage(ImagePosition* position)
{
    int nx = 0, ny = 0;
    IMRtXY(imageSlot, &nx, &ny);
    position->x = std::max(std::min(position->x, static_cast<float>(nx - 1)), 0.0f);
    position->y = std::max(std::min(position->y, static_cast<float>(ny - 1)), 0.0f);
}

bool onStartPanel(const ImagePosition& position)
{
    return position.z == segment.start.z && position.panel.panel == startPanel.panel &&
           position.panel.subPanel == startPanel.subPanel;
}

// Shift makes the segment vertical and wins over Control, which makes it horizontal.
void constrain(ImagePosition* position, unsigned modifiers)
{
    if (modifiers & ShiftMask)
        position->x = segment.start.x;
    else if (modifiers & ControlMask)
        position->y = segment.start.y;
}

void extendSegment(const ImagePosition& to, bool multi, int style)
{
    if (segment.lineId != 0)
        IWGrRmGrID(imageSlot, segment.lineId);
    segment.lineId = addLine(segment.start, to, multi, style);
    IWDisplay(imageSlot);
    segmentDefined = 1;
    segment.end.x = to.x;
    segment.end.y = to.y;
    segment.end.z = to.z;
    endPanel = to.panel;
}

// Range and label precision of the distance axis. The margin is the length of five plot pixels.
void setDistanceGauge(float segmentLength)
{
    Dimension width = 0;
    XtVaGetValues(segmentPlot.plotArea, XmNwidth, &width, nullptr);
    float distanceMargin = segmentLength / static_cast<float>(width) * 5.0f;
    int precision = segmentLength < 1.0f ? 2 : segmentLength < 10.0f ? 1 : 0;
    XtVaSetValues(segmentPlot.distanceTicks, XmNxrtGaPrecision, precision, XmNxrtGaOffset,
                  std::bit_cast<XtArgVal>(double{distanceMargin}), nullptr);
    XtVaSetValues(segmentPlot.distanceScale, XmNxrtGaMin, std::bit_cast<XtArgVal>(double{distanceMargin}),
                  XmNxrtGaMax, std::bit_cast<XtArgVal>(double{segmentLength + distanceMargin}), nullptr);
}

void reportGeometry()
{
    float endStage[3] = {}, startStage[3] = {};
    IWDataToTSPos(segment.end.x, segment.end.y, segment.end.z, imageSlot, endStage);
    IWDataToTSPos(segment.start.x, segment.start.y, segment.start.z, imageSlot, startStage);
    float dx = endStage[0] - startStage[0], dy = endStage[1] - startStage[1];
    float segmentLength = stageLength(dx, dy), segmentAngle = stageAngle(dx, dy);
    setDistanceGauge(segmentLength);
    showMessage("Line length %.3f %cm, angle %.2f degrees", double{segmentLength}, microSign,
                double{segmentAngle});
}

} // namespace

int segmentMotion(XEvent* event, void*)
{
    if (!(event->xmotion.state & Button1Mask))
        return 0;
    XEvent* copy = static_cast<XEvent*>(std::malloc(sizeof(XEvent)));
    std::memcpy(copy, event, sizeof(XEvent));
    if (!clampToWindow(&copy->xmotion)) {
        std::free(copy);
        return 0;
    }
    // The two rejections below keep the copy allocated, on purpose.
    ImagePosition to = {};
    if (!locate(copy, &to))
        return 0; // NOLINT(clang-analyzer-unix.Malloc)
    clampToImage(&to);
    int style = 0;
    const bool multi = multiPanel(&style);
    if (multi && !onStartPanel(to))
        return 0; // NOLINT(clang-analyzer-unix.Malloc)
    if (dragging != 1) {
        std::free(copy);
        return 0;
    }
    constrain(&to, event->xmotion.state);
    extendSegment(to, multi, style);
    segmentPlot.drawProfile(1);
    reportGeometry();
    std::free(copy);
    return 0;
}

int segmentRelease(XEvent*, void*)
{
    IWDisplay(imageSlot);
    WMCancelEventHandler(imageSlot, PointerMotionMask);
    WMCancelEventHandler(imageSlot, ButtonReleaseMask);
    dragging = 0;
    segmentPlot.drawProfile(1);
    return 0;
}
