// SPDX-License-Identifier: MIT
#include "platform/imagewindow/ImageWindow.h"

#include "platform/imagewindow/Application.h"
#include "platform/imagewindow/Start.h"
#include "platform/imagewindow/view/Readout.h"

#include <cstdio>
#include <string>
#include <utility>

namespace viewer {

namespace {

constexpr unsigned long rangesMilliseconds = 300, growingMilliseconds = 200, finishedMilliseconds = 1000;

Size screenOf(Display* display)
{
    const Screen* screen = DefaultScreenOfDisplay(display);
    return {WidthOfScreen(screen), HeightOfScreen(screen)};
}

} // namespace

ImageWindow::ImageWindow(Application& application, ImageSource opened, const Options& options)
    : context(application.context()), display(application.display()), shown(std::move(opened)),
      overlays(display), picture(display), desk{.shown = shown,
                                                .actions = actions,
                                                .overlays = overlays.store(),
                                                .dialogues = dialogues,
                                                .tools = tools,
                                                .listener = *this,
                                                .program = application.servicesFor(*this)}
{
    if (shown.life.chosen().former())
        shown.tell(
            "A scale was set for an earlier version of this file: View, Set scale... to use it again.");
    applyOptions(shown, options);
    shown.area = chooseZoom(shown.info(), shown.view, options, screenOf(display));
    controls.emplace(desk, display, shown.area, options.geometry);
    show();
}

ImageWindow::~ImageWindow()
{
    for (XtIntervalId timer : {rangesTimer, fileTimer})
        if (timer)
            XtRemoveTimeOut(timer);
}

void ImageWindow::show()
{
    controls->show("Image window: " + shown.life.name());
    layOut();
    drawImage();
    claimNumber();
    controls->showCommands(); // some need the number
    pollRanges();
    pollFile();
}

void ImageWindow::claimNumber()
{
    record = recordOf(shown);
    shown.windowNumber = protocol::claimWindowNumber(display, controls->canvas(), record);
    if (shown.windowNumber)
        controls->setTitle("Image window " + std::to_string(shown.windowNumber) + ": " + shown.life.name());
    else
        std::fprintf(stderr, "imagewindow: no window number is free: tools cannot attach to %s.\n",
                     onOneLine(record.path).c_str());
}

void ImageWindow::update()
{
    drawStale();
    if (shown.stale.has(Part::Layout)) // the status lines took room from the image or gave some back
        drawStale();
    if (shown.stale.has(Part::Record))
        publish();
    if (canvasSeen && !std::exchange(announced, true))
        announce();
}

void ImageWindow::drawStale()
{
    if (shown.stale.has(Part::Layout))
        layOut();
    if (shown.stale.has(Part::Image))
        drawImage();
    else if (shown.stale.has(Part::Overlays))
        drawOverlays();
    if (shown.stale.has(Part::Readout))
        showStatus();
}

void ImageWindow::layOut()
{
    controls->showView(shown.view, widestStatus(shown));
    controls->showCommands();
    shown.stale.take(Part::Layout);
    shown.area = controls->areaSize();
    shown.arrangeNow();
    controls->place(shown.arrangement);
    picture.resize(shown.arrangement.canvas);
}

void ImageWindow::drawImage()
{
    shown.stale.take(Part::Image);
    shown.stale.take(Part::Overlays);
    shown.panels = panelContents(shown.info(), shown.view);
    shown.problem = shown.renderer.load(shown.arrangement.geometry, shown.panels);
    picture.drawImage(shown.renderer, controls->canvas(), scene(), overlays.store());
    for (const PanelContent& panel : shown.panels)
        for (int w : panel.wavelengths)
            shown.life.prefer({panel.z, w, panel.t, panel.p});
    dialogues.imageDrawn();
}

void ImageWindow::drawOverlays()
{
    shown.stale.take(Part::Overlays);
    picture.drawOverlays(controls->canvas(), scene(), overlays.store());
}

Scene ImageWindow::scene() const
{
    const protocol::Geometry& geometry = shown.arrangement.geometry;
    Scene scene{geometry, shown.panels, overlays.store(), std::nullopt};
    if (shown.scaleBar)
        scene.bar =
            scaleBar(shown.life.scale().spacing[0], geometry.zoom, geometry.panelWidth, geometry.panelHeight);
    return scene;
}

void ImageWindow::showStatus()
{
    shown.stale.take(Part::Readout);
    if (shown.stale.take(Part::Pointer)) {
        const std::optional<XPoint> place = controls->pointerOnCanvas();
        pointer = place ? std::optional(CanvasPlace{place->x, place->y}) : std::nullopt;
    }
    controls->showStatus(statusOf(shown, pointer));
}

void ImageWindow::publish()
{
    if (shown.windowNumber == 0)
        return;
    shown.stale.take(Part::Record);
    if (protocol::DisplayRecord current = recordOf(shown); current != record) {
        record = std::move(current);
        protocol::publishDisplay(display, controls->canvas(), record);
    }
}

void ImageWindow::announce()
{
    std::printf("window %d: %s\n", shown.windowNumber, onOneLine(record.path).c_str());
    std::fflush(stdout);
}

void ImageWindow::pollRanges()
{
    const auto again = [](XtPointer window, XtIntervalId*) {
        static_cast<ImageWindow*>(window)->pollRanges();
    };
    const bool more = shown.life.gatherRanges();
    rangesTimer = more ? XtAppAddTimeOut(context, rangesMilliseconds, again, this) : 0;
    shown.stale.mark(Part::Record);
    shown.stale.mark(Part::Readout);
}

void ImageWindow::pollFile()
{
    const auto again = [](XtPointer window, XtIntervalId*) { static_cast<ImageWindow*>(window)->pollFile(); };
    const FileNews news = shown.life.poll();
    if (news.told)
        shown.stale.mark(Part::Readout);
    if (news.replaced)
        takeFile(*news.replaced);
    fileTimer = XtAppAddTimeOut(context, shown.life.growing() ? growingMilliseconds : finishedMilliseconds,
                                again, this);
}

void ImageWindow::takeFile(const image::SectionIndex& newestBefore)
{
    shown.renderer.setFile(shown.life.file());
    if (shown.life.growing())
        followNewest(shown.view, newestBefore, newestSection(shown.life.file()));
    clampSection(shown.info(), shown.view);
    controls->showSizes();
    shown.changed();
    if (!rangesTimer)
        pollRanges();
}

void ImageWindow::pointerAt(int x, int y)
{
    pointer = CanvasPlace{x, y};
    shown.notice.pointerMoved(Notice::Clock::now());
    shown.stale.mark(Part::Readout);
}

void ImageWindow::pointerLeft()
{
    pointer.reset();
    shown.stale.mark(Part::Readout);
}

void ImageWindow::overlayArrived(unsigned long serial)
{
    if (!overlays.arrived(serial, controls->canvas(), shown.arrangement.geometry, shown.panels))
        return;
    if (!shown.stale.has(Part::Image)) {
        shown.stale.mark(Part::Overlays);
        drawOverlays();
    }
    dialogues.segmentDrawn();
}

// Its graphics are to go, also what it removed itself without living to ask for the drawing.
void ImageWindow::clientGone(Window client)
{
    if (overlays.clientGone(client))
        shown.stale.mark(Part::Overlays);
}

void ImageWindow::toolsChanged()
{
    const std::string uncalibrated = uncalibratedText(shown.info(), shown.life.scale());
    if (tools.haveGrown() && !uncalibrated.empty())
        shown.tell("For the tool the image is " + uncalibrated + ". View, Set scale... changes that.");
}

void ImageWindow::exposed(Region region)
{
    canvasSeen = true;
    if (!shown.stale.has(Part::Image))
        picture.expose(controls->canvas(), region);
}

void ImageWindow::areaResized(Size size)
{
    shown.area = size;
    shown.stale.mark(Part::Layout);
}

} // namespace viewer
