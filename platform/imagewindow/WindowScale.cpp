// SPDX-License-Identifier: MIT
// The scale of an image window: what the user has set for an image whose file does not tell it, where it is
// kept, and what is said about it.
#include "platform/imagewindow/ImageWindow.h"
#include "platform/imagewindow/files/ScaleStore.h"
#include "platform/imagewindow/view/Readout.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace viewer {

namespace {

constexpr std::chrono::seconds noticeTime{5}; // a sentence that the user has not asked for stays as long

} // namespace

void ImageWindow::recallScale()
{
    if (source.input || !needsScale(image().info()))
        return;
    const std::optional<KeptScale> kept = loadScale(source.path);
    if (!kept)
        return;
    (kept->current ? userScale : former) = kept->scale;
    if (!kept->current)
        tell("A scale was set for an earlier version of this file: View, Set scale... to use it again.");
}

// The image on display is still the same one, and so is its scale. That of a growing file is kept for the
// file as it has become.
void ImageWindow::followScale()
{
    if (!needsScale(image().info()))
        userScale.reset();
    else if (userScale && source.growing && !source.input)
        keepScale(source.path, *userScale);
}

void ImageWindow::askScale()
{
    if (!scaleDialogue)
        scaleDialogue = std::make_unique<ScaleDialogue>(controls->shell(), *this);
    scaleDialogue->show();
}

std::string ImageWindow::setScale(const UserScale& scale)
{
    userScale = scale;
    scaleBarShown = true;
    rescaled();
    return source.input ? "" : keepScale(source.path, scale);
}

std::string ImageWindow::removeScale()
{
    userScale.reset();
    scaleBarShown = scaleBarShown && scale().known;
    rescaled();
    return source.input ? "" : forgetScale(source.path);
}

void ImageWindow::rescaled()
{
    former.reset();
    changed();
    if (!tools().empty())
        tell("Tools that run keep the scale that they started with: end them and start them again.");
}

void ImageWindow::tell(const std::string& sentence)
{
    notice = sentence;
    noticeUntil = std::chrono::steady_clock::now() + noticeTime;
    statusStale = true;
}

// A tool has come or gone.
void ImageWindow::toolsChanged()
{
    const std::size_t count = tools().size();
    const std::string uncalibrated = uncalibratedText(image().info(), scale());
    if (count > toolCount && !uncalibrated.empty())
        tell("For the tool the image is " + uncalibrated + ". View, Set scale... changes that.");
    toolCount = count;
}

} // namespace viewer
