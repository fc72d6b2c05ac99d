// SPDX-License-Identifier: MIT
// What the user does to an image window, and what the status lines say.
#include "platform/imagewindow/ImageWindow.h"
#include "platform/imagewindow/controls/Dialogs.h"
#include "platform/imagewindow/controls/HelpPage.h"
#include "platform/imagewindow/view/Readout.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <spawn.h>
#include <string>
#include <utility>
#include <vector>

extern char** environ;

namespace viewer {

namespace {

constexpr const char* aboutText = "Image window " PROJECT_VERSION "\n\n"
                                  "Shows microscope images: OME-TIFF, hyperstacks and plain TIFF.\n"
                                  "Tools attach to an image window by its number.";

constexpr const char* lineProfileTitle = "Arbitrary Profile"; // as the tool announces itself

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

// Shows another client's window in front of all others; an iconified one comes back.
void raiseWindow(Display* display, Window window)
{
    const protocol::ErrorTrap trap(display);
    const Window root = DefaultRootWindow(display);
    XMapRaised(display, window);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "_NET_ACTIVE_WINDOW", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = 2; // at the user's wish
    event.xclient.data.l[1] = static_cast<long>(CurrentTime);
    XSendEvent(display, root, False, SubstructureRedirectMask | SubstructureNotifyMask, &event);
}

// The folder of the file says nothing in a line about it, and takes the room of the reason.
std::string withoutFolder(std::string sentence, const std::filesystem::path& file)
{
    const std::string folder = file.parent_path().string() + "/";
    for (std::size_t at; folder.size() > 1 && (at = sentence.find(folder)) != std::string::npos;)
        sentence.erase(at, folder.size());
    return sentence;
}

std::vector<std::string> imageItems(const image::ImageInfo& info)
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
    return {text, info.format};
}

// A value with as many characters as any of that type.
float widestValue(image::PixelType type)
{
    switch (type) {
    case image::PixelType::Bit:
        return 1;
    case image::PixelType::Int8:
    case image::PixelType::UInt8:
        return -100;
    case image::PixelType::Int16:
    case image::PixelType::UInt16:
        return -10000;
    default:
        return -1.234567e-20F;
    }
}

std::size_t lengthOf(const std::vector<std::string>& items)
{
    std::size_t length = 0;
    for (const std::string& item : items)
        length += item.size();
    return length;
}

} // namespace

void ImageWindow::changed()
{
    notice.clear();
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
    changed();
    if (!showWavelength(view, wavelength, shown))
        notice = shown ? "At most five wavelengths are shown at a time: hide another one first."
                       : "One wavelength has to stay.";
    else if (contrastDialogue)
        contrastDialogue->refresh();
}

void ImageWindow::setPanels(int style)
{
    leavePanels();
    singlePlace = {view.z, view.t};
    view.style = style;
    view.fit = true;
    clampSection(image().info(), view);
    changed();
}

