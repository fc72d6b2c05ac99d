// SPDX-License-Identifier: MIT
#include "platform/imagewindow/ImageWindow.h"

#include "platform/imagewindow/Application.h"
#include "platform/imagewindow/Start.h"
#include "platform/imagewindow/view/Readout.h"
#include "widgets/Scale.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>
#include <utility>

namespace viewer {

namespace {

constexpr unsigned long rangesMilliseconds = 300, growingMilliseconds = 200, finishedMilliseconds = 1000,
                        projectMilliseconds = 50;
constexpr unsigned long restMilliseconds = 150; // without a new picture, before the overview follows

Size screenOf(Display* display)
{
    const Screen* screen = DefaultScreenOfDisplay(display);
    return {WidthOfScreen(screen), HeightOfScreen(screen)};
}

} // namespace

ImageWindow::ImageWindow(Application& application, ImageSource opened, const Options& options)
    : context(application.context()), display(application.display()), canvasKind(application.canvasKind()),
      shown(std::move(opened)), overlays(display),
      overview(shown.life.file()), desk{.shown = shown,
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
    shown.parts = loadParts();
    shown.barStyle = loadBarStyle();
    shown.play = loadPlay();
    for (const std::string& remark : shown.info().remarks)
        shown.log.add(remark, std::time(nullptr));
    const std::optional<Memory> memory = rememberedOf(shown);
    const bool zoomed = applyOptions(shown, options, memory);
    shown.barThickness = widgets::scaled(display, scrollBarThickness);
    shown.area = chooseZoom(shown, options, screenOf(display), zoomed);
    controls.emplace(desk, display, shown.area, geometryOf(options, memory, screenOf(display)), canvasKind);
    show();
}

ImageWindow::~ImageWindow()
{
    remember();
    for (XtIntervalId timer : {rangesTimer, fileTimer, playTimer, projectTimer, overviewTimer})
        if (timer)
            XtRemoveTimeOut(timer);
}

// Keeps how the image is seen, but not where the user has changed nothing since it was shown.
void ImageWindow::remember()
{
    if (!firstSeen || shown.life.growing())
        return;
    const Memory now = memoryNow();
    const std::string problem = now == *firstSeen ? "" : keepMemory(shown.life.path(), now);
    if (!problem.empty())
        std::fprintf(stderr, "imagewindow: %s\n", problem.c_str());
}

std::optional<LinkChange> ImageWindow::linkChange() const
{
    const LinkState now = linkStateOf(shown);
    return shown.linked && now != settled ? std::optional(LinkChange{settled, now}) : std::nullopt;
}

void ImageWindow::followLink(const LinkChange& change)
{
    if (shown.linked)
        follow(shown, change);
}

std::string ImageWindow::geometry() const
{
    const std::optional<base::Rectangle> place = controls->windowPlace();
    return place ? geometryText(*place) : "";
}

Memory ImageWindow::memoryNow() const
{
    Memory memory = memoryOf(shown);
    memory.place = controls->windowPlace();
    return memory;
}

void ImageWindow::show()
{
    controls->show("Image window: " + shown.life.name());
    desk.intake = &intake.emplace(entranceOf(desk));
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
    // A picture that is still being made is waited for.
    if (shown.renderer.projecting() && !projectTimer)
        projectTimer = XtAppAddTimeOut(context, projectMilliseconds, projectionDue, this);
    else if (shown.playback.running() && !playTimer && !projectTimer)
        awaitStep();
}

void ImageWindow::projectionDue(XtPointer window, XtIntervalId*)
{
    auto* self = static_cast<ImageWindow*>(window);
    self->projectTimer = 0;
    self->shown.stale.mark(self->shown.renderer.projectingEnded() ? Part::Layout : Part::Readout);
}

// After a picture, so that events that wait have their turn before the next one.
void ImageWindow::awaitStep()
{
    const auto due = [](XtPointer window, XtIntervalId*) { static_cast<ImageWindow*>(window)->step(); };
    const auto wait =
        std::chrono::ceil<std::chrono::milliseconds>(shown.playback.due() - Playback::Clock::now());
    playTimer =
        XtAppAddTimeOut(context, static_cast<unsigned long>(std::max<long>(0, wait.count())), due, this);
}

void ImageWindow::step()
{
    playTimer = 0;
    if (shown.playback.running())
        actions.playOn(Playback::Clock::now());
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
    picture.resize(desk.canvas, canvasKind, shown.arrangement.canvas);
}

void ImageWindow::drawImage()
{
    shown.stale.take(Part::Image);
    shown.stale.take(Part::Overlays);
    shown.panels = panelContents(shown.info(), shown.view);
    shown.problem = shown.renderer.load(shown.arrangement.geometry, shown.panels);
    shown.panels = panelContents(shown.info(), shown.drawnView());
    plotted = plottedPanels(shown, overlays.store());
    picture.drawImage(shown.renderer, scene(), overviewNow(), overlays.store());
    for (const PanelContent& panel : shown.panels)
        for (int w : panel.wavelengths)
            shown.life.prefer({panel.z, w, panel.t, panel.p});
    controls->imageDrawn();
}

std::optional<ShownNavigator> ImageWindow::overviewNow()
{
    const auto navigator = navigatorNow(shown, widgets::screenScale(display));
    if (!navigator)
        return std::nullopt;
    if (overview.lacks(shown.panels.front(), {navigator->width, navigator->height}))
        loadOverviewSoon();
    return ShownNavigator{*navigator, overview.draw(shown.panels.front(), shown.renderer)};
}

// Each new picture puts it off: while the user steps or plays, the one before stays.
void ImageWindow::loadOverviewSoon()
{
    const auto load = [](XtPointer client, XtIntervalId*) {
        auto* window = static_cast<ImageWindow*>(client);
        window->overviewTimer = 0;
        if (const auto place = navigatorNow(window->shown, widgets::screenScale(window->display)))
            window->overview.load(window->shown.panels.front(), {place->width, place->height});
        window->shown.stale.mark(Part::Image);
    };
    if (overviewTimer)
        XtRemoveTimeOut(overviewTimer);
    overviewTimer = XtAppAddTimeOut(context, restMilliseconds, load, this);
}

// The frames of panels are under the graphics, and change when the segment goes to another panel.
void ImageWindow::drawOverlays()
{
    if (plottedPanels(shown, overlays.store()) != plotted)
        return drawImage();
    shown.stale.take(Part::Overlays);
    picture.drawOverlays(scene(), overlays.store());
}

Scene ImageWindow::scene() const
{
    return sceneOf(shown, overlays.store(), widgets::screenScale(display));
}

void ImageWindow::showStatus()
{
    shown.stale.take(Part::Readout);
    if (shown.stale.take(Part::Pointer)) {
        const std::optional<XPoint> place = controls->pointerOnCanvas();
        pointer = place ? std::optional(CanvasPlace{place->x, place->y}) : std::nullopt;
    }
    shown.log.follow(problemOf(shown), std::time(nullptr));
    controls->showStatus(statusOf(shown, pointer));
    controls->showMessages();
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
    firstSeen = memoryNow();
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
    overview.setFile(shown.life.file());
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

// Redraws without the graphics of a client that has died, those included that it had removed without asking
// for a redraw.
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

void ImageWindow::exposed(const Box& box)
{
    canvasSeen = true;
    if (!shown.stale.has(Part::Image))
        picture.expose(box);
}

void ImageWindow::areaResized(Size size)
{
    shown.area = size;
    shown.stale.mark(Part::Layout);
}

} // namespace viewer
