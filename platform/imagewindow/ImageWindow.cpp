// SPDX-License-Identifier: MIT
#include "platform/imagewindow/ImageWindow.h"
#include "platform/imagewindow/view/Readout.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace viewer {

namespace {

constexpr int toolRoom = 620;       // screen pixels that a tool window beside the image needs
constexpr int controlsHeight = 190; // of the window without the area, a generous estimate
constexpr int minAreaWidth = 420, minAreaHeight = 200;
constexpr std::size_t maxClients = 256; // whose windows are watched

bool addsGraphic(const protocol::OverlayCommand& command)
{
    return command.kind == protocol::OverlayKind::AddPoint || command.kind == protocol::OverlayKind::AddLine;
}

} // namespace

ImageWindow::ImageWindow(Application& application, ImageSource opened, const Options& options)
    : application(application), source(std::move(opened)), watch(source.path),
      scan(std::make_unique<image::RangeScan>(*source.file)), view(initialView(image().info())),
      renderer(*source.file), painter(application.display(), DefaultScreen(application.display()))
{
    record.path = source.path.string();
    recallScale();
    applyOptions(options);
    controls =
        std::make_unique<Controls>(*this, application.display(), chooseZoom(options), options.geometry);
    show();
}

ImageWindow::~ImageWindow()
{
    for (XtIntervalId timer : {scanTimer, fileTimer})
        if (timer)
            XtRemoveTimeOut(timer);
}

void ImageWindow::applyOptions(const Options& options)
{
    const image::ImageInfo& info = image().info();
    singlePlace = {options.z.value_or(view.z), options.t};
    view.style = options.panels;
    if (source.growing)
        view.z = info.sizeZ - 1; // the newest
    else if (options.panels == protocol::ZPanels)
        view.z = 0;
    if (options.z)
        view.z = *options.z;
    view.t = options.t;
    if (!options.wavelengths.empty()) {
        std::vector<bool> chosen(view.displayed.size(), false);
        for (int w : options.wavelengths)
            if (w < info.sizeW)
                chosen[static_cast<std::size_t>(w)] = true;
            else
                std::fprintf(stderr, "imagewindow: %s has %d wavelengths: there is no wavelength %d.\n",
                             onOneLine(record.path).c_str(), info.sizeW, w + 1);
        if (std::count(chosen.begin(), chosen.end(), true) > 0)
            view.displayed = chosen;
    }
    std::copy_n(options.colors.begin(), std::min(options.colors.size(), view.colors.size()),
                view.colors.begin());
    scaleBarShown = options.scaleBar && scale().known;
    clampSection(info, view);
    const int wantedZ = options.z.value_or(view.z);
    if (options.panels == protocol::SinglePanel && (view.z != wantedZ || view.t != options.t))
        std::fprintf(stderr, "imagewindow: %s has no section %d,%d: showing %d,%d.\n",
                     onOneLine(record.path).c_str(), wantedZ + 1, options.t + 1, view.z + 1, view.t + 1);
}

// Room for the image at the zoom asked for, else at zoom 1, a small one larger, when the screen has it beside
// a tool's window, else for the image fitted.
Size ImageWindow::chooseZoom(const Options& options)
{
    Screen* screen = DefaultScreenOfDisplay(display());
    const int widest = std::min(WidthOfScreen(screen) - toolRoom, WidthOfScreen(screen) * 8 / 10);
    const Size most{std::max(minAreaWidth, widest),
                    std::max(minAreaHeight, HeightOfScreen(screen) * 85 / 100 - controlsHeight)};
    view.zoom = options.zoom.value_or(1.0);
    if (!options.zoom)
        view.zoom = usefulZoom(image().info(), view);
    const Arrangement natural = arrange(image().info(), view, most, scrollBarThickness);
    view.fit = options.fit || (!options.zoom && (natural.horizontalBar || natural.verticalBar));
    const Arrangement chosen = view.fit ? arrange(image().info(), view, most, scrollBarThickness) : natural;
    const auto room = [](int canvas, bool bar) { return canvas + (bar ? scrollBarThickness : 0); };
    return {std::max(minAreaWidth, room(chosen.canvas.width, chosen.verticalBar)),
            std::max(minAreaHeight, room(chosen.canvas.height, chosen.horizontalBar))};
}

void ImageWindow::show()
{
    const std::string name = source.name;
    controls->show("Image window: " + name);
    layOutCanvas();
    drawImage();
    record = currentRecord();
    if (protocol::claimWindowNumber(display(), controls->canvas(), record))
        controls->setTitle("Image window " + std::to_string(record.windowNumber) + ": " + name);
    else
        std::fprintf(stderr, "imagewindow: no window number is free: tools cannot attach to %s.\n",
                     onOneLine(record.path).c_str());
    controls->showCommands(); // some need the number
    pollScan();
    pollFile();
}

void ImageWindow::update()
{
    drawStale();
    if (layoutStale) // the status lines took room from the image or gave some back
        drawStale();
    publish();
    if (canvasSeen && !announced) {
        announced = true;
        std::printf("window %d: %s\n", record.windowNumber, onOneLine(record.path).c_str());
        std::fflush(stdout);
    }
}

