// SPDX-License-Identifier: MIT
#include "tests/x/wmenh/Probe.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

ProbeTest::ProbeTest()
{
    writeImage(folder / "cells.ome.tif");
    showImage({40, 60, 500, 400});
    screen.moveTo(screen.root(), 1590, 1190);
}

ProbeTest::~ProbeTest()
{
    if (HasFailure() && probe)
        std::fprintf(stderr, "%s%s", probe->output().c_str(), probe->errors().c_str());
}

void ProbeTest::showImage(const drive::Rect& place)
{
    image.reset();
    image = std::make_unique<FakeViewer>(folder / "cells.ome.tif", place);
    drive::waitUntil([this] { return screen.viewable(image->canvas); });
}

void ProbeTest::launch(std::map<std::string, std::string> environment, int windowNumber)
{
    environment.try_emplace("LC_ALL", "C.UTF-8");
    environment["XDG_CONFIG_HOME"] = folder / "config";
    environment["PROBE_DIR"] = folder.path;
    probe = std::make_unique<drive::Process>(
        std::vector<std::string>{PROBE_PROGRAM, std::to_string(windowNumber)}, environment);
}

void ProbeTest::start(std::map<std::string, std::string> environment)
{
    launch(std::move(environment), image->record.windowNumber);
    ASSERT_TRUE(waitFor("ready"));
    ASSERT_TRUE(drive::waitUntil([this] { return screen.viewable(window("shell")); }));
}

std::vector<std::string> ProbeTest::said() const
{
    std::vector<std::string> lines;
    std::istringstream text(probe->output());
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> ProbeTest::said(const std::string& word) const
{
    std::vector<std::string> lines = said();
    std::erase_if(lines,
                  [&](const std::string& line) { return line != word && !line.starts_with(word + " "); });
    return lines;
}

bool ProbeTest::waitFor(const std::string& line)
{
    return drive::waitUntil([&] {
        const auto lines = said();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    });
}

Window ProbeTest::window(const std::string& name) const
{
    const auto lines = said("window " + name);
    return lines.empty() ? None : std::stoul(lines.back().substr(lines.back().rfind(' ') + 1));
}

drive::Rect ProbeTest::place(const std::string& name)
{
    return screen.geometry(window(name));
}

void ProbeTest::press(const std::string& name)
{
    screen.clickCentre(window(name));
}

namespace {

// Window managers put up to two windows around a client.
int countBelow(drive::Screen& screen, Window window, const std::string& text, int depth)
{
    int found = 0;
    for (const Window child : support::childrenOf(screen, window)) {
        if (!screen.viewable(child))
            continue;
        const bool titled = screen.title(child).find(text) != std::string::npos;
        found += titled ? 1 : depth > 0 ? countBelow(screen, child, text, depth - 1) : 0;
    }
    return found;
}

} // namespace

int ProbeTest::countTitled(const std::string& text)
{
    return countBelow(screen, screen.root(), text, 2);
}
