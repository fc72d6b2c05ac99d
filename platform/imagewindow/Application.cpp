// SPDX-License-Identifier: MIT
#include "platform/imagewindow/Application.h"

#include "platform/image/Formats.h"
#include "platform/imagewindow/ImageWindow.h"
#include "platform/imagewindow/controls/Appearance.h"
#include "platform/imagewindow/controls/EmptyWindow.h"
#include "platform/imagewindow/controls/Typing.h"
#include "platform/imagewindow/files/Neighbours.h"
#include "platform/imagewindow/files/RecentFiles.h"
#include "platform/protocol/XProtocol.h"
#include "platform/text/Locale.h"

#include <X11/StringDefs.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace viewer {

namespace {

// The error handler and the event dispatcher are per process in Xt.
Application* theApplication = nullptr;
XtEventDispatchProc nextDestroyDispatcher = nullptr;

// The toolkit's warnings go to standard error, but for one: in a UTF-8 locale Xlib always misses some
// character sets of the server's bitmap fonts, and nothing can be done about it.
void toolkitWarning(String message)
{
    if (!std::string_view(message).starts_with("Missing charsets"))
        std::fprintf(stderr, "imagewindow: %s\n", message);
}

Display* openDisplay(const std::string& name)
{
    const char* asked = name.empty() ? nullptr : name.c_str();
    Display* display = XOpenDisplay(asked);
    if (display)
        return display;
    const std::string server = XDisplayName(asked);
    throw std::runtime_error(server.empty() ? "there is no X display: DISPLAY is not set"
                                            : "cannot connect to the X display \"" + server + "\"");
}

} // namespace

Application::Application(const std::string& displayName, std::optional<CanvasKind> wish)
    : connection(openDisplay(displayName))
{
    text::adoptLocale();
    XtToolkitInitialize();
    app = XtCreateApplicationContext();
    XtAppSetWarningHandler(app, toolkitWarning);
    XtAppSetFallbackResources(app, fallbackResources(connection));
    int argc = 1;
    char name[] = "imagewindow";
    char* argv[] = {name, nullptr};
    XtDisplayInitialize(app, connection, name, "ImageWindow", nullptr, 0, &argc, argv);
    protocol::installErrorHandler("imagewindow");
    theApplication = this;
    nextDestroyDispatcher = XtSetEventDispatcher(connection, DestroyNotify, dispatchDestroy);
    giveTypedKeysToFields(connection);
    const CanvasChoice choice = chooseCanvas(connection, wish);
    canvas = choice.kind;
    if (!choice.problem.empty())
        std::fprintf(stderr, "imagewindow: %s.\n", choice.problem.c_str());
}

Application::~Application()
{
    windows.clear();
    empty.reset();
    clipboard.reset();
    theApplication = nullptr;
    // The connection ends with the process: Xt's own way to close one that it did not open frees the resource
    // database twice.
    XSync(connection, False);
}

void Application::open(const std::string& path, const Options& options)
{
    windows.push_back(
        std::make_unique<ImageWindow>(*this, options.scratch ? openGrowing(path) : openImage(path), options));
    emptyDone = true;
    if (!options.scratch)
        noteRecent(std::filesystem::absolute(path).lexically_normal());
}

void Application::openEmpty(const Options& options)
{
    const EmptyWindow::Services services{
        .open = [this, options](const std::string& path) { open(path, options); },
        .close = [this] { emptyDone = true; }};
    empty = std::make_unique<EmptyWindow>(connection, options.geometry, services);
}

// Xt drops a DestroyNotify of a window that is no widget, so those of other clients are taken here.
Boolean Application::dispatchDestroy(XEvent* event)
{
    if (theApplication && event->xdestroywindow.event == event->xdestroywindow.window)
        for (const auto& window : theApplication->windows)
            window->clientGone(event->xdestroywindow.window);
    return nextDestroyDispatcher(event);
}

void Application::run()
{
    while (!windows.empty() || empty) {
        // Changes gather while events wait, so that a slow picture is drawn once for many of them.
        if (!(XtAppPending(app) & XtIMXEvent))
            updateAll();
        removeClosed();
        if (!windows.empty() || empty)
            XtAppProcessEvent(app, XtIMAll);
        removeClosed();
    }
    if (clipboard)
        clipboard->handOver();
}

bool Application::copy(std::vector<std::byte> png)
{
    if (!clipboard)
        clipboard.emplace(app, connection);
    return clipboard->offer(std::move(png));
}

void Application::updateAll()
{
    for (const auto& window : windows)
        if (const auto change = window->linkChange())
            for (const auto& other : windows)
                if (other != window)
                    other->followLink(*change);
    for (const auto& window : windows) {
        window->update();
        window->settleLink();
    }
}

// Files that are no images are skipped silently. Images that cannot be read are skipped too, and the user is
// told why.
void Application::showNeighbour(ImageWindow& window, int step)
{
    const std::vector<std::filesystem::path> own = window.life().file().files();
    std::string remark;
    for (const std::filesystem::path& path : neighboursOf(window.life().path(), step)) {
        if (std::find(own.begin(), own.end(), path) != own.end() || !image::mayBeImage(path))
            continue;
        try {
            replacement = Replacement{&window, openImage(path.string()), remark};
            return;
        } catch (const image::ImageError& error) {
            remark = std::string("Passed over: ") + error.what();
        }
    }
    window.tell(
        remark + (remark.empty() ? "" : " ") +
        (step > 0 ? "There is no further image in the folder." : "There is no image before in the folder."));
}

void Application::replace()
{
    Replacement next = std::move(*replacement);
    replacement.reset();
    const auto place = std::find_if(windows.begin(), windows.end(),
                                    [&](const auto& window) { return window.get() == next.window; });
    if (place == windows.end())
        return;
    noteRecent(next.source.path);
    Options options;
    std::unique_ptr<ImageWindow>* shown = &*place;
    if (next.window->hasTools()) {
        shown = &windows.emplace_back();
    } else {
        options.geometry = next.window->geometry();
        shown->reset(); // gives its number back
    }
    *shown = std::make_unique<ImageWindow>(*this, std::move(next.source), options);
    if (!next.remark.empty())
        (*shown)->tell(next.remark);
}

void Application::removeClosed()
{
    if (replacement)
        replace();
    std::erase_if(windows, [](const auto& window) { return window->closing(); });
    if (emptyDone)
        empty.reset();
}

Program Application::servicesFor(ImageWindow& window)
{
    return {.closeWindow = [&window] { window.markClosing(); },
            .quit =
                [this] {
                    for (const auto& each : windows)
                        each->markClosing();
                },
            .open = [this](const std::string& path) { open(path, Options{}); },
            .copy = [this](std::vector<std::byte> png) { return copy(std::move(png)); },
            .showNeighbour = [this, &window](int step) { showNeighbour(window, step); }};
}

} // namespace viewer
