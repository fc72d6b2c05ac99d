#include "platform/imagewindow/Application.h"

#include "platform/imagewindow/ImageWindow.h"
#include "platform/protocol/XProtocol.h"

#include <X11/StringDefs.h>
#include <Xm/Xm.h>

#include <algorithm>
#include <clocale>
#include <stdexcept>

namespace viewer {

namespace {

// The colon after the font name asks for a font set, which draws any character of the locale.
const char* const fallbackResources[] = {
    "*fontList: fixed:",
    "*background: #2b2e31",
    "*foreground: #d9dbdd",
    "*shadowThickness: 1",
    "*highlightThickness: 1",
    "*highlightColor: #6c8ebf",
    "*borderWidth: 0",
    "*XmScale.highlightThickness: 0",
    "*XmScale*XmScrollBar.highlightThickness: 0",
    "*XmScrollBar.troughColor: #1d1f21",
    "*XmScrollBar.background: #4a4e53",
    "*XmText.background: #1d1f21",
    "*XmTextField.background: #1d1f21",
    "*XmList.background: #1d1f21",
    "*XmToggleButton.indicatorSize: 13",
    "*XmToggleButton.selectColor: #d9dbdd",
    "*port.background: #16181b",
    "*area.background: #16181b",
    "*status.background: #232527",
    "*status*background: #232527",
    nullptr,
};

// The error handler and the event dispatcher are per process in Xt.
Application* theApplication = nullptr;
XtEventDispatchProc nextDestroyDispatcher = nullptr;

} // namespace

Application::Application(const std::string& displayName)
{
    XtSetLanguageProc(nullptr, nullptr, nullptr);
    XtToolkitInitialize();
    app = XtCreateApplicationContext();
    XtAppSetFallbackResources(app, const_cast<String*>(fallbackResources));
    int argc = 1;
    char name[] = "imagewindow";
    char* argv[] = {name, nullptr};
    connection = XtOpenDisplay(app, displayName.empty() ? nullptr : displayName.c_str(), name, "ImageWindow",
                               nullptr, 0, &argc, argv);
    if (!connection) {
        const std::string asked = XDisplayName(displayName.empty() ? nullptr : displayName.c_str());
        XtDestroyApplicationContext(app);
        throw std::runtime_error(asked.empty() ? "there is no X display: DISPLAY is not set"
                                               : "cannot connect to the X display \"" + asked + "\"");
    }
    // Opening the display has set the whole locale; numbers are written in one way only.
    std::setlocale(LC_NUMERIC, "C");
    protocol::installErrorHandler("imagewindow");
    theApplication = this;
    nextDestroyDispatcher = XtSetEventDispatcher(connection, DestroyNotify, dispatchDestroy);
}

Application::~Application()
{
    windows.clear();
    theApplication = nullptr;
    XtDestroyApplicationContext(app);
}

void Application::open(const std::string& path, const Options& options)
{
    windows.push_back(std::make_unique<ImageWindow>(*this, path, options));
}

// Windows of other clients are no widgets: Xt would drop the news of their end.
Boolean Application::dispatchDestroy(XEvent* event)
{
    if (theApplication && event->xdestroywindow.event == event->xdestroywindow.window)
        for (const auto& window : theApplication->windows)
            window->clientGone(event->xdestroywindow.window);
    return nextDestroyDispatcher(event);
}

void Application::run()
{
    while (!windows.empty()) {
        // Changes gather while events wait, so that a slow picture is drawn once for many of them.
        if (!(XtAppPending(app) & XtIMXEvent))
            for (const auto& window : windows)
                window->update();
        removeClosed();
        if (!windows.empty())
            XtAppProcessEvent(app, XtIMAll);
        removeClosed();
    }
}

void Application::removeClosed()
{
    std::erase_if(windows, [](const auto& window) { return window->closing(); });
}

void Application::close(ImageWindow& window)
{
    window.markClosing();
}

void Application::quit()
{
    for (const auto& window : windows)
        window->markClosing();
}

std::string Application::siblingProgram(const std::string& name)
{
    std::error_code error;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto sibling = self.parent_path() / name;
    return !error && std::filesystem::exists(sibling, error) ? sibling.string() : name;
}

} // namespace viewer
