// What the user does to an image window, and what the status lines say.
#include "platform/imagewindow/Dialogs.h"
#include "platform/imagewindow/ImageWindow.h"
#include "platform/imagewindow/Readout.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstring>
#include <spawn.h>

extern char** environ;

namespace viewer {

namespace {

// Starts a program that outlives this call; nobody waits for it. Returns 0 or an error number.
int startProgram(const std::string& program, const std::string& argument)
{
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGCHLD); // ignored here, so that ended programs leave nothing behind
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    char* arguments[] = {const_cast<char*>(program.c_str()), const_cast<char*>(argument.c_str()), nullptr};
    pid_t child = 0;
    const int error = posix_spawnp(&child, program.c_str(), nullptr, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    return error;
}

std::string imageText(const image::ImageInfo& info)
{
    std::string text = std::to_string(info.width) + " x " + std::to_string(info.height);
    const auto add = [&](int count, const char* one) {
        if (count > 1)
            text += ", " + std::to_string(count) + " " + one;
    };
    add(info.sizeW, "wavelengths");
    add(info.sizeZ, "sections");
    add(info.sizeT, "time points");
    add(info.sizeP, "positions");
    return text + "   " + info.format;
}

} // namespace

void ImageWindow::changed()
{
    layoutStale = recordStale = true;
}

void ImageWindow::showSection(int z, int t, int p)
{
    view.z = z;
    view.t = t;
    view.p = p;
    clampSection(image().info(), view);
    changed();
}

void ImageWindow::setWavelengthShown(int wavelength, bool shown)
{
    if (!showWavelength(view, wavelength, shown))
        notice = shown ? "At most five wavelengths are shown at a time: hide another one first."
                       : "One wavelength has to stay.";
    changed();
}

void ImageWindow::setPanels(int style)
{
    view.style = style;
    view.fit = true;
    clampSection(image().info(), view);
    changed();
}

void ImageWindow::zoomAt(double zoom, int x, int y)
{
    zoomAround(image().info(), view, arrangement, controls->areaSize(), scrollBarThickness, zoom, x, y);
    // Events that come before the next drawing go on from here.
    layOutCanvas();
    changed();
}

void ImageWindow::zoomTo(double zoom)
{
    zoomAt(zoom, arrangement.visible.width / 2, arrangement.visible.height / 2);
}

void ImageWindow::zoomSteps(int steps)
{
    zoomTo(steppedZoom(view.zoom, steps));
}

void ImageWindow::zoomToFit()
{
    view.fit = true;
    changed();
}

void ImageWindow::scrollTo(int x, int y)
{
    view.originX = x / view.zoom;
    view.originY = y / view.zoom;
    changed();
}

void ImageWindow::panBy(int dx, int dy)
{
    view.originX += dx / view.zoom;
    view.originY += dy / view.zoom;
    layOutCanvas();
    changed();
}

void ImageWindow::setContrast(int wavelength, const ContrastLimits& limits)
{
    renderer.setLimits(wavelength, limits);
    imageStale = true;
}

void ImageWindow::setAutomaticContrast()
{
    renderer.setAutomatic();
    imageStale = true;
    if (contrastDialogue)
        contrastDialogue->refresh();
}

void ImageWindow::showContrast()
{
    contrastDialogue.reset();
    contrastDialogue = std::make_unique<ContrastDialogue>(controls->shell(), *this);
}

ContrastLimits ImageWindow::knownRange(int wavelength) const
{
    const auto index = static_cast<std::size_t>(wavelength);
    if (index >= ranges.size() || !ranges[index].known)
        return {0, 0};
    return {ranges[index].min, ranges[index].max};
}

void ImageWindow::openAnother(const std::string& path)
{
    try {
        application.open(path, Options{});
    } catch (const image::ImageError& error) {
        showError(controls->shell(), "Cannot open image", error.what());
    }
}

void ImageWindow::startLineProfile()
{
    const std::string program = Application::siblingProgram("lineprofile");
    if (const int error = startProgram(program, std::to_string(record.windowNumber)))
        showError(controls->shell(), "Cannot start tool",
                  "The line profile tool cannot be started (" + program + "): " + std::strerror(error) + ".");
}

std::vector<protocol::ToolEntry> ImageWindow::tools() const
{
    return protocol::announcedTools(display(), controls->canvas());
}

void ImageWindow::pointerAt(int x, int y)
{
    pointer = PointerPlace{x, y};
    notice.clear();
    statusStale = true;
}

void ImageWindow::pointerLeft()
{
    pointer.reset();
    statusStale = true;
}

void ImageWindow::updateStatus()
{
    statusStale = false;
    controls->showNote(noteText());
    const auto place =
        pointer ? protocol::dataFromWindow(arrangement.geometry, pointer->x, pointer->y) : std::nullopt;
    const std::string& sentence = !notice.empty() ? notice : !fileProblem.empty() ? fileProblem : problem;
    if (!place) {
        controls->showPixel(sentence.empty() ? imageText(image().info()) : sentence);
        controls->showStage("");
        return;
    }
    const PanelContent& panel = panels[static_cast<std::size_t>(place->panel)];
    const int x = static_cast<int>(place->x), y = static_cast<int>(place->y);
    std::vector<WavelengthValue> values;
    for (int w : panel.wavelengths)
        values.push_back({wavelengthName(image().info(), w), renderer.valueAt(place->panel, w, x, y)});
    const image::SectionIndex section{panel.z, panel.wavelengths.front(), panel.t, panel.p};
    controls->showPixel(sentence.empty() ? pixelText(panel.caption, x, y, values) : sentence);
    controls->showStage(stageText(image(), section, place->x, place->y));
}

std::string ImageWindow::noteText() const
{
    std::string text = zoomText(view.zoom);
    if (!image().info().calibrated)
        text = "uncalibrated   " + text;
    if (source.input && receiving)
        text = "receiving   " + text;
    else if (!scan->done())
        text = "ranges " + std::to_string(static_cast<int>(scan->progress() * 100)) + " %   " + text;
    return text;
}

} // namespace viewer