// Panels begin where all of them have something to show; the section and time point from before come back
// unless the user has scrolled the panels away from them.
void ImageWindow::leavePanels()
{
    const int shown = panelCount(image().info(), view);
    const auto restore = [&](int& index, int before) {
        if (before >= index && before < index + shown)
            index = before;
    };
    if (view.style == protocol::ZPanels)
        restore(view.z, singlePlace[0]);
    if (view.style == protocol::TimePanels)
        restore(view.t, singlePlace[1]);
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

void ImageWindow::setColor(int wavelength, int color)
{
    view.colors[static_cast<std::size_t>(wavelength)] = color;
    changed();
}

void ImageWindow::toggleScaleBar()
{
    scaleBarShown = !scaleBarShown && scale().known;
    changed();
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
    if (!contrastDialogue)
        contrastDialogue = std::make_unique<ContrastDialogue>(controls->shell(), *this);
    contrastDialogue->show();
}

void ImageWindow::showHelp()
{
    showHelpPage(controls->shell());
}

void ImageWindow::showAbout()
{
    showInformation(controls->shell(), "About the image window", aboutText);
}

void ImageWindow::chooseAnother()
{
    chooseFile(controls->shell(), *this);
}

bool ImageWindow::holdsIntegers() const
{
    const image::PixelType type = image().info().pixelType;
    return type != image::PixelType::Float32 && type != image::PixelType::Float64;
}

ContrastLimits ImageWindow::knownRange(int wavelength) const
{
    const auto index = static_cast<std::size_t>(wavelength);
    if (index >= ranges.size() || !ranges[index].known)
        return {0, 0};
    return {ranges[index].min, ranges[index].max};
}

bool ImageWindow::openAnother(const std::string& path)
{
    try {
        application.open(path, Options{});
        return true;
    } catch (const image::ImageError& error) {
        showError(controls->shell(), "Cannot open image", error.what());
    }
    return false;
}

void ImageWindow::startLineProfile()
{
    for (const protocol::ToolEntry& tool : tools())
        if (tool.title == lineProfileTitle)
            return raiseWindow(display(), tool.shell);
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
    pointer = XPoint{static_cast<short>(x), static_cast<short>(y)};
    if (std::chrono::steady_clock::now() >= noticeUntil)
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
    if (std::exchange(pointerStale, false))
        pointer = controls->pointerOnCanvas();
    StatusTexts texts{
        .remark = remark(), .sentence = sentence(), .pixel = {}, .stage = {}, .state = stateItems()};
    tellPointed(texts);
    controls->showStatus(texts);
}

// What the file has and the image lacks.
std::string ImageWindow::remark() const
{
    std::string all;
    for (const std::string& sentence : image().info().remarks)
        all += (all.empty() ? "" : " ") + sentence;
    return withoutFolder(all, source.path);
}

std::string ImageWindow::sentence() const
{
    const std::string& most = !notice.empty() ? notice : !fileProblem.empty() ? fileProblem : problem;
    return withoutFolder(most, source.path);
}

// The pixel under the pointer, or the image when there is none.
void ImageWindow::tellPointed(StatusTexts& texts) const
{
    texts.pixel = imageItems(image().info());
    const auto place =
        pointer ? protocol::dataFromWindow(arrangement.geometry, pointer->x, pointer->y) : std::nullopt;
    if (!place)
        return;
    const PanelContent& panel = panels[static_cast<std::size_t>(place->panel)];
    const int x = static_cast<int>(place->x), y = static_cast<int>(place->y);
    std::vector<WavelengthValue> values;
    for (int w : panel.wavelengths)
        values.push_back({wavelengthName(image().info(), w), renderer.valueAt(place->panel, w, x, y)});
    const image::SectionIndex section{panel.z, panel.wavelengths.front(), panel.t, panel.p};
    texts.pixel = pixelItems(panel.caption, x, y, values);
    texts.stage = stageText(image(), scale(), section, place->x, place->y);
}

StatusTexts ImageWindow::widestTexts() const
{
    const image::ImageInfo& info = image().info();
    StatusTexts widest{.remark = remark(), .sentence = {}, .pixel = {}, .stage = {}, .state = stateItems()};
    std::size_t most = 0;
    for (const PanelContent& panel : panelContents(info, view)) {
        std::vector<WavelengthValue> values;
        for (int w : panel.wavelengths)
            values.push_back({wavelengthName(info, w), widestValue(info.pixelType)});
        std::vector<std::string> items = pixelItems(panel.caption, info.width, info.height, values);
        if (const std::size_t length = lengthOf(items); length > most) {
            most = length;
            widest.pixel = std::move(items);
        }
        const image::SectionIndex section{panel.z, panel.wavelengths.front(), panel.t, panel.p};
        for (const int end : {0, 1}) {
            std::string stage = stageText(image(), scale(), section, end * info.width, end * info.height);
            if (stage.size() > widest.stage.size())
                widest.stage = std::move(stage);
        }
    }
    return widest;
}

std::vector<std::string> ImageWindow::stateItems() const
{
    std::vector<std::string> items;
    if (source.input && receiving)
        items.emplace_back("receiving");
    else if (!scan->done())
        items.push_back("ranges " + std::to_string(static_cast<int>(scan->progress() * 100)) + " %");
    if (std::string text = uncalibratedText(image().info(), scale()); !text.empty())
        items.push_back(std::move(text));
    items.push_back(zoomText(view.zoom));
    return items;
}

} // namespace viewer
