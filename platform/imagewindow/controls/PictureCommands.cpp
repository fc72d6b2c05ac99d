// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/PictureCommands.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/Dialogues.h"
#include "platform/imagewindow/controls/Messages.h"
#include "platform/imagewindow/controls/SaveDialogue.h"
#include "platform/imagewindow/figure/Figure.h"
#include "platform/imagewindow/paint/SavedView.h"
#include "platform/imagewindow/state/Reports.h"
#include "platform/imagewindow/view/Readout.h"
#include "widgets/Scale.h"
#include "widgets/picture/OutputFile.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>

namespace viewer {

namespace {

constexpr const char* noSegment =
    "No tool has drawn a segment in what is shown: a figure shows the profile along one.";

SavedView viewOf(Desk& desk, int resolution)
{
    const Shown& shown = desk.shown;
    const Scale scale = shown.life.scale();
    return {sceneOf(shown, desk.overlays, widgets::screenScale(XtDisplay(desk.shell))),
            shown.arrangement.canvas, resolution, desk.actions.renderImage(resolution),
            scale.known ? scale.spacing[0] / shown.arrangement.geometry.zoom : 0};
}

std::string savedTo(Desk& desk, const SaveAnswer& answer)
{
    try {
        if (!hasSavedEnding(answer.path))
            return answer.path.string() + " cannot be written: its name should end with " + savedEndings() +
                   ".";
        saveView(viewOf(desk, answer.choice + 1), answer.path);
    } catch (const picture::PictureError& error) {
        return error.what();
    }
    desk.actions.tell("The picture is saved: " + answer.path.string());
    return {};
}

std::string sizeText(Size canvas, int resolution)
{
    return std::to_string(canvas.width * resolution) + " x " + std::to_string(canvas.height * resolution) +
           " pixels";
}

} // namespace

void savePicture(Desk& desk)
{
    const Size canvas = desk.shown.arrangement.canvas;
    desk.dialogues.askWhereToSave({.title = "Save picture",
                                   .proposal = proposedName(desk.shown.life.path(), "png"),
                                   .hint = "The name ends with " + savedEndings() + ".",
                                   .choices = {"Screen resolution: " + sizeText(canvas, 1),
                                               "Double resolution: " + sizeText(canvas, 2)},
                                   .extra = {},
                                   .extraEnding = {}},
                                  [&desk](const SaveAnswer& answer) { return savedTo(desk, answer); });
}

namespace {

// The panel in which the segment lies; with wavelengths side by side, those of all panels. Nothing when it
// lies in none that is shown.
std::optional<PanelContent> panelOf(const Shown& shown, const Graphic& segment)
{
    const int style = shown.view.style;
    for (int panel = 0; panel < static_cast<int>(shown.panels.size()); ++panel) {
        PanelContent content = shown.panels[static_cast<std::size_t>(panel)];
        if (!showsIn(segment, style, panel, content))
            continue;
        for (const PanelContent& other : shown.panels)
            if (style == protocol::WavelengthPanels && boundWavelength(other) >= 0 &&
                std::find(content.wavelengths.begin(), content.wavelengths.end(),
                          other.wavelengths.front()) == content.wavelengths.end()) {
                content.wavelengths.push_back(other.wavelengths.front());
                content.colors.push_back(other.colors.front());
            }
        return content;
    }
    return std::nullopt;
}

std::string titleOf(const Shown& shown, const PanelContent& panel)
{
    std::string title = onOneLine(shown.life.path().filename().string());
    const char* const sampled = panel.projection == Projection::Section ? "   z " : "   profile of z ";
    if (shown.info().sizeZ > 1)
        title += sampled + std::to_string(panel.z + 1);
    if (shown.info().sizeT > 1)
        title += "   t " + std::to_string(panel.t + 1);
    return title;
}

std::string writeTable(const std::filesystem::path& figure, const SegmentProfile& profile)
{
    std::filesystem::path path = figure;
    path.replace_extension(".csv");
    const std::string table = profileTable(profile);
    return picture::replaceFile(path, std::as_bytes(std::span(table.data(), table.size())));
}

std::string figureSavedTo(Desk& desk, const SaveAnswer& answer)
{
    if (!hasFigureEnding(answer.path))
        return answer.path.string() + " cannot be written: its name should end with pdf, svg or png.";
    const Graphic* segment = desk.overlays.newestSegment();
    const auto panel = segment ? panelOf(desk.shown, *segment) : std::nullopt;
    if (!panel)
        return noSegment;
    try {
        constexpr int resolution = 2;
        const protocol::OverlayCommand& line = segment->command;
        const Figure figure{viewOf(desk, resolution),
                            desk.actions.profileAlong(*panel, {line.x0, line.y0, line.x1, line.y1}),
                            titleOf(desk.shown, *panel)};
        viewer::saveFigure(figure, answer.path);
        if (const std::string problem = answer.extra ? writeTable(answer.path, figure.profile) : "";
            !problem.empty())
            return problem;
    } catch (const std::runtime_error& error) { // of the picture or of the image
        return error.what();
    }
    desk.actions.tell("The figure is saved: " + answer.path.string());
    return {};
}

} // namespace

void saveFigure(Desk& desk)
{
    if (!desk.overlays.newestSegment())
        return desk.actions.tell(noSegment);
    desk.dialogues.askWhereToSave({.title = "Save figure",
                                   .proposal = proposedName(desk.shown.life.path(), "pdf"),
                                   .hint = "The name ends with pdf, svg or png.",
                                   .choices = {},
                                   .extra = "Also write the numbers beside it, as a table (csv)",
                                   .extraEnding = "csv"},
                                  [&desk](const SaveAnswer& answer) { return figureSavedTo(desk, answer); });
}

void copyPicture(Desk& desk)
{
    try {
        const bool offered =
            desk.program.copy(picture::encode(rasterOf(viewOf(desk, 1)), picture::Format::Png));
        desk.actions.tell(offered ? "The picture is on the clipboard."
                                  : "The clipboard could not be had: another program holds it.");
    } catch (const picture::PictureError& error) {
        showError(desk.shell, "Cannot copy", error.what());
    }
}

} // namespace viewer
