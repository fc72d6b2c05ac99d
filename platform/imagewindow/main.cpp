// SPDX-License-Identifier: MIT
#include "platform/image/ImageFile.h"
#include "platform/imagewindow/Application.h"
#include "platform/imagewindow/view/Readout.h"

#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int noDisplayStatus = 255, nothingOpenedStatus = 1;

// Opens every file that can be opened; the others get one sentence each. Returns how many were opened.
int openAll(viewer::Application& application, const viewer::Options& options)
{
    int opened = 0;
    for (const std::string& path : options.files) {
        try {
            application.open(path, options);
            ++opened;
        } catch (const image::ImageError& error) {
            std::fprintf(stderr, "imagewindow: %s\n", viewer::onOneLine(error.what()).c_str());
        }
    }
    return opened;
}

int run(int argc, char** argv)
{
    const viewer::ParsedOptions parsed =
        viewer::parseOptions(std::vector<std::string>(argv + 1, argv + argc));
    if (!parsed.options) {
        std::fputs(parsed.text.c_str(), parsed.status == 0 ? stdout : stderr);
        return parsed.status;
    }
    viewer::Application application(parsed.options->display, parsed.options->canvas);
    if (parsed.options->files.empty())
        application.openEmpty(*parsed.options);
    else if (openAll(application, *parsed.options) == 0)
        return nothingOpenedStatus;
    application.run();
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGCHLD, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "imagewindow: %s.\n", error.what());
        return noDisplayStatus;
    }
}