void ImageWindow::drawStale()
{
    if (layoutStale)
        layOutCanvas();
    if (imageStale)
        drawImage();
    else if (overlaysStale)
        paintOverlays();
    if (statusStale)
        updateStatus();
}

void ImageWindow::layOutCanvas()
{
    controls->showView(view, widestTexts());
    controls->showCommands();
    layoutStale = false;
    arrangement = arrange(image().info(), view, controls->areaSize(), scrollBarThickness);
    controls->place(arrangement);
    if (!buffer || buffer->size() != arrangement.canvas) {
        buffer.reset();
        buffer = std::make_unique<CanvasBuffer>(display(), DefaultScreen(display()), arrangement.canvas);
    }
    imageStale = statusStale = pointerStale = true;
}

void ImageWindow::drawImage()
{
    imageStale = overlaysStale = false;
    panels = panelContents(image().info(), view);
    problem = renderer.load(arrangement.geometry, panels);
    renderer.draw(buffer->pixels(), buffer->size().width, buffer->size().height);
    buffer->upload();
    painter.drawCaptions(*buffer, scene());
    painter.drawScaleBars(*buffer, scene());
    overlays.takeTouched();
    painter.paintAll(*buffer, controls->canvas(), scene());
    for (const PanelContent& panel : panels)
        for (int w : panel.wavelengths)
            scan->prefer({panel.z, w, panel.t, panel.p});
    statusStale = true;
    if (contrastDialogue)
        contrastDialogue->refresh();
}

Scene ImageWindow::scene() const
{
    const protocol::Geometry& geometry = arrangement.geometry;
    return {geometry, panels, overlays,
            scaleBarShown
                ? scaleBar(scale().spacing[0], geometry.zoom, geometry.panelWidth, geometry.panelHeight)
                : std::nullopt};
}

// A tool that drags takes the pointer's motions: its drawing tells that the pointer has moved.
void ImageWindow::paintOverlays()
{
    overlaysStale = false;
    statusStale = pointerStale = true;
    if (const auto touched = overlays.takeTouched())
        painter.paintTouched(*buffer, controls->canvas(), scene(), *touched);
    else
        painter.paintAll(*buffer, controls->canvas(), scene());
}

void ImageWindow::exposed(Region region)
{
    canvasSeen = true;
    if (buffer && !layoutStale && !imageStale)
        painter.show(*buffer, controls->canvas(), region);
}

PanelBinding ImageWindow::bindingOf(int panel) const
{
    PanelBinding binding{arrangement.geometry.style, -1};
    if (panel >= 0 && panel < static_cast<int>(panels.size()))
        binding.wavelength = panels[static_cast<std::size_t>(panel)].wavelengths.front();
    return binding;
}

// One request takes all commands of a backlog, which a notification each tells of.
void ImageWindow::overlayArrived(unsigned long serial)
{
    if (serial < drainedSerial)
        return;
    drainedSerial = NextRequest(display());
    bool redraw = false;
    for (const protocol::OverlayCommand& command : protocol::drainOverlays(display(), controls->canvas())) {
        if (addsGraphic(command) && !watchClient(command.client))
            continue;
        const OverlayStore::Outcome outcome = overlays.apply(command, bindingOf(command.panel));
        redraw |= outcome == OverlayStore::Outcome::RedrawAsked;
        if (outcome == OverlayStore::Outcome::Refused)
            tellRefusal("a tool draws more graphics than a window holds; the rest is left out");
    }
    if (redraw && !imageStale && !layoutStale)
        paintOverlays();
    if (redraw && scaleDialogue)
        scaleDialogue->refresh();
}

void ImageWindow::tellRefusal(const char* reason)
{
    if (!std::exchange(refusalTold, true))
        std::fprintf(stderr, "imagewindow: %s.\n", reason);
}

void ImageWindow::forgetIdleClients()
{
    std::erase_if(clients,
                  [&](Window client) { return !overlays.holdsOf(static_cast<std::uint32_t>(client)); });
}

// A client is served only while its window lives; without this, graphics of a dead client would stay for
// ever.
bool ImageWindow::watchClient(Window client)
{
    if (clients.contains(client))
        return true;
    if (clients.size() >= maxClients)
        forgetIdleClients();
    if (clients.size() >= maxClients) {
        tellRefusal("too many tools draw into one window; a further one is left out");
        return false;
    }
    protocol::ErrorTrap trap(display());
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(display(), client, &attributes))
        return false;
    XSelectInput(display(), client, attributes.your_event_mask | StructureNotifyMask);
    if (trap.error() != 0)
        return false;
    clients.insert(client);
    return true;
}

void ImageWindow::clientGone(Window client)
{
    if (clients.erase(client) == 0)
        return;
    overlays.dropClient(static_cast<std::uint32_t>(client));
    // Also what it removed itself without living to ask for the redraw.
    overlaysStale = true;
}

} // namespace viewer
